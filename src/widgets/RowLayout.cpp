// SPDX-License-Identifier: MIT
#include "RowLayout.h"

#include "Painting.h"
#include "Tokens.h"

#include <QCoreApplication>
#include <QFontDatabase>

#include <algorithm>

namespace quorvane {
namespace {

constexpr int dotSide = 10;
constexpr int cellDotGap = 8;
constexpr int numberWidth = 34;
constexpr int badgeGap = 8;
constexpr int badgePadding = 7;
constexpr int badgeSymbol = 10;
constexpr int badgeSymbolGap = 4;
constexpr int badgeDot = 6;
constexpr int badgeDotGap = 5;
constexpr int titleCellGap = 8;
constexpr int commandHeight = 24;
constexpr int commandGap = 5;
constexpr int commandPadding = 9;
constexpr int commandEnd = 2;
constexpr int copyGap = 10;
constexpr int copyHeight = 18;
constexpr int copyPadding = 7;
constexpr int copySymbol = 11;
constexpr int minWordsWidth = 140;
constexpr int moreMargin = 16; ///< clear of the scroll bar, ring and all
constexpr int sectionInset = 4;
constexpr int sectionHeading = 36; ///< at the lower end of the row

QRect middle(int left, int width, int height, const QRect& area)
{
    return {left, area.top() + (area.height() - height) / 2, width, height};
}

int badgeWidth(const RowBadge& badge)
{
    const int symbol = badge.symbol.isEmpty() ? 0 : badgeSymbol + badgeSymbolGap;
    const int dot = badge.hasDot ? badgeDot + badgeDotGap : 0;
    return 2 * badgePadding + symbol + dot + textWidth(TextStyle::label, badge.text);
}

int cellWidth(const RowCell& cell)
{
    const int dot = cell.dot.isValid() ? dotSide + cellDotGap : 0;
    return cell.width > 0 ? cell.width : dot + textWidth(cell.style, cell.text);
}

QSize actionSize(const RowAction& action)
{
    if (action.isIcon()) {
        return {action.width > 0 ? action.width : measure::toolButton, measure::toolButton};
    }
    const QSize own = buttonSize({action.symbol, action.text, action.role, action.size});
    return {std::max(action.width, own.width()), own.height()};
}

/// Lays a row out from both ends towards the middle.
class Layout
{
public:
    Layout(const Row& row, const RowMetrics& metrics, const QRect& area)
        : m_row(row)
        , m_metrics(metrics)
        , m_area(area.adjusted(metrics.inset, 0, -metrics.inset, 0))
        , m_left(m_area.left() + metrics.paddingLeft)
        , m_right(m_area.right() + 1 - metrics.paddingRight)
    {}

    RowPlaces item(int level, bool hasChevron)
    {
        if (m_metrics.hasLevels) {
            m_left += level * m_metrics.levelIndent;
            if (hasChevron) {
                m_places.chevron = middle(m_left, m_metrics.chevronSide, m_area.height(), m_area);
            }
            m_left += m_metrics.chevronSide + m_metrics.chevronGap;
        }
        placeLeading();
        placeActions();
        placeCells();
        placeWords();
        return m_places;
    }

    RowPlaces more()
    {
        const QRect inside = m_area.adjusted(moreMargin, 0, -moreMargin, 0);
        const int height = m_row.actions.empty() ? 0 : actionSize(m_row.actions[0]).height();
        m_places.actions = {middle(inside.left(), inside.width(), height, m_area)};
        return m_places;
    }

    RowPlaces section()
    {
        m_left = m_area.left() + sectionInset;
        m_area.setTop(std::max(m_area.top(), m_area.bottom() + 1 - sectionHeading));
        placeLeading();
        placeCells();
        placeWords();
        return m_places;
    }

private:
    QRect takeLeft(int width, int height, int gap)
    {
        const QRect rect = middle(m_left, width, height, m_area);
        m_left += width + gap;
        return rect;
    }

    void placeLeading()
    {
        if (m_row.isChecked) {
            m_places.control = takeLeft(measure::checkBox, measure::checkBox, m_metrics.gap);
        }
        if (m_row.isOn) {
            m_places.control = takeLeft(measure::switchWidth, measure::switchHeight, m_metrics.gap);
        }
        if (m_row.dot.isValid()) {
            m_places.dot = takeLeft(dotSide, dotSide, m_row.number.isEmpty() ? m_metrics.gap : 0);
        }
        if (!m_row.number.isEmpty()) {
            m_places.number = takeLeft(numberWidth, m_area.height(), spacing::l);
        }
        if (!m_row.icon.isNull() && m_row.iconSize.isValid()) {
            m_places.symbol =
                takeLeft(m_row.iconSize.width(), m_row.iconSize.height(), m_metrics.gap);
        } else if (!m_row.icon.isNull() || !m_row.symbol.isEmpty()) {
            const int side = std::max(m_metrics.symbolSide, m_metrics.symbolTile);
            m_places.symbol = takeLeft(side, side, m_metrics.gap);
            if (m_row.icon.isNull() && m_metrics.symbolTile > 0) {
                m_places.tile = m_places.symbol;
                const int inset = (side - m_metrics.symbolSide) / 2;
                m_places.symbol.adjust(inset, inset, -inset, -inset);
            }
        }
    }

    void placeActions()
    {
        m_places.actions.resize(m_row.actions.size());
        for (std::size_t i = m_row.actions.size(); i-- > 0;) {
            const QSize size = actionSize(m_row.actions[i]);
            m_right -= size.width();
            m_places.actions[i] = middle(m_right, size.width(), size.height(), m_area);
            // Symbols carry room of their own around them.
            const bool isTight =
                i > 0 && m_row.actions[i].isIcon() && m_row.actions[i - 1].isIcon();
            m_right -= isTight ? 0 : m_metrics.gap;
        }
        if (m_row.actions.size() == 1 && m_row.actions[0].isIcon()) {
            m_right += spacing::xs;
        }
    }

    bool isLeftOut(const RowCell& cell, int free) const
    {
        return cell.givesWay && free < minWordsWidth;
    }

    void placeCells()
    {
        const std::vector<RowCell>& cells = m_row.cells;
        std::vector<int> widths;
        int fixed = 0;
        int stretch = m_row.titleWidth > 0 ? 0 : 1;
        for (const RowCell& cell : cells) {
            const std::size_t i = widths.size();
            const bool isChosen = i < m_metrics.cellWidths.size() && m_metrics.cellWidths[i] > 0;
            widths.push_back(isChosen           ? m_metrics.cellWidths[i]
                             : cell.stretch > 0 ? 0
                                                : cellWidth(cell));
            fixed += widths.back() + m_metrics.gap;
            stretch += cell.stretch;
        }
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (isLeftOut(cells[i], m_right - m_left - fixed)) {
                fixed -= widths[i] + m_metrics.gap;
                widths[i] = -m_metrics.gap;
            }
        }
        const int titleWidth = m_row.titleWidth > 0 ? m_row.titleWidth : 0;
        const int free = std::max(0, m_right - m_left - fixed - titleWidth);
        m_places.cells.resize(cells.size());
        for (std::size_t i = cells.size(); i-- > 0;) {
            const int width =
                cells[i].stretch > 0 ? free * cells[i].stretch / std::max(1, stretch) : widths[i];
            m_right -= std::max(0, width);
            if (width > 0) {
                m_places.cells[i] = QRect(m_right, m_area.top(), width, m_area.height());
            }
            m_right -= width < 0 ? 0 : m_metrics.gap;
        }
    }

    void placeWords()
    {
        const int width =
            m_row.titleWidth > 0 ? std::min(m_row.titleWidth, m_right - m_left) : m_right - m_left;
        const QRect words(m_left, m_area.top(), std::max(0, width), m_area.height());
        int height = 0;
        const auto line = [&](bool isThere, TextStyle style) {
            const int own = isThere ? typeMeasure(style).lineHeight : 0;
            height += own == 0 ? 0 : own + (height > 0 ? m_row.lineGap : 0);
            return own;
        };
        const int title = line(!m_row.title.isEmpty(), m_row.titleStyle);
        const int detail = line(!m_row.detail.isEmpty(), TextStyle::caption);
        const int path = line(!m_row.path.isEmpty(), TextStyle::path);
        height += m_row.command.isEmpty() ? 0 : commandGap + commandHeight;
        int top = words.top() + (words.height() - height) / 2;
        const auto place = [&](int own) {
            const QRect rect(words.left(), top, words.width(), own);
            top += own == 0 ? 0 : own + m_row.lineGap;
            return own == 0 ? QRect() : rect;
        };
        placeTitleLine(place(title));
        placeDetail(place(detail));
        m_places.path = place(path);
        if (!m_row.command.isEmpty()) {
            placeCommand(words, top - m_row.lineGap + commandGap);
        }
    }

    /// The title has what its cells and badges leave.
    void placeTitleLine(const QRect& line)
    {
        int behind = 0;
        for (const RowCell& cell : m_row.titleCells) {
            behind += titleCellGap + cellWidth(cell);
        }
        for (const RowBadge& badge : m_row.badges) {
            behind += badgeGap + badgeWidth(badge);
        }
        const bool isColumn = m_row.titleWidth > 0 && !m_row.titleCells.empty();
        const int wanted = isColumn ? m_row.titleWidth : textWidth(m_row.titleStyle, m_row.title);
        const bool isAlone = behind == 0;
        const int free = isColumn ? m_right - m_left : line.width();
        const int width =
            isAlone ? line.width() : std::clamp(wanted, 0, std::max(0, free - behind));
        m_places.title = QRect(line.left(), line.top(), width, line.height());
        int left = line.left() + width;
        for (const RowCell& cell : m_row.titleCells) {
            m_places.titleCells.emplace_back(left + titleCellGap, line.top(), cellWidth(cell),
                                             line.height());
            left += titleCellGap + cellWidth(cell);
        }
        for (const RowBadge& badge : m_row.badges) {
            const int own = badgeWidth(badge);
            const int end = std::min(left + badgeGap + own, m_right);
            m_places.badges.push_back(
                middle(left + badgeGap, std::max(0, end - left - badgeGap), measure::badge, line));
            left = end;
        }
    }

    void placeDetail(const QRect& line)
    {
        QRect whole = line;
        if (!line.isEmpty() && !m_row.titleCells.empty()) {
            whole.setRight(m_right - 1);
        }
        m_places.detail = whole;
        if (whole.isEmpty() || m_row.detailTail.isEmpty()) {
            return;
        }
        const int tail = textWidth(TextStyle::caption, m_row.detailTail);
        const int width = std::clamp(textWidth(TextStyle::caption, m_row.detail), 0,
                                     std::max(0, whole.width() - tail - titleCellGap));
        m_places.detail.setWidth(width);
        m_places.detailTail = QRect(whole.left() + width + titleCellGap, whole.top(),
                                    std::min(tail, whole.width()), whole.height());
    }

    void placeCommand(const QRect& words, int top)
    {
        const int copy =
            2 * copyPadding + copySymbol + badgeDotGap + textWidth(TextStyle::label, copyText());
        const QFontMetrics metrics(commandFont());
        const int own =
            commandPadding + metrics.horizontalAdvance(m_row.command) + copyGap + copy + commandEnd;
        const int width = std::min(own, words.width());
        m_places.command = QRect(words.left(), top, width, commandHeight);
        m_places.copy = QRect(words.left() + width - commandEnd - copy,
                              top + (commandHeight - copyHeight) / 2, copy, copyHeight);
    }

    const Row& m_row;
    const RowMetrics& m_metrics;
    QRect m_area;
    int m_left;
    int m_right;
    RowPlaces m_places;
};

} // namespace

QString copyText()
{
    return QCoreApplication::translate("RowView", "Copy");
}

QFont commandFont()
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPixelSize(typeMeasure(TextStyle::path).size);
    return fixed;
}

RowPlaces layOutRow(const Row& row, const RowMetrics& metrics, const QRect& area, int level,
                    bool hasChevron)
{
    Layout layout(row, metrics, area);
    switch (row.kind) {
    case RowKind::more:
        return layout.more();
    case RowKind::section:
        return layout.section();
    case RowKind::item:
        break;
    }
    return layout.item(level, hasChevron);
}

std::vector<RowPart> partsOf(const Row& row)
{
    std::vector<RowPart> parts;
    if (row.kind != RowKind::item) {
        return parts;
    }
    if (row.isChecked || row.isOn) {
        parts.push_back({RowAction::toggled, 0});
    }
    if (!row.command.isEmpty()) {
        parts.push_back({RowAction::copied, 0});
    }
    for (std::size_t i = 0; i < row.actions.size(); ++i) {
        parts.push_back({row.actions[i].id, static_cast<int>(i)});
    }
    return parts;
}

QRect rectOf(const RowPart& part, const RowPlaces& places)
{
    if (part.id == RowAction::toggled) {
        return places.control;
    }
    return part.id == RowAction::copied ? places.copy
                                        : places.actions[static_cast<std::size_t>(part.place)];
}

} // namespace quorvane
