// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

/// Time that the processors have spent since the machine started, summed over all of them, in
/// ticks.
struct ProcessorTicks
{
    std::uint64_t user = 0;   ///< without what ran at a lowered priority
    std::uint64_t system = 0; ///< the kernel, interrupts included
    std::uint64_t idle = 0;   ///< waiting for a disk included
    std::uint64_t nice = 0;   ///< user time at a lowered priority

    friend bool operator==(const ProcessorTicks&, const ProcessorTicks&) = default;
};

/// Bytes of main memory.
struct MemoryFigures
{
    std::uint64_t total = 0;
    std::uint64_t used = 0;       ///< what programs and the kernel hold and could not give up
    std::uint64_t free = 0;       ///< what holds nothing at all
    std::uint64_t wired = 0;      ///< what cannot be paged out
    std::uint64_t compressed = 0; ///< what holds compressed pages

    friend bool operator==(const MemoryFigures&, const MemoryFigures&) = default;
};

/// Sums of the interfaces' 32-bit counters.
struct NetworkBytes
{
    std::uint64_t received = 0;
    std::uint64_t sent = 0;

    friend bool operator==(const NetworkBytes&, const NetworkBytes&) = default;
};

/// State of the batteries, several added up. A machine without one reads as supplied by the mains.
struct PowerFigures
{
    double percent = 0; ///< 0 to 100
    bool isCharging = false;
    bool onAC = true;
    bool isPresent = false;
    int cycleCount = 0;              ///< of the battery that has most
    double healthPercent = 0;        ///< of the capacity that it was designed for; 0 where unknown
    int timeToEmptyMinutes = 0;      ///< negative where unknown
    int timeToFullChargeMinutes = 0; ///< negative where unknown

    friend bool operator==(const PowerFigures&, const PowerFigures&) = default;
};

/// One process that runs.
struct ProcessFigures
{
    std::int32_t pid = 0;
    std::string name;          ///< as the kernel keeps it, any bytes
    double cpuPercent = 0;     ///< of one processor, since the last call
    double memPercent = 0;     ///< of main memory
    std::int64_t rssBytes = 0; ///< resident
};

/// The machine's live figures. Any thread; every call reads them anew and may block for as long as
/// the system takes. A source that is missing reads as zeros.
class MachineFigures
{
public:
    virtual ~MachineFigures() = default;

    virtual ProcessorTicks processorTicks() = 0;
    virtual MemoryFigures memory() = 0;
    /// Nothing when the interfaces cannot be listed.
    virtual std::optional<NetworkBytes> networkBytes() = 0;
    virtual PowerFigures power() = 0;
    /// Every process, in no particular order. Shares are of the time since the last call; the first
    /// call tells each process's average over its life.
    virtual std::vector<ProcessFigures> processes() = 0;
    /// For example "AMD Ryzen 7"; empty where the system does not tell.
    virtual std::string processorName() = 0;
    virtual int processorCount() = 0;
    /// Path of the program that a process runs; empty when it has ended or belongs to somebody
    /// else.
    virtual std::string programOf(std::int32_t pid) = 0;

    /// The machine that this program runs on; lives as long as the process.
    static MachineFigures& system();
};

} // namespace quorvane
