// SPDX-License-Identifier: MIT
#include "AppScreens.h"

#include "AnalysisView.h"
#include "CleanupView.h"
#include "VisualizerHostView.h"

namespace quorvane {

AppScreens AppScreens::standard()
{
    AppScreens screens;
    screens.visualizers = makeVisualizerScreens();
    const auto makeResult = [visualizers = screens.visualizers](AppState& state,
                                                                QWidget* parent) -> QWidget* {
        return new VisualizerHostView(state, visualizers, parent);
    };
    screens.sections.add(AppSection::analysis,
                         [makeResult](AppState& state, QWidget* parent) -> QWidget* {
                             return new AnalysisView(state, makeResult, parent);
                         });
    screens.sections.add(AppSection::cleanup, [](AppState& state, QWidget* parent) -> QWidget* {
        return new CleanupView(state, parent);
    });
    return screens;
}

} // namespace quorvane
