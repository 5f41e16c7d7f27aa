// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace quorvane {

/// What kept a generator from making something, from whichever of its threads came first.
class FirstFault
{
public:
    /// Takes the reason from errno.
    void note(const std::string& place);
    bool isNoted() const { return m_isNoted; }
    /// Once the threads have ended.
    const std::optional<std::string>& message() const { return m_message; }

private:
    std::atomic<bool> m_isNoted{false};
    std::mutex m_lock;
    std::optional<std::string> m_message;
};

/// Runs the work on a few threads, this one among them, and returns when all of them have ended.
/// Each takes numbers from the counter that it is given.
void runOnSomeThreads(const std::function<void(std::atomic<std::size_t>& next)>& work);

/// Lets fill make entries in a folder in which nothing is yet, by the folder's descriptor. What
/// kept it from that, if anything.
std::optional<std::string>
fillEmptyFolder(const FilePath& folder,
                const std::function<std::optional<std::string>(int descriptor)>& fill);

} // namespace quorvane
