// SPDX-License-Identifier: MIT
#include "DuplicateIndex.h"

#include "CheckedMath.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace quorvane {

DuplicateIndex::DuplicateIndex(std::shared_ptr<const DuplicateFinder::Groups> groups)
    : m_groups(std::move(groups))
{
    if (!m_groups) {
        return;
    }
    std::size_t files = 0;
    for (const DuplicateFinder::Group& group : *m_groups) {
        const std::size_t copies = group.files().size();
        files += copies;
        m_mostCopies = std::max(m_mostCopies, copies);
        m_extraCopies += static_cast<std::int64_t>(copies) - 1;
        m_reclaimableBytes = checkedAdd(m_reclaimableBytes, group.reclaimableBytes(),
                                        "DuplicateIndex::reclaimableBytes");
    }
    m_entries.reserve(files);
    for (std::size_t i = 0; i < m_groups->size(); ++i) {
        for (const FileNode* const file : (*m_groups)[i].files()) {
            m_entries.push_back({file->id(), i});
        }
    }
    std::sort(m_entries.begin(), m_entries.end(), [](const Entry& a, const Entry& b) {
        return std::tie(a.fileId, a.group) < std::tie(b.fileId, b.group);
    });
}

const DuplicateFinder::Group* DuplicateIndex::find(std::int64_t fileId) const
{
    const auto entry =
        std::lower_bound(m_entries.begin(), m_entries.end(), fileId,
                         [](const Entry& entry, std::int64_t id) { return entry.fileId < id; });
    return entry == m_entries.end() || entry->fileId != fileId ? nullptr
                                                               : &(*m_groups)[entry->group];
}

} // namespace quorvane
