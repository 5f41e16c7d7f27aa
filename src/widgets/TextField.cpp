// SPDX-License-Identifier: MIT
#include "TextField.h"

#include "Button.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>

namespace quorvane {
namespace {

constexpr int padding = 10;
constexpr int symbolSide = 12;
constexpr int gap = 8;
constexpr int clearSide = 20;
constexpr int lineEditMargin = 2; ///< what QLineEdit itself keeps free before its text

} // namespace

TextField::TextField(const QString& placeholder, QWidget* parent)
    : QLineEdit(parent)
    , m_height(measure::field)
{
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setAttribute(Qt::WA_Hover);
    setFont(quorvane::font(TextStyle::caption));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    layOut();
}

void TextField::setSymbol(const QString& symbol)
{
    m_symbol = symbol;
    layOut();
    update();
}

void TextField::setClearable(bool clearable, const QString& tooltip)
{
    delete m_clear;
    m_clear = nullptr;
    if (clearable) {
        m_clear = new ToolButton(QStringLiteral("xmark.circle.fill"), tooltip, this);
        m_clear->setSide(clearSide);
        m_clear->setSymbolSide(symbolSide);
        m_clear->setSymbolColor(ThemeColor::text3);
        m_clear->setCursor(Qt::ArrowCursor);
        m_clear->setFocusPolicy(Qt::NoFocus);
        m_clear->setVisible(!text().isEmpty());
        connect(m_clear, &QAbstractButton::clicked, this, [this] {
            clear();
            setFocus(Qt::OtherFocusReason);
            Q_EMIT cleared();
        });
        connect(this, &QLineEdit::textChanged, m_clear,
                [this](const QString& text) { m_clear->setVisible(!text.isEmpty()); });
    }
    layOut();
}

void TextField::setFieldHeight(int height)
{
    m_height = height;
    updateGeometry();
}

QSize TextField::sizeHint() const
{
    return {QLineEdit::sizeHint().width(), m_height};
}

void TextField::layOut()
{
    const int before = padding - 1 + (m_symbol.isEmpty() ? 0 : symbolSide + gap);
    const int after = m_clear ? clearSide + 5 : padding - 1;
    setTextMargins(before - lineEditMargin, 0, after - lineEditMargin, 0);
    if (m_clear) {
        m_clear->setGeometry(width() - clearSide - 5, (height() - clearSide) / 2, clearSide,
                             clearSide);
    }
}

void TextField::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    if (m_symbol.isEmpty()) {
        return;
    }
    QPainter painter(this);
    const QColor color = themeColor(isEnabled() ? ThemeColor::text3 : ThemeColor::textDisabled);
    paintSymbol(painter, m_symbol, QRectF(padding, 0, symbolSide, height()), symbolSide, color);
}

void TextField::resizeEvent(QResizeEvent* event)
{
    QLineEdit::resizeEvent(event);
    layOut();
}

} // namespace quorvane
