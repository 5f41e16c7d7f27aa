// SPDX-License-Identifier: MIT
#include "ScanProgressText.h"

#include "FilePath.h"
#include "Text.h"

#include <QCoreApplication>

namespace quorvane {
namespace {

/// Bytes.
constexpr std::size_t maxShownPathLength = 1024;

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
    if (parent.isEmpty()) {
        return {displayText(path.lastComponent()), {}};
    }
    // A path can run to megabytes; no line shows more of it than this.
    const std::string_view front = utf8Prefix(parent.bytes(), maxShownPathLength);
    QString shown = displayText(front);
    if (front.size() < parent.bytes().size()) {
        shown += QChar(0x2026);
    }
    return {displayText(path.lastComponent()), translated("  in %1").arg(shown)};
}

} // namespace quorvane
