// SPDX-License-Identifier: MIT
#include "WindowCommand.h"

#include "BenchApplication.h"
#include "BusyWatch.h"
#include "FakePlatform.h"
#include "JsonText.h"
#include "MainWindow.h"
#include "ProcessMemory.h"
#include "QuorvaneApp.h"
#include "VisualizerCanvas.h"

#include <QApplication>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>

namespace quorvane {
namespace {

using Clock = std::chrono::steady_clock;

const Clock::time_point processStart = Clock::now();

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Whether the scan has ended, well or not, and its treemap is on show.
bool isFinished(QuorvaneApp& program)
{
    AppState& state = program.appState();
    if (state.isScanning.value()) {
        return false;
    }
    const auto* const view = program.window().findChild<VisualizerCanvas*>();
    return state.errorMessage.value() ||
           (view != nullptr && view->scene() && !view->isComputingLayout() &&
            view->scene()->request().target == state.rootNode.value());
}

int measure(QApplication& application, const FilePath& folder)
{
    FakePlatform fake;
    QuorvaneApp program(application, fake.platform(), AppScreens::standard());
    program.showWindow();
    BusyWatch watch;
    int turns = 0;
    runUntil([&turns] { return ++turns > 20; });
    const std::int64_t residentBefore = residentBytes();
    watch.restart();
    program.openFolder(folder);
    runUntil([&] { return isFinished(program); });
    const double launch = millisecondsSince(processStart);
    if (const auto error = program.appState().errorMessage.value()) {
        return complain(error->toStdString(), exitFailure);
    }
    const std::int64_t growth = residentBytes() - residentBefore;
    const double busyScanning = watch.longestMilliseconds();
    watch.restart();
    program.appState().rescan();
    runUntil([&] { return isFinished(program); });
    std::string line;
    JsonObject object(line);
    object.integer("entries", static_cast<std::int64_t>(program.appState().nodesByID->size()));
    object.real("launchMilliseconds", launch);
    object.integer("memoryGrowthBytes", growth);
    object.real("longestBusyMilliseconds", busyScanning);
    object.real("longestBusyRescanMilliseconds", watch.longestMilliseconds());
    object.endLine();
    std::cout << line;
    program.finishJobs(std::chrono::seconds(2));
    return exitSuccess;
}

int runWindow(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("window takes one folder", exitUsage);
    }
    BenchApplication application(BenchApplication::Display::ofTheWindow);
    return measure(application, FilePath(std::string(arguments.operands().front())));
}

} // namespace

const Command windowCommand{
    "window",
    "DIR",
    "Open the window on a scan and a rescan and tell the time to the finished treemap, the memory "
    "that grew and the longest time that the main thread was busy.",
    {},
    runWindow};

} // namespace quorvane
