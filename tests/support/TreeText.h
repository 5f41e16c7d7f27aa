// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "FileTree.h"

#include <memory>
#include <string>
#include <string_view>

namespace quorvane::test {

struct TreeTextOptions
{
    FilePath rootPath{"/scan"};
    bool finalize = true;
};

/// A tree from indented text, two blanks a level; the lines without indent are the root's children:
///
///     Library/
///       a.bin 100             a file of 100 bytes, as many on disk
///       sparse.img 100 4096   a file of 100 bytes, 4096 on disk
///       old.log 7 7 @86400    and when it was modified, seconds since 1970 (0 when not given)
///       alias@ 12             a link
///       pipe| 0               neither file nor folder nor link
///
/// The root is named as the last component of its path. Ids count up from 1 in the order of the
/// lines. Throws std::invalid_argument for a text that is not of this form.
std::shared_ptr<FileTree> treeFromText(std::string_view text, const TreeTextOptions& options = {});

/// The same form from a tree, children in their stored order, size on disk and date only where they
/// say something.
std::string textOfTree(const FileNode& root);

/// The node below root at a path of names such as "Library/a.bin"; the root for an empty path.
/// Throws std::invalid_argument when there is none.
FileNode& nodeAt(FileNode& root, std::string_view path);

} // namespace quorvane::test
