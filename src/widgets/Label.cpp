// SPDX-License-Identifier: MIT
#include "Label.h"

#include "Painting.h"
#include "ToolTip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

#include <cmath>

namespace quorvane {
namespace {

/// Lays `text` out in lines that are `lineHeight` apart; returns the size that they cover.
QSizeF layOutLines(QTextLayout& layout, qreal width, qreal lineHeight, Qt::Alignment alignment)
{
    QTextOption option(alignment & Qt::AlignHorizontal_Mask);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    qreal y = 0;
    qreal widest = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, y + (lineHeight - line.height()) / 2));
        widest = std::max(widest, line.naturalTextWidth());
        y += lineHeight;
    }
    layout.endLayout();
    return {std::ceil(widest), y};
}

} // namespace

Label::Label(const QString& text, TextStyle style, ThemeColor color, QWidget* parent)
    : QLabel(text, parent)
    , m_style(style)
    , m_color(color)
{
    setTextFormat(Qt::PlainText);
    applyTheme();
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this, &Label::applyTheme);
}

void Label::setTextStyle(TextStyle style)
{
    if (m_style != style) {
        m_style = style;
        applyTheme();
        updateGeometry();
    }
}

void Label::setTextColor(ThemeColor color)
{
    if (m_color != color) {
        m_color = color;
        applyTheme();
    }
}

void Label::applyTheme()
{
    setFont(quorvane::font(m_style));
    QPalette own = palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        own.setColor(group, QPalette::WindowText, themeColor(m_color));
    }
    own.setColor(QPalette::Disabled, QPalette::WindowText, themeColor(ThemeColor::textDisabled));
    setPalette(own);
}

QColor Label::currentColor() const
{
    return isEnabled() ? themeColor(m_color) : themeColor(ThemeColor::textDisabled);
}

bool Label::paintsParagraph() const
{
    return wordWrap() && textFormat() == Qt::PlainText &&
           !textInteractionFlags().testFlag(Qt::TextSelectableByMouse);
}

QSizeF Label::wrappedSize(qreal width) const
{
    QTextLayout layout(QString(text()).replace(u'\n', QChar::LineSeparator), font());
    return layOutLines(layout, width, typeMeasure(m_style).lineHeight, alignment());
}

QSize Label::sizeHint() const
{
    const int lineHeight = typeMeasure(m_style).lineHeight;
    if (!paintsParagraph()) {
        const QSize natural = QLabel::sizeHint();
        const auto lines = wordWrap() ? 1 : text().count(u'\n') + 1;
        return {natural.width(),
                wordWrap() ? natural.height() : lineHeight * static_cast<int>(lines)};
    }
    const QSizeF size = wrappedSize(maximumWidth());
    return QSize(static_cast<int>(size.width()), static_cast<int>(size.height()))
        .grownBy(contentsMargins());
}

QSize Label::minimumSizeHint() const
{
    if (paintsParagraph()) {
        return {0, typeMeasure(m_style).lineHeight};
    }
    return wordWrap() ? QLabel::minimumSizeHint() : sizeHint();
}

bool Label::hasHeightForWidth() const
{
    return wordWrap();
}

int Label::heightForWidth(int width) const
{
    return paintsParagraph() ? static_cast<int>(wrappedSize(width).height())
                             : QLabel::heightForWidth(width);
}

void Label::paintEvent(QPaintEvent* event)
{
    if (!paintsParagraph()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setPen(currentColor());
    QTextLayout layout(QString(text()).replace(u'\n', QChar::LineSeparator), font());
    const QRectF area = contentsRect();
    const QSizeF size =
        layOutLines(layout, area.width(), typeMeasure(m_style).lineHeight, alignment());
    qreal top = area.top();
    if (alignment().testFlag(Qt::AlignVCenter)) {
        top += std::max(0.0, std::floor((area.height() - size.height()) / 2));
    }
    layout.draw(&painter, QPointF(area.left(), top));
}

SectionHeading::SectionHeading(const QString& text, QWidget* parent)
    : Label(text, TextStyle::section, ThemeColor::text3, parent)
{}

ElidedLabel::ElidedLabel(const QString& text, Qt::TextElideMode mode, TextStyle style,
                         ThemeColor color, QWidget* parent)
    : Label(text, style, color, parent)
    , m_mode(mode)
{}

void ElidedLabel::setElideMode(Qt::TextElideMode mode)
{
    m_mode = mode;
    update();
}

QString ElidedLabel::shownText() const
{
    return fontMetrics().elidedText(text(), m_mode, contentsRect().width());
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(QStringLiteral("…")), Label::sizeHint().height()};
}

bool ElidedLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
        if (isElided()) {
            showPlainToolTip(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
        } else {
            QToolTip::hideText();
            event->ignore();
        }
        return true;
    }
    return Label::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(currentColor());
    painter.drawText(contentsRect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                     shownText());
}

NumberCell::NumberCell(const QString& widest, TextStyle style, ThemeColor color, QWidget* parent)
    : Label({}, style, color, parent)
    , m_widest(widest)
{
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

void NumberCell::setWidest(const QString& widest)
{
    m_widest = widest;
    updateGeometry();
}

QSize NumberCell::sizeHint() const
{
    return {textWidth(textStyle(), m_widest) + 1, typeMeasure(textStyle()).lineHeight};
}

QSize NumberCell::minimumSizeHint() const
{
    return sizeHint();
}

Hairline::Hairline(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent)
{
    const bool horizontal = orientation == Qt::Horizontal;
    setFixedSize(horizontal ? QWIDGETSIZE_MAX : 1, horizontal ? 1 : QWIDGETSIZE_MAX);
    if (horizontal) {
        setMinimumWidth(0);
    } else {
        setMinimumHeight(0);
    }
    setSizePolicy(horizontal ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  horizontal ? QSizePolicy::Fixed : QSizePolicy::Expanding);
}

void Hairline::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), themeColor(ThemeColor::hairline));
}

} // namespace quorvane
