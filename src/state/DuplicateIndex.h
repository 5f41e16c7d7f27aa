// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quorvane {

/// Tells which group a file is in, by a sorted table with one entry for each file of the groups,
/// and what the groups come to. Made along with them, so that none of this has to walk tens of
/// thousands of groups on the main thread. Immutable; any thread.
class DuplicateIndex
{
public:
    /// Holds the groups, which may be null.
    explicit DuplicateIndex(std::shared_ptr<const DuplicateFinder::Groups> groups);

    const std::shared_ptr<const DuplicateFinder::Groups>& groups() const { return m_groups; }
    /// The first group that has a file of that id; null for none.
    const DuplicateFinder::Group* find(std::int64_t fileId) const;

    /// Copies beyond the first of each group.
    std::int64_t extraCopies() const { return m_extraCopies; }
    /// Bytes that these copies take. A sum beyond 64 bits ends the program.
    std::int64_t reclaimableBytes() const { return m_reclaimableBytes; }
    /// Files of the largest group; 0 without one.
    std::size_t mostCopies() const { return m_mostCopies; }

private:
    struct Entry
    {
        std::int64_t fileId;
        std::size_t group;
    };

    std::shared_ptr<const DuplicateFinder::Groups> m_groups;
    std::vector<Entry> m_entries;
    std::int64_t m_extraCopies = 0;
    std::int64_t m_reclaimableBytes = 0;
    std::size_t m_mostCopies = 0;
};

} // namespace quorvane
