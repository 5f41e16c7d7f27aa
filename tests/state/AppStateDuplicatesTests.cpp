// SPDX-License-Identifier: MIT
#include "DuplicateSearchFixture.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <algorithm>
#include <set>
#include <string>
#include <thread>

namespace quorvane {
namespace {

/// Counts the blocks that come to the main thread from others as long as it lives.
class PostedBlocks final : public QObject
{
public:
    PostedBlocks() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* target, QEvent* event) override
    {
        m_count += event->type() == QEvent::MetaCall ? 1 : 0;
        return QObject::eventFilter(target, event);
    }
    int count() const { return m_count; }

private:
    int m_count = 0;
};

class AppStateDuplicates : public DuplicateSearchFixture
{
protected:
    /// Long enough for whatever else is ready to run: a few jobs go there and back.
    void awaitOtherJobs()
    {
        for (int i = 0; i < 5; ++i) {
            bool isDone = false;
            state().jobs().start(
                JobPriority::userInitiated, [](const Job&) { return true; },
                [&isDone](bool done) { isDone = done; });
            ASSERT_TRUE(waitFor([&isDone] { return isDone; }));
        }
    }

    /// Files of makePairs().
    static constexpr int allOfThePairs = 200;

    /// Lets the files be read only when the model is going.
    void endWhileASearchIsHeld()
    {
        std::thread opener([this, post = state().jobs().poster()] {
            while (!post.isClosed()) {
                std::this_thread::yield();
            }
            m_readGate.open();
        });
        end();
        opener.join();
    }
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

TEST_F(AppStateDuplicates, ANewScanStopsTheSearchOfTheOldTree)
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
    EXPECT_LT(m_contents.opened(), 200) << "it ends at the next poll";
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

TEST_F(AppStateDuplicates, ProgressComesInOrder)
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

TEST_F(AppStateDuplicates, WhileTheMainThreadIsBusyOneReportWaitsForIt)
{
    // Ten reports from the walk, one at its end, and then the search stands at the gate.
    constexpr int reports = 10;
    constexpr int nodesOfAReport = 2048;
    std::string text;
    for (int i = 0; i < reports * nodesOfAReport; ++i) {
        text += "f" + std::to_string(i) + " 10\n";
    }
    disk.fileWithContents("one", std::string(2000, 'x'));
    disk.fileWithContents("two", std::string(2000, 'x'));
    m_tree = test::treeFromText(text + "one 2000\ntwo 2000\n", {disk.root()});
    ASSERT_TRUE(waitFor([this] { return state().driveStat.value().totalBytes > 0; }));
    state().rootNode = m_tree->rootPointer();
    QCoreApplication::processEvents();
    m_readGate.close();
    PostedBlocks posted;
    state().runDuplicateSearch();
    m_readGate.awaitVisitor();
    EXPECT_EQ(state().duplicateProgress.value(), 0);
    QCoreApplication::sendPostedEvents(QCoreApplication::instance(), QEvent::MetaCall);
    EXPECT_EQ(posted.count(), 1);
    EXPECT_EQ(state().duplicateProgress.value(), 0.06) << "the report that came last";
    m_readGate.open();
    awaitSearch();
    EXPECT_EQ(groups().size(), 1U);
}

TEST_F(AppStateDuplicates, StoppingAndStartingOverNeverPilesSearchesUp)
{
    makePairs("f");
    m_readGate.close();
    scan(disk.root());
    m_readGate.awaitVisitor();
    for (int i = 0; i < 3; ++i) {
        state().stopDuplicateSearch();
        state().runDuplicateSearch();
        EXPECT_TRUE(state().duplicateSearchIsRunning.value());
        awaitOtherJobs();
    }
    const int workers = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    EXPECT_LE(m_contents.mostInside(), workers) << "the first search alone is among the files";
    EXPECT_EQ(state().duplicateProgress.value(), 0) << "the last one has not begun";
    m_readGate.open();
    awaitSearch();
    EXPECT_EQ(groups().size(), 100U);
    EXPECT_LE(m_contents.mostInside(), workers);
}

TEST_F(AppStateDuplicates, ASearchThatAScanHasDroppedEndsAndMakesRoomForTheNext)
{
    makePairs("first");
    disk.fileWithContents("second/one", std::string(3000, 'x'));
    disk.fileWithContents("second/two", std::string(3000, 'x'));
    m_readGate.close();
    scan(disk.path("first"));
    m_readGate.awaitVisitor();
    scan(disk.path("second"));
    EXPECT_TRUE(state().duplicateSearchIsRunning.value());
    m_readGate.open();
    awaitSearch();
    EXPECT_EQ(groups().size(), 1U);
}

TEST_F(AppStateDuplicates, ABatchDuringTheNextSearchTakesNoLastCopyEither)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    scan(disk.root());
    awaitSearch();
    state().toggleStaged(node("one"));
    state().toggleStaged(node("two"));
    m_readGate.close();
    state().runDuplicateSearch();
    m_readGate.awaitVisitor();
    ASSERT_TRUE(groups().empty());
    state().sendStagedToTrash();
    ASSERT_TRUE(waitFor([this] { return !state().isTrashingStaged.value(); }));
    EXPECT_TRUE(platform.trash.asked().empty());
    m_readGate.open();
}

TEST_F(AppStateDuplicates, AStoppedSearchForgetsNothingThatTheOneBeforeFound)
{
    disk.fileWithContents("one", std::string(3000, 'x'));
    disk.fileWithContents("two", std::string(3000, 'x'));
    scan(disk.root());
    awaitSearch();
    m_readGate.close();
    state().runDuplicateSearch();
    m_readGate.awaitVisitor();
    state().stopDuplicateSearch();
    m_readGate.open();
    for (const char* const name : {"one", "two"}) {
        state().toggleStaged(node(name));
    }
    state().refreshQueueCautions();
    EXPECT_TRUE(waitFor([this] { return !state().queueCautions.value()->losses.indices.empty(); }));
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
    endWhileASearchIsHeld();
    EXPECT_LT(m_contents.opened(), allOfThePairs);
}

TEST_F(AppStateDuplicates, AStateThatGoesDuringASearchEndsIt)
{
    makePairs("f");
    m_readGate.close();
    scan(disk.root());
    m_readGate.awaitVisitor();
    endWhileASearchIsHeld();
    EXPECT_LT(m_contents.opened(), allOfThePairs);
}

} // namespace
} // namespace quorvane
