// SPDX-License-Identifier: MIT
#include "QuorvaneApp.h"

#include "DesktopSettings.h"
#include "MainWindow.h"
#include "Theme.h"

#include <QApplication>

#include <utility>

namespace quorvane {

QuorvaneApp::QuorvaneApp(QApplication& application, const Platform& platform, AppScreens screens)
    : m_appState(platform)
{
    m_appDelegate.applicationDidFinishLaunching(application);
    // No global hot key is registered so far.
    const bool isHotKeyInstalled = false;
    QApplication::setQuitOnLastWindowClosed(
        m_appDelegate.applicationShouldTerminateAfterLastWindowClosed(isHotKeyInstalled));
    QObject::connect(&m_appDelegate, &AppDelegate::folderHandedOver, &m_appDelegate,
                     [this](const FilePath& folder) { openFolder(folder); });
    DesktopSettings::instance().follow();
    m_themeChanged = m_appState.theme.addNotifier([this] { applyTheme(); });
    m_accentChanged = m_appState.accent.addNotifier([this] { applyTheme(); });
    applyTheme();
    m_window = std::make_unique<MainWindow>(m_appState, std::move(screens));
}

QuorvaneApp::~QuorvaneApp() = default;

void QuorvaneApp::applyTheme()
{
    setTheme(m_appState.theme.value(), m_appState.accent.value());
}

void QuorvaneApp::showWindow()
{
    m_window->show();
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
