// SPDX-License-Identifier: MIT
#pragma once

#include "Button.h"
#include "Chip.h"
#include "Theme.h"

#include <QColor>
#include <QIcon>
#include <QMetaType>
#include <QString>

#include <optional>
#include <vector>

/// One row of a list as a value. A tool says what its rows show; RowView draws them, moves the
/// focus along them, presses their buttons and tells them to assistive technology.
///
///     Row rowOf(const QuickWin& win, bool isStaged)
///     {
///         Row row;
///         row.symbol = QStringLiteral("folder.fill");
///         row.title = win.name;
///         row.detail = win.detail;
///         row.path = AppState::displayPath(win.path);
///         row.cells = {RowCell::number(win.formattedBytes(), 84)};
///         row.actions = {
///             RowAction::icon(reveal, QStringLiteral("magnifyingglass"), tr("Reveal in Finder")),
///             {.id = stage, .text = isStaged ? tr("Staged") : tr("Stage"),
///              .symbol = QStringLiteral("plus.circle"), .width = 100,
///              .role = isStaged ? ButtonRole::queued : ButtonRole::bordered}};
///         return row;
///     }
///
///     auto* const model = new RowModel(this);
///     model->setRows(count, [this](int i) { return rowOf(m_wins[i], ...); });
///     auto* const view = new RowView(*model, {.height = 74});
///     connect(view, &RowView::actionTriggered, this, [this](const QModelIndex& index, int id)
///     {…});
namespace quorvane {

enum class RowKind {
    item,
    section, ///< heading of the rows that follow: symbol, title, and cells at the right
    more     ///< one button for the whole width, which is actions[0]
};

/// A part of a text in another colour: the match of a search, the folder before a name.
struct RowSpan
{
    qsizetype start = 0;
    qsizetype length = 0;
    ThemeColor color = ThemeColor::accentText;
};

/// A small tinted word behind the title.
struct RowBadge
{
    QString text = {};
    Tint tint = Tint::neutral;
    QString symbol = {}; ///< before the text; empty for none
    bool hasDot = false;
    QString toolTip = {};
};

/// A text in a cell of its own at the right of the words, the first cell leftmost.
struct RowCell
{
    QString text = {};
    QString below = {}; ///< a second line, said less loudly
    int width = 0;      ///< points; 0: as wide as its text
    int stretch = 0;    ///< above 0: shares the free width with the title, which counts as 1
    TextStyle style = TextStyle::caption;
    ThemeColor color = ThemeColor::text2;
    Qt::Alignment alignment = Qt::AlignRight;
    QColor dot = {};             ///< valid: a disc before the text
    bool givesWay = false;       ///< left out where the title would get too narrow
    QString toolTip = {};        ///< the text itself where it is shortened, unless set
    QString accessibleText = {}; ///< the text unless set

    /// A size or another chief number.
    static RowCell number(const QString& text, int width);
    /// What is said less loudly: a number of files, a date.
    static RowCell note(const QString& text, int width);
};

/// A button of a row.
struct RowAction
{
    int id = 0; ///< as the tool counts them; not negative
    QString text = {};
    QString symbol = {}; ///< alone: a button of 30 x 30 without an edge
    QString name = {};   ///< accessible name; the text unless set
    QString toolTip = {};
    int width = 0; ///< points; 0: as wide as it asks for
    ButtonRole role = ButtonRole::bordered;
    ControlSize size = ControlSize::regular;
    bool isEnabled = true;

    /// A symbol alone; the name is its tooltip and its accessible name.
    static RowAction icon(int id, const QString& symbol, const QString& name);
    bool isIcon() const { return text.isEmpty(); }
    QString accessibleName() const { return name.isEmpty() ? text : name; }

    /// What the row's own controls report as their id.
    enum Own { toggled = -1, copied = -2 };
};

struct Row
{
    RowKind kind = RowKind::item;

    // From the left: check box or switch, dot, number, symbol or icon.
    std::optional<bool> isChecked = {}; ///< absent: no check box
    std::optional<bool> isOn = {};      ///< absent: no switch
    QString controlName = {};           ///< of the check box or switch; the title unless set
    QColor dot = {};                    ///< valid: a disc of 10
    QString number = {};                ///< right-aligned before the symbol
    QString symbol = {};
    ThemeColor symbolColor = ThemeColor::accentText;
    QColor symbolTint = {}; ///< valid: instead of symbolColor
    QIcon icon = {};        ///< instead of the symbol
    QSize iconSize = {}; ///< a picture of its own size, with round corners and an edge; else square

    // The words, one below the other; empty lines take no room.
    QString title = {};
    TextStyle titleStyle = TextStyle::row;
    ThemeColor titleColor = ThemeColor::text1;
    int titleWidth = 0; ///< points; 0: what the cells leave
    Qt::TextElideMode titleElide = Qt::ElideMiddle;
    std::vector<RowSpan> titleSpans = {};
    std::vector<RowCell> titleCells = {}; ///< behind the title on its line, left-aligned
    std::vector<RowBadge> badges = {};    ///< behind the title
    QString detail = {};                  ///< a sentence
    ThemeColor detailColor = ThemeColor::text2;
    QString detailTail = {}; ///< behind the detail, never shortened
    QString path = {};
    QString command = {}; ///< in a well, with a button that puts it on the clipboard

    std::vector<RowCell> cells = {};
    std::vector<RowAction> actions = {}; ///< at the right end

    int lineGap = 0; ///< points between the lines of words
    bool isEnabled = true;
    bool isDimmed = false; ///< steps back: text in the third level
    bool isInWell = false; ///< on a darker ground, below an open row

    QString toolTip = {};               ///< the path unless set, or the title where it is shortened
    QString accessibleText = {};        ///< all that the row shows unless set
    QString accessibleDescription = {}; ///< what pressing the row does, where that is not plain

    /// A heading of the rows below it, with a total at the right; 45 high where rows have cards.
    static Row section(const QString& symbol, const QString& title, const QString& total);
    /// A button for the whole width, "Show 400 more…".
    static Row more(int id, const QString& text, ControlSize size = ControlSize::regular);

    /// All texts of the row as one sentence.
    QString describe() const;
};

/// The roles by which a model serves a RowView beside Qt's own. A model without rowHeightRole is
/// asked for nothing but the view's own height.
namespace rowrole {
enum Role {
    row = Qt::UserRole + 0x100, ///< Row
    height                      ///< int, points; the view's own height unless given
};
} // namespace rowrole

} // namespace quorvane

Q_DECLARE_METATYPE(quorvane::Row)
