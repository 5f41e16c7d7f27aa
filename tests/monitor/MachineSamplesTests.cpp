// SPDX-License-Identifier: MIT
#include "MachineSamples.h"
#include "Programs.h"
#include "SystemMonitor.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using namespace std::chrono_literals;

/// A machine whose figures a test writes down.
class WrittenMachine final : public MachineFigures
{
public:
    ProcessorTicks processorTicks() override { return ticks; }
    MemoryFigures memory() override { return memoryFigures; }
    std::optional<NetworkBytes> networkBytes() override { return network; }
    PowerFigures power() override { return powerFigures; }
    std::vector<ProcessFigures> processes() override { return list; }
    std::string processorName() override { return " Fast Processor 9 "; }
    int processorCount() override { return 8; }
    std::string programOf(std::int32_t) override { return {}; }

    ProcessorTicks ticks;
    MemoryFigures memoryFigures;
    std::optional<NetworkBytes> network;
    PowerFigures powerFigures;
    std::vector<ProcessFigures> list;
};

TEST(CPUSample, UsageIsUserAndSystemOfAllTicks)
{
    WrittenMachine machine;
    machine.ticks = {30, 10, 50, 10};
    const CPUSample sample = SystemMonitor::cpuUsage(machine);
    EXPECT_EQ(sample, (CPUSample{30, 10, 50, 100}));
    EXPECT_DOUBLE_EQ(sample.usagePercent(), 40);
    EXPECT_DOUBLE_EQ(CPUSample{}.usagePercent(), 0);
}

TEST(MemorySample, UsedPercentIsOfTheTotal)
{
    EXPECT_DOUBLE_EQ((MemorySample{200, 50, 0, 0, 0}).usedPercent(), 25);
    EXPECT_DOUBLE_EQ(MemorySample{}.usedPercent(), 0);
}

TEST(RateText, NamesBytesInTheLastUnitAlone)
{
    EXPECT_EQ(NetRateSample::rateText(0), QStringLiteral("0 B"));
    EXPECT_EQ(NetRateSample::rateText(1023), QStringLiteral("1023 B"));
    EXPECT_EQ(NetRateSample::rateText(1024), QStringLiteral("1 K"));
    EXPECT_EQ(NetRateSample::rateText(12 * 1024), QStringLiteral("12 K"));
    EXPECT_EQ(NetRateSample::rateText(1048575), QStringLiteral("1024 K"));
    EXPECT_EQ(NetRateSample::rateText(1048576), QStringLiteral("1.0 M"));
    EXPECT_EQ(NetRateSample::rateText(1073741823), QStringLiteral("1024.0 M"));
    EXPECT_EQ(NetRateSample::rateText(1073741824), QStringLiteral("1.0 G"));
    const NetRateSample sample{12.0 * 1024, 1.5 * 1024 * 1024};
    EXPECT_EQ(sample.formattedRX(), QStringLiteral("12 K/s"));
    EXPECT_EQ(sample.formattedTX(), QStringLiteral("1.5 M/s"));
}

TEST(BatterySample, StatusNamesTheSourceOfPower)
{
    EXPECT_EQ(BatterySample{}.statusText(), QStringLiteral("No battery detected"));
    BatterySample sample;
    sample.isPresent = true;
    sample.isCharging = true;
    EXPECT_EQ(sample.statusText(), QStringLiteral("AC powered · Power adapter"));
    sample.onAC = false;
    EXPECT_EQ(sample.statusText(), QStringLiteral("Charging on battery"));
    sample.isCharging = false;
    EXPECT_EQ(sample.statusText(), QStringLiteral("On battery"));
}

TEST(BatterySample, HealthIsAWholePercentOrADash)
{
    BatterySample sample;
    EXPECT_EQ(sample.healthText(), QStringLiteral("—"));
    sample.healthPercent = 90.5;
    EXPECT_EQ(sample.healthText(), QStringLiteral("91%"));
}

TEST(BatterySample, TimeReadsHoursAndMinutesFromAnHourOn)
{
    BatterySample sample;
    const auto remaining = [&sample](int minutes) {
        sample.timeToEmptyMinutes = minutes;
        return sample.timeRemainingText();
    };
    EXPECT_EQ(remaining(-1), QStringLiteral("Calculating…"));
    EXPECT_EQ(remaining(0), QStringLiteral("Calculating…"));
    EXPECT_EQ(remaining(59), QStringLiteral("59:00 remaining"));
    EXPECT_EQ(remaining(60), QStringLiteral("1:00 remaining"));
    EXPECT_EQ(remaining(605), QStringLiteral("10:05 remaining"));
    sample.isCharging = true;
    EXPECT_EQ(sample.timeRemainingText(), QStringLiteral("Fully Charged"));
    sample.timeToFullChargeMinutes = 75;
    EXPECT_EQ(sample.timeRemainingText(), QStringLiteral("1:15 until full"));
}

class NetworkMeterTest : public ::testing::Test
{
protected:
    NetRateSample at(std::chrono::milliseconds time, std::uint64_t received, std::uint64_t sent)
    {
        return m_meter.rates(NetworkBytes{received, sent}, NetworkMeter::Clock::time_point(time));
    }

    NetworkMeter m_meter;
};

TEST_F(NetworkMeterTest, TheFirstReadingHasNoRate)
{
    EXPECT_EQ(at(1000ms, 5000, 700), NetRateSample{});
    EXPECT_EQ(at(3000ms, 7000, 900), (NetRateSample{1000, 100}));
}

TEST_F(NetworkMeterTest, TwoReadingsTenMillisecondsApartCountAsFifty)
{
    at(1000ms, 1000, 1000);
    const NetRateSample rates = at(1010ms, 1100, 1050);
    EXPECT_DOUBLE_EQ(rates.rxBytesPerSec, 2000);
    EXPECT_DOUBLE_EQ(rates.txBytesPerSec, 1000);
}

TEST_F(NetworkMeterTest, ASumThatWentDownHasWrapped)
{
    at(1000ms, 4294967290, 10);
    EXPECT_EQ(at(2000ms, 4, 10), (NetRateSample{10, 0}));
}

TEST_F(NetworkMeterTest, NothingReadIsNotRemembered)
{
    at(1000ms, 1000, 0);
    EXPECT_EQ(at(2000ms, 0, 0), NetRateSample{});
    EXPECT_EQ(m_meter.rates(std::nullopt, NetworkMeter::Clock::time_point(2500ms)),
              NetRateSample{});
    EXPECT_EQ(at(3000ms, 3000, 0), (NetRateSample{1000, 0}));
}

TEST_F(NetworkMeterTest, ATimeThatDoesNotMoveGivesNoRate)
{
    at(1000ms, 1000, 0);
    EXPECT_EQ(at(1000ms, 2000, 0), NetRateSample{});
}

TEST(ParseProcesses, ReadsTheColumnsAndSortsByShare)
{
    const std::string_view text = "  PID COMMAND         %CPU %MEM   RSS\n"
                                  "    1 systemd          0.5  0.1 12000\n"
                                  "   77\tbusy\t99.0 2.5 2048\n"
                                  "   80 equal            0.5  0.0 1\n";
    const std::vector<ProcessSample> all = SystemMonitor::parseProcesses(text, 12);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[0], (ProcessSample{77, "busy", 99, 2.5, 2048 * 1024}));
    EXPECT_EQ(all[1].name, "systemd");
    EXPECT_EQ(all[2].name, "equal");
    EXPECT_EQ(SystemMonitor::parseProcesses(text, 1).size(), 1U);
    EXPECT_TRUE(SystemMonitor::parseProcesses(text, 0).empty());
}

TEST(ParseProcesses, LeavesOutANameWithABlank)
{
    EXPECT_TRUE(SystemMonitor::parseProcesses("12 Web Content 1.0 2.0 300\n", 12).empty());
}

TEST(ParseProcesses, LeavesOutWhatIsNoNumberOfItsKind)
{
    for (const char* const line : {"4294967296 a 1 1 1", "1x a 1 1 1", "1 a x 1 1", "1 a 1 nan 1",
                                   "1 a 1 1 1.5", "1 a 1 1", "1 a 1 1 9223372036854775807", ""}) {
        EXPECT_TRUE(SystemMonitor::parseProcesses(line, 12).empty()) << line;
    }
}

TEST(ParseProcesses, PiecesBeyondTheFifthDoNotMatter)
{
    EXPECT_EQ(SystemMonitor::parseProcesses("-3 a 1 1 1 more", 12).size(), 1U);
}

TEST(TopProcesses, AreTheFirstByShareOrByMemory)
{
    WrittenMachine machine;
    machine.list = {
        {1, "a", 5, 0, 100}, {2, "b", 9, 0, 10}, {3, "c", 5, 0, 900}, {4, "d", 0, 0, 100}};
    const auto pids = [&machine](std::size_t limit, SystemMonitor::ProcessOrder order) {
        std::vector<int> result;
        for (const ProcessSample& process : SystemMonitor::topProcesses(machine, limit, order)) {
            result.push_back(process.pid);
        }
        return result;
    };
    EXPECT_EQ(pids(3, SystemMonitor::ProcessOrder::cpu), (std::vector{2, 1, 3}));
    EXPECT_EQ(pids(3, SystemMonitor::ProcessOrder::memory), (std::vector{3, 1, 4}));
    EXPECT_EQ(pids(12, SystemMonitor::ProcessOrder::cpu).size(), 4U);
}

/// Prints what a test says, and keeps what it was started with.
class ScriptedPs final : public Programs
{
public:
    std::vector<Running> running() override { return {}; }
    std::optional<Output> run(std::span<const std::string> arguments, std::chrono::milliseconds,
                              const std::function<bool()>&) override
    {
        command.assign(arguments.begin(), arguments.end());
        return text ? std::optional(Output{0, *text}) : std::nullopt;
    }

    std::optional<std::string> text;
    std::vector<std::string> command;
};

TEST(TopProcessesOfPs, AreReadUnderTheCLocale)
{
    ScriptedPs ps;
    ps.text = "  PID COMMAND %CPU %MEM RSS\n 7 calm 0.5 0.1 10\n 9 busy 99.5 1.0 20\n";
    const std::vector<ProcessSample> processes = SystemMonitor::topProcesses(ps, 1);
    ASSERT_EQ(processes.size(), 1U);
    EXPECT_EQ(processes[0], (ProcessSample{9, "busy", 99.5, 1, 20 * 1024}));
    EXPECT_EQ(ps.command, (std::vector<std::string>{"/usr/bin/env", "LC_ALL=C", "/bin/ps", "-Aceo",
                                                    "pid,comm,%cpu,%mem,rss", "-r"}));
}

TEST(TopProcessesOfPs, AreNoneWhereItCannotBeStarted)
{
    ScriptedPs ps;
    EXPECT_TRUE(SystemMonitor::topProcesses(ps).empty());
}

TEST(TopProcessesOfPs, StandInForAMachineThatListsNone)
{
    WrittenMachine machine;
    ScriptedPs ps;
    ps.text = "1 small 9.0 0.1 10\n2 large 1.0 0.1 900\n3 middle 5.0 0.1 90\n";
    const auto names = [&](SystemMonitor::ProcessOrder order) {
        std::vector<std::string> result;
        for (const ProcessSample& process : SystemMonitor::topProcesses(machine, 2, order, &ps)) {
            result.push_back(process.name);
        }
        return result;
    };
    EXPECT_EQ(names(SystemMonitor::ProcessOrder::cpu),
              (std::vector<std::string>{"small", "middle"}));
    EXPECT_EQ(names(SystemMonitor::ProcessOrder::memory),
              (std::vector<std::string>{"large", "middle"}));
    machine.list = {{4, "listed", 1, 0, 1}};
    ps.command.clear();
    EXPECT_EQ(names(SystemMonitor::ProcessOrder::cpu), std::vector<std::string>{"listed"});
    EXPECT_TRUE(ps.command.empty()) << "nothing is started where the machine tells";
}

TEST(ProcessSample, TextsHaveOneDigit)
{
    const ProcessSample sample{1, "a", 12.34, 0, 1536 * 1024};
    EXPECT_EQ(sample.formattedCPU(), QStringLiteral("12.3%"));
    EXPECT_EQ(sample.formattedMemory(), QStringLiteral("1.5 MB"));
}

TEST(ChipSummary, NamesTheProcessorAndItsCores)
{
    WrittenMachine machine;
    EXPECT_EQ(SystemMonitor::chipSummary(machine), QStringLiteral("Fast Processor 9 • 8 Cores"));
}

TEST(MonitorSample, HoldsEveryFigureOfTheMachine)
{
    WrittenMachine machine;
    machine.ticks = {1, 2, 3, 4};
    machine.memoryFigures = {5, 4, 3, 2, 1};
    machine.powerFigures.isPresent = true;
    machine.powerFigures.percent = 50;
    machine.list = {{9, "only", 1, 2, 3}};
    const SystemMonitor::Sample sample = SystemMonitor::sample(machine);
    EXPECT_EQ(sample.cpu.total, 10U);
    EXPECT_EQ(sample.memory, (MemorySample{5, 4, 3, 2, 1}));
    EXPECT_DOUBLE_EQ(sample.battery.percent, 50);
    ASSERT_EQ(sample.processes.size(), 1U);
    EXPECT_EQ(sample.processes.front(), (ProcessSample{9, "only", 1, 2, 3}));
}

} // namespace
} // namespace quorvane
