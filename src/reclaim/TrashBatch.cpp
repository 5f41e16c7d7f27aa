// SPDX-License-Identifier: MIT
#include "TrashBatch.h"

#include <algorithm>
#include <span>
#include <utility>

namespace quorvane {
namespace {

std::vector<NodePointer> nodesOf(const std::vector<QueueEntry>& entries)
{
    std::vector<NodePointer> nodes;
    nodes.reserve(entries.size());
    for (const QueueEntry& entry : entries) {
        nodes.push_back(entry.node);
    }
    return nodes;
}

bool isOnDiskAsScanned(const FileNode& file)
{
    return !differenceOnDisk(TrashRequest::of(file));
}

bool lacksAKeeper(const LastCopyGuard& guard, std::size_t entry)
{
    const std::span<const std::size_t> groups = guard.groupsOf(entry);
    return std::any_of(groups.begin(), groups.end(), [&guard](std::size_t group) {
        const std::span<const FileNode* const> staying = guard.stayingFiles(group);
        return !guard.isAllStaged(group) &&
               std::none_of(staying.begin(), staying.end(),
                            [](const FileNode* file) { return isOnDiskAsScanned(*file); });
    });
}

QueueCaution obstacleCaution(const QueueEntry& entry, const LastCopyGuard& guard, std::size_t place,
                             const CheckedTrash& door)
{
    QueueCaution caution;
    if (const auto obstacle = door.obstacleTo(entry.request)) {
        caution.kind = QueueCaution::Kind::willStay;
        caution.obstacle = *obstacle;
    } else if (lacksAKeeper(guard, place)) {
        caution.kind = QueueCaution::Kind::noKeeperLeft;
    }
    return caution;
}

/// Gives each group that is staged as a whole to the last of the entries that go. Returns these
/// groups.
std::vector<std::size_t> noteLosses(const LastCopyGuard& guard, std::vector<QueueCaution>& cautions)
{
    std::vector<bool> isNoted(guard.groups()->size(), false);
    std::vector<std::size_t> losses;
    for (std::size_t entry = cautions.size(); entry-- > 0;) {
        QueueCaution& caution = cautions[entry];
        if (caution.kind != QueueCaution::Kind::none) {
            continue;
        }
        for (const std::size_t group : guard.groupsOf(entry)) {
            if (!guard.isAllStaged(group) || isNoted[group]) {
                continue;
            }
            isNoted[group] = true;
            losses.push_back(group);
            if (caution.lostGroups++ == 0) {
                caution.kind = QueueCaution::Kind::takesLastCopy;
                caution.copies = (*guard.groups())[group].files().size();
                caution.example = guard.fileOf(entry, group);
            }
        }
    }
    std::sort(losses.begin(), losses.end());
    return losses;
}

} // namespace

std::vector<QueueEntry> entriesOf(const std::vector<NodePointer>& nodes)
{
    std::vector<QueueEntry> entries;
    entries.reserve(nodes.size());
    for (const NodePointer& node : nodes) {
        entries.push_back({node, TrashRequest::of(*node)});
    }
    return entries;
}

TrashBatch::TrashBatch(std::vector<QueueEntry> entries,
                       std::shared_ptr<const DuplicateFinder::Groups> groups,
                       AcceptedLosses accepted, CheckedTrash door)
    : m_entries(std::move(entries))
    , m_guard(std::move(groups), nodesOf(m_entries))
    , m_accepted(std::move(accepted))
    , m_door(std::move(door))
{}

TrashOutcome TrashBatch::send(std::size_t entry) const
{
    if (!m_guard.mayGo(entry, m_accepted, isOnDiskAsScanned)) {
        return TrashOutcome::lastCopy;
    }
    return m_door.moveToTrash(m_entries[entry].request);
}

const QueueCaution& QueueCautions::of(const FileNode& node) const
{
    static const QueueCaution none;
    const auto found = std::find_if(queue.begin(), queue.end(), [&node](const NodePointer& each) {
        return each.get() == &node;
    });
    return found == queue.end() ? none : cautions[static_cast<std::size_t>(found - queue.begin())];
}

bool QueueCautions::isEmpty() const
{
    return std::all_of(cautions.begin(), cautions.end(), [](const QueueCaution& caution) {
        return caution.kind == QueueCaution::Kind::none;
    });
}

std::optional<QueueCautions>
cautionsOf(const std::vector<QueueEntry>& entries,
           const std::shared_ptr<const DuplicateFinder::Groups>& groups, const CheckedTrash& door,
           const std::function<bool()>& isCancelled)
{
    QueueCautions result;
    result.queue = nodesOf(entries);
    result.cautions.reserve(entries.size());
    const LastCopyGuard guard(groups, result.queue);
    const CheckedTrash sameTable = door.withOneMountTable();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (isCancelled()) {
            return std::nullopt;
        }
        result.cautions.push_back(obstacleCaution(entries[i], guard, i, sameTable));
    }
    result.losses.indices = noteLosses(guard, result.cautions);
    result.losses.groups = guard.groups();
    return result;
}

} // namespace quorvane
