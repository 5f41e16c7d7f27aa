// SPDX-License-Identifier: MIT
#include "AppMenus.h"

#include "AppState.h"

#include <QAction>
#include <QCoreApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include <functional>
#include <optional>
#include <vector>

namespace quorvane {
namespace {

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
    return QCoreApplication::translate("AppMenus", text);
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
          {"cancelScanAction",
           translated("Cancel Scan"),
           Qt::CTRL | Qt::Key_Period,
           {},
           &AppState::cancelScan}}},
        {"searchMenu",
         translated("Search"),
         {{"folderSearchAction", translated("Folder Search"), Qt::CTRL | Qt::Key_F,
           AppSection::search, show(AppSection::search)}}},
        {"cleanupMenu",
         translated("Cleanup"),
         {{"showStagedItemsAction",
           translated("Show Staged Items"),
           {},
           AppSection::cleanup,
           show(AppSection::cleanup)}}},
    };
}

QMenu* addMenu(QMenuBar& menuBar, const char* objectName, const QString& title)
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

void addApplicationMenu(QMenuBar& menuBar, AppState& state, const SectionScreens& sections)
{
    const QString name = QStringLiteral("Quorvane");
    QMenu* const menu = addMenu(menuBar, "applicationMenu", name);
    if (sections.contains(AppSection::settings)) {
        QAction* const settings = addCommand(*menu,
                                             {"settingsAction",
                                              translated("Settings…"),
                                              Qt::CTRL | Qt::Key_Comma,
                                              {},
                                              toggleSettings},
                                             state);
        settings->setMenuRole(QAction::PreferencesRole);
        menu->addSeparator();
    }
    QAction* const close = menu->addAction(translated("Close Window"));
    close->setObjectName(QStringLiteral("closeWindowAction"));
    close->setShortcut(QKeySequence::Close);
    QObject::connect(close, &QAction::triggered, &menuBar,
                     [&menuBar] { menuBar.window()->close(); });
    QAction* const quit = menu->addAction(translated("Quit %1").arg(name));
    quit->setObjectName(QStringLiteral("quitAction"));
    quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    quit->setMenuRole(QAction::QuitRole);
    QObject::connect(quit, &QAction::triggered, QCoreApplication::instance(),
                     &QCoreApplication::quit, Qt::QueuedConnection);
}

} // namespace

void addAppMenus(QMenuBar& menuBar, AppState& state, const SectionScreens& sections)
{
    addApplicationMenu(menuBar, state, sections);
    for (const CommandMenu& entry : commandMenus()) {
        QMenu* menu = nullptr;
        for (const Command& command : entry.commands) {
            if (command.section && !sections.contains(*command.section)) {
                continue;
            }
            if (menu == nullptr) {
                menu = addMenu(menuBar, entry.objectName, entry.title);
            }
            addCommand(*menu, command, state);
        }
    }
}

} // namespace quorvane
