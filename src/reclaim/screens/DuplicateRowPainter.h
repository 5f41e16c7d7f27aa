// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateRowTexts.h"
#include "DuplicateRows.h"

#include <QRect>

#include <optional>

class QPainter;

namespace quorvane {

/// A part of a row that can be pointed at and focused: 0 is the row itself, or the one button of a
/// row that is nothing else; the buttons of a row follow from left to right.
struct DuplicatePlace
{
    DuplicateRow row;
    int part = 0;

    friend bool operator==(const DuplicatePlace&, const DuplicatePlace&) = default;
};

inline constexpr int keepLatestPart = 1; ///< of a group
inline constexpr int revealPart = 1;     ///< of a copy
inline constexpr int keepPart = 2;       ///< of a copy

/// Number of parts of a row, at least one.
int partCount(DuplicateRow::Kind kind);

/// Which parts of a row show more than rest; below 0 for none.
struct DuplicateRowLook
{
    int hovered = -1;
    int pressed = -1;
    int focused = -1;
};

/// Draws the rows and tells where their parts lie. Main thread.
class DuplicateRowPainter
{
public:
    DuplicateRowPainter(const AppState& state, const DuplicateRows& rows)
        : m_state(state)
        , m_rows(rows)
    {}

    /// Takes the widths of the columns from the font and from the groups.
    void measureColumns();

    /// `area` is the row's whole rectangle, as in the following calls.
    QRect partRect(const DuplicatePlace& place, const QRect& area) const;
    /// Where the badge of a recommended copy lies; empty for other copies.
    QRect badgeRect(const DuplicateRow& row, const QRect& area) const;
    /// The part below a point; 0 beside the buttons of a row, -1 beside the one of a button row.
    int partAt(const DuplicateRow& row, const QRect& area, const QPoint& point) const;
    void paint(QPainter& painter, const DuplicateRow& row, const QRect& area,
               const DuplicateRowLook& look) const;

    DuplicateGroupRow groupRow(const DuplicateRow& row) const;
    DuplicateMemberRow memberRow(const DuplicateRow& row) const;
    /// The button that a part is; nothing for a row itself.
    std::optional<DuplicateButton> button(const DuplicatePlace& place) const;

private:
    void paintGroup(QPainter& painter, const DuplicateRow& row, const QRect& area) const;
    void paintMember(QPainter& painter, const DuplicateRow& row, const QRect& area) const;
    void paintMemberWords(QPainter& painter, const DuplicateRow& row, const QRect& area) const;
    void paintButtons(QPainter& painter, const DuplicateRow& row, const QRect& area,
                      const DuplicateRowLook& look) const;
    /// Between the symbol of a copy and its date.
    QRect wordsArea(const QRect& area) const;
    bool hasRoomForDate(const QRect& area) const;

    const AppState& m_state;
    const DuplicateRows& m_rows;
    int m_sizeWidth = 0;
    int m_countWidth = 0;
    int m_keepLatestWidth = 0;
    int m_keepWidth = 0;
    int m_dateWidth = 0;
};

} // namespace quorvane
