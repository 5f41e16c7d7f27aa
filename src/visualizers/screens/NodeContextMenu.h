// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

class QPoint;
class QWidget;

namespace quorvane {

class AppState;

/// Opens the menu of a node at a point of the screen and returns at once. Without a node there is
/// no menu. Acts on the node through the state, which outlives the widget; an entry that is chosen
/// after a scan has replaced the node's tree does nothing.
void popUpNodeContextMenu(AppState& state, const NodePointer& node, QWidget& owner,
                          const QPoint& globalPosition);

} // namespace quorvane
