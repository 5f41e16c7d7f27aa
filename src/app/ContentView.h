// SPDX-License-Identifier: MIT
#pragma once

#include "AppSection.h"
#include "ScreenRegistry.h"

#include <QWidget>

#include <map>

class QStackedLayout;

namespace quorvane {

class AppState;
class NavigationState;
class ScanState;
class Ground;
class NoScanPromptView;
class Refresher;
class SidebarView;
class WindowToolBar;
struct AppScreens;

/// The root screen: the sidebar beside the tool bar and the screen of the section on show. Main
/// thread.
class ContentView : public QWidget
{
    Q_OBJECT

public:
    /// The screens outlive the view.
    ContentView(AppState& state, const AppScreens& screens, QWidget* parent = nullptr);

    /// Whether the sidebar shows.
    bool columnVisibility() const { return m_columnVisibility; }
    void setColumnVisibility(bool visible);

    /// Where the section's screen is, in this widget's coordinates.
    QRect detailArea() const;
    /// The same without what lies left and right of the gap in the header of the screen on show:
    /// its title and its actions.
    QRect clearDetailArea() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// The detail area has another size or shows another screen.
    void detailChanged();

private:
    void makeColumns(const AppScreens& screens);
    /// Null for a section without a screen.
    QWidget* screenFor(AppSection section);
    NoScanPromptView* promptFor(AppSection section);
    void refresh();
    void show(QWidget& screen);

    AppState& m_state;
    ScanState& m_scan;
    NavigationState& m_navigation;
    const SectionScreens& m_sections;
    SidebarView* m_sidebar = nullptr;
    WindowToolBar* m_toolBar = nullptr;
    Ground* m_detail = nullptr;
    QStackedLayout* m_stack = nullptr;
    NoScanPromptView* m_prompt = nullptr;
    std::map<AppSection, QWidget*> m_made;
    bool m_columnVisibility = true;
    Refresher* m_refresher;
};

} // namespace quorvane
