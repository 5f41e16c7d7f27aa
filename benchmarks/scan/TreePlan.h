// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quorvane {

/// What a tree of files shall look like.
struct TreeShape
{
    std::int64_t entries = 0; ///< files, links and folders below the top, which is not counted
    std::uint64_t seed = 0;
};

/// The folders of a generated tree and how many files each holds, before anything is made: for
/// every million files about 60,000 folders, a fifth of the files in folders of 5,000, some folders
/// in chains 100 deep, the rest grown at random. A plain value, the same for the same shape.
class TreePlan
{
public:
    struct Folder
    {
        std::size_t parent = 0;
        std::size_t placeInParent = 0;
        std::int64_t files = 0;
    };

    explicit TreePlan(const TreeShape& shape);

    const TreeShape& shape() const { return m_shape; }
    /// Folder 0 is the top; every other stands after its parent.
    const std::vector<Folder>& folders() const { return m_folders; }
    std::span<const std::size_t> subfolders(std::size_t folder) const;

private:
    void growFolders(std::size_t count);
    void shareFiles(std::int64_t files);
    void groupByParent();

    TreeShape m_shape;
    std::vector<Folder> m_folders;
    std::size_t m_firstCrowded = 0; ///< from here on: folders of thousands of files
    std::size_t m_firstChained = 0; ///< from here on: chains
    std::vector<std::size_t> m_starts;
    std::vector<std::size_t> m_children;
};

} // namespace quorvane
