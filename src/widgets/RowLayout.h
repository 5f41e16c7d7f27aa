// SPDX-License-Identifier: MIT
#pragma once

#include "Row.h"

#include <QMargins>
#include <QRect>

#include <vector>

namespace quorvane {

/// What the rows of one list have in common; lengths in points.
struct RowMetrics
{
    int height = 48;
    int paddingLeft = 16;
    int paddingRight = 16;
    int gap = 12; ///< between the parts of a row
    int symbolSide = 16;
    int symbolTile = 0; ///< above 0: the symbol stands in the middle of a tile of this side
    int lineGap = 0;    ///< between the lines of words

    bool hasLevels = false; ///< rows open and close by a chevron
    int chevronSide = 11;
    int chevronGap = 8; ///< behind the chevron
    int levelIndent = 19;

    /// Widths of cells that the user has chosen; 0 or absent: the cell's own.
    std::vector<int> cellWidths = {};

    bool hasSeparators = true;
    /// Above 0: rows keep this far from the list's sides, and their grounds have round corners.
    int inset = 0;
    /// The rows between two headings stand on a card of their own. Else the list stands on a card,
    /// and only clips its rows to the corners.
    bool hasOwnCards = false;
    /// Corners of the card that the list stands in, if it reaches into them.
    bool clipsTop = true;
    bool clipsBottom = true;
};

/// Where the parts of a row lie, in the coordinates of the row's rectangle. Empty for what the row
/// does not show.
struct RowPlaces
{
    QRect chevron;
    QRect control; ///< check box or switch
    QRect dot;
    QRect number;
    QRect tile; ///< ground of the symbol
    QRect symbol;
    QRect title;
    QRect detail;
    QRect detailTail;
    QRect path;
    QRect command;
    QRect copy;
    std::vector<QRect> titleCells;
    std::vector<QRect> badges;
    std::vector<QRect> cells;
    std::vector<QRect> actions;
};

/// level counts from 0. Main thread.
RowPlaces layOutRow(const Row& row, const RowMetrics& metrics, const QRect& area, int level,
                    bool hasChevron);

/// The controls of a row that the focus stops at, from left to right: the row itself comes first
/// and is not among them.
struct RowPart
{
    int id = 0;    ///< RowAction::Own or the id of the action
    int place = 0; ///< index in actions; meaningless for the row's own controls

    friend bool operator==(const RowPart&, const RowPart&) = default;
};
std::vector<RowPart> partsOf(const Row& row);
QRect rectOf(const RowPart& part, const RowPlaces& places);
/// The font of a command, and the text of the button in its well.
QFont commandFont();
QString copyText();

} // namespace quorvane
