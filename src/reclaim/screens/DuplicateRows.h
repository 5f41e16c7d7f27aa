// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"

#include <QSet>
#include <QString>

#include <cstddef>
#include <map>
#include <memory>
#include <optional>

namespace quorvane {

/// One row of the list of groups.
struct DuplicateRow
{
    enum class Kind {
        group,
        member,
        moreMembers, ///< the button below the members of a group that has more
        moreGroups   ///< the button at the end of the list
    };

    Kind kind = Kind::group;
    std::size_t group = 0;  ///< index in the list of groups
    std::size_t member = 0; ///< index in the group's files

    friend bool operator==(const DuplicateRow&, const DuplicateRow&) = default;
};

/// Which rows the list has and where they lie, from the top of the list downwards in points. Only
/// opened groups are noted one by one, so that each question costs their number at most, however
/// many groups and copies there are. A plain value.
class DuplicateRows
{
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

    /// Not null. A group is open if one of its id ever was and has not been closed since, whatever
    /// groups were on show in between.
    void setGroups(GroupsPointer groups);
    const GroupsPointer& groups() const { return m_groups; }
    const DuplicateFinder::Group& group(std::size_t index) const { return (*m_groups)[index]; }
    FileNode& file(const DuplicateRow& row) const { return *group(row.group).files()[row.member]; }

    const QSet<QString>& expanded() const { return m_expanded; }
    bool isExpanded(std::size_t group) const;
    /// Opens a closed group; closes an open one, whose visible count falls back to the first.
    void toggle(std::size_t group);
    /// How far a group's body shows, 0 to 1; not the same as whether it is expanded while it moves.
    double openness(std::size_t group) const;
    void setOpenness(std::size_t group, double openness);
    /// A body that is opening or closing never takes more than this.
    void setMovingHeight(int height) { m_movingHeight = height; }

    std::size_t visibleLimit() const { return m_visibleLimit; }
    std::size_t shownGroups() const;
    /// How many groups the button at the end brings; 0 without a button.
    std::size_t nextGroups() const;
    void showMoreGroups();

    std::size_t visibleCount(std::size_t group) const;
    std::size_t shownMembers(std::size_t group) const;
    std::size_t remainingMembers(std::size_t group) const;
    void showMoreMembers(std::size_t group);

    /// Number of rows, of which those of closing groups are none.
    int count() const;
    /// Absent beyond the last row.
    std::optional<DuplicateRow> at(int index) const;
    int indexOf(const DuplicateRow& row) const;
    bool contains(const DuplicateRow& row) const;

    int height() const;
    int top(const DuplicateRow& row) const;
    static int heightOf(const DuplicateRow& row);
    /// The row across the line y; absent below the last one.
    std::optional<DuplicateRow> rowAt(int y) const;
    /// Where the part of a group's body ends that shows.
    int bodyBottom(std::size_t group) const;

private:
    struct Body
    {
        std::size_t visibleCount = firstMembers;
        double openness = 0;
    };

    /// Opens the bodies of those expanded groups that come on show, from the first of them on.
    void showBodies(std::size_t first);
    int bodyHeight(std::size_t group, const Body& body) const;
    int memberRows(std::size_t group) const;
    DuplicateRow bodyRow(std::size_t group, std::size_t place) const;

    GroupsPointer m_groups = std::make_shared<const DuplicateFinder::Groups>();
    QSet<QString> m_expanded;             ///< ids; the groups need not be on show
    std::map<std::size_t, Body> m_bodies; ///< of groups that are open, opening or closing
    std::size_t m_visibleLimit = firstGroups;
    int m_movingHeight = 1000;
};

} // namespace quorvane
