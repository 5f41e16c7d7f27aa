// SPDX-License-Identifier: MIT
#include "RowDelegate.h"

#include "Painting.h"
#include "RowView.h"
#include "Switch.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>
#include <QTextLayout>

#include <algorithm>

namespace quorvane {
namespace {

constexpr int pictureRadius = radius::small;
constexpr int quarterTurn = 90;
constexpr int badgePadding = 7;
constexpr int badgeSymbol = 10;
constexpr int badgeSymbolGap = 4;
constexpr int badgeDot = 6;
constexpr int badgeDotGap = 5;
constexpr int cellDot = 10;
constexpr int cellDotGap = 8;
constexpr int commandPadding = 9;
constexpr int copyPadding = 7;
constexpr int copySymbol = 11;
constexpr double wellOpacityDark = 0.16;
constexpr double wellOpacityLight = 0.025;
constexpr int focusInset = 2;
constexpr int beyond = 2 * radius::surface; ///< of a card, out of sight

constexpr int leftCentre = Qt::AlignLeft | Qt::AlignVCenter;

void paintDisc(QPainter& painter, const QRectF& area, const QColor& color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(area);
    painter.restore();
}

/// The square of that side in the middle of the left end.
QRectF leftMiddle(const QRectF& area, double side, double inset)
{
    return {area.left() + inset, area.center().y() - side / 2, side, side};
}

/// Spans of the whole text in a text that has lost its middle or its end.
QList<QTextLayout::FormatRange> shownSpans(const QString& text, const QString& shown,
                                           const std::vector<RowSpan>& spans)
{
    const qsizetype cut = shown.indexOf(u'…');
    const bool isWhole = shown == text;
    const qsizetype head = isWhole || cut < 0 ? shown.size() : cut;
    const qsizetype tail = isWhole || cut < 0 ? 0 : shown.size() - cut - 1;
    QList<QTextLayout::FormatRange> ranges;
    const auto add = [&](qsizetype start, qsizetype end, ThemeColor color) {
        if (start < end) {
            QTextLayout::FormatRange range;
            range.start = static_cast<int>(start);
            range.length = static_cast<int>(end - start);
            range.format.setForeground(themeColor(color));
            ranges.push_back(range);
        }
    };
    for (const RowSpan& span : spans) {
        const qsizetype end = span.start + span.length;
        add(std::min(span.start, head), std::min(end, head), span.color);
        const qsizetype shift = text.size() - shown.size();
        const qsizetype tailStart = shown.size() - tail;
        add(std::max(span.start - shift, tailStart), std::max(end - shift, tailStart), span.color);
    }
    return ranges;
}

void paintTitle(QPainter& painter, const QRectF& area, const Row& row, const QColor& color)
{
    if (row.titleSpans.empty() || row.isDimmed || !row.isEnabled) {
        paintText(painter, area, leftCentre, row.titleStyle, color, row.title, row.titleElide);
        return;
    }
    const QFont face = font(row.titleStyle);
    const QString shown =
        QFontMetricsF(face).elidedText(row.title, row.titleElide, area.width() + 0.5);
    QTextLayout layout(shown, face, painter.device());
    layout.setFormats(shownSpans(row.title, shown, row.titleSpans));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    painter.save();
    painter.setPen(color);
    line.draw(&painter, QPointF(area.left(), area.center().y() - line.height() / 2));
    painter.restore();
}

void paintBadge(QPainter& painter, const QRectF& area, const RowBadge& badge)
{
    if (area.width() < measure::badge) {
        return;
    }
    paintPanel(painter, area, area.height() / 2, themeColor(tintGround(badge.tint)),
               Qt::transparent);
    const QColor color = themeColor(tintText(badge.tint));
    QRectF words = area.adjusted(badgePadding, 0, -badgePadding, 0);
    if (badge.hasDot) {
        paintDisc(painter, leftMiddle(words, badgeDot, 0), color);
        words.setLeft(words.left() + badgeDot + badgeDotGap);
    }
    if (!badge.symbol.isEmpty()) {
        paintSymbol(painter, badge.symbol, leftMiddle(words, badgeSymbol, 0), badgeSymbol, color);
        words.setLeft(words.left() + badgeSymbol + badgeSymbolGap);
    }
    paintText(painter, words, leftCentre, TextStyle::label, color, badge.text);
}

/// Paints the parts of one row in their places.
class RowPainter
{
public:
    RowPainter(QPainter& painter, const Row& row, const RowPlaces& places, const RowLook& look)
        : m_painter(painter)
        , m_row(row)
        , m_places(places)
        , m_look(look)
    {}

    void paintAll() const
    {
        paintLeading();
        paintWords();
        paintCells();
        paintButtons();
    }

private:
    QColor color(ThemeColor wanted) const
    {
        const bool stepsBack =
            m_row.isDimmed && (wanted == ThemeColor::text1 || wanted == ThemeColor::text2);
        return themeColor(!m_row.isEnabled ? ThemeColor::textDisabled
                          : stepsBack      ? ThemeColor::text3
                                           : wanted);
    }

    QStyle::State stateOf(const RowPart& part, bool isEnabled) const
    {
        QStyle::State state;
        state.setFlag(QStyle::State_Enabled, isEnabled && m_row.isEnabled);
        state.setFlag(QStyle::State_MouseOver, m_look.hovered == part);
        state.setFlag(QStyle::State_Sunken, m_look.pressed == part && m_look.hovered == part);
        return state;
    }

    void paintFocus(const RowPart& part, const QRect& rect, int corner) const
    {
        if (m_look.focused == part) {
            paintFocusRing(m_painter, rect, corner);
        }
    }

    void paintLeading() const
    {
        if (m_look.hasChevron) {
            paintChevron();
        }
        paintControl();
        if (!m_places.dot.isEmpty()) {
            paintDisc(m_painter, m_places.dot,
                      m_row.isDimmed ? themeColor(ThemeColor::text3) : m_row.dot);
        }
        paintText(m_painter, m_places.number, Qt::AlignRight | Qt::AlignVCenter, TextStyle::body,
                  color(ThemeColor::text3), m_row.number);
        if (!m_row.icon.isNull()) {
            paintIcon();
        } else if (!m_row.symbol.isEmpty()) {
            const QColor tint = m_row.symbolTint.isValid() && m_row.isEnabled
                                    ? m_row.symbolTint
                                    : color(m_row.symbolColor);
            if (!m_places.tile.isEmpty()) {
                paintPanel(m_painter, m_places.tile, radius::control,
                           themeColor(ThemeColor::raised), Qt::transparent);
            }
            paintSymbol(m_painter, m_row.symbol, m_places.symbol, m_places.symbol.width(), tint);
        }
    }

    void paintChevron() const
    {
        const int side = m_places.chevron.width();
        m_painter.save();
        m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
        m_painter.translate(QRectF(m_places.chevron).center());
        m_painter.rotate(m_look.isOpen ? quarterTurn : 0);
        paintSymbol(m_painter, QStringLiteral("chevron.right"),
                    QRectF(-side / 2.0, -side / 2.0, side, side), side,
                    themeColor(ThemeColor::text3));
        m_painter.restore();
    }

    void paintControl() const
    {
        const RowPart part{RowAction::toggled, 0};
        QStyle::State state = stateOf(part, true);
        if (m_row.isChecked) {
            state.setFlag(*m_row.isChecked ? QStyle::State_On : QStyle::State_Off);
            QStyleOptionButton option;
            option.rect = m_places.control;
            option.state = state;
            QApplication::style()->drawPrimitive(QStyle::PE_IndicatorCheckBox, &option, &m_painter);
            paintFocus(part, m_places.control, radius::small);
        } else if (m_row.isOn) {
            paintSwitch(m_painter, m_places.control, *m_row.isOn ? 1 : 0, state);
            paintFocus(part, m_places.control, measure::switchHeight / 2);
        }
    }

    void paintIcon() const
    {
        const QRect area = m_places.symbol;
        const QIcon::Mode mode = m_row.isEnabled ? QIcon::Normal : QIcon::Disabled;
        if (!m_row.iconSize.isValid()) {
            m_row.icon.paint(&m_painter, area, Qt::AlignCenter, mode);
            return;
        }
        m_painter.save();
        m_painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath corners;
        corners.addRoundedRect(area, pictureRadius, pictureRadius);
        m_painter.setClipPath(corners, Qt::IntersectClip);
        m_row.icon.paint(&m_painter, area, Qt::AlignCenter, mode);
        m_painter.restore();
        paintPanel(m_painter, area, pictureRadius, Qt::transparent,
                   themeColor(ThemeColor::hairline));
    }

    void paintWords() const
    {
        paintTitle(m_painter, m_places.title, m_row, color(m_row.titleColor));
        for (std::size_t i = 0; i < m_places.titleCells.size(); ++i) {
            const RowCell& cell = m_row.titleCells[i];
            paintText(m_painter, m_places.titleCells[i], leftCentre, cell.style, color(cell.color),
                      cell.text);
        }
        for (std::size_t i = 0; i < m_places.badges.size(); ++i) {
            paintBadge(m_painter, m_places.badges[i], m_row.badges[i]);
        }
        paintText(m_painter, m_places.detail, leftCentre, TextStyle::caption,
                  color(m_row.detailColor), m_row.detail);
        paintText(m_painter, m_places.detailTail, leftCentre, TextStyle::caption,
                  color(ThemeColor::text2), m_row.detailTail);
        paintText(m_painter, m_places.path, leftCentre, TextStyle::path, color(ThemeColor::text3),
                  m_row.path, Qt::ElideMiddle);
        if (!m_row.command.isEmpty()) {
            paintCommand();
        }
    }

    void paintCommand() const
    {
        paintPanel(m_painter, m_places.command, radius::control, themeColor(ThemeColor::field),
                   themeColor(ThemeColor::controlEdge));
        const QFont face = commandFont();
        QRectF words = QRectF(m_places.command).adjusted(commandPadding, 0, 0, 0);
        words.setRight(m_places.copy.left());
        m_painter.save();
        m_painter.setFont(face);
        m_painter.setPen(color(ThemeColor::text1));
        m_painter.drawText(
            words, leftCentre | Qt::TextSingleLine,
            QFontMetricsF(face).elidedText(m_row.command, Qt::ElideMiddle, words.width()));
        m_painter.restore();
        const RowPart part{RowAction::copied, 0};
        const QStyle::State state = stateOf(part, true);
        const QRectF copy = m_places.copy;
        if (state & (QStyle::State_MouseOver | QStyle::State_Sunken)) {
            paintPanel(
                m_painter, copy, radius::small,
                themeColor(state & QStyle::State_Sunken ? ThemeColor::press : ThemeColor::hover),
                Qt::transparent);
        }
        const QColor label = color(ThemeColor::accentText);
        QRectF text = copy.adjusted(copyPadding, 0, -copyPadding, 0);
        paintSymbol(m_painter, QStringLiteral("doc.on.clipboard"), leftMiddle(text, copySymbol, 0),
                    copySymbol, label);
        text.setLeft(text.left() + copySymbol + badgeDotGap);
        paintText(m_painter, text, leftCentre, TextStyle::label, label, copyText());
        paintFocus(part, m_places.copy, radius::small);
    }

    void paintCells() const
    {
        for (std::size_t i = 0; i < m_places.cells.size(); ++i) {
            const RowCell& cell = m_row.cells[i];
            QRectF area = m_places.cells[i];
            if (area.isEmpty()) {
                continue;
            }
            if (cell.dot.isValid()) {
                paintDisc(m_painter, leftMiddle(area, cellDot, 0),
                          m_row.isDimmed ? themeColor(ThemeColor::text3) : cell.dot);
                area.setLeft(area.left() + cellDot + cellDotGap);
            }
            if (!cell.below.isEmpty()) {
                const int above = typeMeasure(cell.style).lineHeight;
                const int under = typeMeasure(TextStyle::path).lineHeight;
                const qreal top = area.top() + (area.height() - above - under) / 2;
                paintText(m_painter, QRectF(area.left(), top + above, area.width(), under),
                          static_cast<int>(cell.alignment) | Qt::AlignVCenter, TextStyle::path,
                          color(ThemeColor::text3), cell.below, Qt::ElideRight);
                area = QRectF(area.left(), top, area.width(), above);
            }
            paintText(m_painter, area, static_cast<int>(cell.alignment) | Qt::AlignVCenter,
                      cell.style, color(cell.color), cell.text,
                      cell.alignment & Qt::AlignRight ? Qt::ElideRight : Qt::ElideMiddle);
        }
    }

    void paintButtons() const
    {
        for (std::size_t i = 0; i < m_places.actions.size(); ++i) {
            const RowAction& action = m_row.actions[i];
            const RowPart part{action.id, static_cast<int>(i)};
            const QRect rect = m_places.actions[i];
            const QStyle::State state = stateOf(part, action.isEnabled);
            if (action.isIcon()) {
                paintIconButton(action, rect, state);
            } else {
                paintButton(m_painter, rect, {action.symbol, action.text, action.role, action.size},
                            state);
            }
            paintFocus(part, rect, radius::control);
        }
    }

    void paintIconButton(const RowAction& action, const QRect& rect, QStyle::State state) const
    {
        const bool isEnabled = state & QStyle::State_Enabled;
        const bool isLit = isEnabled && state & QStyle::State_MouseOver;
        if (isLit) {
            paintPanel(
                m_painter, rect, radius::control,
                themeColor(state & QStyle::State_Sunken ? ThemeColor::press : ThemeColor::hover),
                Qt::transparent);
        }
        paintSymbol(m_painter, action.symbol, rect, measure::iconButtonLarge,
                    themeColor(!isEnabled ? ThemeColor::textDisabled
                               : isLit    ? ThemeColor::text1
                                          : ThemeColor::text2));
    }

    QPainter& m_painter;
    const Row& m_row;
    const RowPlaces& m_places;
    const RowLook& m_look;
};

/// The part of a card that lies below one row.
void paintCardPart(QPainter& painter, const QRect& area, const RowLook& look)
{
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    paintCard(painter, QRectF(area).adjusted(0, look.isFirstOnCard ? 0 : -beyond, 0,
                                             look.isLastOnCard ? 0 : beyond));
    painter.restore();
}

void paintGround(QPainter& painter, const QRect& area, const Row& row, const RowMetrics& metrics,
                 const RowLook& look)
{
    painter.save();
    QRectF ground = area;
    if (metrics.hasOwnCards) {
        paintCardPart(painter, area, look);
        clipToCard(painter, QRectF(area).adjusted(1, look.isFirstOnCard ? 1 : -beyond, -1,
                                                  look.isLastOnCard ? -1 : beyond));
    }
    if (row.isInWell) {
        painter.fillRect(
            area, withOpacity(Qt::black, theme().isDark() ? wellOpacityDark : wellOpacityLight));
    }
    if (metrics.inset > 0) {
        ground.adjust(metrics.inset, 0, -metrics.inset, 0);
    }
    if (metrics.hasSeparators && !look.isLastOnCard) {
        painter.fillRect(QRect(area.left(), area.bottom(), area.width(), 1),
                         themeColor(ThemeColor::hairline));
    }
    const int corner = metrics.inset > 0 ? radius::control : 0;
    paintRowGround(painter, ground, corner, look.state & ~QStyle::State_HasFocus);
    if (look.state & QStyle::State_HasFocus) {
        // Inside the row, so that the corners of a card cut nothing off.
        const int inset = metrics.inset > 0 ? 0 : focusInset;
        paintFocusLine(painter, ground.adjusted(inset, inset, -inset, -inset), radius::control);
    }
    painter.restore();
}

} // namespace

void paintRow(QPainter& painter, const QRect& area, const Row& row, const RowMetrics& metrics,
              const RowLook& look)
{
    const RowPlaces places = layOutRow(row, metrics, area, look.level, look.hasChevron);
    if (row.kind != RowKind::section) {
        paintGround(painter, area, row, metrics, look);
    }
    RowPainter(painter, row, places, look).paintAll();
}

void paintRowHeader(QPainter& painter, const QRect& area, const Row& titles,
                    const RowMetrics& metrics)
{
    Row row = titles;
    row.titleStyle = TextStyle::label;
    row.titleColor = ThemeColor::text2;
    for (RowCell& cell : row.cells) {
        cell.style = TextStyle::label;
        cell.color = ThemeColor::text2;
    }
    RowPlaces places = layOutRow(row, metrics, area, 0, false);
    places.actions.clear();
    row.symbol.clear();
    row.icon = {};
    row.isChecked.reset();
    row.isOn.reset();
    RowPainter(painter, row, places, {}).paintAll();
}

void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const
{
    const auto* const view = qobject_cast<const RowView*>(option.widget);
    if (view != nullptr) {
        paintRow(*painter, option.rect, index.data(rowrole::row).value<Row>(), view->metrics(),
                 view->lookOf(index));
    }
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const auto* const view = qobject_cast<const RowView*>(option.widget);
    const QVariant own = index.data(rowrole::height);
    return {0, own.isValid()     ? own.toInt()
               : view == nullptr ? measure::row
                                 : view->metrics().height};
}

} // namespace quorvane
