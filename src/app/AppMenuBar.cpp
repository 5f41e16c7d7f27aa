// SPDX-License-Identifier: MIT
#include "AppMenuBar.h"

#include "AppState.h"
#include "GlobalSearch.h"
#include "Refresher.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>
#include <QStyleOptionMenuItem>

#include <functional>
#include <optional>
#include <vector>

namespace quorvane {
namespace {

constexpr const char* cancelScanName = "cancelScanAction";

struct Command
{
    const char* objectName;
    QString text;
    QKeySequence key;
    /// The screen that the command needs.
    std::optional<AppSection> section;
    std::function<void(AppState&)> run;
};

struct CommandMenu
{
    const char* objectName;
    QString title;
    std::vector<Command> commands;
};

QString translated(const char* text)
{
    return QCoreApplication::translate("AppMenuBar", text);
}

std::vector<CommandMenu> commandMenus()
{
    const auto show = [](AppSection section) {
        return [section](AppState& state) { state.section = section; };
    };
    return {
        {"scanMenu",
         translated("Scan"),
         {{"scanFolderAction",
           translated("Scan Folder…"),
           Qt::CTRL | Qt::Key_O,
           {},
           &AppState::pickFolder},
          {"scanHomeAction",
           translated("Scan Home Folder"),
           Qt::CTRL | Qt::SHIFT | Qt::Key_H,
           {},
           &AppState::scanHome},
          {cancelScanName,
           translated("Cancel Scan"),
           Qt::CTRL | Qt::Key_Period,
           {},
           &AppState::cancelScan}}},
        {"searchMenu",
         translated("Search"),
         {{"spotlightSearchAction",
           translated("Spotlight Search…"),
           Qt::CTRL | Qt::SHIFT | Qt::Key_Space,
           {},
           [](AppState&) { GlobalSearch::shared().toggle(); }},
          {"folderSearchAction", translated("Folder Search"), Qt::CTRL | Qt::Key_F,
           AppSection::search, show(AppSection::search)}}},
        {"cleanupMenu",
         translated("Cleanup"),
         {{"stageSelectionAction", translated("Stage Selection"), Qt::CTRL | Qt::SHIFT | Qt::Key_S,
           AppSection::cleanup, &AppState::stageSelection},
          {"showStagedItemsAction",
           translated("Show Staged Items"),
           {},
           AppSection::cleanup,
           show(AppSection::cleanup)}}},
    };
}

QMenu* addNamedMenu(QMenuBar& menuBar, const char* objectName, const QString& title)
{
    QMenu* const menu = menuBar.addMenu(title);
    menu->setObjectName(QLatin1String(objectName));
    return menu;
}

QAction* addCommand(QMenu& menu, const Command& command, AppState& state)
{
    QAction* const action = menu.addAction(command.text);
    action->setObjectName(QLatin1String(command.objectName));
    action->setShortcut(command.key);
    QObject::connect(action, &QAction::triggered, action,
                     [run = command.run, &state] { run(state); });
    return action;
}

void toggleSettings(AppState& state)
{
    if (state.section.value() == AppSection::settings) {
        state.closeSettings();
    } else {
        state.openSettings();
    }
}

} // namespace

AppMenuBar::AppMenuBar(AppState& state, const SectionScreens& sections, QWidget* parent)
    : QMenuBar(parent)
    , m_state(state)
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("menuBar"));
    addApplicationMenu(sections);
    addCommandMenus(sections);
    m_refresher->watch(m_state.isScanning);
    refresh();
}

void AppMenuBar::addApplicationMenu(const SectionScreens& sections)
{
    const QString name = QStringLiteral("Quorvane");
    QMenu* const menu = addNamedMenu(*this, "applicationMenu", name);
    m_programMenu = menu->menuAction();
    if (sections.contains(AppSection::settings)) {
        const Command command{"settingsAction",
                              translated("Settings…"),
                              Qt::CTRL | Qt::Key_Comma,
                              {},
                              toggleSettings};
        addCommand(*menu, command, m_state)->setMenuRole(QAction::PreferencesRole);
        menu->addSeparator();
    }
    QAction* const close = menu->addAction(translated("Close Window"));
    close->setObjectName(QStringLiteral("closeWindowAction"));
    close->setShortcut(Qt::CTRL | Qt::Key_W);
    connect(close, &QAction::triggered, this, [this] { window()->close(); });
    QAction* const quit = menu->addAction(translated("Quit %1").arg(name));
    quit->setObjectName(QStringLiteral("quitAction"));
    quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    quit->setMenuRole(QAction::QuitRole);
    connect(quit, &QAction::triggered, QCoreApplication::instance(), &QCoreApplication::quit,
            Qt::QueuedConnection);
}

void AppMenuBar::addCommandMenus(const SectionScreens& sections)
{
    for (const CommandMenu& entry : commandMenus()) {
        QMenu* menu = nullptr;
        for (const Command& command : entry.commands) {
            if (command.section && !sections.contains(*command.section)) {
                continue;
            }
            if (menu == nullptr) {
                menu = addNamedMenu(*this, entry.objectName, entry.title);
            }
            addCommand(*menu, command, m_state);
        }
    }
    m_cancelScan = findChild<QAction*>(QLatin1String(cancelScanName));
}

void AppMenuBar::refresh()
{
    m_cancelScan->setEnabled(m_state.isScanning.value());
}

void AppMenuBar::initStyleOption(QStyleOptionMenuItem* option, const QAction* action) const
{
    QMenuBar::initStyleOption(option, action);
    if (action == m_programMenu) {
        option->menuItemType = QStyleOptionMenuItem::DefaultItem;
    }
}

} // namespace quorvane
