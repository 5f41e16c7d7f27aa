// SPDX-License-Identifier: MIT
#include "Tile.h"

#include "FocusRing.h"
#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionButton>

namespace quorvane {
namespace {

constexpr int lineHeight = 13;
constexpr int sidePadding = 4;
constexpr int tileMinimumWidth = 58;

} // namespace

Tile::Tile(const QString& symbol, const QString& text, bool raised, int height, QWidget* parent)
    : QPushButton(text, parent)
    , m_symbol(symbol)
    , m_raised(raised)
    , m_height(height)
{
    setAutoDefault(false);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setFocusRadius(*this, radius::surface);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Tile::setSymbol(const QString& symbol)
{
    m_symbol = symbol;
    update();
}

QSize Tile::sizeHint() const
{
    return {tileMinimumWidth, m_height};
}

QSize Tile::minimumSizeHint() const
{
    return sizeHint();
}

QColor Tile::ground(const QStyleOptionButton& option) const
{
    const QColor rest = themeColor(m_raised ? ThemeColor::raised : ThemeColor::card);
    if (!(option.state & QStyle::State_Enabled)) {
        return rest;
    }
    if (option.state & QStyle::State_Sunken) {
        return blended(themeColor(ThemeColor::press), rest);
    }
    if (option.state & QStyle::State_MouseOver) {
        return m_raised ? themeColor(ThemeColor::controlEdge)
                        : blended(themeColor(ThemeColor::hover), rest);
    }
    return rest;
}

void Tile::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    QPainter painter(this);
    const QRectF area = rect();
    paintPanel(painter, area, radius::surface, ground(option),
               themeColor(m_raised ? ThemeColor::hairline : ThemeColor::tileEdge));

    const bool enabled = option.state & QStyle::State_Enabled;
    const int symbolSide = m_raised ? measure::iconButtonLarge : measure::iconTile;
    const int top = m_raised ? 10 : 12;
    const int gap = m_raised ? 5 : 7;
    paintSymbol(painter, m_symbol, QRectF(area.left(), top, area.width(), symbolSide), symbolSide,
                themeColor(enabled ? ThemeColor::accentText : ThemeColor::textDisabled));
    const QRectF words(sidePadding, top + symbolSide + gap, area.width() - 2 * sidePadding,
                       2 * lineHeight);
    const QColor color = themeColor(enabled ? ThemeColor::text1 : ThemeColor::textDisabled);
    // The first line takes as many words as fit; the rest makes the second one.
    const QStringList all = text().split(u' ', Qt::SkipEmptyParts);
    QString first = all.value(0);
    qsizetype used = 1;
    while (used < all.size() &&
           textWidth(TextStyle::label, first + u' ' + all[used]) <= words.width()) {
        first += u' ' + all[used++];
    }
    paintText(painter, QRectF(words.left(), words.top(), words.width(), lineHeight),
              Qt::AlignCenter, TextStyle::label, color, first);
    paintText(painter, QRectF(words.left(), words.top() + lineHeight, words.width(), lineHeight),
              Qt::AlignCenter, TextStyle::label, color, all.mid(used).join(u' '));
}

void Tile::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        !event->isAutoRepeat()) {
        click();
    } else {
        QPushButton::keyPressEvent(event);
    }
}

ActionTile::ActionTile(const QString& symbol, const QString& text, QWidget* parent)
    : Tile(symbol, text, true, measure::actionTile, parent)
{}

ScanTile::ScanTile(const QString& symbol, const QString& text, QWidget* parent)
    : Tile(symbol, text, false, measure::scanTile, parent)
{}

} // namespace quorvane
