// SPDX-License-Identifier: MIT
#include "TreeText.h"

#include <charconv>
#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

namespace quorvane::test {
namespace {

struct Line
{
    std::size_t level = 0;
    NodeValues values;
};

[[noreturn]] void fail(const char* what, std::string_view where)
{
    throw std::invalid_argument(std::string(what) + ": " + std::string(where));
}

std::optional<std::int64_t> wholeNumber(std::string_view text)
{
    std::int64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

/// Takes the last blank-separated word off the text if it is a number, or one behind the sign.
std::optional<std::int64_t> takeNumber(std::string_view& text, std::string_view sign = {})
{
    const std::size_t blank = text.rfind(' ');
    if (blank == std::string_view::npos || !text.substr(blank + 1).starts_with(sign)) {
        return std::nullopt;
    }
    const auto number = wholeNumber(text.substr(blank + 1 + sign.size()));
    if (number) {
        text = text.substr(0, blank);
    }
    return number;
}

NodeValues valuesOf(std::string_view text)
{
    NodeValues values;
    ItemMetadata& metadata = values.metadata;
    metadata.dateModified = takeNumber(text, "@").value_or(0);
    const auto last = takeNumber(text);
    const auto first = takeNumber(text);
    metadata.sizeOnDisk = last.value_or(0);
    metadata.logicalSize = first.value_or(metadata.sizeOnDisk);
    const char mark = text.empty() ? '/' : text.back();
    metadata.isDirectory = mark == '/';
    metadata.isSymbolicLink = mark == '@';
    metadata.isRegularFile = mark != '/' && mark != '@' && mark != '|';
    values.name = metadata.isRegularFile || text.empty() ? text : text.substr(0, text.size() - 1);
    if (values.name.empty()) {
        fail("a line without a name", text);
    }
    return values;
}

std::vector<Line> linesOf(std::string_view text)
{
    std::vector<Line> lines;
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const std::size_t indent = line.find_first_not_of(' ');
        if (indent == std::string_view::npos) {
            continue;
        }
        const std::size_t level = indent / 2;
        const bool fits = lines.empty() ? level == 0
                                        : level <= lines.back().level ||
                                              (level == lines.back().level + 1 &&
                                               lines.back().values.metadata.isDirectory);
        if (indent % 2 != 0 || !fits) {
            fail("a line with a wrong indent", line);
        }
        lines.push_back({level, valuesOf(line.substr(indent))});
        lines.back().values.id = static_cast<std::int64_t>(lines.size());
    }
    return lines;
}

/// The lines one level below the line before `first`, up to the end of its block.
std::vector<std::size_t> childLines(std::span<const Line> lines, std::size_t first,
                                    std::size_t level)
{
    std::vector<std::size_t> found;
    for (std::size_t i = first; i < lines.size() && lines[i].level >= level; ++i) {
        if (lines[i].level == level) {
            found.push_back(i);
        }
    }
    return found;
}

void printLine(const FileNode& node, std::size_t level, std::string& text)
{
    text.append(level * 2, ' ').append(node.name());
    if (node.isDirectory()) {
        text += '/';
    } else {
        text += node.isSymbolicLink() ? "@" : node.isRegularFile() ? "" : "|";
        text += ' ' + std::to_string(node.logicalSize());
        if (node.sizeOnDisk() != node.logicalSize()) {
            text += ' ' + std::to_string(node.sizeOnDisk());
        }
    }
    if (node.dateModified().value_or(0) != 0) {
        text += " @" + std::to_string(*node.dateModified());
    }
    text += '\n';
}

} // namespace

std::shared_ptr<FileTree> treeFromText(std::string_view text, const TreeTextOptions& options)
{
    const std::vector<Line> lines = linesOf(text);
    NodeValues root;
    root.name = options.rootPath.lastComponent();
    root.metadata.isDirectory = true;
    root.metadata.dateModified = 0;
    auto tree = FileTree::create(options.rootPath, root);

    struct Open
    {
        FileNode* folder;
        std::size_t firstLine;
        std::size_t level;
    };
    std::vector<Open> open{{&tree->root(), 0, 0}};
    while (!open.empty()) {
        const Open next = open.back();
        open.pop_back();
        const std::vector<std::size_t> found = childLines(lines, next.firstLine, next.level);
        std::vector<NodeValues> values;
        for (const std::size_t i : found) {
            values.push_back(lines[i].values);
        }
        if (values.empty()) {
            continue;
        }
        const std::span<FileNode> made = tree->addChildren(*next.folder, values);
        for (std::size_t i = 0; i < found.size(); ++i) {
            if (made[i].isDirectory()) {
                open.push_back({&made[i], found[i] + 1, next.level + 1});
            }
        }
    }
    if (options.finalize) {
        tree->root().finalizeTree();
    }
    return tree;
}

std::string textOfTree(const FileNode& root)
{
    std::string text;
    std::vector<std::pair<const FileNode*, std::size_t>> stack;
    const auto push = [&stack](const FileNode& folder, std::size_t level) {
        const auto children = folder.children();
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            stack.emplace_back(&*child, level);
        }
    };
    push(root, 0);
    while (!stack.empty()) {
        const auto [node, level] = stack.back();
        stack.pop_back();
        printLine(*node, level, text);
        push(*node, level + 1);
    }
    return text;
}

FileNode& nodeAt(FileNode& root, std::string_view path)
{
    FileNode* node = &root;
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        FileNode* found = nullptr;
        for (FileNode& child : node->children()) {
            if (child.name() == name) {
                found = &child;
                break;
            }
        }
        if (found == nullptr) {
            fail("no such node", name);
        }
        node = found;
    }
    return *node;
}

} // namespace quorvane::test
