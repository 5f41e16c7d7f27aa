// SPDX-License-Identifier: MIT
#pragma once

#include "Trash.h"

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace quorvane {

/// Moves nothing, keeps what it was asked for and answers as told. Any thread.
class ScriptedTrash final : public Trash
{
public:
    Outcome moveToTrash(const FilePath& path) override
    {
        {
            const std::lock_guard<std::mutex> guard(m_lock);
            m_asked.push_back(path);
        }
        return answer ? answer(path) : Outcome::moved;
    }

    std::optional<Outcome> obstacleTo(const FilePath& path) override
    {
        return obstacle ? obstacle(path) : std::nullopt;
    }

    /// What it was asked to move, in order.
    std::vector<FilePath> asked() const
    {
        const std::lock_guard<std::mutex> guard(m_lock);
        return m_asked;
    }

    /// Called on the thread that asks; everything counts as moved while it is empty. Set it before
    /// the first call.
    std::function<Outcome(const FilePath&)> answer;
    /// Called on the thread that looks; nothing is in the way while it is empty.
    std::function<std::optional<Outcome>(const FilePath&)> obstacle;

private:
    mutable std::mutex m_lock;
    std::vector<FilePath> m_asked;
};

} // namespace quorvane
