// SPDX-License-Identifier: MIT
#include "DuplicateRowPainter.h"

#include "AppState.h"
#include "Chip.h"
#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QPainter>

#include <algorithm>

namespace quorvane {
namespace {

using Kind = DuplicateRow::Kind;

constexpr int paddingLeft = 18;
constexpr int paddingRight = 16;
constexpr int groupGap = 16;
constexpr int chevronSide = 12;
constexpr int columnGap = 8;
constexpr int countGap = 16; ///< between a number of copies and the words behind it
constexpr int memberLeft = paddingLeft + chevronSide + groupGap;
constexpr int memberGap = 12;
constexpr int symbolSide = measure::iconRow;
constexpr int revealWidth = 72;
constexpr int leastKeepLatestWidth = 118;
constexpr int leastKeepWidth = 104;
constexpr int leastSizeWidth = 76;
constexpr int leastCountWidth = 26;
constexpr int leastWordsWidth = 140;
constexpr int badgePadding = 7;
constexpr int badgeGap = 8;
constexpr int moreGroupsMargin = 16; ///< clear of the scroll bar, ring and all
constexpr int quarterTurn = 90;
constexpr int focusInset = 2;
constexpr double badgeGroundOpacity = 0.14;
constexpr double wellOpacityDark = 0.16;
constexpr double wellOpacityLight = 0.025;

QColor wellColor()
{
    return withOpacity(Qt::black, theme().isDark() ? wellOpacityDark : wellOpacityLight);
}

/// So wide and high, its right edge given, in the middle of the row.
QRect middleRight(const QRect& area, int right, int width, int height)
{
    return {right - width, area.top() + (area.height() - height) / 2, width, height};
}

int widestButton(int least, const ButtonFace& pattern, std::initializer_list<const char*> texts)
{
    int widest = least;
    for (const char* const text : texts) {
        ButtonFace face = pattern;
        face.text = QString::fromUtf8(text);
        widest = std::max(widest, buttonSize(face).width());
    }
    return widest;
}

void paintChevron(QPainter& painter, const QRectF& area, double openness)
{
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(area.center());
    painter.rotate(quarterTurn * openness);
    paintSymbol(painter, QStringLiteral("chevron.right"),
                QRectF(-chevronSide / 2.0, -chevronSide / 2.0, chevronSide, chevronSide),
                chevronSide, themeColor(ThemeColor::text3));
    painter.restore();
}

/// Returns where the text ends.
qreal paintCell(QPainter& painter, const QRectF& cell, TextStyle style, ThemeColor color,
                const QString& text)
{
    paintText(painter, cell, Qt::AlignLeft | Qt::AlignVCenter, style, themeColor(color), text);
    return cell.left() + std::min<qreal>(cell.width(), textWidth(style, text));
}

} // namespace

int partCount(Kind kind)
{
    return kind == Kind::group ? keepLatestPart + 1 : kind == Kind::member ? keepPart + 1 : 1;
}

void DuplicateRowPainter::measureColumns()
{
    m_sizeWidth =
        std::max(leastSizeWidth, textWidth(TextStyle::heading, QStringLiteral("1023.9 MB")));
    m_countWidth = std::max(
        leastCountWidth,
        textWidth(TextStyle::body, QStringLiteral("× %1").arg(m_state.mostDuplicateCopies())));
    m_keepLatestWidth = widestButton(leastKeepLatestWidth, {QStringLiteral("checkmark.seal"), {}},
                                     {"Keep latest", "Kept"});
    m_keepWidth = widestButton(
        leastKeepWidth,
        {QStringLiteral("checkmark.seal"), {}, ButtonRole::bordered, ControlSize::small},
        {"Unstage", "Kept ✓", "Keep this"});
    m_dateWidth = textWidth(TextStyle::caption, QStringLiteral("Mmm 30, 2000 at 10:00 PM"));
}

DuplicateGroupRow DuplicateRowPainter::groupRow(const DuplicateRow& row) const
{
    return {m_state, m_rows.group(row.group), m_rows.isExpanded(row.group)};
}

DuplicateMemberRow DuplicateRowPainter::memberRow(const DuplicateRow& row) const
{
    return {m_state, m_rows.group(row.group), m_rows.file(row)};
}

std::optional<DuplicateButton> DuplicateRowPainter::button(const DuplicatePlace& place) const
{
    switch (place.row.kind) {
    case Kind::group:
        return place.part == keepLatestPart ? std::optional(groupRow(place.row).keepLatest())
                                            : std::nullopt;
    case Kind::member:
        return place.part == keepPart     ? std::optional(memberRow(place.row).keep())
               : place.part == revealPart ? std::optional(memberRow(place.row).reveal())
                                          : std::nullopt;
    case Kind::moreMembers:
        return DuplicateButton{{{},
                                moreMembersText(m_rows.remainingMembers(place.row.group)),
                                ButtonRole::bordered,
                                ControlSize::small},
                               {},
                               {}};
    case Kind::moreGroups:
        break;
    }
    return DuplicateButton{{{}, moreGroupsText(m_rows.nextGroups())}, {}, {}};
}

QRect DuplicateRowPainter::partRect(const DuplicatePlace& place, const QRect& area) const
{
    const int right = area.right() + 1 - paddingRight;
    switch (place.row.kind) {
    case Kind::group:
        return place.part == keepLatestPart
                   ? middleRight(area, right, m_keepLatestWidth, measure::button)
                   : area;
    case Kind::member:
        if (place.part == keepPart) {
            return middleRight(area, right, m_keepWidth, measure::buttonSmall);
        }
        return place.part == revealPart ? middleRight(area, right - m_keepWidth - memberGap,
                                                      revealWidth, measure::buttonSmall)
                                        : area;
    case Kind::moreMembers: {
        const int width = buttonSize(button(place)->face).width();
        return middleRight(area, area.left() + memberLeft + width, width, measure::buttonSmall);
    }
    case Kind::moreGroups:
        break;
    }
    return middleRight(area, area.right() + 1 - moreGroupsMargin,
                       area.width() - 2 * moreGroupsMargin, measure::button);
}

int DuplicateRowPainter::partAt(const DuplicateRow& row, const QRect& area,
                                const QPoint& point) const
{
    for (int part = partCount(row.kind) - 1; part >= 0; --part) {
        if (partRect({row, part}, area).contains(point)) {
            return part;
        }
    }
    return -1;
}

void DuplicateRowPainter::paint(QPainter& painter, const DuplicateRow& row, const QRect& area,
                                const DuplicateRowLook& look) const
{
    const bool isInBody = row.kind == Kind::member || row.kind == Kind::moreMembers;
    if (isInBody) {
        painter.fillRect(area, wellColor());
    }
    const bool isButtonRow = partCount(row.kind) == 1;
    QStyle::State state;
    state.setFlag(QStyle::State_MouseOver, row.kind == Kind::group && look.hovered == 0);
    paintRowGround(painter, area, 0, state);
    const bool isFirst = row.kind == Kind::group && row.group == 0;
    if (!isFirst && row.kind != Kind::moreMembers) {
        painter.fillRect(QRect(area.left(), area.top(), area.width(), 1),
                         themeColor(ThemeColor::hairline));
    }
    if (row.kind == Kind::group) {
        paintGroup(painter, row, area);
    } else if (row.kind == Kind::member) {
        paintMember(painter, row, area);
    }
    if (!isButtonRow && look.focused == 0) {
        // Clear of the hairline, and of the card's corners around the first and the last row.
        paintFocusLine(painter,
                       QRectF(area).adjusted(focusInset, focusInset, -focusInset, -focusInset),
                       radius::control);
    }
    paintButtons(painter, row, area, look);
}

void DuplicateRowPainter::paintButtons(QPainter& painter, const DuplicateRow& row,
                                       const QRect& area, const DuplicateRowLook& look) const
{
    for (int part = 0; part < partCount(row.kind); ++part) {
        const std::optional<DuplicateButton> shown = button({row, part});
        if (!shown) {
            continue;
        }
        const QRect rect = partRect({row, part}, area);
        const bool isEnabled = partCount(row.kind) == 1 || shown->isEnabled();
        QStyle::State state;
        state.setFlag(QStyle::State_Enabled, isEnabled);
        state.setFlag(QStyle::State_MouseOver, look.hovered == part);
        state.setFlag(QStyle::State_Sunken, look.pressed == part && look.hovered == part);
        paintButton(painter, rect, shown->face, state);
        if (look.focused == part) {
            paintFocusRing(painter, rect, radius::control);
        }
    }
}

void DuplicateRowPainter::paintGroup(QPainter& painter, const DuplicateRow& row,
                                     const QRect& area) const
{
    const DuplicateGroupRow shown = groupRow(row);
    paintChevron(painter, QRectF(area.left() + paddingLeft, area.top(), chevronSide, area.height()),
                 m_rows.openness(row.group));
    const int left = area.left() + memberLeft;
    const int right = partRect({row, keepLatestPart}, area).left() - groupGap;
    const int first = typeMeasure(TextStyle::heading).lineHeight;
    const int second = typeMeasure(TextStyle::caption).lineHeight;
    const int top = area.top() + (area.height() - first - second - 3) / 2;
    QRectF cell(left, top, m_sizeWidth, first);
    paintCell(painter, cell, TextStyle::heading, ThemeColor::text1, shown.sizeText());
    cell = QRectF(cell.right() + columnGap, top, m_countWidth, first);
    paintCell(painter, cell, TextStyle::body, ThemeColor::text1, shown.countText());
    cell.setLeft(cell.right() + countGap);
    cell.setRight(right);
    paintCell(painter, cell, TextStyle::body, ThemeColor::text2, shown.reclaimableText());

    const QString more = shown.moreFoldersText();
    const int moreWidth = more.isEmpty() ? 0 : columnGap + textWidth(TextStyle::caption, more);
    cell = QRectF(left, top + first + 3, right - left - moreWidth, second);
    const qreal end =
        paintCell(painter, cell, TextStyle::caption, ThemeColor::text3, shown.foldersText());
    if (!more.isEmpty()) {
        paintCell(painter, QRectF(end + columnGap, cell.top(), moreWidth, second),
                  TextStyle::caption, ThemeColor::text2, more);
    }
}

bool DuplicateRowPainter::hasRoomForDate(const QRect& area) const
{
    const int free = area.width() - memberLeft - symbolSide - paddingRight - m_keepWidth -
                     revealWidth - 4 * memberGap;
    return free >= m_dateWidth + leastWordsWidth;
}

QRect DuplicateRowPainter::wordsArea(const QRect& area) const
{
    const int left = area.left() + memberLeft + symbolSide + memberGap;
    int right = area.right() + 1 - paddingRight - m_keepWidth - revealWidth - 2 * memberGap;
    right -= hasRoomForDate(area) ? m_dateWidth + memberGap : 0;
    return {left, area.top(), std::max(0, right - left), area.height()};
}

QRect DuplicateRowPainter::badgeRect(const DuplicateRow& row, const QRect& area) const
{
    if (row.kind != Kind::member || !memberRow(row).isRecommendedKeep()) {
        return {};
    }
    const QRect words = wordsArea(area);
    const int width =
        2 * badgePadding + textWidth(TextStyle::label, DuplicateMemberRow::badgeText());
    const int name = std::min(textWidth(TextStyle::row, m_rows.file(row).displayName()),
                              std::max(0, words.width() - width - badgeGap));
    const int line = typeMeasure(TextStyle::row).lineHeight;
    const int both = line + typeMeasure(TextStyle::path).lineHeight + 1;
    const int top = area.top() + (area.height() - both) / 2;
    return {words.left() + name + badgeGap, top + (line - measure::badge) / 2, width,
            measure::badge};
}

void DuplicateRowPainter::paintMember(QPainter& painter, const DuplicateRow& row,
                                      const QRect& area) const
{
    paintSymbol(painter, QStringLiteral("doc.fill"),
                QRectF(area.left() + memberLeft, area.top(), symbolSide, area.height()), symbolSide,
                themeColor(ThemeColor::text3));
    paintMemberWords(painter, row, area);
    if (hasRoomForDate(area)) {
        const int right = partRect({row, revealPart}, area).left() - memberGap;
        paintText(painter, QRectF(right - m_dateWidth, area.top(), m_dateWidth, area.height()),
                  Qt::AlignRight | Qt::AlignVCenter, TextStyle::caption,
                  themeColor(ThemeColor::text2), memberRow(row).dateText());
    }
}

void DuplicateRowPainter::paintMemberWords(QPainter& painter, const DuplicateRow& row,
                                           const QRect& area) const
{
    const DuplicateMemberRow shown = memberRow(row);
    const QRect words = wordsArea(area);
    const QRect badge = badgeRect(row, area);
    const int line = typeMeasure(TextStyle::row).lineHeight;
    const int path = typeMeasure(TextStyle::path).lineHeight;
    const int top = area.top() + (area.height() - line - path - 1) / 2;
    const int nameWidth = badge.isEmpty() ? words.width() : badge.left() - badgeGap - words.left();
    constexpr int alignment = Qt::AlignLeft | Qt::AlignVCenter;
    // A copy that is to go steps back behind those that stay.
    paintText(painter, QRectF(words.left(), top, nameWidth, line), alignment, TextStyle::row,
              themeColor(shown.file().isStagedForTrash() ? ThemeColor::text2 : ThemeColor::text1),
              shown.file().displayName(), Qt::ElideMiddle);
    paintText(painter, QRectF(words.left(), top + line + 1, words.width(), path), alignment,
              TextStyle::path, themeColor(ThemeColor::text3), shown.pathText(), Qt::ElideMiddle);
    if (!badge.isEmpty()) {
        paintPanel(painter, badge, measure::badge / 2.0,
                   withOpacity(themeColor(ThemeColor::green), badgeGroundOpacity), Qt::transparent);
        paintText(painter, badge, Qt::AlignCenter, TextStyle::label,
                  themeColor(ThemeColor::greenText), DuplicateMemberRow::badgeText(),
                  Qt::ElideNone);
    }
}

} // namespace quorvane
