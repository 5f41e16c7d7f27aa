// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

class DuplicatesList;

/// Lets lists of duplicates tell assistive technology their rows and the buttons on them. Once is
/// enough. Main thread.
void installDuplicatesAccessibility();

/// Tells that rows have come or gone.
void announceDuplicateRows(DuplicatesList& list);
/// Tells which buttons bear other words than before, of those that anybody has asked for, and
/// returns their number.
int announceDuplicateButtons(DuplicatesList& list);
/// Tells what the keys act on now.
void announceDuplicateFocus(DuplicatesList& list);

} // namespace quorvane
