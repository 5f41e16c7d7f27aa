// SPDX-License-Identifier: MIT
#include "Gate.h"
#include "StateFixture.h"
#include "UnprivilegedRun.h"

#include <QCoreApplication>
#include <QStringList>

#include <sys/resource.h>

#include <atomic>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>

namespace quorvane {
namespace {

using Call = FaultyFileSystemCalls::Call;

class AppStateScan : public StateFixture
{
protected:
    /// Holds every worker up that is about to open the folder of that name.
    void holdAt(const std::string& name, Gate& gate)
    {
        calls.before(Call::openDirectory, [name, &gate](int, std::string_view opened) {
            if (FilePath(std::string(opened)).lastComponent() == name) {
                gate.pass();
            }
        });
    }
};

TEST_F(AppStateScan, StartsWithNothing)
{
    const AppState& state = start();
    EXPECT_FALSE(state.hasScan());
    EXPECT_FALSE(state.isScanning);
    EXPECT_EQ(state.progress.value(), std::nullopt);
    EXPECT_EQ(state.errorMessage.value(), std::nullopt);
    EXPECT_EQ(state.selectedNode.value(), nullptr);
    EXPECT_EQ(state.focusNode.value(), nullptr);
    EXPECT_EQ(state.shownNode(), nullptr);
    EXPECT_EQ(state.section.value(), AppSection::analysis);
    EXPECT_EQ(state.sectionBeforeSettings.value(), AppSection::analysis);
    EXPECT_EQ(state.visualizer.value(), VisualizerType::treemap);
    EXPECT_EQ(state.flashMessage.value(), std::nullopt);
    EXPECT_EQ(state.driveStat.value(), DriveSample{});
    ASSERT_NE(state.nodesByID.value(), nullptr);
    EXPECT_TRUE(state.nodesByID.value()->isEmpty());
}

TEST_F(AppStateScan, PublishesTheFinishedTree)
{
    disk.file("a/f", 30);
    disk.file("g", 10);
    AppState& state = start();
    state.startScan(disk.root());
    EXPECT_TRUE(state.isScanning);
    EXPECT_EQ(state.progress.value(), ScanProgress{});
    EXPECT_FALSE(state.hasScan());
    awaitScan();
    ASSERT_TRUE(state.hasScan());
    const NodePointer root = state.rootNode.value();
    EXPECT_EQ(root->path(), disk.root());
    EXPECT_EQ(root->scannedBytes(), 40);
    EXPECT_EQ(state.selectedNode.value(), root);
    EXPECT_EQ(state.focusNode.value(), root);
    EXPECT_EQ(state.shownNode(), root);
    EXPECT_EQ(state.errorMessage.value(), std::nullopt);
    // The closing totals count the root as a folder, unlike the scanner's reports.
    EXPECT_EQ(state.progress.value(), (ScanProgress{2, 2, 40, ""}));
    ASSERT_EQ(state.nodesByID.value()->size(), 4U);
    for (const FileNode& child : root->children()) {
        EXPECT_EQ(state.nodesByID.value()->find(child.id()), &child);
    }
}

TEST_F(AppStateScan, PublishesInTheOrderThatReadersRelyOn)
{
    disk.file("f", 3);
    AppState& state = start();
    state.startScan(disk.root());
    QStringList order;
    const auto note = [&order](const char* field) {
        return [&order, field] { order << QString::fromLatin1(field); };
    };
    const auto first = state.isScanning.onValueChanged(note("isScanning"));
    const auto second = state.rootNode.onValueChanged(note("rootNode"));
    const auto third = state.selectedNode.onValueChanged(note("selectedNode"));
    const auto fourth = state.focusNode.onValueChanged(note("focusNode"));
    const auto fifth = state.nodesByID.onValueChanged(note("nodesByID"));
    awaitScan();
    EXPECT_EQ(order.join(QLatin1Char(' ')),
              QLatin1String("isScanning rootNode selectedNode focusNode nodesByID"));
}

TEST_F(AppStateScan, StartDropsTheOldTreeAtOnce)
{
    disk.file("a/f", 30);
    AppState& state = start();
    scan(disk.root());
    const std::weak_ptr<FileNode> watch = state.rootNode.value();
    state.focus(state.share(&state.rootNode.value()->children()[0]));
    state.startScan(disk.path("a"));
    EXPECT_FALSE(state.hasScan());
    EXPECT_EQ(state.selectedNode.value(), nullptr);
    EXPECT_EQ(state.focusNode.value(), nullptr);
    EXPECT_TRUE(state.nodesByID.value()->isEmpty());
    awaitScan();
    EXPECT_EQ(state.rootNode.value()->path(), disk.path("a"));
    EXPECT_TRUE(waitFor([&watch] { return watch.expired(); }));
}

TEST_F(AppStateScan, NodeThatIsHeldOutlivesItsTree)
{
    disk.file("a/f", 30);
    AppState& state = start();
    scan(disk.root());
    const NodePointer held = state.share(&state.rootNode.value()->children()[0]);
    scan(disk.path("a"));
    EXPECT_EQ(held->path(), disk.path("a"));
    EXPECT_EQ(held->parent()->scannedBytes(), 30);
    EXPECT_EQ(state.share(nullptr), nullptr);
}

TEST_F(AppStateScan, StartLeavesTheRestAlone)
{
    AppState& state = start();
    state.section = AppSection::monitor;
    state.visualizer = VisualizerType::sunburst;
    state.flash(QStringLiteral("note"));
    state.setSizeMode(SizeMode::logical);
    scan(disk.root());
    EXPECT_EQ(state.section.value(), AppSection::monitor);
    EXPECT_EQ(state.visualizer.value(), VisualizerType::sunburst);
    EXPECT_EQ(state.flashMessage.value(), QStringLiteral("note"));
    EXPECT_EQ(state.sizeMode(), SizeMode::logical);
}

TEST_F(AppStateScan, StartWhileScanningIsIgnored)
{
    disk.folder("first");
    disk.folder("second");
    Gate gate;
    std::atomic<bool> isSecondOpened = false;
    calls.before(Call::openDirectory, [&](int, std::string_view opened) {
        const FilePath path{std::string(opened)};
        isSecondOpened = isSecondOpened || path.lastComponent() == "second";
        if (path.lastComponent() == "first") {
            gate.pass();
        }
    });
    AppState& state = start();
    state.startScan(disk.path("first"));
    gate.awaitVisitor();
    state.startScan(disk.path("second"));
    state.scanHome();
    state.rescan();
    EXPECT_TRUE(state.isScanning);
    // The root of the one scan and nothing else was opened.
    EXPECT_EQ(calls.count(Call::openDirectory), 1);
    gate.open();
    awaitScan();
    EXPECT_EQ(state.rootNode.value()->path(), disk.path("first"));
    EXPECT_FALSE(isSecondOpened);
}

TEST_F(AppStateScan, StartWhileScanningKeepsACancelInForce)
{
    disk.folder("first");
    Gate gate;
    holdAt("first", gate);
    AppState& state = start();
    state.startScan(disk.path("first"));
    gate.awaitVisitor();
    state.cancelScan();
    state.startScan(disk.root());
    gate.open();
    awaitScan();
    EXPECT_FALSE(state.hasScan());
}

TEST_F(AppStateScan, CancelLeavesNoTreeAndNoMessage)
{
    disk.folder("slow");
    Gate gate;
    holdAt("slow", gate);
    AppState& state = start();
    state.startScan(disk.root());
    // The report of the root comes through while a worker waits below.
    ASSERT_TRUE(
        waitFor([&] { return gate.hasVisitor() && !state.progress.value()->currentPath.empty(); }));
    const std::optional<ScanProgress> lastReport = state.progress.value();
    state.cancelScan();
    EXPECT_TRUE(state.isScanning);
    gate.open();
    awaitScan();
    EXPECT_FALSE(state.hasScan());
    EXPECT_EQ(state.errorMessage.value(), std::nullopt);
    EXPECT_EQ(state.progress.value(), lastReport);
    EXPECT_EQ(lastReport->directoriesScanned, 1);
}

TEST_F(AppStateScan, CancelTwiceAndAfterTheEndDoesNoHarm)
{
    disk.file("f", 3);
    AppState& state = start();
    state.startScan(disk.root());
    state.cancelScan();
    state.cancelScan();
    awaitScan();
    EXPECT_FALSE(state.hasScan());
    state.cancelScan();
    EXPECT_FALSE(state.isScanning);
    // The flag of the last scan does not reach the next one.
    scan(disk.root());
    EXPECT_TRUE(state.hasScan());
}

TEST_F(AppStateScan, ScanOfAFileTellsThatItIsNoFolder)
{
    disk.file("f", 3);
    AppState& state = start();
    scan(disk.root());
    scan(disk.path("f"));
    EXPECT_EQ(state.errorMessage.value(),
              QLatin1String("Not a directory: ") + disk.path("f").displayText());
    EXPECT_FALSE(state.hasScan());
    EXPECT_FALSE(state.isScanning);
    // The next start takes the message away at once.
    state.startScan(disk.root());
    EXPECT_EQ(state.errorMessage.value(), std::nullopt);
    awaitScan();
    EXPECT_TRUE(state.hasScan());
}

TEST_F(AppStateScan, ScanOfNothingTellsThatItCannotBeAccessed)
{
    AppState& state = start();
    scan(disk.path("absent\xFF"));
    EXPECT_EQ(state.errorMessage.value(),
              QString(QLatin1String("Cannot access ") + disk.path("absent").displayText() +
                      QChar(QChar::ReplacementCharacter)));
}

TEST_F(AppStateScan, OnlyACancelIsSilent)
{
    AppState& state = start();
    state.isScanning = true;
    state.consumeError({"Scan cancelled"});
    EXPECT_FALSE(state.isScanning);
    EXPECT_EQ(state.errorMessage.value(), std::nullopt);
    state.isScanning = true;
    state.consumeError({"scan cancelled"});
    EXPECT_FALSE(state.isScanning);
    EXPECT_EQ(state.errorMessage.value(), QStringLiteral("scan cancelled"));
}

TEST_F(AppStateScan, RescanWithoutATreeDoesNothing)
{
    AppState& state = start();
    state.rescan();
    EXPECT_FALSE(state.isScanning);
    EXPECT_EQ(state.progress.value(), std::nullopt);
}

TEST_F(AppStateScan, RescanSeesWhatChangedAndStaysInItsSection)
{
    disk.file("f", 3);
    AppState& state = start();
    scan(disk.root());
    state.section = AppSection::cleanup;
    disk.file("g", 4);
    state.rescan();
    awaitScan();
    EXPECT_EQ(state.rootNode.value()->scannedBytes(), 7);
    EXPECT_EQ(state.rootNode.value()->path(), disk.root());
    EXPECT_EQ(state.section.value(), AppSection::cleanup);
}

TEST_F(AppStateScan, ScanHomeGoesToTheAnalysisOfTheHomeFolder)
{
    AppState& state = start();
    state.section = AppSection::monitor;
    state.scanHome();
    EXPECT_EQ(state.section.value(), AppSection::analysis);
    awaitScan();
    EXPECT_EQ(state.rootNode.value()->path(), state.homeURL());
    EXPECT_EQ(state.homeURL(), disk.root());
}

TEST_F(AppStateScan, ScanFullMacStartsAtTheRootOfTheFileSystem)
{
    // No test walks the whole disk: the root cannot be asked about here.
    calls.failAlways(Call::status);
    AppState& state = start();
    std::mutex lock;
    std::set<std::string> asked;
    calls.before(Call::status, [&](int, std::string_view name) {
        const std::lock_guard guard(lock);
        asked.emplace(name);
    });
    state.section = AppSection::monitor;
    state.scanFullMac();
    EXPECT_EQ(state.section.value(), AppSection::analysis);
    awaitScan();
    EXPECT_EQ(state.errorMessage.value(), QStringLiteral("Cannot access /"));
    EXPECT_EQ(asked, std::set<std::string>{"/"});
}

TEST_F(AppStateScan, PickFolderAsksAndScansTheAnswer)
{
    disk.folder("picked");
    AppState& state = start();
    state.section = AppSection::monitor;
    state.pickFolder();
    ASSERT_EQ(platform.folderChooser.requests.size(), 1U);
    EXPECT_EQ(platform.folderChooser.requests[0].prompt, QStringLiteral("Scan"));
    EXPECT_EQ(platform.folderChooser.requests[0].message,
              QStringLiteral("Choose a folder or volume to analyze"));
    EXPECT_EQ(state.section.value(), AppSection::monitor);
    EXPECT_FALSE(state.isScanning);
    platform.folderChooser.confirm(disk.path("picked"));
    ASSERT_TRUE(waitFor([&state] { return state.hasScan(); }));
    EXPECT_EQ(state.section.value(), AppSection::analysis);
    EXPECT_EQ(state.rootNode.value()->path(), disk.path("picked"));
}

TEST_F(AppStateScan, FolderThatIsALinkIsScannedWhereItLeads)
{
    disk.file("real/inner/f", 5);
    disk.symbolicLink("real/inner", "alias");
    const FilePath folder(std::filesystem::canonical(disk.path("alias").bytes()).string());
    AppState& state = start();
    state.pickFolder();
    platform.folderChooser.confirm(disk.path("alias"));
    ASSERT_TRUE(waitFor([&state] { return state.hasScan(); }));
    EXPECT_EQ(state.rootNode.value()->path(), folder);
    state.openFolder(disk.path("alias"));
    ASSERT_TRUE(waitFor([&state] { return state.hasScan(); }));
    EXPECT_EQ(state.rootNode.value()->path(), folder);
    // A scan of the tree's own root follows nothing.
    state.startScan(disk.path("alias"));
    awaitScan();
    EXPECT_EQ(state.errorMessage.value(),
              QStringLiteral("Not a directory: ") + disk.path("alias").displayText());
}

TEST_F(AppStateScan, LinkThatLeadsToNoFolderIsNoFolder)
{
    disk.file("file", 5);
    disk.symbolicLink("nowhere", "dangling");
    disk.symbolicLink("file", "alias");
    AppState& state = start();
    for (const char* const name : {"dangling", "alias"}) {
        state.openFolder(disk.path(name));
        awaitScan();
        ASSERT_TRUE(state.errorMessage.value().has_value()) << name;
        EXPECT_TRUE(state.errorMessage.value()->startsWith(QStringLiteral("Not a directory: ")));
        EXPECT_FALSE(state.hasScan());
    }
}

TEST_F(AppStateScan, HomeThatIsALinkIsScannedWhereItLeads)
{
    disk.file("real/f", 5);
    disk.symbolicLink("real", "home");
    FakePlatform linked{disk.path("home"), calls};
    AppState state(linked.platform());
    state.scanHome();
    ASSERT_TRUE(waitFor([&state] { return !state.isScanning.value(); }));
    ASSERT_TRUE(state.hasScan());
    EXPECT_EQ(state.rootNode.value()->scannedBytes(), 5);
    EXPECT_EQ(state.homeURL(), disk.path("home"));
}

TEST_F(AppStateScan, WithoutAThreadItEndsWithAMessage)
{
    const FilePath root = disk.root();
    inChildProcess([&root] {
        asUnprivilegedUser([&root] {
            // Another process's threads count towards the limit as well, and none is left.
            const rlimit none{0, 0};
            ASSERT_EQ(setrlimit(RLIMIT_NPROC, &none), 0);
            FakePlatform poor{root, FileSystemCalls::system()};
            AppState state(poor.platform());
            state.startScan(root);
            ASSERT_TRUE(waitFor([&state] { return !state.isScanning.value(); }));
            EXPECT_EQ(state.errorMessage.value(),
                      QStringLiteral("Not enough memory or threads to scan ") + root.displayText());
            EXPECT_FALSE(state.hasScan());
        });
    });
}

TEST_F(AppStateScan, PickFolderWithoutAnAnswerDoesNothing)
{
    AppState& state = start();
    state.section = AppSection::monitor;
    state.pickFolder();
    platform.folderChooser.confirm(FilePath());
    QCoreApplication::processEvents();
    EXPECT_EQ(state.section.value(), AppSection::monitor);
    EXPECT_FALSE(state.isScanning);
    EXPECT_EQ(state.errorMessage.value(), std::nullopt);
}

TEST_F(AppStateScan, AnswerThatComesAfterTheEndIsDropped)
{
    start().pickFolder();
    end();
    platform.folderChooser.confirm(disk.root());
    QCoreApplication::processEvents();
    EXPECT_EQ(calls.count(Call::openDirectory), 0);
}

TEST_F(AppStateScan, EndInTheMiddleOfAScanStopsIt)
{
    for (int i = 0; i < 50; ++i) {
        disk.file("d" + std::to_string(i) + "/f", 1);
    }
    AppState& state = start();
    Gate gate;
    holdAt("d7", gate);
    state.startScan(disk.root());
    gate.awaitVisitor();
    gate.open();
    end();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls.openNow(), 0);
}

} // namespace
} // namespace quorvane
