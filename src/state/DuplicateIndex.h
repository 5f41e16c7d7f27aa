// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quorvane {

/// Tells which group a file is in: a sorted table with one entry for each file of the groups.
/// Immutable; any thread.
class DuplicateIndex
{
public:
    /// Holds the groups, which may be null.
    explicit DuplicateIndex(std::shared_ptr<const DuplicateFinder::Groups> groups);

    const std::shared_ptr<const DuplicateFinder::Groups>& groups() const { return m_groups; }
    /// The first group that has a file of that id; null for none.
    const DuplicateFinder::Group* find(std::int64_t fileId) const;

private:
    struct Entry
    {
        std::int64_t fileId;
        std::size_t group;
    };

    std::shared_ptr<const DuplicateFinder::Groups> m_groups;
    std::vector<Entry> m_entries;
};

} // namespace quorvane
