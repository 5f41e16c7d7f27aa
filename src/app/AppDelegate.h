// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <QObject>

class QApplication;

namespace quorvane {

/// The program's part in the toolkit's life cycle. Main thread.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    /// Gives the program its name, icon and style, and takes the folders that the desktop hands it
    /// while it runs.
    void applicationDidFinishLaunching(QApplication& application);

    /// Whether the process ends with its last window: only while nothing could call the program
    /// back, since it would run on without a way to reach it.
    bool applicationShouldTerminateAfterLastWindowClosed(bool isCallable) const
    {
        return !isCallable;
    }

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void folderHandedOver(const FilePath& folder);
    /// The program is asked to end; its windows are about to be closed.
    void quitRequested();
};

} // namespace quorvane
