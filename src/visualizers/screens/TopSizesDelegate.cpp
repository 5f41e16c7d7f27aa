// SPDX-License-Identifier: MIT
#include "TopSizesDelegate.h"

#include "AppState.h"
#include "ListRow.h"
#include "NodeColors.h"
#include "NodeListModel.h"
#include "Painting.h"
#include "RowPainting.h"
#include "ShapePainting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>

namespace quorvane {
namespace {

constexpr double swatchSide = 10;
constexpr double rankWidth = 34;
constexpr double sizeWidth = 84;
constexpr double shareWidth = 80;
constexpr double filesWidth = 130;

} // namespace

TopSizesDelegate::TopSizesDelegate(NodeListModel& model, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_model(model)
{}

void TopSizesDelegate::setTotal(std::int64_t totalBytes, SizeMode mode)
{
    m_totalBytes = totalBytes;
    m_mode = mode;
}

QString TopSizesDelegate::filesText(const FileNode& node) const
{
    return node.isDirectory() ? QString::number(node.fileCount()) + QStringLiteral(" files")
                              : QString();
}

QString TopSizesDelegate::shareText(const FileNode& node) const
{
    return m_totalBytes > 0 ? ListRow::shareText(weightBasis(node, m_mode), m_totalBytes)
                            : QString();
}

QString TopSizesDelegate::describe(const FileNode& node, int rank) const
{
    QString text = QString::number(rank) + QStringLiteral(". ") + node.displayName();
    for (const QString& part : {basisLabel(node, m_mode), shareText(node), filesText(node)}) {
        text += part.isEmpty() ? QString() : QString(QStringLiteral(", ") + part);
    }
    return text;
}

QSize TopSizesDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {option.rect.width(), rowmeasure::height};
}

void TopSizesDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    const NodePointer node = m_model.node(index);
    paintListRow(*painter, option, index);
    QRectF area = QRectF(option.rect).adjusted(rowmeasure::padding, 0, -rowmeasure::padding, 0);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(toQColor(NodeColors::leafColor(*node)));
    painter->drawEllipse(
        QRectF(area.left(), area.center().y() - swatchSide / 2, swatchSide, swatchSide));
    painter->restore();
    area.setLeft(area.left() + swatchSide);
    paintText(*painter, QRectF(area.left(), area.top(), rankWidth, area.height()),
              Qt::AlignRight | Qt::AlignVCenter, TextStyle::body, themeColor(ThemeColor::text3),
              QString::number(index.row() + 1));
    area.setLeft(area.left() + rankWidth + spacing::l);
    const bool isFolder = node->isDirectory();
    paintSymbol(*painter, isFolder ? QStringLiteral("folder") : QStringLiteral("doc"),
                QRectF(area.left(), area.top(), measure::iconRow, area.height()), measure::iconRow,
                themeColor(isFolder ? ThemeColor::accentText : ThemeColor::text2));
    area.setLeft(area.left() + measure::iconRow + spacing::m);
    paintColumns(*painter, area, *node);
    paintNameOverPath(*painter, area, *node);
}

/// Takes the columns off the area's right end.
void TopSizesDelegate::paintColumns(QPainter& painter, QRectF& area, const FileNode& node) const
{
    const auto column = [&](double width, TextStyle style, ThemeColor color, const QString& text) {
        paintText(painter, QRectF(area.right() - width, area.top(), width, area.height()),
                  Qt::AlignRight | Qt::AlignVCenter, style, themeColor(color), text);
        area.setRight(area.right() - width);
    };
    column(sizeWidth, TextStyle::strong, ThemeColor::text1, basisLabel(node, m_mode));
    column(shareWidth, TextStyle::body, ThemeColor::text2, shareText(node));
    // The files give way where the list is narrow.
    if (area.width() > 2 * filesWidth) {
        column(filesWidth, TextStyle::body, ThemeColor::text2, filesText(node));
    }
    area.setRight(area.right() - spacing::m);
}

} // namespace quorvane
