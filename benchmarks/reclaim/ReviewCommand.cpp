// SPDX-License-Identifier: MIT
#include "ReviewCommand.h"

#include "BenchApplication.h"
#include "BusyWatch.h"
#include "FakePlatform.h"
#include "FileContentCalls.h"
#include "JsonText.h"
#include "MainWindow.h"
#include "QuorvaneApp.h"
#include "RowView.h"

#include <QApplication>
#include <QScrollBar>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {{"groups", true}, {"copies", true}};
constexpr std::string_view defaultGroups = "50000";
constexpr std::string_view defaultCopies = "20000";
constexpr std::int64_t mostOfEither = 1'000'000;
constexpr std::int64_t fileBytes = 2048;
constexpr int settlingTurns = 15;

/// Files that are nowhere: "{group} {copy}" holds fileBytes that only tell its group.
class CopiedContents final : public FileContentCalls
{
public:
    int open(int, const char* path) override
    {
        const char* const slash = std::strrchr(path, '/');
        Open opened;
        char* end = nullptr;
        opened.group = std::strtoull(slash == nullptr ? path : slash + 1, &end, 10);
        opened.copy = std::strtoull(end, nullptr, 10);
        const std::lock_guard guard(m_lock);
        m_open[++m_last] = opened;
        return m_last;
    }
    bool status(int file, OpenFileStatus& status) override
    {
        const std::lock_guard guard(m_lock);
        const Open& opened = m_open.at(file);
        status.isRegularFile = true;
        status.device = 1;
        status.inode = opened.group * mostOfEither + opened.copy;
        status.links = 1;
        return true;
    }
    std::int64_t read(int file, std::span<std::byte> room) override
    {
        const std::lock_guard guard(m_lock);
        Open& opened = m_open.at(file);
        const auto count = std::min<std::int64_t>(fileBytes - opened.position,
                                                  static_cast<std::int64_t>(room.size()));
        std::memset(room.data(), 0, static_cast<std::size_t>(count));
        if (opened.position == 0 && room.size() >= sizeof opened.group) {
            std::memcpy(room.data(), &opened.group, sizeof opened.group);
        }
        opened.position += count;
        return count;
    }
    bool seek(int file, std::int64_t position) override
    {
        const std::lock_guard guard(m_lock);
        m_open.at(file).position = position;
        return true;
    }
    void close(int file) override
    {
        const std::lock_guard guard(m_lock);
        m_open.erase(file);
    }
    void willRead(int, std::int64_t, std::int64_t) override {}
    void willReadOnce(int) override {}

private:
    struct Open
    {
        std::uint64_t group = 0;
        std::uint64_t copy = 0;
        std::int64_t position = 0;
    };

    std::mutex m_lock;
    std::map<int, Open> m_open;
    int m_last = 0;
};

/// Group 0 has so many copies, each of the others two.
std::shared_ptr<FileTree> copiedTree(std::int64_t groups, std::int64_t copies)
{
    NodeValues root;
    root.name = "copies";
    root.metadata.isDirectory = true;
    std::vector<std::string> names;
    for (std::int64_t group = 0; group < groups; ++group) {
        for (std::int64_t copy = 0; copy < (group == 0 ? copies : 2); ++copy) {
            names.push_back(std::to_string(group) + " " + std::to_string(copy));
        }
    }
    std::vector<NodeValues> values(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        values[i].id = static_cast<std::int64_t>(i + 1);
        values[i].name = names[i];
        values[i].metadata.isRegularFile = true;
        values[i].metadata.logicalSize = fileBytes;
        values[i].metadata.sizeOnDisk = fileBytes;
        values[i].metadata.dateModified = static_cast<std::int64_t>(i);
    }
    auto tree = FileTree::create(FilePath("/copies"), root);
    tree->addChildren(tree->root(), values);
    tree->root().finalizeTree();
    return tree;
}

/// The window on a large result. Each measurement covers an act of the user and all that follows.
class Review
{
public:
    Review(QApplication& application, FakePlatform& fake, const std::shared_ptr<FileTree>& tree)
        : m_program(application, fake.platform(), AppScreens::standard())
        , m_state(m_program.appState())
    {
        m_program.showWindow();
        m_state.rootNode = tree->rootPointer();
        m_state.focusNode = tree->rootPointer();
        // Both screens are there, as they are after a while of use.
        for (const AppSection section : {AppSection::cleanup, AppSection::duplicates}) {
            m_state.section = section;
            settle();
        }
    }

    template<class Act>
    double busy(Act act)
    {
        m_watch.restart();
        act();
        settle();
        return m_watch.longestMilliseconds();
    }

    void measure(JsonObject& object);
    void finish() { m_program.finishJobs(std::chrono::seconds(10)); }

private:
    void settle()
    {
        int turns = 0;
        runUntil([this, &turns] {
            const bool isBusy =
                m_state.duplicateSearchIsRunning.value() || m_state.isScanning.value();
            return !isBusy && ++turns > settlingTurns;
        });
    }
    RowView& list()
    {
        return *m_program.window().findChild<RowView*>(QStringLiteral("duplicatesList"));
    }
    void measureRows(JsonObject& object);

    QuorvaneApp m_program;
    AppState& m_state;
    BusyWatch m_watch;
};

void Review::measureRows(JsonObject& object)
{
    constexpr int maxShown = 2000;
    const QModelIndex first = list().model()->index(0, 0);
    const auto lastBelow = [&] {
        return list().model()->index(list().model()->rowCount(first) - 1, 0, first);
    };
    object.real("openMilliseconds", busy([&] { list().toggle(first); }));
    double longest = 0;
    while (list().rowOf(lastBelow()).kind == RowKind::more &&
           list().model()->rowCount(first) <= maxShown) {
        const int button = list().rowOf(lastBelow()).actions.front().id;
        longest = std::max(longest, busy([&] { list().press(lastBelow(), RowPart{button, 0}); }));
    }
    object.real("moreMilliseconds", longest);
    QScrollBar& bar = *list().verticalScrollBar();
    object.real("scrollMilliseconds", busy([&] { bar.setValue(bar.maximum()); }));
    object.real("closeMilliseconds", busy([&] { list().toggle(first); }));
}

void Review::measure(JsonObject& object)
{
    object.real("searchMilliseconds", busy([this] { m_state.runDuplicateSearch(); }));
    object.integer("groups", static_cast<std::int64_t>(m_state.duplicateGroups.value()->size()));
    const auto newest = [this] { return m_state.duplicateGroups.value()->front().newestFile(); };
    object.integer("copies", static_cast<std::int64_t>(
                                 m_state.duplicateGroups.value()->front().files().size()));
    measureRows(object);
    object.real("keepMilliseconds", busy([&] { m_state.trashOthers(*newest()); }));
    object.real("cleanupMilliseconds", busy([this] { m_state.section = AppSection::cleanup; }));
    object.real("unstageMilliseconds",
                busy([this] { m_state.unstage(*m_state.stagedNodes.value().front()); }));
    object.real("backMilliseconds", busy([this] { m_state.section = AppSection::duplicates; }));
    object.real("keepAgainMilliseconds", busy([&] { m_state.trashOthers(*newest()); }));
    object.real("unkeepMilliseconds", busy([&] { m_state.unkeep(*newest()); }));
    object.real("againMilliseconds", busy([this] { m_state.runDuplicateSearch(); }));
    object.real("cancelMilliseconds", busy([this] {
                    m_state.runDuplicateSearch();
                    m_state.stopDuplicateSearch();
                }));
    busy([this] { m_state.runDuplicateSearch(); });
    m_state.trashOthers(*newest());
    busy([] {});
    object.real("dropMilliseconds",
                busy([this] { m_state.startScan(FilePath("/nowhere/at all")); }));
}

std::optional<std::int64_t> numberOf(const Arguments& arguments, std::string_view name,
                                     std::string_view otherwise)
{
    const auto number = integerFromText(arguments.value(name).value_or(otherwise));
    return number && *number >= 2 && *number <= mostOfEither ? number : std::nullopt;
}

int runReview(const Arguments& arguments)
{
    const auto groups = numberOf(arguments, "groups", defaultGroups);
    const auto copies = numberOf(arguments, "copies", defaultCopies);
    if (!arguments.operands().empty() || !groups || !copies) {
        return complain("review takes --groups and --copies, whole numbers from 2 to 1000000",
                        exitUsage);
    }
    BenchApplication application(BenchApplication::Display::ofTheWindow);
    CopiedContents contents;
    FakePlatform fake;
    fake.fileContents = &contents;
    Review review(application, fake, copiedTree(*groups, *copies));
    std::string line;
    JsonObject object(line);
    review.measure(object);
    object.endLine();
    std::cout << line;
    review.finish();
    return exitSuccess;
}

} // namespace

const Command reviewCommand{"review", "[--groups N] [--copies N]",
                            "Find groups of files in memory, review them in the window and tell "
                            "the longest time that the main thread was busy with each act.",
                            options, runReview};

} // namespace quorvane
