// SPDX-License-Identifier: MIT
#include "UntouchedDelegate.h"

#include "ListRow.h"
#include "NodeListModel.h"
#include "Painting.h"
#include "RowPainting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>

namespace quorvane {
namespace {

constexpr double sizeWidth = 104;
constexpr double dateWidth = 110;

} // namespace

UntouchedDelegate::UntouchedDelegate(NodeListModel& model, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_model(model)
{}

QSize UntouchedDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {option.rect.width(), rowmeasure::height};
}

void UntouchedDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    const NodePointer node = m_model.node(index);
    paintListRow(*painter, option, index);
    QRectF area = QRectF(option.rect).adjusted(rowmeasure::padding, 0, -rowmeasure::padding, 0);
    paintSymbol(*painter, ListRow::iconName(*node),
                QRectF(area.left(), area.top(), measure::iconRow, area.height()), measure::iconRow,
                themeColor(ThemeColor::text2));
    area.setLeft(area.left() + measure::iconRow + spacing::l);
    const auto column = [&](double width, TextStyle style, ThemeColor color, const QString& text) {
        paintText(*painter, QRectF(area.right() - width, area.top(), width, area.height()),
                  Qt::AlignRight | Qt::AlignVCenter, style, themeColor(color), text);
        area.setRight(area.right() - width);
    };
    column(sizeWidth, TextStyle::strong, ThemeColor::text1, basisLabel(*node, m_mode));
    column(dateWidth, TextStyle::body, ThemeColor::text2, ListRow::dateText(node->dateModified()));
    area.setRight(area.right() - spacing::m);
    paintNameOverPath(*painter, area, *node);
}

} // namespace quorvane
