// SPDX-License-Identifier: MIT
#include "AppScreens.h"

#include "AnalysisView.h"
#include "CleanupView.h"
#include "DevCacheCleanerView.h"
#include "DuplicatesView.h"
#include "MonitorView.h"
#include "QuickWinsView.h"
#include "ScreenshotRenameView.h"
#include "SearchView.h"
#include "SettingsView.h"
#include "SnapshotsView.h"
#include "TagRulesView.h"
#include "UninstallerView.h"
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
    screens.sections.add(AppSection::duplicates, [](AppState& state, QWidget* parent) -> QWidget* {
        return new DuplicatesView(state, parent);
    });
    screens.sections.add(AppSection::monitor, [](AppState& state, QWidget* parent) -> QWidget* {
        return new MonitorView(state, parent);
    });
    screens.sections.add(AppSection::screenshotRename,
                         [](AppState& state, QWidget* parent) -> QWidget* {
                             return new ScreenshotRenameView(state, parent);
                         });
    screens.sections.add(AppSection::search, [](AppState& state, QWidget* parent) -> QWidget* {
        return new SearchView(state, parent);
    });
    screens.sections.add(AppSection::snapshots, [](AppState& state, QWidget* parent) -> QWidget* {
        return new SnapshotsView(state, parent);
    });
    screens.sections.add(AppSection::tagging, [](AppState& state, QWidget* parent) -> QWidget* {
        return new TagRulesView(state, parent);
    });
    screens.sections.add(AppSection::quickWins, [](AppState& state, QWidget* parent) -> QWidget* {
        return new QuickWinsView(state, parent);
    });
    screens.sections.add(AppSection::devCacheCleaner,
                         [](AppState& state, QWidget* parent) -> QWidget* {
                             return new DevCacheCleanerView(state, parent);
                         });
    screens.sections.add(AppSection::uninstaller, [](AppState& state, QWidget* parent) -> QWidget* {
        return new UninstallerView(state, parent);
    });
    screens.sections.add(AppSection::settings, [](AppState& state, QWidget* parent) -> QWidget* {
        return new SettingsView(state, parent);
    });
    return screens;
}

} // namespace quorvane
