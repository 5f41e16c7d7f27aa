// SPDX-License-Identifier: MIT
#pragma once

#include "MachineFigures.h"

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// Sums of the first line of /proc/stat (proc(5)): waiting for input or output counts as idle, and
/// so does time that a hypervisor gave to others. Zeros for a text that has no such line.
ProcessorTicks parseProcessorTicks(std::string_view stat);

/// The figures of /proc/meminfo (proc(5)). Used is the total less what is available, as free(1) has
/// it; wired is unreclaimable slab, kernel stacks, page tables and locked pages; compressed is what
/// zswap keeps in memory. Missing lines count as zero.
MemoryFigures parseMemory(std::string_view meminfo);

/// Name and number of processors of /proc/cpuinfo; the number is of those that are online.
struct ProcessorDescription
{
    std::string name;
    int count = 0;
};
ProcessorDescription parseProcessors(std::string_view cpuinfo);

/// What one /proc/PID/stat (proc(5)) tells.
struct ProcessStat
{
    std::string name;             ///< between the outermost brackets, whatever it holds
    std::uint64_t cpuTicks = 0;   ///< user and system
    std::uint64_t startTicks = 0; ///< since the machine started
    std::int64_t residentPages = 0;
};
/// Nothing for a text that is cut short.
std::optional<ProcessStat> parseProcessStat(std::string_view stat);

/// Linux's figures, from /proc and /sys or from folders made like them.
class LinuxMachineFigures final : public MachineFigures
{
public:
    using Clock = std::chrono::steady_clock;

    /// Folders without a trailing slash. now stands for the clock that shares are measured by.
    explicit LinuxMachineFigures(std::string proc = "/proc", std::string sys = "/sys",
                                 Clock::time_point (*now)() = &Clock::now);

    ProcessorTicks processorTicks() override;
    MemoryFigures memory() override;
    std::optional<NetworkBytes> networkBytes() override;
    PowerFigures power() override;
    std::vector<ProcessFigures> processes() override;
    std::string processorName() override;
    int processorCount() override;
    std::string programOf(std::int32_t pid) override;

private:
    /// What the last call saw of a process. A number that is used again starts at another time.
    struct Seen
    {
        std::uint64_t startTicks = 0;
        std::uint64_t cpuTicks = 0;
        std::uint64_t round = 0;
    };

    ProcessFigures figuresOf(std::int32_t pid, ProcessStat stat, double elapsedTicks);
    double uptimeTicks();

    std::string m_proc;
    std::string m_sys;
    Clock::time_point (*m_now)();
    std::mutex m_lock; ///< over what follows
    std::map<std::int32_t, Seen> m_seen;
    std::optional<Clock::time_point> m_lastCall;
    std::uint64_t m_round = 0;
    std::uint64_t m_totalMemory = 0;
    double m_uptimeTicks = 0;
};

} // namespace quorvane
