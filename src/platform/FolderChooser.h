// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <QString>

#include <functional>

namespace quorvane {

/// The system's folder chooser. Main thread.
class FolderChooser
{
public:
    virtual ~FolderChooser() = default;

    /// Shows a chooser for one folder (no files) as a sheet on the program's window, else by
    /// itself, and returns at once. prompt labels the confirming button, message tells what is
    /// chosen. chosen is called with the folder on confirmation, and never for a cancelled chooser.
    virtual void chooseFolder(const QString& prompt, const QString& message,
                              std::function<void(const FilePath&)> chosen) = 0;
};

} // namespace quorvane
