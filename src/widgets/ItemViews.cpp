// SPDX-License-Identifier: MIT
#include "ItemViews.h"

#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QCursor>
#include <QHeaderView>
#include <QPainter>
#include <QPainterPath>
#include <QStyledItemDelegate>

namespace quorvane {
namespace {

constexpr int cellPadding = 12;
constexpr int innerRadius = radius::control - 1; ///< inside the frame
constexpr int levelIndent = measure::iconChevron + spacing::s;
/// QTreeView lets a row's text begin at the indent; this moves it to the table's padding.
constexpr int treeTextShift = cellPadding;

class CellDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        const auto* view = qobject_cast<const QTreeView*>(option.widget);
        const bool isTree = view && view->rootIsDecorated() && index.column() == 0;
        QRectF area =
            QRectF(cell.rect).adjusted(isTree ? treeTextShift : cellPadding, 0, -cellPadding, 0);
        if (!cell.icon.isNull()) {
            QRectF square(area.left(), 0, measure::iconRow, measure::iconRow);
            square.moveTop(area.center().y() - measure::iconRow / 2.0);
            cell.icon.paint(painter, square.toAlignedRect());
            area.setLeft(square.right() + spacing::s);
        }
        const QVariant own = index.data(Qt::ForegroundRole);
        const QColor color =
            !(cell.state & QStyle::State_Enabled) ? themeColor(ThemeColor::textDisabled)
            : own.isValid()
                ? own.value<QBrush>().color()
                : themeColor(index.column() == 0 ? ThemeColor::text1 : ThemeColor::text2);
        const int horizontal = static_cast<int>(cell.displayAlignment & Qt::AlignHorizontal_Mask);
        paintText(*painter, area, horizontal | Qt::AlignVCenter, TextStyle::body, color, cell.text,
                  cell.textElideMode);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const int text = textWidth(TextStyle::body, index.data().toString());
        const int icon =
            index.data(Qt::DecorationRole).isValid() ? measure::iconRow + spacing::s : 0;
        Q_UNUSED(option)
        return {text + icon + 2 * cellPadding, measure::row};
    }
};

} // namespace

TableView::TableView(QWidget* parent)
    : QTreeView(parent)
{
    setItemDelegate(new CellDelegate(this));
    setUniformRowHeights(true);
    setIndentation(levelIndent);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setVerticalScrollMode(ScrollPerPixel);
    setAllColumnsShowFocus(true);
    setTextElideMode(Qt::ElideMiddle);
    header()->setStretchLastSection(false);
    header()->setHighlightSections(false);
    // The frame draws the ground, so that its round corners stay free.
    viewport()->setAutoFillBackground(false);
    header()->viewport()->setAutoFillBackground(false);
}

int TableView::cornerRadius() const
{
    return m_cornerRadius.value_or(frameShape() == NoFrame ? 0 : innerRadius);
}

/// A row at the lower end keeps clear of the corners, also below the scroll bars, which lie over
/// it.
void TableView::clipToCorners(QPainter& painter, const QRect& row) const
{
    const int radius = cornerRadius();
    if (radius == 0 || row.bottom() < viewport()->height() - radius) {
        return;
    }
    QPainterPath inside;
    inside.addRoundedRect(QRectF(viewport()->rect()).adjusted(0, -radius, 0, 0), radius, radius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(inside);
}

void TableView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const
{
    const QRect row(0, option.rect.top(), viewport()->width(), option.rect.height());
    QStyle::State state = QStyle::State_None;
    state.setFlag(QStyle::State_Selected, selectionModel() && selectionModel()->isSelected(index));
    const QPoint pointer = viewport()->mapFromGlobal(QCursor::pos());
    state.setFlag(QStyle::State_MouseOver, viewport()->underMouse() && row.contains(pointer));
    state.setFlag(QStyle::State_HasFocus,
                  hasFocus() && currentIndex().siblingAtColumn(0) == index.siblingAtColumn(0));
    painter->save();
    clipToCorners(*painter, row);
    paintRowGround(*painter, row, 0, state);
    painter->restore();
    QTreeView::drawRow(painter, option, index);
}

void TableView::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const
{
    if (!model()->hasChildren(index)) {
        return;
    }
    const QRectF chevron(rect.right() + 1 - levelIndent + cellPadding, rect.top(),
                         measure::iconChevron, rect.height());
    paintSymbol(*painter,
                isExpanded(index) ? QStringLiteral("chevron.down")
                                  : QStringLiteral("chevron.right"),
                chevron, measure::iconChevron, themeColor(ThemeColor::text3));
}

} // namespace quorvane
