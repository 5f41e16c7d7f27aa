// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

class QPoint;
class QWidget;

namespace quorvane {

class AppState;

/// Gives the view of a node its menu: staging, revealing and opening. Made for one opening; the
/// state outlives the widget that owns the menu. Main thread.
struct NodeContextMenuModifier
{
    AppState& state;
    NodePointer node; ///< absent: there is no menu

    /// Opens the menu at a point of the screen and returns at once. An entry that is chosen after a
    /// scan has replaced the node's tree does nothing.
    void popUp(QWidget& owner, const QPoint& globalPosition) const;
};

} // namespace quorvane
