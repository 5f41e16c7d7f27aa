// SPDX-License-Identifier: MIT
#include "TextField.h"

#include "Button.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QApplication>
#include <QPainter>

namespace quorvane {
namespace {

constexpr int padding = 10;
constexpr int clearSymbolSide = 12;
constexpr int cautionSide = 12;
constexpr int gap = 8;
constexpr int clearSide = 20;
constexpr int clearMargin = 6; ///< brings the symbol itself to the padding
constexpr qreal caretWidth = 1.5;
constexpr int lineEditMargin = 2; ///< what QLineEdit itself keeps free before its text

} // namespace

TextField::TextField(const QString& placeholder, QWidget* parent)
    : QLineEdit(parent)
    , m_height(measure::field)
{
    setPlaceholderText(placeholder);
    setAccessibleName(placeholder);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&m_blink, &QTimer::timeout, this, [this] {
        m_caretLit = !m_caretLit;
        update();
    });
    connect(this, &QLineEdit::cursorPositionChanged, this, &TextField::restartCaret);
    connect(this, &QLineEdit::textChanged, this, &TextField::restartCaret);
    layOut();
}

void TextField::restartCaret()
{
    m_caretLit = true;
    const int flash = QApplication::cursorFlashTime() / 2;
    if (hasFocus() && flash > 0) {
        m_blink.start(flash);
    } else {
        m_blink.stop();
    }
    update();
}

void TextField::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    restartCaret();
}

void TextField::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    restartCaret();
}

void TextField::setSymbol(const QString& symbol, int side)
{
    m_symbol = symbol;
    m_symbolSide = side;
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
        m_clear->setSymbolSide(clearSymbolSide);
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

void TextField::setCaution(bool caution)
{
    m_hasCaution = caution;
    layOut();
    update();
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
    const int before = padding - 1 + (m_symbol.isEmpty() ? 0 : m_symbolSide + gap);
    const int after = m_clear        ? clearSide + clearMargin
                      : m_hasCaution ? cautionSide + gap + padding - 1
                                     : padding - 1;
    setTextMargins(before - lineEditMargin, 0, after - lineEditMargin, 0);
    if (m_clear) {
        m_clear->setGeometry(width() - clearSide - clearMargin, (height() - clearSide) / 2,
                             clearSide, clearSide);
    }
}

void TextField::paintEvent(QPaintEvent* event)
{
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    if (hasFocus() && m_caretLit && !isReadOnly()) {
        const QRectF place = cursorRect();
        painter.fillRect(QRectF(place.center().x() - 0.5, place.top(), caretWidth, place.height()),
                         themeColor(ThemeColor::accent));
    }
    if (m_hasCaution) {
        const QColor orange = themeColor(ThemeColor::orangeText);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(orange);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius::control,
                                radius::control);
        paintSymbol(painter, QStringLiteral("exclamationmark.triangle.fill"),
                    QRectF(width() - padding - cautionSide, 0, cautionSide, height()), cautionSide,
                    orange);
    }
    if (m_symbol.isEmpty()) {
        return;
    }
    const QColor color = themeColor(isEnabled() ? ThemeColor::text3 : ThemeColor::textDisabled);
    paintSymbol(painter, m_symbol, QRectF(padding, 0, m_symbolSide, height()), m_symbolSide, color);
}

void TextField::resizeEvent(QResizeEvent* event)
{
    QLineEdit::resizeEvent(event);
    layOut();
}

} // namespace quorvane
