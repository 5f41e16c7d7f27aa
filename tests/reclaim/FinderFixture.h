// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"
#include "MemoryContents.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::test {

/// Text of so many bytes that repeats with no power of two.
inline std::string textOf(char letter, std::size_t bytes)
{
    std::string text(bytes, letter);
    for (std::size_t i = 0; i < bytes; i += 251) {
        text[i] = static_cast<char>(letter + static_cast<char>(i / 251 % 13));
    }
    return text;
}

/// The files' paths relative to the tree of the tests, group by group in the order of the search.
using GroupPaths = std::vector<std::set<std::string>>;

inline GroupPaths pathsOf(const DuplicateFinder::Groups& groups, std::string_view root = "/scan")
{
    GroupPaths paths;
    for (const DuplicateFinder::Group& group : groups) {
        paths.emplace_back();
        for (const FileNode* file : group.files()) {
            paths.back().insert(file->path().bytes().substr(root.size() + 1));
        }
    }
    return paths;
}

/// A search over a tree from text whose contents lie in memory, with what it reported.
class FinderTest : public ::testing::Test
{
protected:
    void tree(std::string_view text) { m_tree = treeFromText(text); }
    MemoryFile& file(const std::string& path) { return m_contents.file("/scan/" + path); }
    void contents(const std::string& path, std::string bytes)
    {
        file(path).bytes = std::move(bytes);
    }

    DuplicateFinder::Groups find(std::int64_t minimumBytes = DuplicateFinder::defaultMinimumBytes)
    {
        m_options.contents = &m_contents;
        if (m_options.workers == 0) {
            m_options.workers = 1;
        }
        m_options.onPassEnd = [this](const DuplicateFinder::PassReport& report) {
            m_passes.push_back(report);
        };
        DuplicateFinder::Groups groups = DuplicateFinder::find(
            m_tree->rootPointer(), minimumBytes,
            [this](double progress) {
                const std::lock_guard guard(m_lock);
                m_progress.push_back(progress);
            },
            m_isCancelled, m_options);
        EXPECT_EQ(m_contents.openNow(), 0U);
        return groups;
    }
    GroupPaths found() { return pathsOf(find()); }

    /// How many files a pass counted; 0 when the search did not come to it.
    std::int64_t filesOf(DuplicateFinder::Pass pass) const
    {
        for (const DuplicateFinder::PassReport& report : m_passes) {
            if (report.pass == pass) {
                return report.files;
            }
        }
        return 0;
    }

    std::shared_ptr<FileTree> m_tree;
    MemoryContents m_contents;
    DuplicateFinder::Options m_options;
    DuplicateFinder::CancelCallback m_isCancelled = DuplicateFinder::neverCancelled;
    std::mutex m_lock;
    std::vector<double> m_progress;
    std::vector<DuplicateFinder::PassReport> m_passes;
};

} // namespace quorvane::test
