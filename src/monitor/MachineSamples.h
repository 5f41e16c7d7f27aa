// SPDX-License-Identifier: MIT
#pragma once

#include "MachineFigures.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// Ticks summed over all processors since the machine started. total also holds the nice ticks,
/// which have no field of their own.
struct CPUSample
{
    std::uint64_t user = 0;
    std::uint64_t system = 0;
    std::uint64_t idle = 0;
    std::uint64_t total = 0;

    /// Share of user and system in the total, 0 to 100; 0 for a total of 0.
    double usagePercent() const;

    friend bool operator==(const CPUSample&, const CPUSample&) = default;
};

/// Main memory in bytes.
struct MemorySample
{
    std::uint64_t totalBytes = 0;
    std::uint64_t usedBytes = 0;
    std::uint64_t freeBytes = 0;
    std::uint64_t wiredBytes = 0;
    std::uint64_t compressedBytes = 0;

    /// 0 to 100; 0 for a total of 0.
    double usedPercent() const;

    friend bool operator==(const MemorySample&, const MemorySample&) = default;
};

struct ProcessSample
{
    std::int32_t pid = 0;
    std::string name; ///< any bytes
    double cpuPercent = 0;
    double memPercent = 0;
    std::int64_t rssBytes = 0;

    QString formattedCPU() const;    ///< "12.5%"
    QString formattedMemory() const; ///< "1.5 GB"

    friend bool operator==(const ProcessSample&, const ProcessSample&) = default;
};

struct NetRateSample
{
    double rxBytesPerSec = 0;
    double txBytesPerSec = 0;

    QString formattedRX() const; ///< rateText and "/s"
    QString formattedTX() const;

    /// "1.5 G", "1.5 M", "12 K" or "512 B": powers of 1024, the last unit alone names bytes.
    static QString rateText(double bytes);

    friend bool operator==(const NetRateSample&, const NetRateSample&) = default;
};

struct BatterySample
{
    double percent = 0; ///< 0 to 100
    bool isCharging = false;
    bool onAC = true;
    bool isPresent = false;
    int cycleCount = 0;
    double healthPercent = 0;        ///< not above 0 where unknown
    int timeToEmptyMinutes = 0;      ///< below 1 where unknown
    int timeToFullChargeMinutes = 0; ///< below 1 where unknown or full

    QString statusText() const;
    QString healthText() const; ///< "91%", or a dash
    /// Hours and two-digit minutes; below an hour the minutes stand before ":00".
    QString timeRemainingText() const;

    friend bool operator==(const BatterySample&, const BatterySample&) = default;
};

/// Turns the interfaces' counters into rates since the last reading. Any thread.
class NetworkMeter
{
public:
    using Clock = std::chrono::steady_clock;
    /// Two readings that follow each other faster count as this far apart.
    static constexpr std::chrono::duration<double> minElapsed{0.05};

    /// Zeros for the first reading, for none, and for one of two zeros, which is not remembered. A
    /// sum that went down is taken for a 32-bit counter that wrapped.
    NetRateSample rates(const std::optional<NetworkBytes>& bytes, Clock::time_point now);

private:
    struct Reading
    {
        NetworkBytes bytes;
        Clock::time_point time;
    };

    std::mutex m_netLock;
    std::optional<Reading> m_last;
};

} // namespace quorvane
