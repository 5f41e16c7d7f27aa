// SPDX-License-Identifier: MIT
#pragma once

#include "RowLayout.h"

#include <QStyle>
#include <QStyledItemDelegate>

#include <optional>

namespace quorvane {

/// What a row shows beside what it says.
struct RowLook
{
    QStyle::State state; ///< State_MouseOver, State_Selected, State_HasFocus of the row as a whole
    std::optional<RowPart> hovered;
    std::optional<RowPart> pressed;
    std::optional<RowPart> focused;
    int level = 0;
    bool hasChevron = false;
    bool isOpen = false;
    bool isFirstOnCard = false;
    bool isLastOnCard = false; ///< no separator below
};

/// Paints one row, ground and all.
void paintRow(QPainter& painter, const QRect& area, const Row& row, const RowMetrics& metrics,
              const RowLook& look);

/// The titles of columns above the rows: `row` has the shape of the rows below, with titles for
/// texts; its symbol and its actions only keep their room.
void paintRowHeader(QPainter& painter, const QRect& area, const Row& row,
                    const RowMetrics& metrics);

/// Draws the rows of a RowView; a model serves them by rowrole::row.
class RowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace quorvane
