// SPDX-License-Identifier: MIT
#include "ScreenHeader.h"

#include "Label.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace quorvane {
namespace {

constexpr int titleGap = 10;

} // namespace

ScreenHeader::ScreenHeader(const QString& symbol, const QString& title, QWidget* parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_title(new Label(title, TextStyle::title, ThemeColor::text1, this))
    , m_subtitle(new Label({}, TextStyle::caption, ThemeColor::text2, this))
    , m_row(new QHBoxLayout(this))
{
    setFixedHeight(measure::screenHeaderHeight);
    const int left = symbol.isEmpty() ? 0 : measure::iconHeader + titleGap;
    m_row->setContentsMargins(measure::screenMargin + left, 0, measure::screenMargin, 0);
    m_row->setSpacing(spacing::s);
    m_title->setObjectName(QStringLiteral("screenTitle"));
    auto* const words = new QVBoxLayout;
    words->setSpacing(0);
    words->addStretch();
    words->addWidget(m_title);
    words->addWidget(m_subtitle);
    words->addStretch();
    m_subtitle->hide();
    m_row->addLayout(words);
    m_row->addStretch();
}

void ScreenHeader::setSubtitle(const QString& text, const QString& name)
{
    m_subtitle->setText(text);
    m_subtitle->setObjectName(name);
    m_subtitle->setVisible(!text.isEmpty());
}

void ScreenHeader::addAction(QWidget* action)
{
    m_row->addWidget(action);
}

QRect ScreenHeader::clearArea() const
{
    QRect clear = rect();
    clear.setLeft(std::max(m_title->geometry().right(),
                           m_subtitle->isHidden() ? 0 : m_subtitle->geometry().right()) +
                  1);
    for (int i = 0; i < m_row->count(); ++i) {
        const QWidget* const action = m_row->itemAt(i)->widget();
        if (action != nullptr && !action->isHidden()) {
            clear.setRight(std::min(clear.right(), action->x() - 1));
        }
    }
    return clear;
}

void ScreenHeader::paintEvent(QPaintEvent*)
{
    if (m_symbol.isEmpty()) {
        return;
    }
    QPainter painter(this);
    const QRectF area(measure::screenMargin, 0, measure::iconHeader, height());
    paintSymbol(painter, m_symbol, area, measure::iconHeader, themeColor(ThemeColor::text2));
}

} // namespace quorvane
