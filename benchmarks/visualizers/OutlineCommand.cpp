// SPDX-License-Identifier: MIT
#include "OutlineCommand.h"

#include "AppState.h"
#include "BenchApplication.h"
#include "FakePlatform.h"
#include "JsonText.h"
#include "OutlineScreen.h"
#include "ProcessMemory.h"
#include "TreeSource.h"

#include <QApplication>
#include <QImage>

#include <chrono>
#include <iostream>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {{"focus", true}, {"dump", true}};
constexpr QSize screenSize(1200, 800);

struct Opening
{
    double milliseconds = 0; ///< from making the screen to its first picture
    std::int64_t memoryGrowth = 0;
};

template<class Screen>
Opening open(AppState& state)
{
    const std::int64_t before = residentBytes();
    const auto start = std::chrono::steady_clock::now();
    Screen screen(state);
    screen.resize(screenSize);
    screen.show();
    while (screen.outline().outline().node() != state.shownNode()) {
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    screen.grab();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    return {took.count(), residentBytes() - before};
}

int runOutline(const Arguments& arguments)
{
    const auto loaded = loadFocus(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    const FocusedTree& focused = std::get<FocusedTree>(loaded);
    const BenchApplication application(BenchApplication::Display::offscreen);
    FakePlatform fake;
    AppState state(fake.platform());
    // Fonts and symbols are there when the measured screens come.
    {
        ListView warmUp(state);
        warmUp.resize(screenSize);
        warmUp.grab();
    }
    state.rootNode = focused.tree->rootPointer();
    state.focusNode = NodePointer(focused.tree, focused.focus);
    const Opening list = open<ListView>(state);
    const Opening folders = open<FoldersView>(state);
    std::string line;
    JsonObject object(line);
    object.integer("rows", static_cast<std::int64_t>(focused.focus->children().size()));
    object.real("listMilliseconds", list.milliseconds);
    object.integer("listGrowthBytes", list.memoryGrowth);
    object.real("foldersMilliseconds", folders.milliseconds);
    object.integer("foldersGrowthBytes", folders.memoryGrowth);
    object.endLine();
    std::cout << line;
    return exitSuccess;
}

} // namespace

const Command outlineCommand{
    "outline", "(DIR | --dump FILE) [--focus SUBPATH]",
    "Open the list and the outline of folders and tell the milliseconds to their first picture and "
    "the memory that grew.",
    options, runOutline};

} // namespace quorvane
