// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quorvane::testing {

/// A folder of its own that disappears with everything in it, at any depth.
class TemporaryFolder
{
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::string& path() const { return m_path; }
    std::string path(const std::string& below) const { return m_path + "/" + below; }

private:
    std::string m_path;
};

/// What fts(3) tells about one entry, with sums that are added up ancestor by ancestor.
struct ListedEntry
{
    bool isDirectory = false;
    bool isSymbolicLink = false;
    bool isRegularFile = false;
    std::int64_t logicalSize = 0;
    std::int64_t sizeOnDisk = 0;
    std::int64_t dateModified = 0;
    std::int64_t scannedBytes = 0;
    std::int64_t scannedBytesOnDisk = 0;
    std::int64_t fileCount = 0;
    std::int64_t directoryCount = 0;
    std::vector<std::string> children; ///< names in the order of a finished tree

    friend bool operator==(const ListedEntry&, const ListedEntry&) = default;
};

/// Everything below a folder by its path relative to it; the folder itself under "".
using DiskListing = std::map<std::string, ListedEntry>;

/// A second way to see a tree, which shares no code with the scanner.
DiskListing listDisk(const std::string& folder);

/// The listing's keys depth first, the children of each folder in their order.
std::vector<std::string> depthFirst(const DiskListing& listing);

/// A chain of folders of one name, each within the one before, below an existing folder.
void makeChain(const std::string& folder, const std::string& name, int depth);
void makeFile(const std::string& path, std::size_t bytes);

/// Has the file system decide about every block, so that allocated sizes stand still from here on.
void settle(const std::string& folder);

/// Links, a socket, a pipe, holes, empty folders, a hidden name, a line break, quotes, control
/// characters, names that are not UTF-8, equal sizes, and a chain 2,000 deep.
void makeNastyTree(const std::string& folder);

} // namespace quorvane::testing
