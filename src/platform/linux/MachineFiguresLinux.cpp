// SPDX-License-Identifier: MIT
#include "MachineFiguresLinux.h"

#include <dirent.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <linux/if_link.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <utility>

namespace quorvane {
namespace {

constexpr std::uint64_t kibibyte = 1024;

/// The front of a file of /proc or /sys, in a buffer that is used again from file to file.
class SmallFile
{
public:
    /// Empty when it cannot be read. Valid until the next call.
    std::string_view read(int folder, const char* path)
    {
        const int file = openat(folder, path, O_RDONLY | O_CLOEXEC);
        if (file < 0) {
            return {};
        }
        std::size_t size = 0;
        while (size < maxBytes) {
            if (m_bytes.size() == size) {
                m_bytes.resize(std::max<std::size_t>(size * 2, 4096));
            }
            const ssize_t count = ::read(file, m_bytes.data() + size, m_bytes.size() - size);
            if (count <= 0) {
                break;
            }
            size += static_cast<std::size_t>(count);
        }
        close(file);
        return std::string_view(m_bytes).substr(0, size);
    }
    std::string_view read(const std::string& path) { return read(AT_FDCWD, path.c_str()); }

private:
    /// The lines that count stand at the front, but for the list of processors.
    static constexpr std::size_t maxBytes = std::size_t{4} << 20;
    std::string m_bytes;
};

std::string_view nextLine(std::string_view& text)
{
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\n");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\n") - first + 1);
}

/// The next word of the text as a number; 0 for anything else.
template<class Number>
Number takeNumber(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    Number value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    text.remove_prefix(std::min(text.find_first_of(" \t\n"), text.size()));
    return value;
}

/// The sum, or the largest number where it does not fit: foreign text may hold anything.
std::uint64_t cappedSum(std::uint64_t left, std::uint64_t right)
{
    std::uint64_t sum = 0;
    return __builtin_add_overflow(left, right, &sum) ? std::numeric_limits<std::uint64_t>::max()
                                                     : sum;
}

std::uint64_t bytesOfKibibytes(std::uint64_t count)
{
    std::uint64_t bytes = 0;
    return __builtin_mul_overflow(count, kibibyte, &bytes) ? 0 : bytes;
}

struct CloseFolder
{
    void operator()(DIR* folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

/// One battery of /sys/class/power_supply, in microwatt-hours and microwatts (the kernel's
/// Documentation/ABI/testing/sysfs-class-power).
struct Battery
{
    double now = 0;
    double full = 0;
    double design = 0;
    double rate = 0;     ///< into or out of it
    double percent = -1; ///< of its own word; negative where it has none
    int cycles = 0;
    bool isCharging = false;
    bool isDischarging = false;
};

/// The attributes of one supply.
class PowerSupply
{
public:
    PowerSupply(SmallFile& file, std::string folder)
        : m_file(file)
        , m_folder(std::move(folder))
    {}

    std::string text(const char* name) const
    {
        return std::string(trimmed(m_file.read(m_folder + '/' + name)));
    }
    /// 0 where it is missing.
    double number(const char* name) const
    {
        const std::string value = text(name);
        std::int64_t result = 0;
        std::from_chars(value.data(), value.data() + value.size(), result);
        return std::abs(static_cast<double>(result));
    }
    bool isMachineBattery() const
    {
        // A mouse or a headset has a battery too, and says so.
        return text("type") == "Battery" && text("scope") != "Device" && text("present") != "0";
    }
    /// Mains, or a USB supply that feeds the machine.
    bool isOnline() const
    {
        const std::string type = text("type");
        return (type == "Mains" || type.starts_with("USB")) && text("online") == "1";
    }

    Battery battery() const
    {
        Battery battery;
        const std::string status = text("status");
        battery.isCharging = status == "Charging";
        battery.isDischarging = status == "Discharging";
        battery.cycles = static_cast<int>(std::min(number("cycle_count"), 1e6));
        battery.percent = text("capacity").empty() ? -1 : std::min(number("capacity"), 100.0);
        if (number("energy_full") > 0) {
            battery.now = number("energy_now");
            battery.full = number("energy_full");
            battery.design = number("energy_full_design");
            battery.rate = number("power_now");
            return battery;
        }
        // Charge is told in microampere-hours: with the voltage it can be added to other batteries.
        double volts = number("voltage_min_design") / 1e6;
        volts = volts > 0 ? volts : number("voltage_now") / 1e6;
        volts = volts > 0 ? volts : 1;
        battery.now = number("charge_now") * volts;
        battery.full = number("charge_full") * volts;
        battery.design = number("charge_full_design") * volts;
        battery.rate = number("current_now") * volts;
        return battery;
    }

private:
    SmallFile& m_file;
    std::string m_folder;
};

int minutes(double amount, double rate)
{
    constexpr double maxMinutes = 100 * 24 * 60;
    return rate > 0 ? static_cast<int>(std::min(amount / rate * 60, maxMinutes)) : -1;
}

PowerFigures addedUp(const std::vector<Battery>& batteries, bool isMainsOnline)
{
    PowerFigures power;
    Battery sum;
    double percentSum = 0;
    int percentCount = 0;
    for (const Battery& battery : batteries) {
        sum.now += battery.now;
        sum.full += battery.full;
        // One that does not tell its design would make the others look worn out.
        sum.design += battery.design > 0 ? battery.design : battery.full;
        sum.rate += battery.rate;
        sum.isCharging = sum.isCharging || battery.isCharging;
        sum.isDischarging = sum.isDischarging || battery.isDischarging;
        sum.cycles = std::max(sum.cycles, battery.cycles);
        if (battery.percent >= 0) {
            percentSum += battery.percent;
            ++percentCount;
        }
    }
    if (sum.full > 0) {
        power.isPresent = true;
        power.percent = std::min(sum.now / sum.full * 100, 100.0);
    } else if (percentCount > 0) {
        power.isPresent = true;
        power.percent = percentSum / percentCount;
    }
    const bool isDesignKnown =
        std::any_of(batteries.begin(), batteries.end(),
                    [](const Battery& battery) { return battery.design > 0; });
    power.healthPercent = isDesignKnown && sum.design > 0 ? sum.full / sum.design * 100 : 0;
    power.cycleCount = sum.cycles;
    power.isCharging = sum.isCharging;
    power.onAC = isMainsOnline || !sum.isDischarging;
    power.timeToEmptyMinutes = power.isPresent ? minutes(sum.now, sum.rate) : 0;
    power.timeToFullChargeMinutes =
        power.isPresent ? minutes(std::max(sum.full - sum.now, 0.0), sum.rate) : 0;
    return power;
}

bool isNumber(const char* name)
{
    return *name != '\0' &&
           std::string_view(name).find_first_not_of("0123456789") == std::string_view::npos;
}

} // namespace

ProcessorTicks parseProcessorTicks(std::string_view stat)
{
    while (!stat.empty()) {
        std::string_view line = nextLine(stat);
        if (!line.starts_with("cpu ")) {
            continue;
        }
        line.remove_prefix(4);
        std::array<std::uint64_t, 8> ticks{};
        for (std::uint64_t& value : ticks) {
            value = takeNumber<std::uint64_t>(line);
        }
        const auto [user, nice, system, idle, wait, interrupts, softInterrupts, stolen] = ticks;
        return {user, cappedSum(system, cappedSum(interrupts, softInterrupts)),
                cappedSum(idle, cappedSum(wait, stolen)), nice};
    }
    return {};
}

MemoryFigures parseMemory(std::string_view meminfo)
{
    std::uint64_t available = 0;
    std::uint64_t reclaimable = 0;
    bool isAvailableTold = false;
    MemoryFigures memory;
    while (!meminfo.empty()) {
        std::string_view line = nextLine(meminfo);
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const std::string_view name = line.substr(0, colon);
        line.remove_prefix(colon + 1);
        const std::uint64_t bytes = bytesOfKibibytes(takeNumber<std::uint64_t>(line));
        if (name == "MemTotal") {
            memory.total = bytes;
        } else if (name == "MemFree") {
            memory.free = bytes;
        } else if (name == "MemAvailable") {
            available = bytes;
            isAvailableTold = true;
        } else if (name == "Buffers" || name == "Cached" || name == "SReclaimable") {
            reclaimable = cappedSum(reclaimable, bytes);
        } else if (name == "SUnreclaim" || name == "KernelStack" || name == "PageTables" ||
                   name == "Mlocked") {
            memory.wired = cappedSum(memory.wired, bytes);
        } else if (name == "Zswap") {
            memory.compressed = bytes;
        }
    }
    // Kernels before 3.14 leave the estimate to the reader.
    available = isAvailableTold ? available : cappedSum(memory.free, reclaimable);
    memory.used = memory.total - std::min(available, memory.total);
    return memory;
}

ProcessorDescription parseProcessors(std::string_view cpuinfo)
{
    ProcessorDescription description;
    std::string board;
    while (!cpuinfo.empty()) {
        const std::string_view line = nextLine(cpuinfo);
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const std::string_view name = trimmed(line.substr(0, colon));
        const std::string_view value = trimmed(line.substr(colon + 1));
        if (name == "processor") {
            ++description.count;
        } else if (name == "model name" && description.name.empty()) {
            description.name = value;
        } else if ((name == "Model" || name == "Hardware") && board.empty()) {
            board = value; // where the processors have no name of their own, as on ARM
        }
    }
    if (description.name.empty()) {
        description.name = board;
    }
    return description;
}

std::optional<ProcessStat> parseProcessStat(std::string_view stat)
{
    // The name stands in brackets and may hold blanks, brackets and newlines itself.
    const std::size_t open = stat.find('(');
    const std::size_t close = stat.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
        return std::nullopt;
    }
    ProcessStat result;
    result.name = stat.substr(open + 1, close - open - 1);
    std::string_view rest = stat.substr(close + 1);
    // Fields 3 to 24 of proc(5), of which the 3rd is a letter.
    constexpr int firstField = 3;
    constexpr int userField = 14;
    constexpr int systemField = 15;
    constexpr int startField = 22;
    constexpr int residentField = 24;
    for (int field = firstField; field <= residentField; ++field) {
        if (trimmed(rest).empty()) {
            return std::nullopt;
        }
        if (field == userField || field == systemField) {
            result.cpuTicks = cappedSum(result.cpuTicks, takeNumber<std::uint64_t>(rest));
        } else if (field == startField) {
            result.startTicks = takeNumber<std::uint64_t>(rest);
        } else if (field == residentField) {
            result.residentPages = takeNumber<std::int64_t>(rest);
        } else {
            takeNumber<std::int64_t>(rest);
        }
    }
    return result;
}

LinuxMachineFigures::LinuxMachineFigures(std::string proc, std::string sys,
                                         Clock::time_point (*now)())
    : m_proc(std::move(proc))
    , m_sys(std::move(sys))
    , m_now(now)
{}

ProcessorTicks LinuxMachineFigures::processorTicks()
{
    SmallFile file;
    return parseProcessorTicks(file.read(m_proc + "/stat"));
}

MemoryFigures LinuxMachineFigures::memory()
{
    SmallFile file;
    MemoryFigures memory = parseMemory(file.read(m_proc + "/meminfo"));
    const std::string blocks = m_sys + "/block";
    const Folder folder(opendir(blocks.c_str()));
    while (folder) {
        const dirent* const entry = readdir(folder.get());
        if (entry == nullptr) {
            break;
        }
        const std::string_view name(entry->d_name);
        if (name.starts_with("zram")) {
            // mm_stat: original size, compressed size, memory used, … in bytes.
            std::string_view figures = file.read(blocks + '/' + entry->d_name + "/mm_stat");
            takeNumber<std::uint64_t>(figures);
            takeNumber<std::uint64_t>(figures);
            memory.compressed = cappedSum(memory.compressed, takeNumber<std::uint64_t>(figures));
        }
    }
    return memory;
}

std::optional<NetworkBytes> LinuxMachineFigures::networkBytes()
{
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0 || list == nullptr) {
        return std::nullopt;
    }
    NetworkBytes bytes;
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        // getifaddrs(3): only entries of AF_PACKET carry counters, each interface once.
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_PACKET ||
            entry->ifa_data == nullptr) {
            continue;
        }
        const auto* const counters = static_cast<const rtnl_link_stats*>(entry->ifa_data);
        bytes.received += counters->rx_bytes;
        bytes.sent += counters->tx_bytes;
    }
    freeifaddrs(list);
    return bytes;
}

PowerFigures LinuxMachineFigures::power()
{
    const std::string supplies = m_sys + "/class/power_supply";
    const Folder folder(opendir(supplies.c_str()));
    SmallFile file;
    std::vector<Battery> batteries;
    bool isMainsOnline = false;
    while (folder) {
        const dirent* const entry = readdir(folder.get());
        if (entry == nullptr) {
            break;
        }
        if (entry->d_name[0] == '.') {
            continue;
        }
        const PowerSupply supply(file, supplies + '/' + entry->d_name);
        if (supply.isMachineBattery()) {
            batteries.push_back(supply.battery());
        } else {
            isMainsOnline = isMainsOnline || supply.isOnline();
        }
    }
    return addedUp(batteries, isMainsOnline);
}

double LinuxMachineFigures::uptimeTicks()
{
    SmallFile file;
    const std::string text(file.read(m_proc + "/uptime"));
    double seconds = 0;
    std::from_chars(text.data(), text.data() + text.size(), seconds);
    return seconds * static_cast<double>(sysconf(_SC_CLK_TCK));
}

ProcessFigures LinuxMachineFigures::figuresOf(std::int32_t pid, ProcessStat stat,
                                              double elapsedTicks)
{
    Seen& seen = m_seen[pid];
    const bool isKnown = seen.round != 0 && seen.startTicks == stat.startTicks;
    double spent = static_cast<double>(stat.cpuTicks);
    double elapsed = m_uptimeTicks - static_cast<double>(stat.startTicks);
    if (isKnown && elapsedTicks > 0) {
        spent = static_cast<double>(stat.cpuTicks - std::min(seen.cpuTicks, stat.cpuTicks));
        elapsed = elapsedTicks;
    }
    seen = {stat.startTicks, stat.cpuTicks, m_round};

    ProcessFigures figures;
    figures.pid = pid;
    figures.name = std::move(stat.name);
    figures.cpuPercent = elapsed > 0 ? spent / elapsed * 100 : 0;
    const std::int64_t pages = std::max<std::int64_t>(stat.residentPages, 0);
    if (__builtin_mul_overflow(pages, sysconf(_SC_PAGESIZE), &figures.rssBytes)) {
        figures.rssBytes = 0;
    }
    figures.memPercent = m_totalMemory == 0 ? 0
                                            : static_cast<double>(figures.rssBytes) /
                                                  static_cast<double>(m_totalMemory) * 100;
    return figures;
}

std::vector<ProcessFigures> LinuxMachineFigures::processes()
{
    const std::lock_guard guard(m_lock);
    const Folder folder(opendir(m_proc.c_str()));
    if (!folder) {
        return {};
    }
    const Clock::time_point now = m_now();
    double elapsedTicks = 0;
    if (m_lastCall) {
        elapsedTicks = std::chrono::duration<double>(now - *m_lastCall).count() *
                       static_cast<double>(sysconf(_SC_CLK_TCK));
    }
    m_lastCall = now;
    ++m_round;
    m_uptimeTicks = uptimeTicks();
    SmallFile file;
    m_totalMemory = parseMemory(file.read(m_proc + "/meminfo")).total;

    std::vector<ProcessFigures> result;
    result.reserve(m_seen.size() + 16);
    std::string path;
    while (const dirent* const entry = readdir(folder.get())) {
        if (!isNumber(entry->d_name)) {
            continue;
        }
        path.assign(entry->d_name).append("/stat");
        std::string_view number(entry->d_name);
        // A process that ends while it is read has no text any more.
        std::optional<ProcessStat> stat =
            parseProcessStat(file.read(dirfd(folder.get()), path.c_str()));
        if (stat) {
            result.push_back(
                figuresOf(takeNumber<std::int32_t>(number), std::move(*stat), elapsedTicks));
        }
    }
    std::erase_if(m_seen, [this](const auto& seen) { return seen.second.round != m_round; });
    return result;
}

std::string LinuxMachineFigures::processorName()
{
    SmallFile file;
    return parseProcessors(file.read(m_proc + "/cpuinfo")).name;
}

int LinuxMachineFigures::processorCount()
{
    SmallFile file;
    return parseProcessors(file.read(m_proc + "/cpuinfo")).count;
}

std::string LinuxMachineFigures::programOf(std::int32_t pid)
{
    const std::string link = m_proc + '/' + std::to_string(pid) + "/exe";
    std::string path(std::size_t{1} << 12, '\0');
    const ssize_t length = readlink(link.c_str(), path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    // proc(5): what the kernel adds when the file has been replaced since the program started.
    constexpr std::string_view replaced = " (deleted)";
    if (path.ends_with(replaced)) {
        path.resize(path.size() - replaced.size());
    }
    return path;
}

MachineFigures& MachineFigures::system()
{
    static LinuxMachineFigures figures;
    return figures;
}

} // namespace quorvane
