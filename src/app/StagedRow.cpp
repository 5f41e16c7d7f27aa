// SPDX-License-Identifier: MIT
#include "StagedRow.h"

#include "FocusRing.h"
#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>
#include <QStyleOptionButton>

namespace quorvane {
namespace {

constexpr int rowHeight = 44;
constexpr int padding = 10;
constexpr int titleHeight = 16;

} // namespace

StagedRow::StagedRow(QWidget* parent)
    : QPushButton(tr("Staged for trash"), parent)
{
    setToolTip(tr("View the items staged for cleanup"));
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setFocusRadius(*this, -1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void StagedRow::setDetail(const QString& detail)
{
    m_detail = detail;
    setAccessibleDescription(detail);
    update();
}

QSize StagedRow::sizeHint() const
{
    return {measure::sideBarWidth - 2 * measure::sideBarPadding, rowHeight};
}

QSize StagedRow::minimumSizeHint() const
{
    return {2 * padding + measure::iconRow, rowHeight};
}

void StagedRow::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    QPainter painter(this);
    const QRectF area = rect();
    paintCard(painter, area);
    if (option.state & (QStyle::State_MouseOver | QStyle::State_Sunken)) {
        const bool isPressed = option.state & QStyle::State_Sunken;
        paintPanel(painter, area, radius::surface,
                   themeColor(isPressed ? ThemeColor::press : ThemeColor::hover), Qt::transparent);
    }
    if (option.state & QStyle::State_HasFocus) {
        paintFocusLine(painter, area, radius::surface);
    }
    const QRectF symbol(padding, 0, measure::iconRow, area.height());
    paintSymbol(painter, QStringLiteral("trash.fill"), symbol, measure::iconRow,
                themeColor(ThemeColor::redText));
    const QRectF chevron(area.right() - padding - measure::iconChevron, 0, measure::iconChevron,
                         area.height());
    paintSymbol(painter, QStringLiteral("chevron.right"), chevron, measure::iconChevron,
                themeColor(ThemeColor::text3));

    const int detailHeight = typeMeasure(TextStyle::path).lineHeight;
    const qreal left = symbol.right() + padding;
    const qreal top = (area.height() - titleHeight - detailHeight) / 2;
    const qreal width = chevron.left() - padding - left;
    const int alignment = Qt::AlignLeft | Qt::AlignVCenter;
    paintText(painter, QRectF(left, top, width, titleHeight), alignment, TextStyle::row,
              themeColor(ThemeColor::text1), text());
    paintText(painter, QRectF(left, top + titleHeight, width, detailHeight), alignment,
              TextStyle::path, themeColor(ThemeColor::text2), m_detail);
}

} // namespace quorvane
