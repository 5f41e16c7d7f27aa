// SPDX-License-Identifier: MIT
#pragma once

#include "DriveSample.h"
#include "FilePath.h"
#include "MachineSamples.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quorvane {

class FileSystemCalls;
class Programs;

/// Readings of the machine. Any thread but the main one: each call asks the system anew and may
/// block. Nothing here runs by itself.
struct SystemMonitor
{
    /// What a list of processes is cut by.
    enum class ProcessOrder : std::uint8_t { cpu, memory };
    static constexpr std::size_t defaultProcessLimit = 12;

    /// One reading of everything that the monitor shows.
    struct Sample
    {
        CPUSample cpu;
        MemorySample memory;
        NetRateSample network;
        BatterySample battery;
        std::vector<ProcessSample> processes;
    };

    /// Capacity of the volume that holds the folder above url (statvfs(3): blocks, and blocks open
    /// to the user). Zeros when it cannot be read.
    static DriveSample driveUsage(FileSystemCalls& calls, const FilePath& url);

    /// Counters since the machine started: there is no memory of the last call.
    static CPUSample cpuUsage(MachineFigures& machine);
    static MemorySample memoryUsage(MachineFigures& machine);
    /// Rates since the last call of any caller in the process; zeros at first.
    static NetRateSample networkSample(MachineFigures& machine);
    static BatterySample batterySample(MachineFigures& machine);
    /// The first so many by share of a processor, or by resident size; equal ones by process id.
    /// From ps(1), started through programs, where the machine lists none.
    static std::vector<ProcessSample> topProcesses(MachineFigures& machine,
                                                   std::size_t limit = defaultProcessLimit,
                                                   ProcessOrder order = ProcessOrder::cpu,
                                                   Programs* programs = nullptr);
    /// The same by share of a processor from what ps(1) prints under the C locale, for systems
    /// without a list of their own: its shares are averages over a process's life. Waits for ps;
    /// empty when it cannot be started.
    static std::vector<ProcessSample> topProcesses(Programs& programs,
                                                   std::size_t limit = defaultProcessLimit);
    /// What "ps -o pid,comm,%cpu,%mem,rss" prints (ps(1)) under the C locale, by share of a
    /// processor, cut to limit. Lines that do not fit the columns are left out: the heading, and
    /// names with a blank.
    static std::vector<ProcessSample> parseProcesses(std::string_view text, std::size_t limit);
    /// "{processor} • {n} Cores".
    static QString chipSummary(MachineFigures& machine);
    static Sample sample(MachineFigures& machine, ProcessOrder order = ProcessOrder::cpu);
};

} // namespace quorvane
