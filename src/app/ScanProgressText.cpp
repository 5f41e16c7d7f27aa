// SPDX-License-Identifier: MIT
#include "ScanProgressText.h"

#include "FilePath.h"
#include "Text.h"

#include <QCoreApplication>

namespace quorvane {
namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("ScanProgressView", text);
}

} // namespace

bool hasUsablePath(const std::optional<ScanProgress>& progress)
{
    return progress && !progress->currentPath.empty() && progress->currentPath != "/";
}

ScanLiveLine scanLiveLine(const std::optional<ScanProgress>& progress, bool hasReportedPath)
{
    if (!hasUsablePath(progress)) {
        return {hasReportedPath ? translated("Finishing up…") : translated("Preparing to scan…"),
                {}};
    }
    const FilePath path(progress->currentPath);
    const FilePath parent = path.parent();
    return {displayText(path.lastComponent()),
            parent.isEmpty() ? QString() : translated("  in %1").arg(parent.displayText())};
}

} // namespace quorvane
