// SPDX-License-Identifier: MIT
#pragma once

#include "CheckedTrash.h"
#include "Evidence.h"
#include "Row.h"

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What the rows of the reclaim tools have in common.
namespace quorvane::toolrows {

QString text(std::string_view bytes);

/// What a row is judged by, and why to think twice, as chips.
std::vector<RowBadge> evidenceBadges(const Evidence& evidence);

/// "Not moved: no permission for /opt", as a chip.
RowBadge notMoved(const QString& reason);
RowBadge notMoved(TrashOutcome outcome, const FilePath& path);

/// "Nov 3, 2025", in the words of the C locale, whatever the desktop's.
QString date(std::int64_t secondsSince1970);

/// A row's key from its id.
quint64 key(const std::string& id);

} // namespace quorvane::toolrows
