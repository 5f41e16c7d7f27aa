// SPDX-License-Identifier: MIT
#pragma once

#include "AppSection.h"
#include "Ground.h"
#include "ScreenRegistry.h"

#include <vector>

namespace quorvane {

class AppState;
class NavigationState;
class ScanState;
class StagingState;
class NavigationRow;
class Refresher;
class ScanTile;
class StagedRow;

/// The column on the left, 240 wide: scan actions, the drive, the tools that exist, the colours of
/// the file types. Scrolls when the window is low. Main thread.
class SidebarView : public Ground
{
    Q_OBJECT

public:
    SidebarView(AppState& state, const SectionScreens& sections, QWidget* parent = nullptr);

private:
    struct ToolRow
    {
        AppSection section;
        NavigationRow* row;
    };

    QWidget* makeScanActions();
    QWidget* makeTools(const SectionScreens& sections);
    QWidget* makeFileTypes();
    QWidget* makeStagedRow();
    void refresh();

    ScanState& m_scan;
    NavigationState& m_navigation;
    StagingState& m_staging;
    std::vector<ScanTile*> m_scanTiles;
    std::vector<ToolRow> m_toolRows;
    StagedRow* m_staged = nullptr;
    QWidget* m_stagedPlace = nullptr;
    Refresher* m_refresher;
};

} // namespace quorvane
