// SPDX-License-Identifier: MIT
#pragma once

#include "AppDelegate.h"
#include "AppScreens.h"
#include "AppState.h"
#include "Platform.h"
#include "ProgramInstance.h"

#include <QProperty>

#include <chrono>
#include <memory>
#include <string>

class QApplication;

namespace quorvane {

class MainWindow;

/// The program: the one model, the delegate, and the window over them. Main thread.
class QuorvaneApp
{
public:
    /// What the platform refers to outlives the program.
    QuorvaneApp(QApplication& application, const Platform& platform, AppScreens screens);
    ~QuorvaneApp();
    QuorvaneApp(const QuorvaneApp&) = delete;
    QuorvaneApp& operator=(const QuorvaneApp&) = delete;

    AppDelegate& appDelegate() { return m_appDelegate; }
    AppState& appState() { return m_appState; }
    MainWindow& window() { return *m_window; }

    /// Shows the window in front of all others; the token tells that the person asked for it (see
    /// WindowSystem).
    void showWindow(const std::string& activationToken = {});
    /// Scans a folder that was handed over, as if the user had chosen it.
    void openFolder(const FilePath& folder);
    /// Does what a start of the program asks for, this one's or a later one's.
    void serve(const InstanceRequest& request);
    /// Later starts reach this process from now on.
    void setReachable();
    /// Waits for a batch on its way to the Trash however long it takes, stops what else runs and
    /// waits for that, at most atMost. Returns false if a job still hangs in a
    /// call to the system: it would keep the process from ending in the usual way.
    bool finishJobs(std::chrono::milliseconds atMost);

private:
    void applyTheme();
    void installGlobalSearch();

    AppState m_appState;
    AppDelegate m_appDelegate;
    std::unique_ptr<MainWindow> m_window;
    QPropertyNotifier m_themeChanged;
    QPropertyNotifier m_accentChanged;
    QPropertyNotifier m_hotKeyChanged;
    QPropertyNotifier m_reachableChanged;
};

} // namespace quorvane
