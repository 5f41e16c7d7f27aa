// SPDX-License-Identifier: MIT
#pragma once

#include "Programs.h"

#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quorvane {

/// Programs that print what they are told to; one that nobody has told anything cannot be started.
class ScriptedPrograms final : public Programs
{
public:
    /// By the first argument. Set before use.
    std::map<std::string, Output> answers;
    std::vector<Running> processes;

    std::vector<Running> running() override { return processes; }
    std::optional<Output> run(std::span<const std::string> arguments, std::chrono::milliseconds,
                              const std::function<bool()>&) override
    {
        const std::lock_guard guard(m_lock);
        m_started.emplace_back(arguments.begin(), arguments.end());
        const auto answer = answers.find(arguments.front());
        return answer == answers.end() ? std::nullopt : std::optional(answer->second);
    }
    /// What was started, in order.
    std::vector<std::vector<std::string>> started() const
    {
        const std::lock_guard guard(m_lock);
        return m_started;
    }

private:
    mutable std::mutex m_lock;
    std::vector<std::vector<std::string>> m_started;
};

} // namespace quorvane
