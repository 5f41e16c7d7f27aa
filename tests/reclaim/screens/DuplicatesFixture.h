// SPDX-License-Identifier: MIT
#pragma once

#include "AppState.h"
#include "DuplicateFinder.h"
#include "FakePlatform.h"
#include "FileTree.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace quorvane {

/// A model with groups that no search has found.
class DuplicatesFixture : public testing::Test
{
protected:
    /// A tree of one flat folder with so many groups of so many copies of 2048 bytes each. The file
    /// "g{group}.{copy}" is modified the later the higher its copy is.
    void showGroups(int count, int copies = 2)
    {
        m_tree = FileTree::create(FilePath("/scan"), rootValues());
        std::vector<std::string> names;
        names.reserve(static_cast<std::size_t>(count) * static_cast<std::size_t>(copies));
        std::vector<NodeValues> values;
        for (int group = 0; group < count; ++group) {
            for (int copy = 0; copy < copies; ++copy) {
                names.push_back("g" + std::to_string(group) + "." + std::to_string(copy));
                NodeValues file;
                file.id = static_cast<std::int64_t>(names.size());
                file.name = names.back();
                file.metadata = fileMetadata(copy);
                values.push_back(file);
            }
        }
        const std::span<FileNode> files = m_tree->addChildren(m_tree->root(), values);
        DuplicateFinder::Groups groups;
        for (int group = 0; group < count; ++group) {
            std::vector<FileNode*> members;
            for (int copy = 0; copy < copies; ++copy) {
                members.push_back(
                    &files[static_cast<std::size_t>(group) * static_cast<std::size_t>(copies) +
                           static_cast<std::size_t>(copy)]);
            }
            groups.emplace_back(2048, std::move(members), m_tree->rootPointer());
        }
        show(std::move(groups));
    }

    /// Of the first copy of each group that is shown next; seconds since 1970.
    void setModified(std::int64_t seconds) { m_modified = seconds; }

    void show(DuplicateFinder::Groups groups)
    {
        m_state.rootNode = m_tree->rootPointer();
        m_state.duplicateGroups =
            std::make_shared<const DuplicateFinder::Groups>(std::move(groups));
    }

    const DuplicateFinder::Group& group(std::size_t index)
    {
        return (*m_state.duplicateGroups.value())[index];
    }
    FileNode& file(std::size_t groupIndex, std::size_t member)
    {
        return *group(groupIndex).files()[member];
    }

    FakePlatform m_platform;
    AppState m_state{m_platform.platform()};
    std::shared_ptr<FileTree> m_tree;

private:
    std::int64_t m_modified = 1000;

    static NodeValues rootValues()
    {
        NodeValues root;
        root.name = "scan";
        root.metadata.isDirectory = true;
        return root;
    }
    ItemMetadata fileMetadata(int copy) const
    {
        ItemMetadata metadata;
        metadata.isRegularFile = true;
        metadata.logicalSize = 2048;
        metadata.sizeOnDisk = 2048;
        metadata.dateModified = m_modified + copy;
        return metadata;
    }
};

} // namespace quorvane
