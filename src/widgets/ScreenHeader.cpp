// SPDX-License-Identifier: MIT
#include "ScreenHeader.h"

#include "Label.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>

namespace quorvane {
namespace {

constexpr int titleGap = 10;

} // namespace

ScreenHeader::ScreenHeader(const QString& symbol, const QString& title, QWidget* parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_title(new Label(title, TextStyle::title, ThemeColor::text1, this))
    , m_row(new QHBoxLayout(this))
{
    setFixedHeight(measure::screenHeaderHeight);
    const int left = symbol.isEmpty() ? 0 : measure::iconHeader + titleGap;
    m_row->setContentsMargins(measure::screenMargin + left, 0, measure::screenMargin, 0);
    m_row->setSpacing(spacing::s);
    m_title->setObjectName(QStringLiteral("screenTitle"));
    m_row->addWidget(m_title);
    m_row->addStretch();
}

void ScreenHeader::addAction(QWidget* action)
{
    m_row->addWidget(action);
}

QRect ScreenHeader::clearArea() const
{
    QRect clear = rect();
    clear.setLeft(m_title->geometry().right() + 1);
    for (int i = m_row->indexOf(m_title) + 1; i < m_row->count(); ++i) {
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
