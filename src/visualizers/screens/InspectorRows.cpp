// SPDX-License-Identifier: MIT
#include "InspectorRows.h"

#include "Label.h"
#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>

namespace quorvane {
namespace {

constexpr int rowHeight = 30;
constexpr int dotSide = 8;
constexpr int dotGap = 9;
constexpr int plateSide = 44;
constexpr int plateSymbol = 22;
constexpr int plateIcon = 32;

} // namespace

FactRow::FactRow(bool isFirst, QWidget* parent)
    : QWidget(parent)
    , m_isFirst(isFirst)
    , m_label(new ElidedLabel({}, Qt::ElideMiddle, TextStyle::caption, ThemeColor::text2, this))
    , m_value(new Label({}, TextStyle::captionMedium, ThemeColor::text1, this))
{
    setFixedHeight(rowHeight);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::s);
    row->addWidget(m_label, 1);
    row->addWidget(m_value);
}

void FactRow::setFact(const QString& label, const QString& value)
{
    m_label->setText(label);
    m_value->setText(value);
}

void FactRow::setDot(const QColor& color)
{
    m_dot = color;
    m_label->setTextColor(color.isValid() ? ThemeColor::text1 : ThemeColor::text2);
    m_label->setContentsMargins(color.isValid() ? dotSide + dotGap : 0, 0, 0, 0);
    update();
}

QString FactRow::label() const
{
    return m_label->text();
}

QString FactRow::value() const
{
    return m_value->text();
}

void FactRow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (!m_isFirst) {
        painter.fillRect(QRect(0, 0, width(), 1), themeColor(ThemeColor::hairline));
    }
    if (m_dot.isValid()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_dot);
        painter.drawEllipse(QRectF(0, (height() - dotSide) / 2.0, dotSide, dotSide));
    }
}

SymbolPlate::SymbolPlate(QWidget* parent)
    : QWidget(parent)
{
    setFixedSize(plateSide, plateSide);
}

void SymbolPlate::setSymbol(const QString& symbol, const QColor& color)
{
    m_symbol = symbol;
    m_color = color;
    update();
}

void SymbolPlate::setIcon(const QIcon& icon)
{
    m_icon = icon;
    update();
}

void SymbolPlate::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPanel(painter, rect(), radius::surface, themeColor(ThemeColor::raised),
               themeColor(ThemeColor::hairline));
    if (!m_icon.isNull()) {
        QRect place(0, 0, plateIcon, plateIcon);
        place.moveCenter(rect().center());
        m_icon.paint(&painter, place);
        return;
    }
    paintSymbol(painter, m_symbol, rect(), plateSymbol,
                m_color.isValid() ? m_color : themeColor(ThemeColor::accentText));
}

} // namespace quorvane
