// SPDX-License-Identifier: MIT
#include "DuplicatesModel.h"

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

/// A row of the first level has 0 for its id, one below it the group's place and 1.
constexpr quintptr topId = 0;

std::size_t placeOf(const QModelIndex& index)
{
    return static_cast<std::size_t>(index.row());
}

std::size_t groupPlace(const QModelIndex& index)
{
    return index.internalId() == topId ? placeOf(index) : index.internalId() - 1;
}

} // namespace

DuplicatesModel::DuplicatesModel(const AppState& state, QObject* parent)
    : RowSource(parent)
    , m_state(state)
{
    measureColumns();
}

DuplicatesModel::GroupsPointer DuplicatesModel::setGroups(GroupsPointer groups)
{
    beginResetModel();
    GroupsPointer old = std::exchange(m_groups, std::move(groups));
    m_visibleCounts.clear();
    measureColumns();
    endResetModel();
    return old;
}

void DuplicatesModel::measureColumns()
{
    m_widths = duplicaterows::measure(m_state);
}

bool DuplicatesModel::isGroup(const QModelIndex& index) const
{
    return index.isValid() && index.internalId() == topId && placeOf(index) < shownGroups();
}

const DuplicateFinder::Group* DuplicatesModel::groupOf(const QModelIndex& index) const
{
    const bool isThere =
        index.isValid() && (index.internalId() != topId || placeOf(index) < shownGroups());
    return isThere ? &(*m_groups)[groupPlace(index)] : nullptr;
}

FileNode* DuplicatesModel::fileOf(const QModelIndex& index) const
{
    if (!index.isValid() || index.internalId() == topId) {
        return nullptr;
    }
    const std::size_t group = groupPlace(index);
    return placeOf(index) < shownMembers(group) ? (*m_groups)[group].files()[placeOf(index)]
                                                : nullptr;
}

void DuplicatesModel::setOpen(const QModelIndex& index, bool open)
{
    const std::size_t group = placeOf(index);
    const QString& id = (*m_groups)[group].id();
    if (open) {
        m_open.insert(id);
    } else {
        m_open.remove(id);
        if (m_visibleCounts.count(group) > 0) {
            Q_EMIT layoutAboutToBeChanged();
            const QModelIndexList held = persistentIndexList();
            for (const QModelIndex& row : held) {
                if (row.internalId() == group + 1 && placeOf(row) >= firstMembers) {
                    changePersistentIndex(row, {});
                }
            }
            m_visibleCounts.erase(group);
            Q_EMIT layoutChanged();
        }
    }
    Q_EMIT dataChanged(index, index);
}

bool DuplicatesModel::isOpen(std::size_t group) const
{
    return m_open.contains((*m_groups)[group].id());
}

std::size_t DuplicatesModel::shownGroups() const
{
    return std::min(m_visibleLimit, m_groups->size());
}

std::size_t DuplicatesModel::shownMembers(std::size_t group) const
{
    const auto found = m_visibleCounts.find(group);
    const std::size_t limit = found == m_visibleCounts.end() ? firstMembers : found->second;
    return std::min(limit, (*m_groups)[group].files().size());
}

std::size_t DuplicatesModel::remainingMembers(std::size_t group) const
{
    return (*m_groups)[group].files().size() - shownMembers(group);
}

void DuplicatesModel::showMore(const QModelIndex& moreRow)
{
    Q_EMIT layoutAboutToBeChanged();
    if (moreRow.internalId() == topId) {
        m_visibleLimit += addedGroups;
    } else {
        const std::size_t group = groupPlace(moreRow);
        m_visibleCounts[group] = shownMembers(group) + addedMembers;
    }
    Q_EMIT layoutChanged();
}

QModelIndex DuplicatesModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent)) {
        return {};
    }
    return createIndex(row, column,
                       parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : topId);
}

QModelIndex DuplicatesModel::parent(const QModelIndex& index) const
{
    return !index.isValid() || index.internalId() == topId
               ? QModelIndex()
               : createIndex(static_cast<int>(groupPlace(index)), 0, topId);
}

int DuplicatesModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid()) {
        const bool hasMore = shownGroups() < m_groups->size();
        return static_cast<int>(shownGroups()) + (hasMore ? 1 : 0);
    }
    if (!isGroup(parent) || parent.column() > 0) {
        return 0;
    }
    const std::size_t group = placeOf(parent);
    return static_cast<int>(shownMembers(group)) + (remainingMembers(group) > 0 ? 1 : 0);
}

Row DuplicatesModel::row(const QModelIndex& index) const
{
    const DuplicateFinder::Group* const group = groupOf(index);
    if (group == nullptr) {
        return duplicaterows::moreGroupsRow(
            std::min(m_groups->size() - shownGroups(), addedGroups));
    }
    if (index.internalId() == topId) {
        return duplicaterows::groupRow(m_state, *group, isOpen(placeOf(index)), m_widths);
    }
    FileNode* const file = fileOf(index);
    return file == nullptr
               ? duplicaterows::moreMembersRow(remainingMembers(groupPlace(index)), addedMembers)
               : duplicaterows::memberRow(m_state, *group, *file, m_widths);
}

int DuplicatesModel::height(const QModelIndex& index) const
{
    if (index.internalId() == topId) {
        return isGroup(index) ? groupHeight : moreGroupsHeight;
    }
    return fileOf(index) == nullptr ? moreMembersHeight : memberHeight;
}

} // namespace quorvane
