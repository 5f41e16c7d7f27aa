// SPDX-License-Identifier: MIT
#include "Gate.h"
#include "StateFixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <sys/statvfs.h>

#include <chrono>
#include <mutex>
#include <string>

namespace quorvane {
namespace {

using namespace std::chrono_literals;
using Call = FaultyFileSystemCalls::Call;

class AppStateNavigation : public StateFixture
{
protected:
    /// The node at a path of two names below the root of the scan.
    NodePointer nodeAt(std::string_view folder, std::string_view name)
    {
        for (FileNode& child : state().rootNode.value()->children()) {
            for (FileNode& grandchild : child.children()) {
                if (child.name() == folder && grandchild.name() == name) {
                    return state().share(&grandchild);
                }
            }
        }
        return nullptr;
    }
};

TEST_F(AppStateNavigation, SelectChangesTheSelectionAlone)
{
    disk.file("a/b", 1);
    scan(disk.root());
    const NodePointer file = nodeAt("a", "b");
    state().select(file);
    EXPECT_EQ(state().selectedNode.value(), file);
    EXPECT_EQ(state().focusNode.value(), state().rootNode.value());
    state().select(nullptr);
    EXPECT_EQ(state().selectedNode.value(), nullptr);
}

TEST_F(AppStateNavigation, FocusTakesTheSelectionAlong)
{
    disk.folder("a/b");
    scan(disk.root());
    const NodePointer folder = nodeAt("a", "b");
    state().focus(folder);
    EXPECT_EQ(state().focusNode.value(), folder);
    EXPECT_EQ(state().selectedNode.value(), folder);
    EXPECT_EQ(state().shownNode(), folder);
}

TEST_F(AppStateNavigation, FocusUpClimbsToTheRootAndStaysThere)
{
    disk.folder("a/b");
    scan(disk.root());
    const NodePointer root = state().rootNode.value();
    state().focus(nodeAt("a", "b"));
    state().focusUp();
    EXPECT_EQ(state().focusNode.value().get(), &root->children()[0]);
    EXPECT_EQ(state().selectedNode.value(), nullptr);
    state().focusUp();
    EXPECT_EQ(state().focusNode.value(), root);
    state().select(root);
    state().focusUp();
    EXPECT_EQ(state().focusNode.value(), root);
    EXPECT_EQ(state().selectedNode.value(), nullptr);
}

TEST_F(AppStateNavigation, FocusUpWithoutAFocusGoesToTheRoot)
{
    scan(disk.root());
    state().focusNode = nullptr;
    state().focusUp();
    EXPECT_EQ(state().focusNode.value(), state().rootNode.value());
}

TEST_F(AppStateNavigation, FocusUpWithoutATreeDoesNothing)
{
    start().focusUp();
    EXPECT_EQ(state().focusNode.value(), nullptr);
    EXPECT_EQ(state().selectedNode.value(), nullptr);
}

TEST_F(AppStateNavigation, FocusUpFromAnItemThatNoScanSawGoesToTheRoot)
{
    scan(disk.root());
    state().focus(FileTree::stagedItem("x", FilePath("/x"), 1));
    state().focusUp();
    EXPECT_EQ(state().focusNode.value(), state().rootNode.value());
}

TEST_F(AppStateNavigation, RevealAndOpenHandThePathOn)
{
    disk.file("odd/\xFF name", 1);
    scan(disk.root());
    const NodePointer file = nodeAt("odd", "\xFF name");
    ASSERT_NE(file, nullptr);
    state().revealInFinder(*file);
    EXPECT_EQ(platform.workspace.revealed, (std::vector<FilePath>{disk.path("odd/\xFF name")}));
    EXPECT_TRUE(platform.workspace.opened.empty());
    state().openInApp(*file);
    EXPECT_EQ(platform.workspace.opened, (std::vector<FilePath>{disk.path("odd/\xFF name")}));
    EXPECT_EQ(platform.workspace.revealed.size(), 1U);
}

TEST_F(AppStateNavigation, DisplayPathIsNotShortened)
{
    EXPECT_EQ(AppState::displayPath(disk.path("x")), disk.path("x").displayText());
}

class AppStateSections : public StateFixture
{};

TEST_F(AppStateSections, SettingsReturnToWhereTheyWereOpened)
{
    AppState& state = start();
    state.section = AppSection::quickWins;
    state.openSettings();
    EXPECT_EQ(state.section.value(), AppSection::settings);
    state.closeSettings();
    EXPECT_EQ(state.section.value(), AppSection::quickWins);
}

TEST_F(AppStateSections, OpeningTheSettingsTwiceKeepsTheFirstSection)
{
    AppState& state = start();
    state.section = AppSection::monitor;
    state.openSettings();
    state.openSettings();
    EXPECT_EQ(state.sectionBeforeSettings.value(), AppSection::monitor);
    state.closeSettings();
    EXPECT_EQ(state.section.value(), AppSection::monitor);
}

TEST_F(AppStateSections, ClosingTheSettingsElsewhereDoesNothing)
{
    AppState& state = start();
    state.section = AppSection::monitor;
    state.openSettings();
    state.closeSettings();
    state.section = AppSection::search;
    state.closeSettings();
    EXPECT_EQ(state.section.value(), AppSection::search);
}

class AppStateFlash : public StateFixture
{
protected:
    bool isFlashing() { return state().flashMessage.value().has_value(); }
};

TEST_F(AppStateFlash, GoesAwayByItself)
{
    QElapsedTimer clock;
    clock.start();
    state().flash(QStringLiteral("done"));
    EXPECT_EQ(state().flashMessage.value(), QStringLiteral("done"));
    ASSERT_TRUE(waitFor([this] { return !isFlashing(); }));
    EXPECT_GE(clock.elapsed(), 2600);
}

TEST_F(AppStateFlash, SecondOneReplacesTheFirstAndStartsTheTimeAnew)
{
    QElapsedTimer first;
    first.start();
    state().flash(QStringLiteral("one"));
    ASSERT_TRUE(waitFor([&first] { return first.hasExpired(2000); }));
    QElapsedTimer second;
    second.start();
    state().flash(QStringLiteral("two"));
    ASSERT_TRUE(waitFor([this] { return !isFlashing(); }));
    EXPECT_GE(second.elapsed(), 2600);
}

TEST_F(AppStateFlash, DismissedOneTakesItsTimeWithIt)
{
    QElapsedTimer clock;
    state().flash(QStringLiteral("one"));
    state().dismissFlash();
    EXPECT_FALSE(isFlashing());
    clock.start();
    state().flash(QStringLiteral("two"));
    ASSERT_TRUE(waitFor([this] { return !isFlashing(); }));
    EXPECT_GE(clock.elapsed(), 2600);
    state().dismissFlash();
    EXPECT_FALSE(isFlashing());
}

class AppStateDrive : public StateFixture
{};

TEST_F(AppStateDrive, IsReadAtTheStart)
{
    struct statvfs volume = {};
    ASSERT_EQ(statvfs(disk.root().parent().bytes().c_str(), &volume), 0);
    AppState& state = start();
    ASSERT_TRUE(waitFor([&state] { return state.driveStat.value().totalBytes != 0; }));
    EXPECT_EQ(state.driveStat.value().totalBytes, std::uint64_t{volume.f_blocks} * volume.f_frsize);
    EXPECT_LE(state.driveStat.value().freeBytes, state.driveStat.value().totalBytes);
    EXPECT_EQ(calls.count(Call::volumeCapacity), 1);
}

TEST_F(AppStateDrive, IsReadAgainAfterEachCompletedScanAndOnDemand)
{
    AppState& state = start();
    ASSERT_TRUE(waitFor([this] { return calls.count(Call::volumeCapacity) == 1; }));
    scan(disk.root());
    ASSERT_TRUE(waitFor([this] { return calls.count(Call::volumeCapacity) == 2; }));
    scan(disk.path("absent"));
    state.refreshDriveUsage();
    ASSERT_TRUE(waitFor([this] { return calls.count(Call::volumeCapacity) == 3; }));
}

TEST_F(AppStateDrive, AsksForTheFolderAboveTheHome)
{
    std::mutex lock;
    std::string asked;
    calls.before(Call::volumeCapacity, [&](int, std::string_view path) {
        const std::lock_guard guard(lock);
        asked = path;
    });
    AppState& state = start();
    ASSERT_TRUE(waitFor([&state] { return state.driveStat.value().totalBytes != 0; }));
    const std::lock_guard guard(lock);
    EXPECT_EQ(asked, disk.root().parent().bytes());
}

TEST_F(AppStateDrive, UnreadableVolumeReadsAsZeros)
{
    calls.failOnce(Call::volumeCapacity, 2);
    AppState& state = start();
    ASSERT_TRUE(waitFor([&state] { return state.driveStat.value().totalBytes != 0; }));
    state.refreshDriveUsage();
    ASSERT_TRUE(waitFor([&state] { return state.driveStat.value() == DriveSample{}; }));
}

TEST_F(AppStateDrive, ReadingThatIsUnderWayAtTheEndIsDropped)
{
    Gate gate;
    calls.before(Call::volumeCapacity, [&gate](int, std::string_view) { gate.pass(); });
    start();
    gate.awaitVisitor();
    gate.open();
    end();
    QCoreApplication::processEvents();
    EXPECT_EQ(calls.count(Call::volumeCapacity), 1);
}

TEST_F(AppStateDrive, HungVolumeIsAskedOnceAndOnceMoreWhenItAnswers)
{
    Gate gate;
    calls.before(Call::volumeCapacity, [&gate](int, std::string_view) { gate.pass(); });
    AppState& state = start();
    gate.awaitVisitor();
    for (int minute = 0; minute < 100; ++minute) {
        state.refreshDriveUsage();
    }
    EXPECT_EQ(calls.count(Call::volumeCapacity), 1);
    gate.open();
    ASSERT_TRUE(waitFor([this] { return calls.count(Call::volumeCapacity) == 2; }));
    EXPECT_TRUE(waitFor([&state] { return state.driveStat.value().totalBytes != 0; }));
}

} // namespace
} // namespace quorvane
