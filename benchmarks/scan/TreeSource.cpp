// SPDX-License-Identifier: MIT
#include "TreeSource.h"

#include "DiskScanner.h"
#include "DumpReader.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace quorvane {
namespace {

using Loaded = std::variant<std::shared_ptr<FileTree>, SourceFault>;

Loaded treeFromDump(std::string_view file)
{
    const std::string name(file);
    std::ifstream in(name, std::ios::binary);
    if (!in) {
        return SourceFault{name + ": " + std::generic_category().message(errno), exitFailure};
    }
    DumpResult result = readDump(in);
    if (const DumpFault* fault = std::get_if<DumpFault>(&result)) {
        return SourceFault{name + ": " + fault->text(), fault->line == 0 ? exitFailure : exitUsage};
    }
    return std::get<std::shared_ptr<FileTree>>(result);
}

Loaded treeFromFolder(std::string_view folder)
{
    DiskScanner scanner;
    DiskScanner::Result result = scanner.scan(folderFromArgument(folder));
    if (const DiskScanError* error = std::get_if<DiskScanError>(&result)) {
        return SourceFault{error->message, exitFailure};
    }
    return std::get<std::shared_ptr<FileTree>>(result);
}

/// The next component of a path, taken off its front; empty at the end.
std::string_view takeComponent(std::string_view& path)
{
    const std::size_t start = std::min(path.find_first_not_of('/'), path.size());
    const std::size_t end = std::min(path.find('/', start), path.size());
    const std::string_view component = path.substr(start, end - start);
    path.remove_prefix(end);
    return component;
}

} // namespace

FilePath folderFromArgument(std::string_view argument)
{
    std::string bytes;
    if (!argument.starts_with('/')) {
        std::error_code fault;
        bytes = std::filesystem::current_path(fault).native();
    }
    for (std::string_view rest = argument;;) {
        const std::string_view component = takeComponent(rest);
        if (component.empty()) {
            break;
        }
        if (component != ".") {
            bytes += '/';
            bytes += component;
        }
    }
    return FilePath(bytes.empty() ? "/" : std::move(bytes));
}

Loaded loadTree(const Arguments& arguments)
{
    std::vector<std::string_view> others;
    if (arguments.operands().size() != (arguments.has("dump") ? 0 : 1)) {
        return SourceFault{"needs one DIR, or --dump FILE in its place; try --help", exitUsage};
    }
    return loadTree(arguments, others);
}

Loaded loadTree(const Arguments& arguments, std::vector<std::string_view>& others)
{
    const std::optional<std::string_view> dump = arguments.value("dump");
    others = arguments.operands();
    if (dump) {
        return treeFromDump(*dump);
    }
    if (others.empty()) {
        return SourceFault{"needs a DIR, or --dump FILE in its place; try --help", exitUsage};
    }
    const std::string_view folder = others.front();
    others.erase(others.begin());
    return treeFromFolder(folder);
}

std::variant<FocusedTree, SourceFault> loadFocus(const Arguments& arguments)
{
    const Loaded loaded = loadTree(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return *fault;
    }
    FocusedTree focused;
    focused.tree = std::get<std::shared_ptr<FileTree>>(loaded);
    const std::string_view path = arguments.value("focus").value_or("");
    focused.focus = nodeAt(*focused.tree, path);
    if (focused.focus == nullptr) {
        return SourceFault{"no such entry in the tree: " + std::string(path), exitFailure};
    }
    return focused;
}

FileNode* nodeAt(FileTree& tree, std::string_view path)
{
    if (path.starts_with('/')) {
        const FilePath root = tree.root().path();
        std::string_view own = root.bytes();
        for (;;) {
            const std::string_view component = takeComponent(own);
            if (component.empty()) {
                break;
            }
            if (component != takeComponent(path)) {
                return nullptr;
            }
        }
    }
    FileNode* node = &tree.root();
    for (;;) {
        const std::string_view component = takeComponent(path);
        if (component.empty()) {
            return node;
        }
        if (component == ".") {
            continue;
        }
        const std::span<FileNode> children = node->children();
        const auto child =
            std::find_if(children.begin(), children.end(),
                         [&](const FileNode& each) { return each.name() == component; });
        if (child == children.end()) {
            return nullptr;
        }
        node = &*child;
    }
}

} // namespace quorvane
