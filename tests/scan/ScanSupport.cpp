// SPDX-License-Identifier: MIT
#include "ScanSupport.h"

#include <gtest/gtest.h>

#include <dirent.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <variant>
#include <vector>

namespace quorvane::test {
namespace {

struct Sums
{
    std::int64_t bytes = 0;
    std::int64_t onDisk = 0;
    std::int64_t files = 0;
    std::int64_t directories = 0;
};

void walk(const std::string& path, ReferenceWalk& found)
{
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0) {
        return;
    }
    found[path] = status;
    DIR* const listing = S_ISDIR(status.st_mode) ? opendir(path.c_str()) : nullptr;
    if (listing == nullptr) {
        return;
    }
    while (const dirent* const entry = readdir(listing)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            walk((path == "/" ? path : path + "/") + name, found);
        }
    }
    closedir(listing);
}

/// The sums of every folder: each entry is added to all folders above it.
std::map<std::string, Sums> sumsOf(const ReferenceWalk& found, const std::string& root)
{
    std::map<std::string, Sums> sums;
    for (const auto& [path, status] : found) {
        const bool isFolder = S_ISDIR(status.st_mode);
        std::string above = path;
        if (isFolder) {
            ++sums[path].directories;
        }
        while (above != root) {
            above = FilePath(above).parent().bytes();
            Sums& folder = sums[above];
            folder.bytes += isFolder ? 0 : status.st_size;
            folder.onDisk += isFolder ? 0 : status.st_blocks * 512;
            folder.files += S_ISREG(status.st_mode) ? 1 : 0;
            folder.directories += isFolder ? 1 : 0;
        }
    }
    return sums;
}

void expectSameEntry(const FileNode& node, const struct stat& status)
{
    EXPECT_EQ(node.isDirectory(), S_ISDIR(status.st_mode));
    EXPECT_EQ(node.isRegularFile(), S_ISREG(status.st_mode));
    EXPECT_EQ(node.isSymbolicLink(), S_ISLNK(status.st_mode));
    EXPECT_EQ(node.logicalSize(), status.st_size);
    EXPECT_EQ(node.sizeOnDisk(), status.st_blocks * 512);
    EXPECT_EQ(node.dateModified(), status.st_mtim.tv_sec);
}

void expectSameSums(const FileNode& folder, const Sums& sums)
{
    EXPECT_EQ(folder.scannedBytes(), sums.bytes);
    EXPECT_EQ(folder.scannedBytesOnDisk(), sums.onDisk);
    EXPECT_EQ(folder.fileCount(), sums.files);
    EXPECT_EQ(folder.directoryCount(), sums.directories);
    const auto isBefore = [](const FileNode& a, const FileNode& b) {
        return a.scannedBytes() > b.scannedBytes() ||
               (a.scannedBytes() == b.scannedBytes() && a.name() < b.name());
    };
    const std::span<const FileNode> children = folder.children();
    for (std::size_t i = 1; i < children.size(); ++i) {
        EXPECT_TRUE(isBefore(children[i - 1], children[i]));
    }
}

} // namespace

std::shared_ptr<FileTree> scanned(const FilePath& root, int workerCount, FileSystemCalls& calls,
                                  const DiskScanner::OnProgress& onProgress)
{
    DiskScanner scanner(workerCount, calls);
    DiskScanner::Result result = scanner.scan(root, onProgress);
    if (const auto* error = std::get_if<DiskScanError>(&result)) {
        throw std::runtime_error(error->message);
    }
    return std::get<std::shared_ptr<FileTree>>(std::move(result));
}

std::string failureOf(const FilePath& root, FileSystemCalls& calls,
                      const DiskScanner::OnProgress& onProgress, int workerCount)
{
    DiskScanner scanner(workerCount, calls);
    const DiskScanner::Result result = scanner.scan(root, onProgress);
    const auto* error = std::get_if<DiskScanError>(&result);
    return error != nullptr ? error->message : std::string();
}

ReferenceWalk referenceWalk(const FilePath& root)
{
    ReferenceWalk found;
    walk(root.bytes(), found);
    return found;
}

void expectTreeIsWalk(const FileNode& root, const ReferenceWalk& walk)
{
    const std::map<std::string, Sums> sums = sumsOf(walk, root.path().bytes());
    std::size_t seen = 0;
    std::vector<const FileNode*> waiting{&root};
    while (!waiting.empty()) {
        const FileNode& node = *waiting.back();
        waiting.pop_back();
        ++seen;
        const std::string path = node.path().bytes();
        SCOPED_TRACE(path);
        const auto entry = walk.find(path);
        ASSERT_NE(entry, walk.end());
        expectSameEntry(node, entry->second);
        if (node.isDirectory()) {
            expectSameSums(node, sums.at(path));
        }
        for (const FileNode& child : node.children()) {
            waiting.push_back(&child);
        }
    }
    EXPECT_EQ(seen, walk.size());
}

} // namespace quorvane::test
