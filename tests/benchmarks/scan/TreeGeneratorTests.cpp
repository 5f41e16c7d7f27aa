// SPDX-License-Identifier: MIT
#include "DiskListing.h"
#include "FileTypeCategory.h"
#include "TreeGenerator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>

namespace quorvane {
namespace {

using testing::DiskListing;
using testing::TemporaryFolder;

DiskListing generated(const TreeShape& shape)
{
    const TemporaryFolder folder;
    EXPECT_EQ(generateTree(FilePath(folder.path()), shape), std::nullopt);
    return testing::listDisk(folder.path());
}

/// One line for each entry. How many blocks a file takes and how large a folder's own list is, the
/// file system decides anew each time; whether a file holds data is the generator's choice.
std::vector<std::string> describe(const DiskListing& listing)
{
    std::vector<std::string> lines;
    for (const auto& item : listing) {
        const testing::ListedEntry& entry = item.second;
        std::ostringstream line;
        line << item.first << " date " << entry.dateModified << " files " << entry.fileCount
             << " bytes " << entry.scannedBytes;
        if (!entry.isDirectory) {
            line << (entry.isSymbolicLink ? " link" : "")
                 << (entry.sizeOnDisk > 0 ? " stored" : "");
        }
        lines.push_back(line.str());
    }
    return lines;
}

TEST(TreeGenerator, SameSeedGivesTheSameTree)
{
    EXPECT_EQ(describe(generated({3000, 5})), describe(generated({3000, 5})));
}

TEST(TreeGenerator, AnotherSeedGivesAnotherTree)
{
    const auto names = [](const DiskListing& listing) {
        std::set<std::string> paths;
        for (const auto& item : listing) {
            paths.insert(item.first);
        }
        return paths;
    };
    EXPECT_NE(names(generated({500, 5})), names(generated({500, 6})));
}

TEST(TreeGenerator, MakesExactlyAsManyEntriesAsAskedFor)
{
    for (const std::int64_t entries : {0, 1, 17, 60, 100, 999, 4000}) {
        const DiskListing listing = generated({entries, 1});
        EXPECT_EQ(static_cast<std::int64_t>(listing.size()) - 1, entries);
    }
}

TEST(TreeGenerator, MixesNamesKindsAndSizes)
{
    const DiskListing listing = generated({20'000, 3});
    std::size_t nameBytes = 0;
    std::size_t deepest = 0;
    std::int64_t folders = 0;
    std::int64_t links = 0;
    std::int64_t hidden = 0;
    std::int64_t holes = 0;
    std::int64_t stored = 0;
    std::set<FileTypeCategory> categories;
    for (const auto& item : listing) {
        const std::string name = item.first.substr(item.first.rfind('/') + 1);
        nameBytes += name.size();
        deepest = std::max(deepest, static_cast<std::size_t>(
                                        std::count(item.first.begin(), item.first.end(), '/')));
        folders += item.second.isDirectory ? 1 : 0;
        links += item.second.isSymbolicLink ? 1 : 0;
        hidden += name.starts_with('.') ? 1 : 0;
        holes += item.second.isRegularFile && item.second.sizeOnDisk == 0 ? 1 : 0;
        stored += item.second.isRegularFile && item.second.sizeOnDisk > 0 ? 1 : 0;
        if (item.second.isRegularFile) {
            categories.insert(fileTypeCategoryForName(name));
        }
    }
    EXPECT_NEAR(static_cast<double>(nameBytes) / 20'000, 15.5, 0.3);
    // 20,000 × 60,240 / 1,060,240, and the top itself.
    EXPECT_EQ(folders, 1136 + 1);
    EXPECT_GE(deepest, 100U);
    EXPECT_GT(links, 20);
    EXPECT_GT(hidden, 100);
    EXPECT_GT(holes, 1000);
    EXPECT_GT(stored, 1000);
    // Every category but the two that only folders have.
    EXPECT_EQ(categories.size(), allFileTypeCategories.size() - 2);
}

TEST(TreeGenerator, RefusesAFolderThatIsNotEmpty)
{
    const TemporaryFolder folder;
    testing::makeFile(folder.path("mine"), 1);
    EXPECT_NE(generateTree(FilePath(folder.path()), {10, 1}), std::nullopt);
    EXPECT_EQ(testing::listDisk(folder.path()).size(), 2U);
}

TEST(TreeGenerator, RefusesAPlaceThatIsNoFolder)
{
    const TemporaryFolder folder;
    testing::makeFile(folder.path("file"), 1);
    EXPECT_NE(generateTree(FilePath(folder.path("file")), {10, 1}), std::nullopt);
    EXPECT_NE(generateTree(FilePath(folder.path("no/such")), {10, 1}), std::nullopt);
}

TEST(TreePlan, ReferenceTreeHasTheShapeThatIsMeasured)
{
    const TreePlan plan(TreeShape{1'060'240, 1});
    std::int64_t files = 0;
    std::int64_t crowded = 0;
    std::size_t deepest = 0;
    std::vector<std::size_t> depths(plan.folders().size(), 0);
    for (std::size_t i = 0; i < plan.folders().size(); ++i) {
        const TreePlan::Folder& folder = plan.folders()[i];
        files += folder.files;
        crowded += folder.files == 5000 ? 1 : 0;
        if (i > 0) {
            ASSERT_LT(folder.parent, i);
            depths[i] = depths[folder.parent] + 1;
            deepest = std::max(deepest, depths[i]);
        }
    }
    EXPECT_EQ(files, 1'000'000);
    EXPECT_EQ(plan.folders().size(), 60'240U + 1);
    EXPECT_EQ(crowded, 40);
    EXPECT_GE(deepest, 100U);
}

} // namespace
} // namespace quorvane
