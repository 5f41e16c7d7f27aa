// SPDX-License-Identifier: MIT
#include "FileContentCalls.h"
#include "Gate.h"
#include "StateFixture.h"
#include "TreeText.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using DuplicateFinder::Group;
using DuplicateFinder::Groups;

/// The bytes of files, behind a gate.
class GatedContents final : public FileContentCalls
{
public:
    explicit GatedContents(Gate& gate)
        : m_gate(gate)
    {}

    int open(int parent, const char* name) override
    {
        m_gate.pass();
        ++m_opened;
        return m_system.open(parent, name);
    }
    bool status(int file, OpenFileStatus& status) override { return m_system.status(file, status); }
    std::int64_t read(int file, std::span<std::byte> room) override
    {
        return m_system.read(file, room);
    }
    bool seek(int file, std::int64_t position) override { return m_system.seek(file, position); }
    void close(int file) override { m_system.close(file); }
    void willRead(int file, std::int64_t position, std::int64_t bytes) override
    {
        m_system.willRead(file, position, bytes);
    }
    void willReadOnce(int file) override { m_system.willReadOnce(file); }

    int opened() const { return m_opened; }

private:
    Gate& m_gate;
    FileContentCalls& m_system = FileContentCalls::system();
    std::atomic<int> m_opened = 0;
};

class AppStateDuplicates : public StateFixture
{
protected:
    AppStateDuplicates()
    {
        platform.lowerThisThread = [this] { m_gate.pass(); };
        m_gate.open();
        m_readGate.open();
        platform.fileContents = &m_contents;
    }
    ~AppStateDuplicates() override
    {
        m_gate.open();
        m_readGate.open();
        end();
    }

    /// What yields to other work waits, the automatic search with it. Before the model starts: a
    /// thread that has been there passes no more.
    void holdUtilityWork() { m_gate.close(); }
    void letUtilityWorkGo() { m_gate.open(); }

    void awaitSearch()
    {
        ASSERT_TRUE(waitFor([this] { return !state().duplicateSearchIsRunning.value(); }));
    }

    NodePointer node(std::string_view path)
    {
        return state().share(&test::nodeAt(*state().rootNode.value(), path));
    }

    const Groups& groups() { return *state().duplicateGroups.value(); }

    /// Names of a group's files, sorted: their order means nothing.
    std::set<std::string> names(std::size_t group)
    {
        std::set<std::string> found;
        for (const FileNode* const file : groups().at(group).files()) {
            found.emplace(file->name());
        }
        return found;
    }

    /// One group of four copies, "a" to "d", in the finder's place.
    void showFourCopies()
    {
        m_tree = test::treeFromText("a 2048 2048 @40\nb 2048 2048 @10\nc 2048 2048 @30\n"
                                    "d 2048 2048 @20\nalone 2048\n");
        state().rootNode = m_tree->rootPointer();
        std::vector<FileNode*> files;
        for (const char* const name : {"a", "b", "c", "d"}) {
            files.push_back(&test::nodeAt(m_tree->root(), name));
        }
        state().duplicateGroups =
            std::make_shared<const Groups>(Groups{Group(2048, files, m_tree->rootPointer())});
    }

    std::vector<std::string> queue()
    {
        std::vector<std::string> found;
        for (const NodePointer& staged : state().stagedNodes.value()) {
            EXPECT_TRUE(staged->isStagedForTrash());
            found.emplace_back(staged->name());
        }
        return found;
    }

    QString flashed() { return state().flashMessage.value().value_or(QString()); }

    /// A hundred pairs of equal files in a folder, each pair unlike the others.
    void makePairs(const std::string& folder)
    {
        for (int i = 0; i < 100; ++i) {
            const std::string text = folder + std::to_string(i) + std::string(2000, 'x');
            disk.fileWithContents(folder + "/a" + std::to_string(i), text);
            disk.fileWithContents(folder + "/b" + std::to_string(i), text);
        }
    }

    /// Waits until the trees and groups of dropped searches have gone.
    void awaitEnd(const std::weak_ptr<FileNode>& node)
    {
        ASSERT_TRUE(waitFor([&node] { return node.expired(); }));
    }

    Gate m_gate;
    Gate m_readGate;
    GatedContents m_contents{m_readGate};
    std::shared_ptr<FileTree> m_tree;
};

TEST_F(AppStateDuplicates, StartsWithNothing)
{
    start();
    ASSERT_NE(state().duplicateGroups.value(), nullptr);
    EXPECT_TRUE(groups().empty());
    EXPECT_FALSE(state().duplicateSearchIsRunning.value());
    EXPECT_EQ(state().duplicateProgress.value(), 0);
    EXPECT_EQ(state().duplicateCount.value(), 0);
    EXPECT_EQ(state().duplicateReclaimable.value(), 0);
    EXPECT_EQ(state().autoPreparedDuplicateURL.value(), std::nullopt);
}

TEST_F(AppStateDuplicates, ASearchFollowsTheScanAndPublishesWithItsSums)
{
    disk.fileWithContents("x/one", std::string(3000, 'x'));
    disk.fileWithContents("y/two", std::string(3000, 'x'));
    disk.fileWithContents("z/three", std::string(3000, 'x'));
    disk.fileWithContents("four", std::string(5000, 'y'));
    disk.fileWithContents("five", std::string(5000, 'y'));
    disk.fileWithContents("other", std::string(5000, 'z'));
    scan(disk.root());
    EXPECT_EQ(state().autoPreparedDuplicateURL.value(), disk.root());
    awaitSearch();
    ASSERT_EQ(groups().size(), 2U);
    EXPECT_EQ(names(0), (std::set<std::string>{"one", "two", "three"}));
    EXPECT_EQ(names(1), (std::set<std::string>{"four", "five"}));
    EXPECT_EQ(state().duplicateCount.value(), 2 + 1);
    EXPECT_EQ(state().duplicateReclaimable.value(), 2 * 3000 + 5000);
    EXPECT_EQ(state().duplicateProgress.value(), 1);
    EXPECT_EQ(state().flashMessage.value(), std::nullopt);
}

TEST_F(AppStateDuplicates, TheSearchBehindAScanYieldsAndTheOneAskedForDoesNot)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    holdUtilityWork();
    scan(disk.root());
    EXPECT_TRUE(state().duplicateSearchIsRunning.value());
    EXPECT_TRUE(groups().empty());
    EXPECT_EQ(state().duplicateProgress.value(), 0);
    bool isDone = false;
    state().jobs().start(
        JobPriority::userInitiated, [](const Job&) { return true; },
        [&isDone](bool done) { isDone = done; });
    ASSERT_TRUE(waitFor([&isDone] { return isDone; }));
    EXPECT_TRUE(state().duplicateSearchIsRunning.value());
    state().stopDuplicateSearch();
    state().runDuplicateSearch();
    awaitSearch();
    EXPECT_EQ(groups().size(), 1U) << "no thread of lower priority was free to find it";
}

TEST_F(AppStateDuplicates, ASecondScanOfTheSameRootSearchesOnlyWhenAsked)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    scan(disk.root());
    awaitSearch();
    ASSERT_EQ(groups().size(), 1U);
    state().startScan(disk.root());
    EXPECT_TRUE(groups().empty());
    EXPECT_EQ(state().duplicateCount.value(), 0);
    EXPECT_EQ(state().duplicateReclaimable.value(), 0);
    EXPECT_EQ(state().duplicateProgress.value(), 0);
    EXPECT_EQ(state().autoPreparedDuplicateURL.value(), disk.root());
    awaitScan();
    EXPECT_FALSE(state().duplicateSearchIsRunning.value());
    EXPECT_TRUE(groups().empty());
    state().runDuplicateSearch();
    EXPECT_TRUE(state().duplicateSearchIsRunning.value());
    awaitSearch();
    EXPECT_EQ(groups().size(), 1U);
    EXPECT_EQ(groups()[0].files()[0]->parent(), state().rootNode.value().get());
}

TEST_F(AppStateDuplicates, AFailedScanSearchesNothing)
{
    start();
    scan(disk.path("missing"));
    EXPECT_FALSE(state().duplicateSearchIsRunning.value());
    EXPECT_EQ(state().autoPreparedDuplicateURL.value(), std::nullopt);
}

TEST_F(AppStateDuplicates, AnotherRootDuringASearchStartsAfresh)
{
    disk.fileWithContents("first/one", std::string(3000, 'x'));
    disk.fileWithContents("first/two", std::string(3000, 'x'));
    disk.fileWithContents("second/three", std::string(4000, 'y'));
    disk.fileWithContents("second/four", std::string(4000, 'y'));
    holdUtilityWork();
    scan(disk.path("first"));
    EXPECT_TRUE(state().duplicateSearchIsRunning.value());
    state().startScan(disk.path("second"));
    EXPECT_FALSE(state().duplicateSearchIsRunning.value());
    awaitScan();
    EXPECT_EQ(state().autoPreparedDuplicateURL.value(), disk.path("second"));
    EXPECT_TRUE(state().duplicateSearchIsRunning.value());
    letUtilityWorkGo();
    awaitSearch();
    ASSERT_EQ(groups().size(), 1U);
    EXPECT_EQ(names(0), (std::set<std::string>{"three", "four"}));
}

TEST_F(AppStateDuplicates, AnotherRootReplacesASearchThatTheUserStarted)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    scan(disk.root());
    awaitSearch();
    state().runDuplicateSearch(true);
    const NodePointer other = test::treeFromText("f 10\n")->rootPointer();
    state().maybeAutoFindDuplicates(other);
    EXPECT_EQ(state().autoPreparedDuplicateURL.value(), FilePath("/scan"));
    EXPECT_TRUE(state().duplicateSearchIsRunning.value());
    EXPECT_EQ(state().flashMessage.value(), std::nullopt) << "it was stopped before, not refused";
}

TEST_F(AppStateDuplicates, ASearchDuringASearchIsRefusedWithAFlash)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    holdUtilityWork();
    scan(disk.root());
    state().runDuplicateSearch();
    EXPECT_EQ(flashed(), QStringLiteral("A duplicate scan is already running."));
    letUtilityWorkGo();
    awaitSearch();
    EXPECT_EQ(groups().size(), 1U) << "the running search was left alone";
}

TEST_F(AppStateDuplicates, WithoutATreeNothingStartsAndNothingIsSaid)
{
    start();
    state().runDuplicateSearch();
    EXPECT_FALSE(state().duplicateSearchIsRunning.value());
    EXPECT_EQ(state().flashMessage.value(), std::nullopt);
}

TEST_F(AppStateDuplicates, AStoppedSearchPublishesNothing)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    holdUtilityWork();
    scan(disk.root());
    state().stopDuplicateSearch();
    EXPECT_FALSE(state().duplicateSearchIsRunning.value());
    EXPECT_EQ(state().flashMessage.value(), std::nullopt);
    state().stopDuplicateSearch();
    letUtilityWorkGo();
    ASSERT_TRUE(waitFor([this] { return state().driveStat.value().totalBytes > 0; }));
    EXPECT_TRUE(groups().empty());
    EXPECT_EQ(state().duplicateProgress.value(), 0);
    // A search runs again only when it is asked for.
    state().maybeAutoFindDuplicates(state().rootNode.value());
    EXPECT_FALSE(state().duplicateSearchIsRunning.value());
    state().runDuplicateSearch();
    awaitSearch();
    EXPECT_EQ(groups().size(), 1U);
}

TEST_F(AppStateDuplicates, ANewSearchClearsTheOldResultAtOnce)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    scan(disk.root());
    awaitSearch();
    state().runDuplicateSearch(true);
    EXPECT_TRUE(groups().empty());
    EXPECT_EQ(state().duplicateCount.value(), 0);
    EXPECT_EQ(state().duplicateReclaimable.value(), 0);
    EXPECT_EQ(state().duplicateProgress.value(), 0);
}

TEST_F(AppStateDuplicates, ASearchThatIsStoppedWhileItReadsPublishesNothing)
{
    makePairs("f");
    m_readGate.close();
    scan(disk.root());
    m_readGate.awaitVisitor();
    state().stopDuplicateSearch();
    EXPECT_FALSE(state().duplicateSearchIsRunning.value());
    m_readGate.open();
    const std::weak_ptr<FileNode> old = state().rootNode.value();
    state().startScan(disk.root());
    awaitEnd(old);
    EXPECT_TRUE(groups().empty());
    EXPECT_LT(m_contents.opened(), 200) << "the flag ends it at the next file";
}

TEST_F(AppStateDuplicates, ANewScanLetsTheSearchRunOnAndDropsWhatItFinds)
{
    makePairs("first");
    disk.file("second/alone", 3000);
    m_readGate.close();
    scan(disk.path("first"));
    m_readGate.awaitVisitor();
    const std::weak_ptr<FileNode> old = state().rootNode.value();
    state().startScan(disk.path("second"));
    EXPECT_FALSE(state().duplicateSearchIsRunning.value());
    m_readGate.open();
    awaitEnd(old);
    awaitScan();
    awaitSearch();
    EXPECT_TRUE(groups().empty());
    EXPECT_EQ(state().duplicateCount.value(), 0);
    EXPECT_GE(m_contents.opened(), 200) << "every file of the old tree was still read";
}

TEST_F(AppStateDuplicates, AnEarlierResultDoesNotOverwriteALaterSearch)
{
    makePairs("f");
    m_readGate.close();
    scan(disk.root());
    m_readGate.awaitVisitor();
    state().stopDuplicateSearch();
    state().runDuplicateSearch();
    int published = 0;
    const auto watch = state().duplicateGroups.addNotifier([&published] { ++published; });
    m_readGate.open();
    awaitSearch();
    EXPECT_EQ(groups().size(), 100U);
    EXPECT_EQ(published, 1);
}

TEST_F(AppStateDuplicates, ProgressComesInOrderAndNeverFillsTheQueue)
{
    makePairs("f");
    m_readGate.close();
    scan(disk.root());
    m_readGate.awaitVisitor();
    EXPECT_TRUE(waitFor([this] { return state().duplicateProgress.value() >= 0.06; }))
        << "the walk is over";
    double last = 0;
    bool isInOrder = true;
    const auto watch = state().duplicateProgress.addNotifier([&] {
        isInOrder = isInOrder && state().duplicateProgress.value() >= last;
        last = state().duplicateProgress.value();
    });
    m_readGate.open();
    awaitSearch();
    EXPECT_TRUE(isInOrder);
    EXPECT_EQ(last, 1);
}

TEST_F(AppStateDuplicates, FilesThatVanishBehindTheScanAreNoCopies)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    disk.fileWithContents("three", std::string(3000, 'x'));
    m_readGate.close();
    scan(disk.root());
    m_readGate.awaitVisitor();
    disk.remove("two");
    m_readGate.open();
    awaitSearch();
    ASSERT_EQ(groups().size(), 1U);
    EXPECT_EQ(names(0), (std::set<std::string>{"one", "three"}));
}

TEST_F(AppStateDuplicates, AStateThatGoesWhileFilesAreReadEndsTheSearch)
{
    makePairs("f");
    m_readGate.close();
    scan(disk.root());
    m_readGate.awaitVisitor();
    // An earlier search that nobody can reach any more ends, too.
    state().startScan(disk.root());
    m_readGate.open();
    end();
}

TEST_F(AppStateDuplicates, AStateThatGoesDuringASearchEndsIt)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    holdUtilityWork();
    scan(disk.root());
    letUtilityWorkGo();
    end();
}

TEST_F(AppStateDuplicates, KeepingOneStagesTheOthersInTheOrderOfTheGroup)
{
    showFourCopies();
    EXPECT_FALSE(state().isKeeper(*node("c")));
    state().trashOthers(*node("c"));
    EXPECT_EQ(queue(), (std::vector<std::string>{"a", "b", "d"}));
    EXPECT_EQ(flashed(), QStringLiteral("Kept \"c\" — staged 3 duplicate copys for Trash."));
    EXPECT_TRUE(state().isKeeper(*node("c")));
    EXPECT_FALSE(state().isKeeper(*node("a"))) << "a staged file is no keeper";
    EXPECT_FALSE(state().isKeeper(*node("alone"))) << "a file without copies is none";
}

TEST_F(AppStateDuplicates, KeepingAStagedCopyTakesItOutAndPutsTheOthersIn)
{
    showFourCopies();
    for (const char* const name : {"a", "alone", "b", "c"}) {
        state().toggleStaged(node(name));
    }
    state().trashOthers(*node("b"));
    EXPECT_EQ(queue(), (std::vector<std::string>{"a", "alone", "c", "d"}));
    EXPECT_EQ(flashed(), QStringLiteral("Kept \"b\" — staged 1 duplicate copy for Trash."))
        << "only what is staged anew counts";
    EXPECT_FALSE(node("b")->isStagedForTrash());
    EXPECT_TRUE(state().isKeeper(*node("b")));
}

TEST_F(AppStateDuplicates, KeepingTheKeeperAgainTellsThatTheOthersAreStaged)
{
    showFourCopies();
    for (const char* const name : {"a", "b", "d"}) {
        state().toggleStaged(node(name));
    }
    EXPECT_TRUE(state().isKeeper(*node("c"))) << "however the others came into the queue";
    state().trashOthers(*node("c"));
    EXPECT_EQ(flashed(),
              QStringLiteral("Kept \"c\" — the duplicate copies are already staged for Trash."));
    EXPECT_EQ(queue(), (std::vector<std::string>{"a", "b", "d"}));
}

TEST_F(AppStateDuplicates, AllStagedThenKeepingOneStagesNothingNew)
{
    showFourCopies();
    for (const char* const name : {"a", "b", "c", "d"}) {
        state().toggleStaged(node(name));
    }
    EXPECT_FALSE(state().isKeeper(*node("d")));
    state().trashOthers(*node("d"));
    EXPECT_EQ(queue(), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(flashed(),
              QStringLiteral("Kept \"d\" — the duplicate copies are already staged for Trash."));
}

TEST_F(AppStateDuplicates, UnstagingAnotherCopyByAnyRouteEndsTheKeeper)
{
    showFourCopies();
    state().trashOthers(*node("a"));
    ASSERT_TRUE(state().isKeeper(*node("a")));
    state().unstage(*node("c"));
    EXPECT_FALSE(state().isKeeper(*node("a")));
    state().toggleStaged(node("c"));
    EXPECT_TRUE(state().isKeeper(*node("a")));
}

TEST_F(AppStateDuplicates, UnkeepingTakesTheOthersOutAgain)
{
    showFourCopies();
    state().toggleStaged(node("alone"));
    state().trashOthers(*node("b"));
    state().unkeep(*node("b"));
    EXPECT_EQ(queue(), std::vector<std::string>{"alone"});
    EXPECT_EQ(flashed(), QStringLiteral("Un-kept \"b\" — 3 copyies removed from Trash."));
    EXPECT_FALSE(state().isKeeper(*node("b")));
    EXPECT_FALSE(node("a")->isStagedForTrash());

    state().toggleStaged(node("d"));
    state().unkeep(*node("b"));
    EXPECT_EQ(flashed(), QStringLiteral("Un-kept \"b\" — 1 copy removed from Trash."));
    state().dismissFlash();
    state().unkeep(*node("b"));
    EXPECT_EQ(state().flashMessage.value(), std::nullopt) << "nothing was staged any more";
}

TEST_F(AppStateDuplicates, AFileInNoGroupIsLeftAlone)
{
    showFourCopies();
    state().trashOthers(*node("alone"));
    state().unkeep(*node("alone"));
    EXPECT_TRUE(queue().empty());
    EXPECT_EQ(state().flashMessage.value(), std::nullopt);
}

TEST_F(AppStateDuplicates, AGroupOfOneHasNoKeeper)
{
    showFourCopies();
    state().duplicateGroups = std::make_shared<const Groups>(
        Groups{Group(2048, {node("a").get()}, m_tree->rootPointer())});
    EXPECT_FALSE(state().isKeeper(*node("a")));
}

TEST_F(AppStateDuplicates, TheFirstGroupWithTheFileCounts)
{
    showFourCopies();
    const NodePointer root = m_tree->rootPointer();
    const auto file = [this](const char* name) { return node(name).get(); };
    state().duplicateGroups = std::make_shared<const Groups>(
        Groups{Group(2048, {file("c"), file("d")}, root), Group(2048, {file("b"), file("a")}, root),
               Group(2048, {file("a"), file("d")}, root)});
    state().trashOthers(*node("a"));
    EXPECT_EQ(queue(), std::vector<std::string>{"b"});
}

TEST_F(AppStateDuplicates, NamesOfAnySortStandAsTheyAreInTheFlash)
{
    m_tree = test::treeFromText("100%2 2048\n%1 2048\n");
    state().rootNode = m_tree->rootPointer();
    FileNode& odd = test::nodeAt(m_tree->root(), "100%2");
    state().duplicateGroups = std::make_shared<const Groups>(
        Groups{Group(2048, {&odd, &test::nodeAt(m_tree->root(), "%1")}, m_tree->rootPointer())});
    state().trashOthers(odd);
    EXPECT_EQ(flashed(), QStringLiteral("Kept \"100%2\" — staged 1 duplicate copy for Trash."));
    state().unkeep(odd);
    EXPECT_EQ(flashed(), QStringLiteral("Un-kept \"100%2\" — 1 copy removed from Trash."));
}

TEST_F(AppStateDuplicates, TwentyThousandCopiesAreStagedInOneWrite)
{
    constexpr int count = 20000;
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "f" + std::to_string(i) + " 2048\n";
    }
    m_tree = test::treeFromText(text);
    state().rootNode = m_tree->rootPointer();
    std::vector<FileNode*> files;
    for (FileNode& file : m_tree->root().children()) {
        files.push_back(&file);
    }
    state().duplicateGroups =
        std::make_shared<const Groups>(Groups{Group(2048, files, m_tree->rootPointer())});
    int writes = 0;
    const auto watch = state().stagedNodes.addNotifier([&writes] { ++writes; });
    state().trashOthers(*files[7]);
    EXPECT_EQ(state().stagedNodes.value().size(), count - 1U);
    EXPECT_EQ(writes, 1);
    EXPECT_TRUE(state().isKeeper(*files[7]));
    state().unkeep(*files[7]);
    EXPECT_TRUE(state().stagedNodes.value().empty());
    EXPECT_EQ(writes, 2);
}

TEST_F(AppStateDuplicates, UnstagingWhatIsNotListedTellsNobody)
{
    showFourCopies();
    state().toggleStaged(node("a"));
    int writes = 0;
    const auto watch = state().stagedNodes.addNotifier([&writes] { ++writes; });
    state().unstage(*node("b"));
    EXPECT_EQ(writes, 0);
    EXPECT_EQ(queue(), std::vector<std::string>{"a"});
}

} // namespace
} // namespace quorvane
