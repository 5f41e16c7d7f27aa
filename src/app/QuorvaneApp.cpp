// SPDX-License-Identifier: MIT
#include "QuorvaneApp.h"

#include "DesktopSettings.h"
#include "GlobalSearch.h"
#include "MainWindow.h"
#include "Theme.h"
#include "WindowSystem.h"

#include <QApplication>

#include <utility>

namespace quorvane {

QuorvaneApp::QuorvaneApp(QApplication& application, const Platform& platform, AppScreens screens)
    : m_appState(platform)
{
    m_appDelegate.applicationDidFinishLaunching(application);
    QObject::connect(&m_appDelegate, &AppDelegate::folderHandedOver, &m_appDelegate,
                     [this](const FilePath& folder) { openFolder(folder); });
    DesktopSettings::instance().follow();
    m_themeChanged = m_appState.theme.addNotifier([this] { applyTheme(); });
    m_accentChanged = m_appState.accent.addNotifier([this] { applyTheme(); });
    applyTheme();
    m_window = std::make_unique<MainWindow>(m_appState, std::move(screens));
    QObject::connect(&m_appDelegate, &AppDelegate::quitRequested, m_window.get(),
                     [this] { m_window->expectQuit(); });
    installGlobalSearch();
}

QuorvaneApp::~QuorvaneApp()
{
    GlobalSearch::shared().install(nullptr);
}

void QuorvaneApp::installGlobalSearch()
{
    const auto followCallability = [this] {
        QApplication::setQuitOnLastWindowClosed(
            m_appDelegate.applicationShouldTerminateAfterLastWindowClosed(m_appState.isCallable()));
    };
    m_hotKeyChanged = m_appState.hotKeyState.addNotifier(followCallability);
    m_reachableChanged = m_appState.isInstanceReachable.addNotifier(followCallability);
    followCallability();
    GlobalSearch::shared().install(&m_appState, [this] { showWindow(); });
    m_appState.installHotKey(
        [](const std::string& activationToken) { GlobalSearch::shared().toggle(activationToken); });
}

void QuorvaneApp::applyTheme()
{
    setTheme(m_appState.theme.value(), m_appState.accent.value());
}

void QuorvaneApp::setReachable()
{
    m_appState.isInstanceReachable = true;
}

void QuorvaneApp::serve(const InstanceRequest& request)
{
    // Without a window the program has to stay reachable.
    if (!request.opensSearch || request.folder || !m_appState.isCallable()) {
        showWindow(request.activationToken);
    }
    if (request.folder) {
        openFolder(*request.folder);
    }
    if (request.opensSearch) {
        GlobalSearch::shared().toggle(request.activationToken);
    }
}

void QuorvaneApp::showWindow(const std::string& activationToken)
{
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    if (WindowSystem* const windows = m_appState.platform().windowSystem) {
        windows->activate(m_window->winId(), activationToken);
    }
    m_window->raise();
    m_window->activateWindow();
}

void QuorvaneApp::openFolder(const FilePath& folder)
{
    m_appState.openFolder(folder);
}

bool QuorvaneApp::finishJobs(std::chrono::milliseconds atMost)
{
    m_appState.cancelScan();
    m_appState.jobs().close();
    m_appState.waitForBatch();
    return m_appState.jobs().drain(atMost);
}

} // namespace quorvane
