// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenRegistry.h"

#include <QMenuBar>

class QAction;

namespace quorvane {

class AppState;
class Refresher;

/// The menu bar of the window with the program's commands. A command that leads to a section is
/// there when the section has a screen. Main thread.
class AppMenuBar : public QMenuBar
{
    Q_OBJECT

public:
    AppMenuBar(AppState& state, const SectionScreens& sections, QWidget* parent = nullptr);

protected:
    void initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const override;

private:
    void addApplicationMenu(const SectionScreens& sections);
    void addCommandMenus(const SectionScreens& sections);
    void refresh();

    AppState& m_state;
    const QAction* m_programMenu = nullptr;
    QAction* m_cancelScan = nullptr;
    Refresher* m_refresher;
};

} // namespace quorvane
