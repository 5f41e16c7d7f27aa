// SPDX-License-Identifier: MIT
#include "DuplicateRows.h"

#include "AppState.h"
#include "ListRow.h"
#include "Painting.h"

#include <QCoreApplication>

#include <algorithm>
#include <initializer_list>

namespace quorvane::duplicaterows {
namespace {

constexpr int minKeepLatestWidth = 118;
constexpr int minKeepWidth = 104;
constexpr int minSizeWidth = 76;
constexpr int minCountWidth = 26;
constexpr int revealWidth = 72;

QString tr(const char* text)
{
    return QCoreApplication::translate("DuplicatesView", text);
}

/// "{n} copy{ies}": the stem keeps its "y".
QString copies(std::size_t count)
{
    return QString::number(count) %
           (count == 1 ? QStringLiteral(" copy") : QStringLiteral(" copyies"));
}

RowAction sealButton(int id, const QString& text, ControlSize size)
{
    RowAction action;
    action.id = id;
    action.text = text;
    action.symbol = QStringLiteral("checkmark.seal");
    action.size = size;
    return action;
}

void showKept(RowAction& action, const QString& text)
{
    action.text = text;
    action.symbol = QStringLiteral("checkmark.seal.fill");
    action.role = ButtonRole::kept;
}

int widestButton(int minWidth, ControlSize size, std::initializer_list<QString> texts)
{
    int widest = minWidth;
    for (const QString& text : texts) {
        const ButtonFace face{QStringLiteral("checkmark.seal"), text, ButtonRole::bordered, size};
        widest = std::max(widest, buttonSize(face).width());
    }
    return widest;
}

RowAction keepLatestButton(const AppState& state, const DuplicateFinder::Group& group)
{
    FileNode* const newest = group.newestFile();
    RowAction action = sealButton(keepLatest, tr("Keep latest"), ControlSize::regular);
    if (newest == nullptr) {
        action.isEnabled = false;
        action.toolTip =
            tr("No modification date on these copies — pick one with “Keep this” instead.");
        return action;
    }
    const QString others = copies(group.files().size() - 1);
    if (state.isKeeper(*newest)) {
        showKept(action, tr("Kept"));
        action.toolTip = tr("This copy is the keeper — click to undo and send the other %1 back "
                            "from Trash.")
                             .arg(others);
    } else {
        action.toolTip = tr("Keeps the most recently modified copy (marked “Keep”), stages the "
                            "other %1 for Trash review. Override on any copy with “Keep this”.")
                             .arg(others);
    }
    return action;
}

RowAction keepButton(const AppState& state, const FileNode& file, std::size_t others)
{
    RowAction action = sealButton(keep, tr("Keep this"), ControlSize::small);
    if (file.isStagedForTrash()) {
        action.text = tr("Unstage");
        action.symbol = QStringLiteral("trash.slash");
        action.toolTip = tr("Removes this copy from the Trash queue — it stays on disk. (The "
                            "others remain staged.)");
    } else if (state.isKeeper(file)) {
        showKept(action, tr("Kept ✓"));
        action.toolTip = tr("This copy is the keeper — the other %1 are staged for Trash. Click "
                            "to undo, which sends them back from Trash.")
                             .arg(others);
    } else {
        action.toolTip = tr("Keeps this copy on your Mac and stages the other %1 for Trash review "
                            "— nothing is deleted until you confirm Trash.")
                             .arg(copies(others));
    }
    return action;
}

} // namespace

Widths measure(const AppState& state)
{
    Widths widths;
    widths.size =
        std::max(minSizeWidth, textWidth(TextStyle::heading, QStringLiteral("1023.9 MB")));
    widths.count =
        std::max(minCountWidth, textWidth(TextStyle::body,
                                          QStringLiteral("× %1").arg(state.mostDuplicateCopies())));
    widths.keepLatest =
        widestButton(minKeepLatestWidth, ControlSize::regular, {tr("Keep latest"), tr("Kept")});
    widths.keep = widestButton(minKeepWidth, ControlSize::small,
                               {tr("Unstage"), tr("Kept ✓"), tr("Keep this")});
    widths.date = textWidth(TextStyle::caption, QStringLiteral("Mmm 30, 2000 at 10:00 PM"));
    return widths;
}

Row groupRow(const AppState& state, const DuplicateFinder::Group& group, bool isOpen,
             const Widths& widths)
{
    Row row;
    row.title = group.formattedSize();
    row.titleStyle = TextStyle::heading;
    row.titleWidth = widths.size;
    row.titleCells = {
        {.text = QStringLiteral("× %1").arg(group.files().size()),
         .width = widths.count,
         .style = TextStyle::body,
         .color = ThemeColor::text1},
        {.text = tr("%1 reclaimable").arg(group.formattedReclaimable()), .style = TextStyle::body}};
    QStringList folders;
    for (const QString& folder : group.topFolders()) {
        folders.push_back(folder);
    }
    row.detail = folders.join(QStringLiteral(" · "));
    row.detailColor = ThemeColor::text3;
    const auto more = group.folderCount() - static_cast<std::int64_t>(group.topFolders().size());
    row.detailTail = more > 0 ? tr("+%1 folders").arg(more) : QString();
    row.lineGap = 3;
    row.actions = {keepLatestButton(state, group)};
    row.actions[0].width = widths.keepLatest;
    row.toolTip =
        isOpen ? tr("Click to collapse this group.")
               : tr("Click anywhere to see the %1 duplicate copies.").arg(group.files().size());
    row.accessibleDescription = row.toolTip;
    return row;
}

Row memberRow(const AppState& state, const DuplicateFinder::Group& group, FileNode& file,
              const Widths& widths)
{
    Row row;
    row.symbol = QStringLiteral("doc.fill");
    row.symbolColor = ThemeColor::text3;
    row.title = file.displayName();
    // A copy that is to go steps back behind those that stay.
    row.titleColor = file.isStagedForTrash() ? ThemeColor::text2 : ThemeColor::text1;
    row.path = AppState::displayPath(file.path());
    row.lineGap = 1;
    row.isInWell = true;
    if (group.newestFile() == &file) {
        row.badges = {{.text = tr("Keep ✓"), .tint = Tint::green, .toolTip = recommendedToolTip()}};
    }
    if (group.isSameFile(file)) {
        row.badges.push_back({.text = tr("same file"),
                              .symbol = QStringLiteral("link"),
                              .toolTip = tr("Another copy in this group is the same file under "
                                            "another name. Moving this one to Trash frees no "
                                            "space.")});
    }
    if (group.isBrokenOff(file)) {
        row.badges.push_back({.text = tr("not fully read"),
                              .tint = Tint::orange,
                              .symbol = QStringLiteral("exclamationmark.triangle"),
                              .toolTip = tr("Reading this copy broke off, so only its beginning is "
                                            "known to match. It is not kept or staged with the "
                                            "others.")});
    }
    row.cells = {RowCell::note(ListRow::dateAndTimeText(file.dateModified()), widths.date)};
    row.cells[0].givesWay = true;
    row.actions = {{.id = reveal,
                    .text = tr("Reveal"),
                    .toolTip = tr("Shows this copy in Finder."),
                    .width = revealWidth,
                    .role = ButtonRole::plain,
                    .size = ControlSize::small},
                   keepButton(state, file, group.files().size() - 1)};
    row.actions[1].width = widths.keep;
    if (group.isBrokenOff(file) && !file.isStagedForTrash()) {
        row.actions[1].isEnabled = false;
        row.actions[1].toolTip =
            tr("This copy could not be read in full, so it cannot stand for the others.");
    }
    return row;
}

QString recommendedToolTip()
{
    return tr("Recommended keeper: the latest copy. The header's “Keep latest” keeps this one — "
              "click it once to make that official.");
}

Row moreGroupsRow(std::size_t next)
{
    return Row::more(showMore, tr("Show %1 more groups…").arg(next));
}

Row moreMembersRow(std::size_t remaining, std::size_t step)
{
    Row row = Row::more(showMore,
                        remaining <= step
                            ? tr("Show remaining %1").arg(remaining)
                            : tr("Show %1 more — %2 left in this group").arg(step).arg(remaining),
                        ControlSize::small);
    row.isInWell = true;
    return row;
}

void pressKeepLatest(AppState& state, const DuplicateFinder::Group& group)
{
    FileNode* const newest = group.newestFile();
    if (newest == nullptr) {
        return;
    }
    if (state.isKeeper(*newest)) {
        state.unkeep(*newest);
    } else {
        state.trashOthers(*newest);
    }
}

void pressKeep(AppState& state, FileNode& file)
{
    if (file.isStagedForTrash()) {
        state.unstage(file);
    } else if (state.isKeeper(file)) {
        state.unkeep(file);
    } else {
        state.trashOthers(file);
    }
}

} // namespace quorvane::duplicaterows
