// SPDX-License-Identifier: MIT
#include "ItemViews.h"
#include "Painting.h"
#include "QuorvaneStyle.h"
#include "StylePainting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionHeader>
#include <QStyleOptionSlider>
#include <QStyleOptionViewItem>

namespace quorvane {
namespace {

/// Keeps the outer sections of a framed table's header inside the round corners of the frame.
void clipToFrame(const QStyleOptionHeader& option, QPainter& painter, const QWidget* widget)
{
    const auto* table = widget ? qobject_cast<const TableView*>(widget->parentWidget()) : nullptr;
    if (!table || table->frameShape() == QFrame::NoFrame) {
        return;
    }
    const bool only = option.position == QStyleOptionHeader::OnlyOneSection;
    const bool first = only || option.position == QStyleOptionHeader::Beginning;
    const bool last = only || option.position == QStyleOptionHeader::End;
    if (!first && !last) {
        return;
    }
    constexpr qreal inner = radius::control - 1;
    QPainterPath inside;
    inside.addRoundedRect(
        QRectF(option.rect).adjusted(first ? 0 : -inner, 0, last ? 0 : inner, inner), inner, inner);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(inside);
}

} // namespace

void QuorvaneStyle::drawScrollBar(const QStyleOptionSlider& option, QPainter& painter) const
{
    if (option.maximum <= option.minimum) {
        return;
    }
    const QRectF slider = subControlRect(CC_ScrollBar, &option, SC_ScrollBarSlider);
    const bool lit = option.state & State_MouseOver || option.state & State_Sunken;
    const qreal width = lit ? measure::scrollBarHovered : measure::scrollBar;
    const qreal inset = measure::scrollBarInset;
    QRectF bar;
    if (option.orientation == Qt::Vertical) {
        const bool mirrored = option.direction == Qt::RightToLeft;
        const qreal left = mirrored ? slider.left() + inset : slider.right() - inset - width;
        bar = QRectF(left, slider.top() + inset, width, slider.height() - 2 * inset);
    } else {
        bar = QRectF(slider.left() + inset, slider.bottom() - inset - width,
                     slider.width() - 2 * inset, width);
    }
    paintPanel(
        painter, bar, width / 2,
        themeColor(option.state & State_Sunken && option.activeSubControls & SC_ScrollBarSlider
                       ? ThemeColor::text3
                       : ThemeColor::controlEdge),
        Qt::transparent);
}

QRect QuorvaneStyle::scrollBarPart(const QStyleOptionSlider& bar, SubControl part) const
{
    // No arrows: the groove is the whole bar.
    const QRect all = bar.rect;
    const bool horizontal = bar.orientation == Qt::Horizontal;
    const int length = horizontal ? all.width() : all.height();
    const int range = bar.maximum - bar.minimum;
    int slider = length;
    if (range > 0) {
        const qint64 total = static_cast<qint64>(range) + bar.pageStep;
        slider = std::max(static_cast<int>(qint64{bar.pageStep} * length / total),
                          std::min(pixelMetric(PM_ScrollBarSliderMin), length));
    }
    const int start = sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                              length - slider, bar.upsideDown);
    const auto piece = [&](int from, int size) {
        return horizontal ? QRect(all.left() + from, all.top(), size, all.height())
                          : QRect(all.left(), all.top() + from, all.width(), size);
    };
    switch (part) {
    case SC_ScrollBarSlider:
        return piece(start, slider);
    case SC_ScrollBarSubPage:
        return piece(0, start);
    case SC_ScrollBarAddPage:
        return piece(start + slider, length - start - slider);
    case SC_ScrollBarGroove:
        return all;
    default:
        return {};
    }
}

bool QuorvaneStyle::drawHeader(ControlElement element, const QStyleOptionHeader& option,
                               QPainter& painter, const QWidget* widget) const
{
    if (element == CE_Header) {
        drawHeaderSection(option, painter, widget);
        QStyleOptionHeader label = option;
        label.rect.adjust(spacing::m, 0, -spacing::m, 0);
        drawHeaderLabel(label, painter);
    } else if (element == CE_HeaderSection) {
        drawHeaderSection(option, painter, widget);
    } else if (element == CE_HeaderLabel) {
        drawHeaderLabel(option, painter);
    } else {
        return false;
    }
    return true;
}

void QuorvaneStyle::drawHeaderSection(const QStyleOptionHeader& option, QPainter& painter,
                                      const QWidget* widget) const
{
    const QRectF rect = option.rect;
    painter.save();
    clipToFrame(option, painter, widget);
    painter.fillRect(rect, themeColor(ThemeColor::raised));
    if (isHovered(option) || isPressed(option)) {
        painter.fillRect(rect,
                         themeColor(isPressed(option) ? ThemeColor::press : ThemeColor::hover));
    }
    painter.restore();
    const bool horizontal = option.orientation == Qt::Horizontal;
    painter.fillRect(horizontal ? QRectF(rect.left(), rect.bottom() - 1, rect.width(), 1)
                                : QRectF(rect.right() - 1, rect.top(), 1, rect.height()),
                     themeColor(ThemeColor::hairline));
}

void QuorvaneStyle::drawHeaderLabel(const QStyleOptionHeader& option, QPainter& painter) const
{
    const bool sorted = option.sortIndicator != QStyleOptionHeader::None;
    QString text = option.text;
    if (sorted) {
        text += option.sortIndicator == QStyleOptionHeader::SortDown ? QStringLiteral(" ↑")
                                                                     : QStringLiteral(" ↓");
    }
    const int alignment = static_cast<int>(option.textAlignment & Qt::AlignHorizontal_Mask);
    paintText(painter, QRectF(option.rect), alignment | Qt::AlignVCenter, TextStyle::section,
              themeColor(!isEnabled(option) ? ThemeColor::textDisabled
                         : sorted           ? ThemeColor::text1
                                            : ThemeColor::text3),
              text);
}

void QuorvaneStyle::drawItem(const QStyleOptionViewItem& option, QPainter& painter,
                             const QWidget* widget) const
{
    // Selected rows keep the text colours of the others; the ground alone tells them apart.
    QStyleOptionViewItem plain = option;
    plain.palette.setColor(QPalette::HighlightedText, option.palette.color(QPalette::Text));
    QProxyStyle::drawControl(CE_ItemViewItem, &plain, &painter, widget);
}

} // namespace quorvane
