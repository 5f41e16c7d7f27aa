// SPDX-License-Identifier: MIT
#pragma once

#include "Command.h"
#include "FileTree.h"

#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quorvane {

/// A folder on the command line as the scanner takes it: absolute, without "." components.
FilePath folderFromArgument(std::string_view argument);

struct SourceFault
{
    std::string message;
    ExitCode code = exitFailure;
};

/// The tree that a command works on: DIR scanned, or what the option "--dump FILE" holds.
std::variant<std::shared_ptr<FileTree>, SourceFault> loadTree(const Arguments& arguments);
/// The same for a command that takes further operands, which are put into others.
std::variant<std::shared_ptr<FileTree>, SourceFault>
loadTree(const Arguments& arguments, std::vector<std::string_view>& others);

/// A tree and the folder of it that is on show.
struct FocusedTree
{
    std::shared_ptr<FileTree> tree;
    FileNode* focus = nullptr;

    bool isRoot() const { return focus == &tree->root(); }
};

/// The tree of loadTree() with the folder that the option "--focus SUBPATH" names, or its root.
std::variant<FocusedTree, SourceFault> loadFocus(const Arguments& arguments);

/// The node at a path, given relative to the root or absolute below it; absent when there is none.
FileNode* nodeAt(FileTree& tree, std::string_view path);

} // namespace quorvane
