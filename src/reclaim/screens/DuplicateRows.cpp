// SPDX-License-Identifier: MIT
#include "DuplicateRows.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quorvane {

using Kind = DuplicateRow::Kind;

void DuplicateRows::setGroups(GroupsPointer groups)
{
    m_groups = std::move(groups);
    m_bodies.clear();
    showBodies(0);
}

void DuplicateRows::showMoreGroups()
{
    const std::size_t first = shownGroups();
    m_visibleLimit += addedGroups;
    showBodies(first);
}

void DuplicateRows::showBodies(std::size_t first)
{
    for (std::size_t i = first; !m_expanded.isEmpty() && i < shownGroups(); ++i) {
        if (isExpanded(i)) {
            m_bodies[i].openness = 1;
        }
    }
}

bool DuplicateRows::isExpanded(std::size_t group) const
{
    return m_expanded.contains((*m_groups)[group].id());
}

void DuplicateRows::toggle(std::size_t group)
{
    const QString& id = (*m_groups)[group].id();
    if (m_expanded.remove(id)) {
        m_bodies[group].visibleCount = firstMembers;
    } else {
        m_expanded.insert(id);
        m_bodies.try_emplace(group);
    }
}

double DuplicateRows::openness(std::size_t group) const
{
    const auto body = m_bodies.find(group);
    return body == m_bodies.end() ? 0 : body->second.openness;
}

void DuplicateRows::setOpenness(std::size_t group, double openness)
{
    if (openness <= 0 && !isExpanded(group)) {
        m_bodies.erase(group);
    } else {
        m_bodies[group].openness = openness;
    }
}

std::size_t DuplicateRows::shownGroups() const
{
    return std::min(m_visibleLimit, m_groups->size());
}

std::size_t DuplicateRows::nextGroups() const
{
    return std::min(m_groups->size() - shownGroups(), addedGroups);
}

std::size_t DuplicateRows::visibleCount(std::size_t group) const
{
    const auto body = m_bodies.find(group);
    return body == m_bodies.end() ? firstMembers : body->second.visibleCount;
}

std::size_t DuplicateRows::shownMembers(std::size_t group) const
{
    return std::min(visibleCount(group), (*m_groups)[group].files().size());
}

std::size_t DuplicateRows::remainingMembers(std::size_t group) const
{
    return (*m_groups)[group].files().size() - shownMembers(group);
}

void DuplicateRows::showMoreMembers(std::size_t group)
{
    m_bodies[group].visibleCount += addedMembers;
}

int DuplicateRows::memberRows(std::size_t group) const
{
    return static_cast<int>(shownMembers(group)) + (remainingMembers(group) > 0 ? 1 : 0);
}

DuplicateRow DuplicateRows::bodyRow(std::size_t group, std::size_t place) const
{
    const bool isMember = place < shownMembers(group);
    return {isMember ? Kind::member : Kind::moreMembers, group, isMember ? place : 0};
}

int DuplicateRows::count() const
{
    int rows = static_cast<int>(shownGroups()) + (nextGroups() > 0 ? 1 : 0);
    for (const auto& entry : m_bodies) {
        rows += isExpanded(entry.first) ? memberRows(entry.first) : 0;
    }
    return rows;
}

std::optional<DuplicateRow> DuplicateRows::at(int index) const
{
    int inBodies = 0;
    for (const auto& entry : m_bodies) {
        const std::size_t group = entry.first;
        const int header = static_cast<int>(group) + inBodies;
        if (index <= header) {
            break;
        }
        const int rows = isExpanded(group) ? memberRows(group) : 0;
        if (index <= header + rows) {
            return bodyRow(group, static_cast<std::size_t>(index - header - 1));
        }
        inBodies += rows;
    }
    const int group = index - inBodies;
    if (group < 0 || index >= count()) {
        return std::nullopt;
    }
    const auto place = static_cast<std::size_t>(group);
    return place < shownGroups() ? DuplicateRow{Kind::group, place, 0}
                                 : DuplicateRow{Kind::moreGroups, 0, 0};
}

int DuplicateRows::indexOf(const DuplicateRow& row) const
{
    if (row.kind == Kind::moreGroups) {
        return count() - 1;
    }
    int index = static_cast<int>(row.group);
    for (const auto& entry : m_bodies) {
        if (entry.first >= row.group) {
            break;
        }
        index += isExpanded(entry.first) ? memberRows(entry.first) : 0;
    }
    if (row.kind == Kind::member) {
        index += 1 + static_cast<int>(row.member);
    } else if (row.kind == Kind::moreMembers) {
        index += 1 + static_cast<int>(shownMembers(row.group));
    }
    return index;
}

bool DuplicateRows::contains(const DuplicateRow& row) const
{
    if (row.kind == Kind::moreGroups) {
        return nextGroups() > 0;
    }
    if (row.group >= shownGroups()) {
        return false;
    }
    switch (row.kind) {
    case Kind::member:
        return isExpanded(row.group) && row.member < shownMembers(row.group);
    case Kind::moreMembers:
        return isExpanded(row.group) && remainingMembers(row.group) > 0;
    default:
        return true;
    }
}

int DuplicateRows::heightOf(const DuplicateRow& row)
{
    switch (row.kind) {
    case Kind::member:
        return memberHeight;
    case Kind::moreMembers:
        return moreMembersHeight;
    case Kind::moreGroups:
        return moreGroupsHeight;
    case Kind::group:
        break;
    }
    return groupHeight;
}

int DuplicateRows::bodyHeight(std::size_t group, const Body& body) const
{
    const int full = static_cast<int>(shownMembers(group)) * memberHeight +
                     (remainingMembers(group) > 0 ? moreMembersHeight : 0);
    return body.openness >= 1
               ? full
               : static_cast<int>(std::lround(body.openness * std::min(full, m_movingHeight)));
}

int DuplicateRows::height() const
{
    int height = static_cast<int>(shownGroups()) * groupHeight;
    for (const auto& [group, body] : m_bodies) {
        height += bodyHeight(group, body);
    }
    return height + (nextGroups() > 0 ? moreGroupsHeight : 0);
}

int DuplicateRows::top(const DuplicateRow& row) const
{
    if (row.kind == Kind::moreGroups) {
        return height() - moreGroupsHeight;
    }
    int top = static_cast<int>(row.group) * groupHeight;
    for (const auto& [group, body] : m_bodies) {
        if (group >= row.group) {
            break;
        }
        top += bodyHeight(group, body);
    }
    if (row.kind == Kind::member) {
        top += groupHeight + static_cast<int>(row.member) * memberHeight;
    } else if (row.kind == Kind::moreMembers) {
        top += groupHeight + static_cast<int>(shownMembers(row.group)) * memberHeight;
    }
    return top;
}

int DuplicateRows::bodyBottom(std::size_t group) const
{
    const auto body = m_bodies.find(group);
    return top({Kind::group, group, 0}) + groupHeight +
           (body == m_bodies.end() ? 0 : bodyHeight(group, body->second));
}

std::optional<DuplicateRow> DuplicateRows::rowAt(int y) const
{
    if (y < 0) {
        return std::nullopt;
    }
    int inBodies = 0;
    for (const auto& [group, body] : m_bodies) {
        const int start = static_cast<int>(group + 1) * groupHeight + inBodies;
        if (y < start) {
            break;
        }
        const int height = bodyHeight(group, body);
        if (y < start + height) {
            return bodyRow(group, static_cast<std::size_t>((y - start) / memberHeight));
        }
        inBodies += height;
    }
    const auto group = static_cast<std::size_t>((y - inBodies) / groupHeight);
    if (group < shownGroups()) {
        return DuplicateRow{Kind::group, group, 0};
    }
    return nextGroups() > 0 && y < height() ? std::optional(DuplicateRow{Kind::moreGroups, 0, 0})
                                            : std::nullopt;
}

} // namespace quorvane
