// SPDX-License-Identifier: MIT
#include "Popover.h"

#include "Button.h"
#include "Painting.h"
#include "ShortenedName.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QEvent>
#include <QPainter>

namespace quorvane {
namespace {

struct ShadowMeasure
{
    int offsetY;
    int blur;
};

ShadowMeasure shadowMeasure(DropShadow::Depth depth)
{
    return depth == DropShadow::Depth::popover ? ShadowMeasure{8, 24} : ShadowMeasure{16, 40};
}

constexpr int tooltipPaddingX = 11; ///< with the edge
constexpr int tooltipPaddingTop = 8;
constexpr int tooltipPaddingBottom = 9;
constexpr int tooltipMark = 8;
constexpr int tooltipMarkGap = 6;
constexpr int pointerOffset = 12;
constexpr int tooltipMaximumWidth = 420;

constexpr int bannerSymbol = 16;
constexpr int bannerPadding = 13; ///< with the edge
constexpr int bannerGap = 9;
constexpr int bannerButton = 22;
constexpr int bannerDrop = 8;
constexpr int bannerMargin = 16; ///< kept free at both sides of the area
constexpr int bannerLines = 2;
constexpr int bannerTextLeft = bannerPadding + bannerSymbol + bannerGap;
constexpr int bannerTextRight = bannerGap + bannerButton + bannerGap;
/// A narrower banner would say next to nothing.
constexpr int bannerNarrowest = 240;

} // namespace

DropShadow::DropShadow(QWidget& card, Depth depth, int radius)
    : QWidget(card.parentWidget())
    , m_card(card)
    , m_depth(depth)
    , m_radius(radius)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    card.installEventFilter(this);
    connect(&card, &QObject::destroyed, this, &QObject::deleteLater);
    follow();
}

bool DropShadow::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
    case QEvent::ZOrderChange:
        follow();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void DropShadow::follow()
{
    const ShadowMeasure shadow = shadowMeasure(m_depth);
    setGeometry(m_card.geometry().adjusted(-shadow.blur, -shadow.blur, shadow.blur,
                                           shadow.blur + shadow.offsetY));
    setVisible(!m_card.isHidden());
    stackUnder(&m_card);
}

void DropShadow::paintEvent(QPaintEvent*)
{
    const ShadowMeasure shadow = shadowMeasure(m_depth);
    QPainter painter(this);
    const QRectF card(shadow.blur, shadow.blur, m_card.width(), m_card.height());
    paintShadow(
        painter, card, m_radius, shadow.offsetY, shadow.blur,
        themeColor(m_depth == Depth::popover ? ThemeColor::shadow : ThemeColor::dialogShadow));
}

TooltipCard::TooltipCard(QWidget* canvas)
    : QWidget(canvas)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    new DropShadow(*this, DropShadow::Depth::popover, radius::control);
}

void TooltipCard::setContent(const QString& title, const QString& detail, const QString& note,
                             const QColor& mark)
{
    if (m_title != title || m_detail != detail || m_note != note || m_mark != mark) {
        m_title = title;
        m_detail = detail;
        m_note = note;
        m_mark = mark;
        QStringList lines{title, detail, note};
        lines.removeAll(QString());
        setAccessibleName(lines.join(u'\n'));
        update();
    }
    resize(sizeHint());
}

QSize TooltipCard::sizeHint() const
{
    const int lineHeight = typeMeasure(TextStyle::caption).lineHeight;
    const int markWidth = m_mark.isValid() ? tooltipMark + tooltipMarkGap : 0;
    const int widest = std::max({textWidth(TextStyle::captionStrong, m_title),
                                 textWidth(TextStyle::caption, m_detail),
                                 textWidth(TextStyle::caption, m_note) + markWidth});
    const int lines = 1 + (m_detail.isEmpty() ? 0 : 1) + (m_note.isEmpty() ? 0 : 1);
    return {std::min(widest + 2 * tooltipPaddingX, tooltipMaximumWidth),
            tooltipPaddingTop + tooltipPaddingBottom + lineHeight * lines};
}

void TooltipCard::showAt(const QPoint& pointer)
{
    resize(sizeHint());
    const QWidget* canvas = parentWidget();
    int x = pointer.x() + pointerOffset;
    int y = pointer.y() + pointerOffset;
    if (x + width() > canvas->width()) {
        x = pointer.x() - pointerOffset - width();
    }
    if (y + height() > canvas->height()) {
        y = pointer.y() - pointerOffset - height();
    }
    showFixed({std::max(0, x), std::max(0, y)});
}

void TooltipCard::showFixed(const QPoint& topLeft)
{
    resize(sizeHint());
    move(topLeft);
    if (isHidden()) {
        show();
        raise();
    }
}

void TooltipCard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPopover(painter, rect(), radius::control);
    const int lineHeight = typeMeasure(TextStyle::caption).lineHeight;
    const QRectF title(tooltipPaddingX, tooltipPaddingTop, width() - 2 * tooltipPaddingX,
                       lineHeight);
    const int alignment = Qt::AlignLeft | Qt::AlignVCenter;
    paintText(painter, title, alignment, TextStyle::captionStrong, themeColor(ThemeColor::text1),
              m_title, Qt::ElideMiddle);
    paintText(painter, title.translated(0, lineHeight), alignment, TextStyle::caption,
              themeColor(ThemeColor::text2), m_detail);
    QRectF note = title.translated(0, lineHeight * (m_detail.isEmpty() ? 1 : 2));
    if (!m_note.isEmpty() && m_mark.isValid()) {
        painter.fillRect(
            QRectF(note.left(), note.center().y() - tooltipMark / 2.0, tooltipMark, tooltipMark),
            m_mark);
        note.setLeft(note.left() + tooltipMark + tooltipMarkGap);
    }
    paintText(painter, note, alignment, TextStyle::caption, themeColor(ThemeColor::text1), m_note);
}

FlashBanner::FlashBanner(const QString& text, std::function<void()> onDismiss, QWidget* parent)
    : QWidget(parent)
    , m_label(new ShortenedName(bannerLines, TextStyle::row, this))
    , m_dismiss(new ToolButton(QStringLiteral("xmark.small"), tr("Dismiss"), this))
{
    m_dismiss->setSide(bannerButton);
    m_dismiss->setSymbolSide(measure::iconRow);
    connect(m_dismiss, &QAbstractButton::clicked, this,
            [dismiss = std::move(onDismiss)] { dismiss(); });
    new DropShadow(*this, DropShadow::Depth::popover, radius::surface);
    setText(text);
}

void FlashBanner::setText(const QString& text)
{
    m_label->setText(text);
    setAccessibleName(text);
    resize(sizeHint());
    update();
}

QSize FlashBanner::sizeHint() const
{
    return {bannerTextLeft + textWidth(TextStyle::row, m_label->text()) + bannerTextRight,
            measure::flashBanner};
}

/// The text's width where room is enough, else the least that two lines need: no word stands alone.
int FlashBanner::textWidthWithin(int room) const
{
    const int whole = textWidth(TextStyle::row, m_label->text());
    if (whole <= room || !m_label->fits(room)) {
        return std::min(whole, room);
    }
    int tooNarrow = whole / bannerLines - 1;
    int wide = room;
    while (wide - tooNarrow > 1) {
        const int width = (tooNarrow + wide) / 2;
        (m_label->fits(width) ? wide : tooNarrow) = width;
    }
    return wide;
}

void FlashBanner::placeBelow(const QRect& area, const QRect& clear)
{
    const bool isReadable = clear.width() - 2 * bannerMargin >= bannerNarrowest;
    const QRect room = (isReadable ? clear : area).adjusted(bannerMargin, 0, -bannerMargin, 0);
    const int text = textWidthWithin(room.width() - bannerTextLeft - bannerTextRight);
    const int width = bannerTextLeft + text + bannerTextRight;
    const int centred = area.left() + (area.width() - width) / 2;
    const int x = std::clamp(centred, room.left(), std::max(room.left(), room.right() + 1 - width));
    const int moreLines = m_label->heightForWidth(text) - typeMeasure(TextStyle::row).lineHeight;
    setGeometry(x, area.top() + bannerDrop, width, measure::flashBanner + moreLines);
}

void FlashBanner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintPopover(painter, rect(), radius::surface);
    const QRectF symbol(bannerPadding, 0, bannerSymbol, height());
    paintSymbol(painter, QStringLiteral("checkmark.circle.fill"), symbol, bannerSymbol,
                themeColor(ThemeColor::green));
}

void FlashBanner::resizeEvent(QResizeEvent*)
{
    const int room = width() - bannerTextLeft - bannerTextRight;
    const int text = m_label->heightForWidth(room);
    m_label->setGeometry(bannerTextLeft, (height() - text) / 2, room, text);
    m_dismiss->setGeometry(width() - bannerGap - bannerButton, (height() - bannerButton) / 2,
                           bannerButton, bannerButton);
}

} // namespace quorvane
