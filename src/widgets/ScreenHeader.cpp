// SPDX-License-Identifier: MIT
#include "ScreenHeader.h"

#include "Label.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>

namespace quorvane {
namespace {

constexpr int titleGap = 10;

} // namespace

ScreenHeader::ScreenHeader(const QString& symbol, const QString& title, QWidget* parent)
    : QWidget(parent)
    , m_symbol(symbol)
    , m_row(new QHBoxLayout(this))
{
    setFixedHeight(measure::screenHeaderHeight);
    const int left = symbol.isEmpty() ? 0 : measure::iconHeader + titleGap;
    m_row->setContentsMargins(measure::screenMargin + left, 0, measure::screenMargin, 0);
    m_row->setSpacing(spacing::s);
    auto* const label = new Label(title, TextStyle::title, ThemeColor::text1, this);
    label->setObjectName(QStringLiteral("screenTitle"));
    m_row->addWidget(label);
    m_row->addStretch();
}

void ScreenHeader::addAction(QWidget* action)
{
    m_row->addWidget(action);
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
