// SPDX-License-Identifier: MIT
#include "MachineFiguresLinux.h"

#include "DiskTree.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <string>

namespace quorvane {
namespace {

using Clock = LinuxMachineFigures::Clock;

Clock::time_point pretendedNow;

/// Folders made like /proc and /sys.
class MadeMachine : public ::testing::Test
{
protected:
    MadeMachine() { pretendedNow = Clock::time_point(std::chrono::hours(1)); }

    void proc(std::string_view name, std::string_view text)
    {
        m_disk.fileWithContents("proc/" + std::string(name), text);
    }
    void supply(std::string_view name, std::string_view text)
    {
        m_disk.fileWithContents("sys/class/power_supply/" + std::string(name), text);
    }
    /// A process with so many ticks of user time and resident pages, begun at the tick.
    void process(int pid, std::string_view name, int ticks, int pages, int start = 0)
    {
        proc(std::to_string(pid) + "/stat",
             std::to_string(pid) + " (" + std::string(name) + ") S 1 1 1 0 -1 4194560 1 2 3 4 " +
                 std::to_string(ticks) + " 0 0 0 20 0 1 0 " + std::to_string(start) + " 1000 " +
                 std::to_string(pages) + " 18446744073709551615 1 1 0 0 0\n");
    }
    ProcessFigures only(const std::vector<ProcessFigures>& list)
    {
        EXPECT_EQ(list.size(), 1U);
        return list.empty() ? ProcessFigures{} : list.front();
    }

    DiskTree m_disk;
    LinuxMachineFigures m_figures{m_disk.path("proc").bytes(), m_disk.path("sys").bytes(),
                                  [] { return pretendedNow; }};
    const double m_ticksASecond = static_cast<double>(sysconf(_SC_CLK_TCK));
};

TEST_F(MadeMachine, ReadsAsZerosWhereNothingIsThere)
{
    EXPECT_EQ(m_figures.processorTicks(), ProcessorTicks{});
    EXPECT_EQ(m_figures.memory(), MemoryFigures{});
    EXPECT_EQ(m_figures.power(), PowerFigures{});
    EXPECT_TRUE(m_figures.processes().empty());
    EXPECT_EQ(m_figures.processorName(), "");
    EXPECT_EQ(m_figures.processorCount(), 0);
    EXPECT_EQ(m_figures.programOf(1), "");
}

TEST_F(MadeMachine, AddsInterruptsToTheSystemAndWaitingToIdle)
{
    proc("stat", "cpu  100 20 30 400 5 6 7 8 9 10\ncpu0 1 1 1 1 1 1 1 1 1 1\n");
    EXPECT_EQ(m_figures.processorTicks(), (ProcessorTicks{100, 43, 413, 20}));
}

TEST_F(MadeMachine, TakesTheLineOfAllProcessorsEvenWhereSomeAreOffline)
{
    proc("stat", "cpu0 7 7 7 7 7 7 7 7 7 7\ncpu  1 2 3 4\ncpu3 7 7 7 7 7 7 7 7 7 7\n");
    EXPECT_EQ(m_figures.processorTicks(), (ProcessorTicks{1, 3, 4, 2}));
}

TEST_F(MadeMachine, CountsAsUsedWhatIsNotAvailable)
{
    proc("meminfo", "MemTotal:       1000 kB\nMemFree:         200 kB\nMemAvailable:    600 kB\n"
                    "Buffers:          50 kB\nCached:          350 kB\nMlocked:           1 kB\n"
                    "Zswap:            16 kB\nSUnreclaim:       10 kB\nKernelStack:       2 kB\n"
                    "PageTables:        3 kB\n");
    EXPECT_EQ(m_figures.memory(),
              (MemoryFigures{1000 * 1024, 400 * 1024, 200 * 1024, 16 * 1024, 16 * 1024}));
}

TEST_F(MadeMachine, EstimatesWhatIsAvailableWhereTheKernelDoesNot)
{
    proc("meminfo", "MemTotal: 1000 kB\nMemFree: 200 kB\nBuffers: 50 kB\nCached: 300 kB\n"
                    "SReclaimable: 50 kB\n");
    EXPECT_EQ(m_figures.memory().used, 400U * 1024);
}

TEST_F(MadeMachine, AddsTheMemoryOfCompressedBlockDevices)
{
    proc("meminfo", "MemTotal: 1000 kB\nMemAvailable: 1000 kB\nZswap: 1 kB\n");
    m_disk.fileWithContents("sys/block/zram0/mm_stat", "  9000 3000 4096 0 4096 0 0 0 0\n");
    m_disk.fileWithContents("sys/block/zram1/mm_stat", "1 1 100 0\n");
    m_disk.fileWithContents("sys/block/sda/mm_stat", "1 1 7777\n");
    EXPECT_EQ(m_figures.memory().compressed, 1024U + 4096 + 100);
}

TEST_F(MadeMachine, NamesTheProcessorAndCountsThoseThatAreOnline)
{
    proc("cpuinfo", "processor\t: 0\nmodel name\t: Fast Processor 9\n\nprocessor\t: 2\n"
                    "model name\t: Fast Processor 9\n");
    EXPECT_EQ(m_figures.processorName(), "Fast Processor 9");
    EXPECT_EQ(m_figures.processorCount(), 2);
}

TEST_F(MadeMachine, NamesTheBoardWhereProcessorsHaveNoName)
{
    proc("cpuinfo", "processor : 0\nBogoMIPS : 108.00\nHardware : BCM2835\nModel : Pi\n");
    EXPECT_EQ(m_figures.processorName(), "BCM2835");
}

TEST_F(MadeMachine, ReadsABatteryThatTellsEnergy)
{
    supply("BAT0/type", "Battery\n");
    supply("BAT0/present", "1\n");
    supply("BAT0/status", "Discharging\n");
    supply("BAT0/energy_now", "20000000\n");
    supply("BAT0/energy_full", "40000000\n");
    supply("BAT0/energy_full_design", "50000000\n");
    supply("BAT0/power_now", "10000000\n");
    supply("BAT0/cycle_count", "123\n");
    supply("AC/type", "Mains\n");
    supply("AC/online", "0\n");
    const PowerFigures power = m_figures.power();
    EXPECT_EQ(power, (PowerFigures{50, false, false, true, 123, 80, 120, 120}));
}

TEST_F(MadeMachine, ReadsABatteryThatTellsCharge)
{
    supply("BAT1/type", "Battery\n");
    supply("BAT1/status", "Charging\n");
    supply("BAT1/charge_now", "1000000\n");
    supply("BAT1/charge_full", "4000000\n");
    supply("BAT1/charge_full_design", "4000000\n");
    supply("BAT1/current_now", "-2000000\n");
    supply("BAT1/voltage_min_design", "11400000\n");
    supply("ADP1/type", "Mains\n");
    supply("ADP1/online", "1\n");
    const PowerFigures power = m_figures.power();
    EXPECT_DOUBLE_EQ(power.percent, 25);
    EXPECT_TRUE(power.isCharging);
    EXPECT_TRUE(power.onAC);
    EXPECT_EQ(power.timeToFullChargeMinutes, 90);
}

TEST_F(MadeMachine, AddsSeveralBatteriesUp)
{
    for (const char* const name : {"BAT0", "BAT1"}) {
        const std::string battery(name);
        supply(battery + "/type", "Battery\n");
        supply(battery + "/energy_full", "30000000\n");
        supply(battery + "/energy_full_design", "40000000\n");
        supply(battery + "/energy_now", battery == "BAT0" ? "30000000\n" : "0\n");
        supply(battery + "/power_now", battery == "BAT0" ? "5000000\n" : "0\n");
        supply(battery + "/status", battery == "BAT0" ? "Discharging\n" : "Unknown\n");
        supply(battery + "/cycle_count", battery == "BAT0" ? "10\n" : "300\n");
    }
    EXPECT_EQ(m_figures.power(), (PowerFigures{50, false, false, true, 300, 75, 360, 360}));
}

TEST_F(MadeMachine, LeavesOutTheBatteryOfAMouseAndOneThatIsTakenOut)
{
    supply("mouse/type", "Battery\n");
    supply("mouse/scope", "Device\n");
    supply("mouse/capacity", "40\n");
    supply("BAT1/type", "Battery\n");
    supply("BAT1/present", "0\n");
    supply("BAT1/capacity", "40\n");
    EXPECT_EQ(m_figures.power(), PowerFigures{});
}

TEST_F(MadeMachine, TakesTheBatteryAtItsWordWhereItTellsNothingElse)
{
    supply("BAT0/type", "Battery\n");
    supply("BAT0/capacity", "73\n");
    supply("BAT0/status", "Full\n");
    const PowerFigures power = m_figures.power();
    EXPECT_TRUE(power.isPresent);
    EXPECT_DOUBLE_EQ(power.percent, 73);
    EXPECT_DOUBLE_EQ(power.healthPercent, 0);
    EXPECT_TRUE(power.onAC);
    EXPECT_LT(power.timeToEmptyMinutes, 1);
}

TEST_F(MadeMachine, TellsAverageSharesAtFirstAndSharesSinceTheLastCallAfterwards)
{
    proc("uptime", "1000.00 1900.00\n");
    proc("meminfo", "MemTotal: 4096 kB\n");
    const int oneSecond = static_cast<int>(m_ticksASecond);
    process(42, "worker", 100 * oneSecond, 8, 500 * oneSecond);
    const ProcessFigures first = only(m_figures.processes());
    EXPECT_EQ(first.pid, 42);
    EXPECT_EQ(first.name, "worker");
    EXPECT_DOUBLE_EQ(first.cpuPercent, 20);
    EXPECT_EQ(first.rssBytes, 8 * sysconf(_SC_PAGESIZE));
    EXPECT_DOUBLE_EQ(first.memPercent,
                     100.0 * 8 * static_cast<double>(sysconf(_SC_PAGESIZE)) / (4096 * 1024));

    pretendedNow += std::chrono::seconds(2);
    proc("uptime", "1002.00 1900.00\n");
    process(42, "worker", 103 * oneSecond, 8, 500 * oneSecond);
    EXPECT_DOUBLE_EQ(only(m_figures.processes()).cpuPercent, 150);
}

TEST_F(MadeMachine, TakesANumberThatIsUsedAgainForAnotherProcess)
{
    const int oneSecond = static_cast<int>(m_ticksASecond);
    proc("uptime", "100.00 1.00\n");
    process(7, "old", 50 * oneSecond, 1);
    m_figures.processes();
    pretendedNow += std::chrono::seconds(10);
    proc("uptime", "110.00 1.00\n");
    process(7, "new", 1 * oneSecond, 1, 100 * oneSecond);
    const ProcessFigures reborn = only(m_figures.processes());
    EXPECT_EQ(reborn.name, "new");
    EXPECT_DOUBLE_EQ(reborn.cpuPercent, 10);
}

TEST_F(MadeMachine, ReadsNamesWithBlanksBracketsAndNewlines)
{
    process(1, "a) S 1 (b\nc", 0, 1);
    EXPECT_EQ(only(m_figures.processes()).name, "a) S 1 (b\nc");
}

TEST_F(MadeMachine, PassesOverAProcessThatEndsWhileItIsRead)
{
    process(1, "stays", 0, 1);
    m_disk.folder("proc/2");
    proc("3/stat", "");
    proc("4/stat", "4 (cut short) S 1 1");
    m_disk.folder("proc/self");
    EXPECT_EQ(only(m_figures.processes()).name, "stays");
}

TEST_F(MadeMachine, LeadsToTheProgramOfAProcess)
{
    m_disk.folder("proc/5");
    m_disk.symbolicLink("/usr/bin/program", "proc/5/exe");
    m_disk.folder("proc/6");
    m_disk.symbolicLink("/usr/bin/program (deleted)", "proc/6/exe");
    EXPECT_EQ(m_figures.programOf(5), "/usr/bin/program");
    EXPECT_EQ(m_figures.programOf(6), "/usr/bin/program");
}

TEST(ThisMachine, TellsFiguresOfItself)
{
    MachineFigures& machine = MachineFigures::system();
    EXPECT_GT(machine.processorTicks().idle, 0U);
    const MemoryFigures memory = machine.memory();
    EXPECT_GT(memory.total, memory.used);
    EXPECT_GT(memory.used, 0U);
    EXPECT_GT(machine.processorCount(), 0);
    EXPECT_NE(machine.networkBytes(), std::nullopt);
    const std::vector<ProcessFigures> processes = machine.processes();
    const auto self =
        std::find_if(processes.begin(), processes.end(),
                     [](const ProcessFigures& process) { return process.pid == getpid(); });
    ASSERT_NE(self, processes.end());
    EXPECT_GT(self->rssBytes, 0);
    EXPECT_NE(machine.programOf(getpid()).find("platform_tests"), std::string::npos);
}

} // namespace
} // namespace quorvane
