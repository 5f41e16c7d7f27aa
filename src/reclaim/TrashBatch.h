// SPDX-License-Identifier: MIT
#pragma once

#include "CheckedTrash.h"
#include "LastCopyGuard.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quorvane {

/// One entry of the Trash queue: a node, and what it looked like when it was found.
struct QueueEntry
{
    NodePointer node;
    TrashRequest request;
};

/// The requests of the nodes themselves.
std::vector<QueueEntry> entriesOf(const std::vector<NodePointer>& nodes);

/// One confirmed batch on its way to the Trash, sent entry by entry through the door. One thread.
class TrashBatch
{
public:
    /// groups: what the finder found in the tree, null for nothing. accepted: the last copies that
    /// the confirmation has named.
    TrashBatch(std::vector<QueueEntry> entries,
               std::shared_ptr<const DuplicateFinder::Groups> groups, AcceptedLosses accepted,
               CheckedTrash door);

    const std::vector<QueueEntry>& entries() const { return m_entries; }
    /// Moves the entry unless something is in the way, a missing keeper of a copy included.
    TrashOutcome send(std::size_t entry) const;

private:
    std::vector<QueueEntry> m_entries;
    LastCopyGuard m_guard;
    AcceptedLosses m_accepted;
    CheckedTrash m_door;
};

/// What there is to say about an entry of the queue before it is sent.
struct QueueCaution
{
    enum class Kind : std::uint8_t {
        none,
        willStay,      ///< obstacle tells why
        noKeeperLeft,  ///< it stays: the copies that were to be kept are not on disk as found
        takesLastCopy, ///< with it, none of the copies of a file would be left
    };

    Kind kind = Kind::none;
    TrashOutcome obstacle = TrashOutcome::moved; ///< of willStay
    std::size_t lostGroups = 0; ///< of takesLastCopy: files of which nothing would be left
    std::size_t copies = 0;     ///< of takesLastCopy: copies of the first of them
    const FileNode* example =
        nullptr; ///< of takesLastCopy: the first of them, at or below the entry

    friend bool operator==(const QueueCaution&, const QueueCaution&) = default;
};

/// What a look at the disk says about a whole queue. Immutable; any thread. Holds the trees.
struct QueueCautions
{
    std::vector<NodePointer> queue;
    std::vector<QueueCaution> cautions; ///< one for each entry of the queue
    AcceptedLosses losses;              ///< what a yes to these cautions agrees to

    /// For an entry of that queue; none for any other.
    const QueueCaution& of(const FileNode& node) const;
    bool isEmpty() const;
};

/// A copy that is the last one to go stands for its group: of entries that take all copies between
/// them, the one furthest back in the queue has the caution, and entries that stay count for none.
/// Asks the disk, with one table of mounts for all. Blocks; not for the main thread. Absent once
/// isCancelled answers yes.
std::optional<QueueCautions>
cautionsOf(const std::vector<QueueEntry>& entries,
           const std::shared_ptr<const DuplicateFinder::Groups>& groups, const CheckedTrash& door,
           const std::function<bool()>& isCancelled);

} // namespace quorvane
