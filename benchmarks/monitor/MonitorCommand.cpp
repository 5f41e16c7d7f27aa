// SPDX-License-Identifier: MIT
#include "MonitorCommand.h"

#include "BenchApplication.h"
#include "FakePlatform.h"
#include "JsonText.h"
#include "MainWindow.h"
#include "QuorvaneApp.h"

#include <QEventLoop>
#include <QTimer>

#include <sys/resource.h>

#include <chrono>
#include <iostream>
#include <optional>
#include <string>

namespace quorvane {
namespace {

constexpr OptionRule monitorOptions[] = {{"seconds", true}};

/// Processor seconds of all threads, user and system.
double processorSeconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    constexpr double micro = 1e-6;
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * micro;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// The share of one processor that the program takes for so long.
double shareFor(std::chrono::seconds duration)
{
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    const auto start = std::chrono::steady_clock::now();
    const double before = processorSeconds();
    loop.exec();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
    return (processorSeconds() - before) / wall.count();
}

int runMonitor(const Arguments& arguments)
{
    const std::optional<std::int64_t> seconds =
        integerFromText(arguments.value("seconds").value_or("20"));
    if (!seconds || *seconds < 1 || !arguments.operands().empty()) {
        return complain("monitor takes --seconds N and no operand; try --help", exitUsage);
    }
    BenchApplication application(BenchApplication::Display::ofTheWindow);
    FakePlatform fake;
    QuorvaneApp program(application, fake.platform(), AppScreens::standard());
    program.showWindow();
    program.appState().section = AppSection::monitor;
    // The window comes up, and the first samples with it.
    shareFor(std::chrono::seconds(2));
    const double onShow = shareFor(std::chrono::seconds(*seconds));
    program.appState().section = AppSection::analysis;
    shareFor(std::chrono::seconds(1));
    const double left = shareFor(std::chrono::seconds(2));
    std::string line;
    JsonObject object(line);
    object.real("processorShare", onShow);
    object.real("processorShareWhenLeft", left);
    object.endLine();
    std::cout << line;
    program.finishJobs(std::chrono::seconds(2));
    return exitSuccess;
}

} // namespace

const Command monitorCommand{
    "monitor", "[--seconds N]",
    "Show the monitor for N seconds (20) and tell the share of one processor that it takes, and "
    "what is left of it on another screen.",
    monitorOptions, runMonitor};

} // namespace quorvane
