// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quorvane {

/// Other programs: which of them run, and starting one to read what it prints. Any thread.
class Programs
{
public:
    struct Running
    {
        std::string executable;   ///< path of the file that runs; empty where it is not ours to see
        std::string controlGroup; ///< path of its control group on Linux; else empty
    };

    struct Output
    {
        int exitCode = -1; ///< -1 when a signal ended it
        std::string text;  ///< standard output; standard error is dropped
    };

    virtual ~Programs() = default;

    /// The processes that the user may look into. A snapshot.
    virtual std::vector<Running> running() = 0;

    /// Starts a program, found by the PATH, in the C.UTF-8 locale with nothing to read, and waits
    /// until it has ended. Absent when it cannot be started; when it runs longer than the timeout,
    /// prints more than 16 MiB, or is cancelled it is ended, and the result is absent, too.
    virtual std::optional<Output> run(std::span<const std::string> arguments,
                                      std::chrono::milliseconds timeout,
                                      const std::function<bool()>& isCancelled) = 0;

    /// The system's own; lives as long as the process.
    static Programs& system();
};

} // namespace quorvane
