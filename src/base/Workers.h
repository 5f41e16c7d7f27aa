// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace quorvane {

/// At least 1.
inline std::size_t processorCount()
{
    return std::max(std::thread::hardware_concurrency(), 1U);
}

/// Runs the work once on each of so many threads, the calling one among them, and returns when all
/// have ended. At the system's limit of threads, or without memory for one more, fewer run, so the
/// work has to share itself out. What it throws on any of them is thrown to the caller, the first
/// of several, once all have ended.
inline void runOnWorkers(std::size_t workers, const std::function<void()>& work)
{
    std::mutex lock;
    std::exception_ptr fault;
    const auto guarded = [&] {
        try {
            work();
        } catch (...) {
            const std::lock_guard guard(lock);
            fault = fault ? fault : std::current_exception();
        }
    };
    std::vector<std::thread> threads;
    try {
        threads.reserve(workers);
        while (threads.size() + 1 < workers) {
            threads.emplace_back(guarded);
        }
    } catch (const std::exception&) {
        // Those that there are do it all.
    }
    guarded();
    for (std::thread& thread : threads) {
        thread.join();
    }
    if (fault) {
        std::rethrow_exception(fault);
    }
}

} // namespace quorvane
