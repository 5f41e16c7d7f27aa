// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <system_error>
#include <thread>
#include <vector>

namespace quorvane {

/// At least 1.
inline std::size_t processorCount()
{
    return std::max(std::thread::hardware_concurrency(), 1U);
}

/// Runs the work once on each of so many threads, the calling one among them, and returns when all
/// have ended. At the system's limit of threads fewer run, so the work has to share itself out.
inline void runOnWorkers(std::size_t workers, const std::function<void()>& work)
{
    std::vector<std::thread> threads;
    try {
        while (threads.size() + 1 < workers) {
            threads.emplace_back(work);
        }
    } catch (const std::system_error&) {
        // Those that there are do it all.
    }
    work();
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace quorvane
