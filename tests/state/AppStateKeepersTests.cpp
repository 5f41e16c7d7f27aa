// SPDX-License-Identifier: MIT
#include "DuplicateSearchFixture.h"
#include "GroupTexts.h"

#include <string>
#include <vector>

namespace quorvane {
namespace {

using DuplicateFinder::Group;
using DuplicateFinder::Groups;

class AppStateKeepers : public DuplicateSearchFixture
{};

TEST_F(AppStateKeepers, KeepingOneStagesTheOthersInTheOrderOfTheGroup)
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

TEST_F(AppStateKeepers, KeepingAStagedCopyTakesItOutAndPutsTheOthersIn)
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

TEST_F(AppStateKeepers, KeepingTheKeeperAgainTellsThatTheOthersAreStaged)
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

TEST_F(AppStateKeepers, AllStagedThenKeepingOneStagesNothingNew)
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

TEST_F(AppStateKeepers, UnstagingAnotherCopyByAnyRouteEndsTheKeeper)
{
    showFourCopies();
    state().trashOthers(*node("a"));
    ASSERT_TRUE(state().isKeeper(*node("a")));
    state().unstage(*node("c"));
    EXPECT_FALSE(state().isKeeper(*node("a")));
    state().toggleStaged(node("c"));
    EXPECT_TRUE(state().isKeeper(*node("a")));
}

TEST_F(AppStateKeepers, UnkeepingTakesTheOthersOutAgain)
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

TEST_F(AppStateKeepers, AFileInNoGroupIsLeftAlone)
{
    showFourCopies();
    state().trashOthers(*node("alone"));
    state().unkeep(*node("alone"));
    EXPECT_TRUE(queue().empty());
    EXPECT_EQ(state().flashMessage.value(), std::nullopt);
}

TEST_F(AppStateKeepers, AGroupOfOneHasNoKeeper)
{
    showFourCopies();
    state().duplicateGroups = std::make_shared<const Groups>(
        Groups{Group(2048, {node("a").get()}, m_tree->rootPointer())});
    EXPECT_FALSE(state().isKeeper(*node("a")));
}

TEST_F(AppStateKeepers, TheFirstGroupWithTheFileCounts)
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

TEST_F(AppStateKeepers, ACopyWhoseReadingBrokeOffIsNeitherKeptNorStaged)
{
    showFourCopies();
    const NodePointer root = state().rootNode.value();
    DuplicateFinder::GroupTexts texts;
    state().duplicateGroups = std::make_shared<const Groups>(
        Groups{Group(3000, {node("a").get(), node("b").get(), node("c").get()}, root, texts,
                     {.sameFile = {}, .brokenOff = {node("b").get()}})});
    state().trashOthers(*node("b"));
    EXPECT_TRUE(queue().empty());
    EXPECT_FALSE(state().isKeeper(*node("a"))) << "nothing is staged yet";
    state().trashOthers(*node("a"));
    EXPECT_EQ(queue(), (std::vector<std::string>{"c"}));
    EXPECT_TRUE(state().isKeeper(*node("a")));
    EXPECT_FALSE(state().isKeeper(*node("b")));
    // A person may still stage it.
    state().toggleStaged(node("b"));
    state().unkeep(*node("a"));
    EXPECT_TRUE(queue().empty());
}

TEST_F(AppStateKeepers, NamesOfAnySortStandAsTheyAreInTheFlash)
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

TEST_F(AppStateKeepers, TwentyThousandCopiesAreStagedInOneWrite)
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

TEST_F(AppStateKeepers, UnstagingWhatIsNotListedTellsNobody)
{
    showFourCopies();
    state().toggleStaged(node("a"));
    int writes = 0;
    const auto watch = state().stagedNodes.addNotifier([&writes] { ++writes; });
    state().unstage(*node("b"));
    EXPECT_EQ(writes, 0);
    EXPECT_EQ(queue(), std::vector<std::string>{"a"});
}

TEST_F(AppStateKeepers, KeepingAgainWithNothingLeftToDoTellsOnlyTheUser)
{
    showFourCopies();
    state().trashOthers(*node("c"));
    int writes = 0;
    const auto watch = state().stagedNodes.addNotifier([&writes] { ++writes; });
    state().trashOthers(*node("c"));
    EXPECT_EQ(writes, 0);
    EXPECT_EQ(flashed(),
              QStringLiteral("Kept \"c\" — the duplicate copies are already staged for Trash."));
    state().toggleStaged(node("c"));
    writes = 0;
    state().trashOthers(*node("c"));
    EXPECT_EQ(writes, 1) << "it left the queue, though nothing came in";
    EXPECT_EQ(queue(), (std::vector<std::string>{"a", "b", "d"}));
}

TEST_F(AppStateKeepers, AFolderThatIsStagedDoesNotCountForTheCopiesInIt)
{
    m_tree = test::treeFromText("old/\n  a 2048\nb 2048\n");
    state().rootNode = m_tree->rootPointer();
    FileNode& inside = test::nodeAt(m_tree->root(), "old/a");
    FileNode& outside = test::nodeAt(m_tree->root(), "b");
    state().duplicateGroups = std::make_shared<const Groups>(
        Groups{Group(2048, {&inside, &outside}, m_tree->rootPointer())});
    state().toggleStaged(node("old"));
    EXPECT_FALSE(state().isKeeper(outside)) << "the copy in the folder is not staged itself";
    state().trashOthers(inside);
    EXPECT_TRUE(state().isKeeper(inside)) << "although its folder is on its way to the Trash";
    EXPECT_EQ(queue(), (std::vector<std::string>{"old", "b"}));
}

} // namespace
} // namespace quorvane
