// SPDX-License-Identifier: MIT
#pragma once

#include "Gate.h"
#include "GatedContents.h"
#include "StateFixture.h"
#include "TreeText.h"

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// A model whose searches a test can hold up, and groups that no search has found.
class DuplicateSearchFixture : public StateFixture
{
protected:
    DuplicateSearchFixture()
    {
        platform.lowerThisThread = [this] { m_gate.pass(); };
        m_gate.open();
        m_readGate.open();
        platform.fileContents = &m_contents;
    }
    ~DuplicateSearchFixture() override
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

    const DuplicateFinder::Groups& groups() { return *state().duplicateGroups.value(); }

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
        state().duplicateGroups = std::make_shared<const DuplicateFinder::Groups>(
            DuplicateFinder::Groups{DuplicateFinder::Group(2048, files, m_tree->rootPointer())});
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

} // namespace quorvane
