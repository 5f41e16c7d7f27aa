// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"
#include "Row.h"

#include <cstddef>

namespace quorvane {

class AppState;

/// The rows of the review of duplicates. Main thread.
namespace duplicaterows {

/// The buttons of the rows.
enum Action {
    keepLatest, ///< of a group
    reveal,     ///< of a copy
    keep,       ///< of a copy
    showMore
};

/// Widths that all rows share, points.
struct Widths
{
    int size = 0;
    int count = 0;
    int keepLatest = 0;
    int keep = 0;
    int date = 0;
};
/// From the fonts of now, and the largest number of copies.
Widths measure(const AppState& state);

Row groupRow(const AppState& state, const DuplicateFinder::Group& group, bool isOpen,
             const Widths& widths);
Row memberRow(const AppState& state, const DuplicateFinder::Group& group, FileNode& file,
              const Widths& widths);
/// "Show {k} more groups…"
Row moreGroupsRow(std::size_t next);
/// "Show remaining {r}", or the part of it that comes next.
Row moreMembersRow(std::size_t remaining, std::size_t step);

/// Does what the group's button says now. Nothing for a group without a newest file.
void pressKeepLatest(AppState& state, const DuplicateFinder::Group& group);
/// Does what the copy's button says now.
void pressKeep(AppState& state, FileNode& file);

QString recommendedToolTip();

} // namespace duplicaterows
} // namespace quorvane
