// SPDX-License-Identifier: MIT
#include "TrashBatch.h"

#include <algorithm>
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

QueueCaution cautionOf(const LastCopyGuard& guard, std::size_t entry)
{
    QueueCaution caution;
    for (const std::size_t group : guard.groupsOf(entry)) {
        if (guard.isAllStaged(group)) {
            if (caution.lostGroups++ == 0) {
                const DuplicateFinder::Group& first = (*guard.groups())[group];
                caution.kind = QueueCaution::Kind::takesLastCopy;
                caution.copies = first.files().size();
                caution.example = first.files().front();
            }
            continue;
        }
        const std::vector<const FileNode*> staying = guard.stayingFiles(group);
        if (std::none_of(staying.begin(), staying.end(),
                         [](const FileNode* file) { return isOnDiskAsScanned(*file); })) {
            return {QueueCaution::Kind::noKeeperLeft, TrashOutcome::lastCopy, 0, 0,
                    staying.front()};
        }
    }
    return caution;
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
        QueueCaution caution = cautionOf(guard, i);
        if (const auto obstacle = sameTable.obstacleTo(entries[i].request)) {
            caution = {QueueCaution::Kind::willStay, *obstacle, 0, 0, nullptr};
        }
        if (caution.kind == QueueCaution::Kind::takesLastCopy) {
            for (const std::size_t group : guard.groupsOf(i)) {
                if (guard.isAllStaged(group)) {
                    result.losses.indices.push_back(group);
                }
            }
        }
        result.cautions.push_back(caution);
    }
    std::vector<std::size_t>& lost = result.losses.indices;
    std::sort(lost.begin(), lost.end());
    lost.erase(std::unique(lost.begin(), lost.end()), lost.end());
    result.losses.groups = guard.groups();
    return result;
}

} // namespace quorvane
