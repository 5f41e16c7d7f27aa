// SPDX-License-Identifier: MIT
#include "UntouchedDelegate.h"

#include "AppState.h"
#include "ListRow.h"
#include "NodeIcon.h"
#include "NodeListModel.h"
#include "Painting.h"
#include "RowPainting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>
#include <QStringList>

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

QString UntouchedDelegate::describe(const FileNode& node) const
{
    return QStringList{node.displayName(), AppState::displayPath(node.path()),
                       basisLabel(node, m_mode), ListRow::dateText(node.dateModified())}
        .join(QStringLiteral(", "));
}

/// The desktop's icon, or a symbol where it has none.
void UntouchedDelegate::paintIcon(QPainter& painter, const QRectF& area, const FileNode& node)
{
    const QIcon icon = themeIconOf(node);
    if (icon.isNull()) {
        paintSymbol(painter, ListRow::iconName(node), area, measure::iconRow,
                    themeColor(ThemeColor::text2));
        return;
    }
    QRectF square(0, 0, measure::iconRow, measure::iconRow);
    square.moveCenter(area.center());
    icon.paint(&painter, square.toAlignedRect());
}

void UntouchedDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    const NodePointer node = m_model.node(index);
    paintListRow(*painter, option, index);
    QRectF area = QRectF(option.rect).adjusted(rowmeasure::padding, 0, -rowmeasure::padding, 0);
    paintIcon(*painter, QRectF(area.left(), area.top(), measure::iconRow, area.height()), *node);
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
