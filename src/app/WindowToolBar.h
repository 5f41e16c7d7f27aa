// SPDX-License-Identifier: MIT
#pragma once

#include "Ground.h"
#include "ScreenRegistry.h"
#include "VisualizerType.h"

#include <functional>
#include <vector>

namespace quorvane {

class AppState;
class NavigationState;
class ScanState;
class SettingsState;
class Label;
class Refresher;
class SearchBarView;
class SegmentedPicker;
class ToolButton;

/// The strip over the detail area, 52 high: what is on show and what can be done with it. Main
/// thread.
class WindowToolBar : public Ground
{
    Q_OBJECT

public:
    /// Window widths below which words give way to symbols.
    static constexpr int pickerWordsWidth = 1440;
    static constexpr int settingsWordsWidth = 1200;

    WindowToolBar(AppState& state, const SectionScreens& sections,
                  const VisualizerScreens& visualizers, QWidget* parent = nullptr);

    /// Tells what the sidebar's button would do next.
    void setSidebarShown(bool shown);

Q_SIGNALS:
    void sidebarToggled();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeLeadingItems();
    void makeVisualizerPicker(const VisualizerScreens& visualizers);
    ToolButton* makeAction(const QString& symbol, const QString& name, const QString& objectName,
                           std::function<void()> run);
    /// Only where there is a settings screen.
    void makeSettingsButton(const SectionScreens& sections);
    void makeDetailsToggle();
    void layOut();
    void refresh();
    void fitWords();

    ScanState& m_scan;
    NavigationState& m_navigation;
    SettingsState& m_settingsState;
    ToolButton* m_sidebarToggle = nullptr;
    /// From a tool to the picture of the scan, which the tools have been opened from.
    ToolButton* m_back = nullptr;
    Label* m_title = nullptr;
    SegmentedPicker* m_picker = nullptr;
    std::vector<VisualizerType> m_pickerTypes;
    SearchBarView* m_search = nullptr;
    ToolButton* m_rescan = nullptr;
    ToolButton* m_zoomOut = nullptr;
    ToolButton* m_details = nullptr;
    ToolButton* m_settings = nullptr;
    Refresher* m_refresher;
};

} // namespace quorvane
