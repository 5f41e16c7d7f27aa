// SPDX-License-Identifier: MIT
#include "Command.h"
#include "JsonText.h"
#include "SystemMonitor.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {
namespace {

constexpr OptionRule processOptions[] = {{"limit", true}};
constexpr OptionRule machineOptions[] = {{"times", true}};

void print(const ProcessSample& process, std::string& out)
{
    JsonObject object(out);
    object.integer("pid", process.pid);
    object.text("name", process.name);
    object.real("cpuPercent", process.cpuPercent);
    object.real("memPercent", process.memPercent);
    object.integer("rssBytes", process.rssBytes);
    object.close();
}

int runProcesses(const Arguments& arguments)
{
    const std::optional<std::int64_t> limit =
        integerFromText(arguments.value("limit").value_or("12"));
    if (!limit || *limit < 0 || !arguments.operands().empty()) {
        return complain("processes takes --limit N and no operand; try --help", exitUsage);
    }
    const std::string text((std::istreambuf_iterator<char>(std::cin)), {});
    for (const ProcessSample& process :
         SystemMonitor::parseProcesses(text, static_cast<std::size_t>(*limit))) {
        std::string line;
        print(process, line);
        std::cout << line << '\n';
    }
    return exitSuccess;
}

BatterySample batteryFrom(const QJsonObject& fields)
{
    const auto number = [&fields](const char* key) {
        return fields.value(QLatin1String(key)).toDouble();
    };
    BatterySample battery;
    battery.percent = number("percent");
    battery.isCharging = fields.value(QLatin1String("isCharging")).toBool();
    battery.onAC = fields.value(QLatin1String("onAC")).toBool(true);
    battery.isPresent = fields.value(QLatin1String("isPresent")).toBool();
    battery.cycleCount = fields.value(QLatin1String("cycleCount")).toInt();
    battery.healthPercent = number("healthPercent");
    battery.timeToEmptyMinutes = fields.value(QLatin1String("timeToEmptyMinutes")).toInt();
    battery.timeToFullChargeMinutes =
        fields.value(QLatin1String("timeToFullChargeMinutes")).toInt();
    return battery;
}

int runMachineTexts(const Arguments&)
{
    for (std::string line; std::getline(std::cin, line);) {
        const QJsonObject request =
            QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        std::string out;
        JsonObject object(out);
        if (const QJsonValue rate = request.value(QLatin1String("rate")); rate.isDouble()) {
            object.text("text", NetRateSample::rateText(rate.toDouble()).toStdString());
        } else if (const QJsonValue fields = request.value(QLatin1String("battery"));
                   fields.isObject()) {
            const BatterySample battery = batteryFrom(fields.toObject());
            object.text("status", battery.statusText().toStdString());
            object.text("health", battery.healthText().toStdString());
            object.text("time", battery.timeRemainingText().toStdString());
        } else {
            return complain("a line is neither a rate nor a battery", exitUsage);
        }
        object.endLine();
        std::cout << out;
    }
    return exitSuccess;
}

void printBattery(const BatterySample& battery, std::string& out)
{
    JsonObject object(out);
    object.real("percent", battery.percent);
    object.boolean("isCharging", battery.isCharging);
    object.boolean("onAC", battery.onAC);
    object.boolean("isPresent", battery.isPresent);
    object.integer("cycleCount", battery.cycleCount);
    object.real("healthPercent", battery.healthPercent);
    object.integer("timeToEmptyMinutes", battery.timeToEmptyMinutes);
    object.integer("timeToFullChargeMinutes", battery.timeToFullChargeMinutes);
    object.close();
}

/// The median of so many samples' seconds.
double sampleSeconds(MachineFigures& machine, std::int64_t times)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> seconds;
    for (std::int64_t i = 0; i < times; ++i) {
        const Clock::time_point start = Clock::now();
        SystemMonitor::sample(machine);
        seconds.push_back(std::chrono::duration<double>(Clock::now() - start).count());
    }
    std::sort(seconds.begin(), seconds.end());
    return seconds[seconds.size() / 2];
}

int runMachine(const Arguments& arguments)
{
    const std::optional<std::int64_t> times =
        integerFromText(arguments.value("times").value_or("0"));
    if (!times || *times < 0 || !arguments.operands().empty()) {
        return complain("machine takes --times N and no operand; try --help", exitUsage);
    }
    MachineFigures& machine = MachineFigures::system();
    const SystemMonitor::Sample sample = SystemMonitor::sample(machine);
    if (*times > 0) {
        std::cerr << "sample seconds: " << sampleSeconds(machine, *times) << '\n';
    }
    const auto integer = [](std::uint64_t value) { return static_cast<std::int64_t>(value); };
    std::string out;
    JsonObject object(out);
    object.text("chip", SystemMonitor::chipSummary(machine).toStdString());
    JsonObject cpu(object.list("cpu"));
    cpu.integer("user", integer(sample.cpu.user));
    cpu.integer("system", integer(sample.cpu.system));
    cpu.integer("idle", integer(sample.cpu.idle));
    cpu.integer("total", integer(sample.cpu.total));
    cpu.close();
    JsonObject memory(object.list("memory"));
    memory.integer("totalBytes", integer(sample.memory.totalBytes));
    memory.integer("usedBytes", integer(sample.memory.usedBytes));
    memory.integer("freeBytes", integer(sample.memory.freeBytes));
    memory.integer("wiredBytes", integer(sample.memory.wiredBytes));
    memory.integer("compressedBytes", integer(sample.memory.compressedBytes));
    memory.close();
    JsonObject network(object.list("network"));
    network.real("rxBytesPerSec", sample.network.rxBytesPerSec);
    network.real("txBytesPerSec", sample.network.txBytesPerSec);
    network.close();
    printBattery(sample.battery, object.list("battery"));
    JsonList processes(object.list("processes"));
    for (const ProcessSample& process : sample.processes) {
        print(process, processes.next());
    }
    processes.close();
    object.endLine();
    std::cout << out;
    return exitSuccess;
}

} // namespace

const Command processesCommand{"processes", "[--limit N]",
                               "Read what ps(1) prints and print the processes that it names.",
                               processOptions, runProcesses};
const Command machineTextsCommand{
    "machine-texts",
    "",
    "Read rates and batteries, one JSON object a line, and print their "
    "texts.",
    {},
    runMachineTexts};
const Command machineCommand{"machine", "[--times N]",
                             "Print one sample of this machine; with --times, take N more and "
                             "tell the median of their seconds.",
                             machineOptions, runMachine};

} // namespace quorvane
