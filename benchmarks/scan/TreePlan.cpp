// SPDX-License-Identifier: MIT
#include "TreePlan.h"

#include "SeededRandom.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quorvane {
namespace {

// 60,240 folders among 1,060,240 entries.
constexpr std::int64_t referenceFolders = 60'240;
constexpr std::int64_t referenceEntries = 1'060'240;
constexpr std::int64_t crowdedFolderFiles = 5'000;
constexpr std::int64_t crowdedShare = 5; ///< one file in so many is in a crowded folder
constexpr std::size_t chainDepth = 100;
constexpr std::size_t chainedShare = 40; ///< one folder in so many is in a chain
constexpr std::size_t mostTopFolders = 40;
constexpr std::uint64_t streamOfFolders = 1;
constexpr std::uint64_t streamOfFiles = 2;

} // namespace

TreePlan::TreePlan(const TreeShape& shape)
    : m_shape(shape)
{
    const std::int64_t folders = shape.entries * referenceFolders / referenceEntries;
    m_folders.resize(1);
    growFolders(static_cast<std::size_t>(folders));
    shareFiles(shape.entries - folders);
    groupByParent();
}

void TreePlan::growFolders(std::size_t count)
{
    const std::int64_t files = m_shape.entries - static_cast<std::int64_t>(count);
    const auto wantedCrowded = static_cast<std::size_t>(
        std::max(files / crowdedShare / crowdedFolderFiles, std::int64_t{1}));
    const std::size_t crowded = std::min(wantedCrowded, count / 3);
    const std::size_t depth = std::min(chainDepth, count / 4);
    const std::size_t chains =
        depth == 0 ? 0 : std::max(count / chainedShare / depth, std::size_t{1});
    const std::size_t ordinary = count - crowded - chains * depth;
    const auto topFolders = std::clamp(static_cast<std::size_t>(std::sqrt(ordinary)) / 4,
                                       std::min<std::size_t>(ordinary, 4), mostTopFolders);
    SeededRandom random(m_shape.seed, streamOfFolders);
    m_folders.reserve(count + 1);
    for (std::size_t i = 1; i <= ordinary; ++i) {
        m_folders.push_back({i <= topFolders ? 0 : 1 + random.below(i - 1)});
    }
    m_firstCrowded = m_folders.size();
    for (std::size_t i = 0; i < crowded; ++i) {
        m_folders.push_back({random.below(m_firstCrowded)});
    }
    m_firstChained = m_folders.size();
    for (std::size_t chain = 0; chain < chains; ++chain) {
        std::size_t parent = random.below(m_firstCrowded);
        for (std::size_t step = 0; step < depth; ++step) {
            m_folders.push_back({parent});
            parent = m_folders.size() - 1;
        }
    }
}

void TreePlan::shareFiles(std::int64_t files)
{
    SeededRandom random(m_shape.seed, streamOfFiles);
    std::int64_t left = files;
    for (std::size_t i = m_firstCrowded; i < m_firstChained; ++i) {
        m_folders[i].files = std::min(crowdedFolderFiles, files / crowdedShare);
        left -= m_folders[i].files;
    }
    for (std::size_t i = m_firstChained; i < m_folders.size(); ++i) {
        m_folders[i].files =
            std::min<std::int64_t>(static_cast<std::int64_t>(random.below(3)), left);
        left -= m_folders[i].files;
    }
    // The square makes a few ordinary folders much fuller than most.
    std::vector<std::int64_t> bounds;
    bounds.reserve(m_firstCrowded);
    std::int64_t total = 0;
    for (std::size_t i = 0; i < m_firstCrowded; ++i) {
        const auto weight = static_cast<std::int64_t>(random.below(100));
        total += i == 0 ? 1 : 1 + weight * weight;
        bounds.push_back(total);
    }
    std::int64_t given = 0;
    for (std::size_t i = 0; i < m_firstCrowded; ++i) {
        const std::int64_t upTo = left * bounds[i] / total;
        m_folders[i].files = upTo - given;
        given = upTo;
    }
}

void TreePlan::groupByParent()
{
    m_starts.assign(m_folders.size() + 1, 0);
    for (std::size_t i = 1; i < m_folders.size(); ++i) {
        ++m_starts[m_folders[i].parent + 1];
    }
    std::partial_sum(m_starts.begin(), m_starts.end(), m_starts.begin());
    std::vector<std::size_t> next(m_starts.begin(), m_starts.end() - 1);
    m_children.resize(m_folders.size() - 1);
    for (std::size_t i = 1; i < m_folders.size(); ++i) {
        const std::size_t parent = m_folders[i].parent;
        m_folders[i].placeInParent = next[parent] - m_starts[parent];
        m_children[next[parent]++] = i;
    }
}

std::span<const std::size_t> TreePlan::subfolders(std::size_t folder) const
{
    return std::span(m_children).subspan(m_starts[folder], m_starts[folder + 1] - m_starts[folder]);
}

} // namespace quorvane
