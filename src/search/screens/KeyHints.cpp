// SPDX-License-Identifier: MIT
#include "KeyHints.h"

#include "Chip.h"
#include "Label.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>

namespace quorvane {

KeyHints::KeyHints(QWidget* parent)
    : QWidget(parent)
    , m_line(new QHBoxLayout(this))
    , m_count(new Label({}, TextStyle::caption, ThemeColor::text2, this))
{
    m_line->setSpacing(spacing::s);
    m_line->addWidget(m_count);
    m_line->addStretch();
    setStripHeight(measure::footerHeight, measure::screenMargin);
}

void KeyHints::setStripHeight(int height, int sides)
{
    setFixedHeight(height);
    m_line->setContentsMargins(sides, 1, sides, 0);
}

void KeyHints::addFirst(QWidget* widget)
{
    m_line->insertWidget(0, widget);
}

Label* KeyHints::add(const QString& key, const QString& text)
{
    auto* const hint = new QWidget(this);
    auto* const pair = new QHBoxLayout(hint);
    pair->setContentsMargins(spacing::xs, 0, 0, 0);
    pair->setSpacing(6);
    pair->addWidget(new KeyCap(key, hint));
    auto* const label = new Label(text, TextStyle::path, ThemeColor::text2, hint);
    pair->addWidget(label);
    m_line->addWidget(hint);
    return label;
}

void KeyHints::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(0, 0, width(), 1, themeColor(ThemeColor::hairline));
}

} // namespace quorvane
