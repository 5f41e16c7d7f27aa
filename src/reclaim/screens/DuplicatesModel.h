// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateRows.h"
#include "RowModel.h"

#include <QSet>

#include <map>
#include <memory>

namespace quorvane {

/// The groups of identical files, each with its copies below, as far as the user has asked for
/// them: a list of any size shows 500 groups at first, and 50 copies of each. Main thread.
class DuplicatesModel : public RowSource
{
    Q_OBJECT

public:
    using GroupsPointer = std::shared_ptr<const DuplicateFinder::Groups>;

    static constexpr std::size_t firstGroups = 500;
    static constexpr std::size_t addedGroups = 400;
    static constexpr std::size_t firstMembers = 50;
    static constexpr std::size_t addedMembers = 200;

    static constexpr int groupHeight = 60;
    static constexpr int memberHeight = 48;
    static constexpr int moreMembersHeight = 44;
    static constexpr int moreGroupsHeight = 54;

    DuplicatesModel(const AppState& state, QObject* parent);

    /// Not null. Returns the old groups: their tree may be large, and is let go elsewhere.
    GroupsPointer setGroups(GroupsPointer groups);
    const GroupsPointer& groups() const { return m_groups; }
    /// The group of a group's row or of one below it; null for the button at the end.
    const DuplicateFinder::Group* groupOf(const QModelIndex& index) const;
    /// Null for anything but a copy.
    FileNode* fileOf(const QModelIndex& index) const;

    /// What the rows of open groups say. A closed group falls back to its first copies.
    void setOpen(const QModelIndex& index, bool open);
    /// Whether the group has ever been opened and not closed since, whatever groups were on show in
    /// between.
    bool isOpen(std::size_t group) const;

    std::size_t shownGroups() const;
    std::size_t shownMembers(std::size_t group) const;
    /// Brings what the button row says; the row's index is then that of the first row that came.
    void showMore(const QModelIndex& moreRow);
    /// Takes the widths of columns from the fonts again.
    void measureColumns();

    QModelIndex index(int row, int column = 0, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    Row row(const QModelIndex& index) const override;
    int height(const QModelIndex& index) const override;

private:
    std::size_t remainingMembers(std::size_t group) const;
    /// One of the groups that show, not the button below them.
    bool isGroup(const QModelIndex& index) const;

    const AppState& m_state;
    GroupsPointer m_groups = std::make_shared<const DuplicateFinder::Groups>();
    duplicaterows::Widths m_widths;
    QSet<QString> m_open; ///< ids; the groups need not be on show
    std::size_t m_visibleLimit = firstGroups;
    std::map<std::size_t, std::size_t> m_visibleCounts; ///< of groups with more than the first
};

} // namespace quorvane
