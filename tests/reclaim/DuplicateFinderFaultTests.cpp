// SPDX-License-Identifier: MIT
#include "FinderFixture.h"

#include "ThreadPriority.h"

#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <thread>

namespace quorvane {
namespace {

using DuplicateFinder::Pass;
using test::FinderTest;
using test::GroupPaths;
using test::textOf;

constexpr std::int64_t farAhead = std::numeric_limits<std::int64_t>::max();

/// Three copies: small ones that a sample covers, or large ones.
class FaultTest : public FinderTest
{
protected:
    void threeCopies(std::size_t bytes)
    {
        std::string text;
        for (const char* name : {"a", "b", "c"}) {
            text += std::string(name) + " " + std::to_string(bytes) + "\n";
            contents(name, textOf('q', bytes));
        }
        tree(text);
    }
    /// Runs when the file is opened for the second pass over contents.
    void beforeVerifying(std::function<void(const std::string& path)> change)
    {
        m_contents.beforeOpen = [this, change = std::move(change)](const std::string& path, int) {
            if (filesOf(Pass::sampling) > 0) {
                change(path);
            }
        };
    }
};

constexpr std::size_t small = 5000;
constexpr std::size_t large = 700000;

TEST_F(FaultTest, FileThatCannotBeOpenedFallsOut)
{
    for (const std::size_t bytes : {small, large}) {
        threeCopies(bytes);
        file("b").opens = false;
        m_passes.clear();
        EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
        EXPECT_EQ(filesOf(Pass::sampling), 2);
        file("b").opens = true;
    }
}

TEST_F(FaultTest, FileWithoutAStatusFallsOut)
{
    threeCopies(small);
    file("b").hasStatus = false;
    EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
}

TEST_F(FaultTest, FileThatBecameSomethingElseFallsOut)
{
    for (const std::size_t bytes : {small, large}) {
        threeCopies(bytes);
        file("b").isRegularFile = false;
        EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
        file("b").isRegularFile = true;
    }
}

TEST_F(FaultTest, FailedSeekDropsALargeFile)
{
    threeCopies(large);
    file("b").seeks = false;
    EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
    EXPECT_EQ(filesOf(Pass::verifying), 2);
}

TEST_F(FaultTest, LargeFileThatVanishesBetweenThePassesFallsOut)
{
    threeCopies(large);
    beforeVerifying([this](const std::string& path) {
        if (path == "/scan/b") {
            m_contents.remove(path);
        }
    });
    EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
}

TEST_F(FaultTest, LargeFileThatChangesBetweenThePassesFallsOut)
{
    threeCopies(large);
    beforeVerifying([this](const std::string& path) {
        if (path == "/scan/b") {
            m_contents.file(path).bytes[large / 2] ^= 1;
        }
    });
    EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
}

TEST_F(FaultTest, SampleThatCoveredTheFileIsReadOnce)
{
    threeCopies(small);
    EXPECT_EQ(found(), (GroupPaths{{"a", "b", "c"}}));
    // The heads show that they begin alike.
    EXPECT_EQ(m_contents.bytesRead(), static_cast<std::int64_t>(3 * (small + 4096)));
    EXPECT_EQ(m_passes.at(2).bytesRead, 0);
    EXPECT_EQ(filesOf(Pass::verifying), 3);
}

TEST_F(FaultTest, UnreadableFilesAllFallOut)
{
    threeCopies(small);
    for (const char* name : {"a", "b", "c"}) {
        file(name).readable = 0;
    }
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(filesOf(Pass::sampling), 0);
    EXPECT_EQ(m_progress, (std::vector{0.06, 1.0}));
}

TEST_F(FaultTest, ReadableFrontStandsForASmallFile)
{
    threeCopies(small);
    for (const char* name : {"a", "b"}) {
        file(name).readable = 3000;
    }
    // The two meet each other, not the one that can be read whole.
    const DuplicateFinder::Groups groups = find();
    ASSERT_EQ(test::pathsOf(groups), (GroupPaths{{"a", "b"}}));
    for (const FileNode* each : groups[0].files()) {
        EXPECT_TRUE(groups[0].isBrokenOff(*each));
        EXPECT_FALSE(groups[0].isSameFile(*each));
    }
    EXPECT_EQ(groups[0].newestFile(), nullptr);
}

TEST_F(FaultTest, FileThatCanBeReadWholeIsTheKeeperWhereReadingAnotherBrokeOff)
{
    // What one of them still has is all that can be read of the other, which is the newer one.
    tree("a 5000 5000 @50\nb 5000 5000 @90\nc 5000 5000 @70\n");
    contents("a", textOf('q', 5000));
    contents("b", textOf('q', 5000) + "more");
    contents("c", textOf('q', 5000));
    file("b").readable = 5000;
    const DuplicateFinder::Groups groups = find();
    ASSERT_EQ(test::pathsOf(groups), (GroupPaths{{"a", "b", "c"}}));
    EXPECT_TRUE(groups[0].isBrokenOff(*groups[0].files()[1]));
    EXPECT_FALSE(groups[0].isBrokenOff(*groups[0].files()[0]));
    EXPECT_EQ(groups[0].newestFile()->name(), "c");
}

TEST_F(FaultTest, ReadableFrontStandsForALargeFile)
{
    // What cannot be read lies behind the head: the tails are missing, the fronts are equal.
    threeCopies(large);
    for (const char* name : {"a", "b"}) {
        file(name).readable = 300000;
    }
    file("b").bytes[350000] ^= 1;
    const DuplicateFinder::Groups groups = find();
    ASSERT_EQ(test::pathsOf(groups), (GroupPaths{{"a", "b"}}));
    EXPECT_TRUE(groups[0].isBrokenOff(*groups[0].files()[0]));
}

TEST_F(FaultTest, FaultInTheMiddleKeepsALargeFileFromWholeOnes)
{
    threeCopies(2000000);
    beforeVerifying([this](const std::string& path) {
        m_contents.file(path).readable = path == "/scan/b" ? 1500000 : farAhead;
    });
    EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
}

TEST_F(FaultTest, ShrunkFileFallsOut)
{
    for (const std::size_t left : {std::size_t{0}, std::size_t{15}, std::size_t{16}}) {
        SCOPED_TRACE(left);
        threeCopies(small);
        contents("b", textOf('q', left));
        m_passes.clear();
        EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
    }
}

TEST_F(FaultTest, FilesThatShrankAlikeAreACopyOfEachOther)
{
    threeCopies(small);
    contents("a", textOf('q', 16));
    contents("b", textOf('q', 16));
    contents("c", textOf('q', 15));
    EXPECT_EQ(found(), (GroupPaths{{"a", "b"}}));
}

TEST_F(FaultTest, GrownSmallFileIsComparedByAllOfIt)
{
    threeCopies(small);
    const std::string grown = textOf('q', 2000000);
    for (const char* name : {"a", "b", "c"}) {
        contents(name, grown);
    }
    // Behind all that a sample may hold.
    file("b").bytes.back() ^= 1;
    EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
}

TEST_F(FaultTest, GrownLargeFileIsComparedByAllOfIt)
{
    threeCopies(large);
    for (const char* name : {"a", "b", "c"}) {
        file(name).bytes += textOf('z', 100);
    }
    file("b").bytes.back() ^= 1;
    EXPECT_EQ(found(), (GroupPaths{{"a", "c"}}));
}

TEST_F(FaultTest, CancelInTheWalkStopsAtTheNextNode)
{
    threeCopies(small);
    int asked = 0;
    m_isCancelled = [&] { return ++asked >= 2; };
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(m_progress.empty());
    EXPECT_EQ(m_contents.openedInAll(), 0);
}

TEST_F(FaultTest, CancelAfterTheWalkReportsNothing)
{
    threeCopies(small);
    int asked = 0;
    // Four nodes, and once more behind the last.
    m_isCancelled = [&] { return ++asked >= 5; };
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_TRUE(m_progress.empty());
}

TEST_F(FaultTest, CancelInSamplingTakesEffectAtTheNextFile)
{
    threeCopies(small);
    std::atomic<bool> isCancelled{false};
    m_isCancelled = [&] { return isCancelled.load(); };
    m_contents.beforeOpen = [&](const std::string&, int) { isCancelled = true; };
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(m_contents.openedInAll(), 1);
    EXPECT_EQ(m_progress, (std::vector{0.06}));
}

TEST_F(FaultTest, CancelInVerifyingGivesNothingEvenAtItsLastFile)
{
    threeCopies(large);
    std::atomic<bool> isCancelled{false};
    m_isCancelled = [&] { return isCancelled.load(); };
    int verified = 0;
    beforeVerifying([&](const std::string&) { isCancelled = ++verified == 3; });
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(verified, 3);
    EXPECT_EQ(m_progress, (std::vector{0.06}));
}

TEST_F(FaultTest, CancelTakesEffectWithinAFile)
{
    for (const Pass pass : {Pass::walk, Pass::sampling}) {
        threeCopies(3000000);
        m_passes.clear();
        m_progress.clear();
        // Once the first file of that pass is open it is polled a few times for the blocks read.
        std::int64_t before = -1;
        std::atomic<int> polls{0};
        m_contents.beforeOpen = [&](const std::string&, int) {
            if (before < 0 && (pass == Pass::walk || filesOf(pass) > 0)) {
                before = m_contents.bytesRead();
            }
        };
        m_isCancelled = [&] { return before >= 0 && ++polls > 2; };
        EXPECT_EQ(found(), GroupPaths());
        EXPECT_GE(before, 0);
        EXPECT_LE(m_contents.bytesRead() - before, 2 * 65536);
        m_contents.beforeOpen = nullptr;
    }
}

TEST_F(FaultTest, CancelBetweenSamplingAndVerifyingOpensNothingMore)
{
    threeCopies(large);
    m_isCancelled = [&] { return filesOf(Pass::sampling) > 0; };
    m_contents.beforeOpen = [&](const std::string&, int) { EXPECT_EQ(filesOf(Pass::sampling), 0); };
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_GT(m_contents.openedInAll(), 0);
    EXPECT_EQ(m_progress, (std::vector{0.06}));
}

TEST_F(FaultTest, CancelAmongTheNamesOfOneFileOpensNothingMore)
{
    threeCopies(small);
    for (const char* name : {"a", "b", "c"}) {
        file(name).inode = 7;
        file(name).links = 3;
    }
    std::atomic<bool> isCancelled{false};
    m_isCancelled = [&] { return isCancelled.load(); };
    int looked = 0;
    // The names are looked at one by one, each beside its folder.
    beforeVerifying([&](const std::string&) { isCancelled = ++looked >= 2; });
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(looked, 2);
}

TEST_F(FaultTest, CancelBeforeTheGroupsAreBuiltGivesNothing)
{
    threeCopies(small);
    m_isCancelled = [&] { return filesOf(Pass::verifying) > 0; };
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(filesOf(Pass::verifying), 3);
    EXPECT_EQ(m_progress, (std::vector{0.06}));
}

TEST_F(FaultTest, CancelFromTheStartOpensNothing)
{
    threeCopies(small);
    m_isCancelled = [] { return true; };
    EXPECT_EQ(found(), GroupPaths());
    EXPECT_EQ(m_contents.openedInAll(), 0);
    EXPECT_TRUE(m_progress.empty());
}

TEST_F(FaultTest, WorkersHaveThePriorityOfTheCaller)
{
    std::string text;
    for (int i = 0; i < 4; ++i) {
        const std::string name = "f" + std::to_string(i);
        text += name + " 5000\n";
        contents(name, textOf('q', small));
    }
    tree(text);
    std::mutex lock;
    std::set<std::thread::id> threads;
    std::set<int> nices;
    std::condition_variable arrival;
    m_contents.beforeOpen = [&](const std::string&, int) {
        std::unique_lock guard(lock);
        threads.insert(std::this_thread::get_id());
        nices.insert(getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())));
        arrival.notify_all();
        arrival.wait_for(guard, std::chrono::seconds(30), [&] { return threads.size() >= 2; });
    };
    m_options.workers = 2;
    std::thread background([this] {
        lowerThisThread();
        EXPECT_EQ(find().size(), 1U);
    });
    background.join();
    EXPECT_GE(threads.size(), 2U);
    EXPECT_EQ(nices, std::set{19});
}

} // namespace
} // namespace quorvane
