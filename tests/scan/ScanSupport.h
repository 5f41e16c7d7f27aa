// SPDX-License-Identifier: MIT
#pragma once

#include "DiskScanner.h"
#include "FilePath.h"
#include "FileSystemCalls.h"
#include "FileTree.h"

#include <sys/stat.h>

#include <map>
#include <memory>
#include <string>

namespace quorvane::test {

/// The tree of a scan that has to succeed. Throws std::runtime_error with the message of one that
/// does not.
std::shared_ptr<FileTree> scanned(const FilePath& root, int workerCount = 2,
                                  FileSystemCalls& calls = FileSystemCalls::system(),
                                  const DiskScanner::OnProgress& onProgress = {});

/// The message of a scan that has to fail; empty for one that gives a tree.
std::string failureOf(const FilePath& root, FileSystemCalls& calls = FileSystemCalls::system(),
                      const DiskScanner::OnProgress& onProgress = {}, int workerCount = 2);

/// What a plain recursive walk with full paths sees, by path.
using ReferenceWalk = std::map<std::string, struct stat>;

ReferenceWalk referenceWalk(const FilePath& root);

/// Fails the running test wherever the tree differs from the walk: in its entries, their sizes,
/// kinds and dates, the sums of any folder, or the order of its children.
void expectTreeIsWalk(const FileNode& root, const ReferenceWalk& walk);

} // namespace quorvane::test
