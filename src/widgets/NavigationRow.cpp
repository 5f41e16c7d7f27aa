// SPDX-License-Identifier: MIT
#include "NavigationRow.h"

#include "FocusRing.h"
#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionButton>

namespace quorvane {
namespace {

constexpr int padding = 10;
constexpr int gap = 10;

} // namespace

NavigationRow::NavigationRow(const QString& symbol, const QString& title, QWidget* parent)
    : QPushButton(title, parent)
    , m_symbol(symbol)
{
    setCheckable(true);
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setFocusRadius(*this, -1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize NavigationRow::sizeHint() const
{
    return {2 * padding + measure::iconRow + gap + textWidth(TextStyle::row, text()), measure::row};
}

QSize NavigationRow::minimumSizeHint() const
{
    return {2 * padding + measure::iconRow, measure::row};
}

void NavigationRow::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool current = option.state & QStyle::State_On;
    QStyle::State state = QStyle::State_None;
    state.setFlag(QStyle::State_Selected, current);
    state.setFlag(QStyle::State_MouseOver, option.state & QStyle::State_MouseOver && enabled);
    state.setFlag(QStyle::State_HasFocus, option.state & QStyle::State_HasFocus);

    QPainter painter(this);
    const QRectF area = rect();
    paintRowGround(painter, area, radius::control, state);
    if (option.state & QStyle::State_Sunken) {
        paintPanel(painter, area, radius::control, themeColor(ThemeColor::hover), Qt::transparent);
    }
    const QRectF symbolArea(padding, 0, measure::iconRow, area.height());
    paintSymbol(painter, m_symbol, symbolArea, measure::iconRow,
                themeColor(!enabled  ? ThemeColor::textDisabled
                           : current ? ThemeColor::accentText
                                     : ThemeColor::text2));
    const qreal left = symbolArea.right() + gap;
    paintText(painter, QRectF(left, 0, area.width() - padding - left, area.height()),
              Qt::AlignLeft | Qt::AlignVCenter, current ? TextStyle::row : TextStyle::body,
              themeColor(enabled ? ThemeColor::text1 : ThemeColor::textDisabled), text());
}

void NavigationRow::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        !event->isAutoRepeat()) {
        click();
    } else {
        QPushButton::keyPressEvent(event);
    }
}

} // namespace quorvane
