// SPDX-License-Identifier: MIT
#pragma once

#include "ScanProgress.h"

#include <QString>

#include <optional>

namespace quorvane {

/// What the live line of a running scan reads.
struct ScanLiveLine
{
    QString name;   ///< the folder taken up last, or what goes on instead
    QString parent; ///< "  in {parent}" behind the name; may be empty

    friend bool operator==(const ScanLiveLine&, const ScanLiveLine&) = default;
};

/// Whether the report names a folder below "/".
bool hasUsablePath(const std::optional<ScanProgress>& progress);

/// hasReportedPath: whether a usable path has been shown during this scan.
ScanLiveLine scanLiveLine(const std::optional<ScanProgress>& progress, bool hasReportedPath);

} // namespace quorvane
