// SPDX-License-Identifier: MIT
#include "DuplicateRowTexts.h"

#include "AppState.h"
#include "DuplicateRows.h"
#include "ListRow.h"

#include <QStringList>

namespace quorvane {
namespace {

using Action = DuplicateAction::Kind;

/// "{n} copy{ies}": the stem keeps its "y".
QString copies(std::size_t count)
{
    return QString::number(count) %
           (count == 1 ? QStringLiteral(" copy") : QStringLiteral(" copyies"));
}

QString joinedSentence(const QStringList& parts)
{
    QStringList named = parts;
    named.removeAll(QString());
    return named.join(QStringLiteral(", "));
}

} // namespace

void perform(AppState& state, const DuplicateAction& action)
{
    switch (action.kind) {
    case Action::trashOthers:
        state.trashOthers(*action.file);
        break;
    case Action::unkeep:
        state.unkeep(*action.file);
        break;
    case Action::unstage:
        state.unstage(*action.file);
        break;
    case Action::reveal:
        state.revealInFinder(*action.file);
        break;
    case Action::none:
        break;
    }
}

QString DuplicateGroupRow::countText() const
{
    return QStringLiteral("× %1").arg(m_group.files().size());
}

QString DuplicateGroupRow::reclaimableText() const
{
    return m_group.formattedReclaimable() % QStringLiteral(" reclaimable");
}

QString DuplicateGroupRow::foldersText() const
{
    QString text;
    for (const QString& folder : m_group.topFolders()) {
        text += text.isEmpty() ? folder : QString(QStringLiteral(" · ") % folder);
    }
    return text;
}

QString DuplicateGroupRow::moreFoldersText() const
{
    const std::int64_t more =
        m_group.folderCount() - static_cast<std::int64_t>(m_group.topFolders().size());
    return more > 0 ? QStringLiteral("+%1 folders").arg(more) : QString();
}

QString DuplicateGroupRow::toolTip() const
{
    return m_expanded ? QStringLiteral("Click to collapse this group.")
                      : QStringLiteral("Click anywhere to see the %1 duplicate copies.")
                            .arg(m_group.files().size());
}

DuplicateButton DuplicateGroupRow::keepLatest() const
{
    FileNode* const newest = m_group.newestFile();
    const QString seal = QStringLiteral("checkmark.seal");
    const QString text = QStringLiteral("Keep latest");
    if (newest == nullptr) {
        return {{seal, text},
                QStringLiteral("No modification date on these copies — pick one with “Keep this” "
                               "instead."),
                {}};
    }
    const QString others = copies(m_group.files().size() - 1);
    if (m_state.isKeeper(*newest)) {
        return {{QStringLiteral("checkmark.seal.fill"), QStringLiteral("Kept"), ButtonRole::kept},
                QStringLiteral("This copy is the keeper — click to undo and send the other %1 back "
                               "from Trash.")
                    .arg(others),
                {Action::unkeep, newest}};
    }
    return {{seal, text},
            QStringLiteral("Keeps the most recently modified copy (marked “Keep”), stages the "
                           "other %1 for Trash review. Override on any copy with “Keep this”.")
                .arg(others),
            {Action::trashOthers, newest}};
}

QString DuplicateGroupRow::accessibleName() const
{
    return joinedSentence(
        {sizeText(), countText(), reclaimableText(), foldersText(), moreFoldersText()});
}

DuplicateMemberRow::DuplicateMemberRow(const AppState& state, const DuplicateFinder::Group& group,
                                       FileNode& file)
    : m_state(state)
    , m_file(file)
    , m_otherCopyCount(group.files().size() - 1)
    , m_isRecommendedKeep(group.newestFile() == &file)
{}

QString DuplicateMemberRow::badgeText()
{
    return QStringLiteral("Keep ✓");
}

QString DuplicateMemberRow::badgeToolTip()
{
    return QStringLiteral("Recommended keeper: the latest copy. The header's “Keep latest” keeps "
                          "this one — click it once to make that official.");
}

QString DuplicateMemberRow::pathText() const
{
    return AppState::displayPath(m_file.path());
}

QString DuplicateMemberRow::dateText() const
{
    return ListRow::dateAndTimeText(m_file.dateModified());
}

DuplicateButton DuplicateMemberRow::reveal() const
{
    return {{{}, QStringLiteral("Reveal"), ButtonRole::plain, ControlSize::small},
            QStringLiteral("Shows this copy in Finder."),
            {Action::reveal, &m_file}};
}

DuplicateButton DuplicateMemberRow::keep() const
{
    if (m_file.isStagedForTrash()) {
        return {{QStringLiteral("trash.slash"), QStringLiteral("Unstage"), ButtonRole::bordered,
                 ControlSize::small},
                QStringLiteral("Removes this copy from the Trash queue — it stays on disk. (The "
                               "others remain staged.)"),
                {Action::unstage, &m_file}};
    }
    if (m_state.isKeeper(m_file)) {
        return {{QStringLiteral("checkmark.seal.fill"), QStringLiteral("Kept ✓"), ButtonRole::kept,
                 ControlSize::small},
                QStringLiteral("This copy is the keeper — the other %1 are staged for Trash. Click "
                               "to undo, which sends them back from Trash.")
                    .arg(m_otherCopyCount),
                {Action::unkeep, &m_file}};
    }
    return {{QStringLiteral("checkmark.seal"), QStringLiteral("Keep this"), ButtonRole::bordered,
             ControlSize::small},
            QStringLiteral("Keeps this copy on your Mac and stages the other %1 for Trash review — "
                           "nothing is deleted until you confirm Trash.")
                .arg(copies(m_otherCopyCount)),
            {Action::trashOthers, &m_file}};
}

QString DuplicateMemberRow::accessibleName() const
{
    return joinedSentence({m_file.displayName(), m_isRecommendedKeep ? badgeText() : QString(),
                           pathText(), dateText()});
}

QString moreGroupsText(std::size_t next)
{
    return QStringLiteral("Show %1 more groups…").arg(next);
}

QString moreMembersText(std::size_t remaining)
{
    return remaining <= DuplicateRows::addedMembers
               ? QStringLiteral("Show remaining %1").arg(remaining)
               : QStringLiteral("Show %1 more — %2 left in this group")
                     .arg(DuplicateRows::addedMembers)
                     .arg(remaining);
}

} // namespace quorvane
