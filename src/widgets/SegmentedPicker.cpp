// SPDX-License-Identifier: MIT
#include "SegmentedPicker.h"

#include "FocusRing.h"
#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QButtonGroup>
#include <QEvent>
#include <QPainter>
#include <QStyleOptionButton>

namespace quorvane {
namespace {

constexpr int segmentPadding = 8;
constexpr int wideSegmentPadding = 14; ///< of segments without symbols
constexpr int segmentSymbol = 14;
constexpr int segmentGap = 5;
constexpr int inset = measure::pickerInset + 1; ///< the edge and the inset

} // namespace

Segment::Segment(const QString& symbol, const QString& text, SegmentedPicker& picker)
    : QRadioButton(text, &picker)
    , m_symbol(symbol)
{
    setAccessibleName(text);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setFocusRingOwner(*this, picker);
}

void Segment::setCollapsed(bool collapsed)
{
    m_collapsed = collapsed && !m_symbol.isEmpty();
    setToolTip(m_collapsed ? text() : QString());
    update();
}

QSize Segment::sizeHint() const
{
    const int height = measure::picker - 2 * inset;
    if (m_collapsed) {
        return {segmentSymbol + 2 * segmentPadding, height};
    }
    const int words = textWidth(TextStyle::captionMedium, text());
    return {m_symbol.isEmpty() ? words + 2 * wideSegmentPadding
                               : words + 2 * segmentPadding + segmentSymbol + segmentGap,
            height};
}

QSize Segment::minimumSizeHint() const
{
    return {std::min(sizeHint().width(), 2 * segmentPadding + segmentSymbol), sizeHint().height()};
}

bool Segment::hitButton(const QPoint& position) const
{
    return rect().contains(position);
}

void Segment::paintEvent(QPaintEvent*)
{
    QStyleOptionButton option;
    initStyleOption(&option);
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool current = option.state & QStyle::State_On;
    const bool hovered = enabled && option.state & QStyle::State_MouseOver;

    QPainter painter(this);
    const QRectF area = rect();
    if (current) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        // A shadow of one point below the segment, inside the picker's ground.
        painter.setBrush(withOpacity(themeColor(ThemeColor::knobShadow),
                                     themeColor(ThemeColor::knobShadow).alphaF() / 2));
        painter.drawRoundedRect(area.adjusted(0, 1, 0, 1), radius::small, radius::small);
        paintPanel(painter, area, radius::small,
                   themeColor(enabled ? ThemeColor::segment : ThemeColor::raised), Qt::transparent);
    } else if (hovered) {
        paintPanel(
            painter, area, radius::small,
            themeColor(option.state & QStyle::State_Sunken ? ThemeColor::press : ThemeColor::hover),
            Qt::transparent);
    }
    const QColor words = themeColor(!enabled             ? ThemeColor::textDisabled
                                    : current || hovered ? ThemeColor::text1
                                                         : ThemeColor::text2);
    const QColor symbol = current && enabled ? themeColor(ThemeColor::accentText) : words;
    const TextStyle style = current ? TextStyle::captionMedium : TextStyle::caption;
    if (m_symbol.isEmpty()) {
        paintText(painter, area.adjusted(4, 0, -4, 0), Qt::AlignCenter, style, words, text());
        return;
    }
    if (m_collapsed) {
        paintSymbol(painter, m_symbol, area, segmentSymbol, symbol);
        return;
    }
    const qreal content =
        std::min<qreal>(segmentSymbol + segmentGap + textWidth(style, text()), area.width() - 8);
    const qreal left = area.left() + (area.width() - content) / 2;
    paintSymbol(painter, m_symbol, QRectF(left, area.top(), segmentSymbol, area.height()),
                segmentSymbol, symbol);
    const qreal wordsLeft = left + segmentSymbol + segmentGap;
    paintText(painter, QRectF(wordsLeft, area.top(), left + content - wordsLeft, area.height()),
              Qt::AlignLeft | Qt::AlignVCenter, style, words, text());
}

SegmentedPicker::SegmentedPicker(const QString& name, QWidget* parent)
    : QWidget(parent)
    , m_group(new QButtonGroup(this))
{
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(m_group, &QButtonGroup::idToggled, this, [this](int index, bool on) {
        if (on) {
            fixTabStop();
            Q_EMIT currentIndexChanged(index);
        }
    });
    connect(m_group, &QButtonGroup::idClicked, this, &SegmentedPicker::activated);
}

int SegmentedPicker::addSegment(const QString& text, const QString& symbol)
{
    auto* segment = new Segment(symbol, text, *this);
    const int index = count();
    m_segments.push_back(segment);
    m_group->addButton(segment, index);
    segment->setCollapsed(m_collapsed);
    segment->setVisible(true);
    fixTabStop();
    updateGeometry();
    layOut();
    return index;
}

void SegmentedPicker::fixTabStop()
{
    const int stop = std::max(0, currentIndex());
    for (int index = 0; index < count(); ++index) {
        segment(index)->setFocusPolicy(index == stop ? Qt::TabFocus : Qt::NoFocus);
    }
}

int SegmentedPicker::currentIndex() const
{
    return m_group->checkedId();
}

void SegmentedPicker::setCurrentIndex(int index)
{
    if (index >= 0 && index < count()) {
        segment(index)->setChecked(true);
    }
}

void SegmentedPicker::setCollapsed(bool collapsed)
{
    if (m_collapsed == collapsed) {
        return;
    }
    m_collapsed = collapsed;
    for (Segment* segment : m_segments) {
        segment->setCollapsed(collapsed);
    }
    updateGeometry();
    layOut();
}

int SegmentedPicker::naturalWidth() const
{
    int width = 2 * inset;
    for (const Segment* segment : m_segments) {
        width += segment->sizeHint().width();
    }
    return width;
}

int SegmentedPicker::expandedWidth() const
{
    int width = 2 * inset;
    for (const Segment* segment : m_segments) {
        const int words = textWidth(TextStyle::captionMedium, segment->text());
        width +=
            words + (segment->symbol().isEmpty() ? 2 * wideSegmentPadding
                                                 : 2 * segmentPadding + segmentSymbol + segmentGap);
    }
    return width;
}

QSize SegmentedPicker::sizeHint() const
{
    return {naturalWidth(), measure::picker};
}

QSize SegmentedPicker::minimumSizeHint() const
{
    int width = 2 * inset;
    for (const Segment* segment : m_segments) {
        width += segment->minimumSizeHint().width();
    }
    return {width, measure::picker};
}

void SegmentedPicker::layOut()
{
    if (m_segments.empty()) {
        return;
    }
    // Room beyond the natural width goes to all segments in equal parts; with no symbols all are
    // equally wide from the start.
    const int available = width() - 2 * inset;
    const bool even = m_segments.front()->symbol().isEmpty();
    const int extra = available - (naturalWidth() - 2 * inset);
    int x = inset;
    for (int index = 0; index < count(); ++index) {
        Segment* part = segment(index);
        const int end = even ? inset + available * (index + 1) / count()
                             : x + part->sizeHint().width() + extra * (index + 1) / count() -
                                   extra * index / count();
        part->setGeometry(x, inset, end - x, height() - 2 * inset);
        x = end;
    }
}

void SegmentedPicker::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPanel(painter, rect(), radius::control, themeColor(ThemeColor::raised),
               themeColor(ThemeColor::hairline));
}

void SegmentedPicker::resizeEvent(QResizeEvent*)
{
    layOut();
}

void SegmentedPicker::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
        layOut();
    }
    QWidget::changeEvent(event);
}

} // namespace quorvane
