// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

class RowView;

// What a RowView tells assistive technology: each row a child of the list or of the row above it,
// with all that it shows; each control of a row its child, with its name, and to be pressed.

/// Lets RowViews be known. May be called again. Main thread, as all of these.
void installRowAccessibility();

/// Rows came, went or moved: what was known of them is void.
void announceRows(RowView& view);

/// Rows and controls bear other words: tells so of those that were asked for before. Returns how
/// many.
int announceRowNames(RowView& view);

/// The keys act on something else. Nothing while the view is without focus.
void announceRowFocus(RowView& view);

} // namespace quorvane
