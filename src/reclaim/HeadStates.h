// SPDX-License-Identifier: MIT
#pragma once

#include "FileDigester.h"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace quorvane::DuplicateFinder {

/// What the heads of large files came to, by the digest of their two ends, which is that of one
/// head alone. Keeps a bounded number, about four megabytes; files beyond are read from the start.
class HeadStates
{
public:
    static constexpr std::size_t mostKept = 8192;

    /// Any thread.
    void keep(const Digest& ends, std::unique_ptr<const Sha256::State> head)
    {
        const std::lock_guard guard(m_lock);
        if (m_heads.size() < mostKept) {
            m_heads.try_emplace(ends, std::move(head));
        }
    }

    /// Absent where none is kept. Any thread, once nothing is added any more.
    const Sha256::State* find(const Digest& ends) const
    {
        const auto found = m_heads.find(ends);
        return found == m_heads.end() ? nullptr : found->second.get();
    }

    /// Keeps nothing any more.
    void forget() { m_heads.clear(); }

private:
    std::mutex m_lock;
    std::map<Digest, std::unique_ptr<const Sha256::State>> m_heads;
};

} // namespace quorvane::DuplicateFinder
