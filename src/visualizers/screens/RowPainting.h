// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>

class QModelIndex;
class QPainter;
class QStyleOptionViewItem;

namespace quorvane {

class FileNode;

/// What rows of two lines on a card share.
namespace rowmeasure {
inline constexpr int height = 45;
inline constexpr int padding = 16;
} // namespace rowmeasure

/// Ground of a row by its state, and the hairline that parts it from the next one.
void paintListRow(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index);
/// The node's name, and its path in small letters below; both shortened in the middle.
void paintNameOverPath(QPainter& painter, const QRectF& area, const FileNode& node);

} // namespace quorvane
