// SPDX-License-Identifier: MIT
#include "AppScreens.h"

#include "AnalysisView.h"
#include "VisualizerHostView.h"

#include <memory>

namespace quorvane {

AppScreens AppScreens::standard()
{
    const auto visualizers = std::make_shared<const VisualizerScreens>(makeVisualizerScreens());
    const ScreenFactory makeHost = [visualizers](AppState& state, QWidget* parent) -> QWidget* {
        return new VisualizerHostView(state, *visualizers, parent);
    };
    AppScreens screens;
    screens.visualizers = *visualizers;
    screens.sections.add(AppSection::analysis,
                         [makeHost](AppState& state, QWidget* parent) -> QWidget* {
                             return new AnalysisView(state, makeHost, parent);
                         });
    return screens;
}

} // namespace quorvane
