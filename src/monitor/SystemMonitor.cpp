// SPDX-License-Identifier: MIT
#include "SystemMonitor.h"

#include "ByteFormatter.h"
#include "FileSystemCalls.h"
#include "Programs.h"
#include "Text.h"

#include <QByteArray>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace quorvane {
namespace {

/// ps takes some tens of milliseconds.
constexpr std::chrono::seconds psTimeout{10};

QString formatted(std::uint64_t bytes)
{
    constexpr std::uint64_t maxBytes = std::numeric_limits<std::int64_t>::max();
    return ByteFormatter::string(static_cast<std::int64_t>(std::min(bytes, maxBytes)), 1);
}

std::vector<std::string_view> piecesOf(std::string_view line)
{
    constexpr std::string_view blanks = " \t";
    std::vector<std::string_view> pieces;
    for (std::size_t at = line.find_first_not_of(blanks); at != std::string_view::npos;) {
        const std::size_t end = std::min(line.find_first_of(blanks, at), line.size());
        pieces.push_back(line.substr(at, end - at));
        at = line.find_first_not_of(blanks, end);
    }
    return pieces;
}

/// The whole text as a number.
template<class Number>
bool read(std::string_view text, Number& value)
{
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

bool readLine(std::string_view line, ProcessSample& process)
{
    const std::vector<std::string_view> pieces = piecesOf(line);
    std::int64_t kibibytes = 0;
    if (pieces.size() < 5 || !read(pieces[0], process.pid) ||
        !read(pieces[2], process.cpuPercent) || !read(pieces[3], process.memPercent) ||
        !read(pieces[4], kibibytes) || !std::isfinite(process.cpuPercent) ||
        !std::isfinite(process.memPercent)) {
        return false;
    }
    process.name = pieces[1];
    return !__builtin_mul_overflow(kibibytes, std::int64_t{1024}, &process.rssBytes);
}

} // namespace

double DriveSample::usedPercent() const
{
    return totalBytes == 0
               ? 0
               : static_cast<double>(usedBytes()) / static_cast<double>(totalBytes) * 100;
}

QString DriveSample::formattedFree() const
{
    return formatted(freeBytes);
}

QString DriveSample::formattedTotal() const
{
    return formatted(totalBytes);
}

DriveSample SystemMonitor::driveUsage(FileSystemCalls& calls, const FilePath& url)
{
    VolumeCapacity capacity;
    if (!calls.volumeCapacity(url.parent().bytes().c_str(), capacity)) {
        return {};
    }
    return {capacity.totalBytes, capacity.availableBytes};
}

CPUSample SystemMonitor::cpuUsage(MachineFigures& machine)
{
    const ProcessorTicks ticks = machine.processorTicks();
    return {ticks.user, ticks.system, ticks.idle,
            ticks.user + ticks.system + ticks.idle + ticks.nice};
}

MemorySample SystemMonitor::memoryUsage(MachineFigures& machine)
{
    const MemoryFigures memory = machine.memory();
    return {memory.total, memory.used, memory.free, memory.wired, memory.compressed};
}

NetRateSample SystemMonitor::networkSample(MachineFigures& machine)
{
    static NetworkMeter meter;
    const NetworkMeter::Clock::time_point now = NetworkMeter::Clock::now();
    return meter.rates(machine.networkBytes(), now);
}

BatterySample SystemMonitor::batterySample(MachineFigures& machine)
{
    const PowerFigures power = machine.power();
    return {power.percent,
            power.isCharging,
            power.onAC,
            power.isPresent,
            power.cycleCount,
            power.healthPercent,
            power.timeToEmptyMinutes,
            power.timeToFullChargeMinutes};
}

std::vector<ProcessSample> SystemMonitor::topProcesses(MachineFigures& machine, std::size_t limit,
                                                       ProcessOrder order, Programs* programs)
{
    std::vector<ProcessFigures> all = machine.processes();
    const auto comesFirst = [order](const ProcessFigures& left, const ProcessFigures& right) {
        const auto byMemory = [](const ProcessFigures& process) {
            return std::pair(-process.rssBytes, process.pid);
        };
        const auto byShare = [](const ProcessFigures& process) {
            return std::pair(-process.cpuPercent, process.pid);
        };
        return order == ProcessOrder::memory ? byMemory(left) < byMemory(right)
                                             : byShare(left) < byShare(right);
    };
    // A machine that runs this program has one process at least.
    if (all.empty()) {
        Programs& ps = programs != nullptr ? *programs : Programs::system();
        for (ProcessSample& process : topProcesses(ps, std::numeric_limits<std::size_t>::max())) {
            all.push_back({process.pid, std::move(process.name), process.cpuPercent,
                           process.memPercent, process.rssBytes});
        }
    }
    const std::size_t count = std::min(limit, all.size());
    std::partial_sort(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count), all.end(),
                      comesFirst);
    std::vector<ProcessSample> result;
    result.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        ProcessFigures& process = all[i];
        result.push_back({process.pid, std::move(process.name), process.cpuPercent,
                          process.memPercent, process.rssBytes});
    }
    return result;
}

std::vector<ProcessSample> SystemMonitor::topProcesses(Programs& programs, std::size_t limit)
{
    // Decimal points, whatever the user's locale.
    static const std::vector<std::string> command{
        "/usr/bin/env", "LC_ALL=C", "/bin/ps", "-Aceo", "pid,comm,%cpu,%mem,rss", "-r"};
    const std::optional<Programs::Output> output = programs.run(command, psTimeout, {});
    return output ? parseProcesses(output->text, limit) : std::vector<ProcessSample>();
}

std::vector<ProcessSample> SystemMonitor::parseProcesses(std::string_view text, std::size_t limit)
{
    std::vector<ProcessSample> result;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        ProcessSample process;
        if (readLine(text.substr(0, end), process)) {
            result.push_back(std::move(process));
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    std::stable_sort(result.begin(), result.end(),
                     [](const ProcessSample& left, const ProcessSample& right) {
                         return left.cpuPercent > right.cpuPercent;
                     });
    result.resize(std::min(result.size(), limit));
    return result;
}

QString SystemMonitor::chipSummary(MachineFigures& machine)
{
    return displayText(machine.processorName()).trimmed() % QStringLiteral(" • ") %
           QString::number(machine.processorCount()) % QLatin1String(" Cores");
}

SystemMonitor::Sample SystemMonitor::sample(MachineFigures& machine, ProcessOrder order)
{
    Sample sample;
    sample.cpu = cpuUsage(machine);
    sample.memory = memoryUsage(machine);
    sample.network = networkSample(machine);
    sample.battery = batterySample(machine);
    sample.processes = topProcesses(machine, defaultProcessLimit, order);
    return sample;
}

} // namespace quorvane
