// SPDX-License-Identifier: MIT
#include "RowPainting.h"

#include "AppState.h"
#include "Painting.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QPainter>
#include <QStyleOptionViewItem>

namespace quorvane {

void paintListRow(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index)
{
    const QRectF row = option.rect;
    painter.save();
    if (const auto* const list = qobject_cast<const QAbstractItemView*>(option.widget)) {
        clipToCard(painter, list->viewport()->rect());
    }
    paintRowGround(painter, row, 0, option.state);
    if (index.row() + 1 < index.model()->rowCount()) {
        painter.fillRect(QRectF(row.left(), row.bottom() - 1, row.width(), 1),
                         themeColor(ThemeColor::hairline));
    }
    painter.restore();
}

void paintNameOverPath(QPainter& painter, const QRectF& area, const FileNode& node)
{
    const int nameHeight = typeMeasure(TextStyle::row).lineHeight;
    const int pathHeight = typeMeasure(TextStyle::path).lineHeight;
    const double top = area.center().y() - (nameHeight + pathHeight) / 2.0;
    constexpr int alignment = Qt::AlignLeft | Qt::AlignVCenter;
    paintText(painter, QRectF(area.left(), top, area.width(), nameHeight), alignment,
              TextStyle::row, themeColor(ThemeColor::text1), node.displayName(), Qt::ElideMiddle);
    paintText(painter, QRectF(area.left(), top + nameHeight, area.width(), pathHeight), alignment,
              TextStyle::path, themeColor(ThemeColor::text3), AppState::displayPath(node.path()),
              Qt::ElideMiddle);
}

} // namespace quorvane
