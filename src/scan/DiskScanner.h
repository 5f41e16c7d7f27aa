// SPDX-License-Identifier: MIT
#pragma once

#include "DiskScanError.h"
#include "FilePath.h"
#include "FileTree.h"
#include "ItemMetadata.h"
#include "ScanProgress.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace quorvane {

class FileSystemCalls;

/// Walks one folder with a small pool of workers and returns a finished tree. One object a scan.
class DiskScanner
{
public:
    /// Returns true to go on, false to stop. Called from several threads, one call at a time, never
    /// under the scanner's lock.
    using OnProgress = std::function<bool(const ScanProgress&)>;
    using Result = std::variant<std::shared_ptr<FileTree>, DiskScanError>;

    /// Below 1 chooses: the processor count, but at least 2 and at most 8. The calls must outlive
    /// the scanner.
    explicit DiskScanner(int workerCount = 0);
    DiskScanner(int workerCount, FileSystemCalls& calls);

    /// Blocks until the walk has ended, so not for the main thread. Follows no link, lists no
    /// kernel-made file system, leaves unreadable folders in the tree without children. Fails with
    /// "Cannot access {path}", "Not a directory: {path}", "Scan cancelled" or "Not enough memory to
    /// scan {path}". A size that the disk claims is capped where the sum of the scan would
    /// overflow; files below a pebibyte keep room of their own beside those above.
    Result scan(const FilePath& root, const OnProgress& onProgress = {});

    int workerCount() const { return m_workerCount; }
    /// Seconds that the final pass (rollup and sort) of the last scan took.
    double finalPassSeconds() const { return m_finalPassSeconds; }

    /// lstat(2) of the path; absent when it fails. Any thread.
    std::optional<ItemMetadata> allMetadata(const FilePath& path) const;
    /// Names of the folder in listing order, hidden ones included, with the metadata of each; an
    /// entry whose lstat fails is left out. Absent when the listing fails. Any thread.
    std::optional<std::vector<std::pair<std::string, ItemMetadata>>>
    directoryNameEntries(const FilePath& path) const;
    /// When the entry was created, in whole seconds since 1970; absent on any failure and where the
    /// file system keeps no such date. Any thread.
    std::optional<std::int64_t> fileCreationDate(const FilePath& path) const;

private:
    /// May throw std::bad_alloc.
    Result walk(const FilePath& root, const OnProgress& onProgress);

    FileSystemCalls& m_calls;
    int m_workerCount;
    double m_finalPassSeconds = 0;
};

} // namespace quorvane
