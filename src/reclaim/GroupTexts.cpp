// SPDX-License-Identifier: MIT
#include "GroupTexts.h"

#include "ByteFormatter.h"
#include "FilePath.h"
#include "Text.h"

#include <string_view>

namespace quorvane::DuplicateFinder {
namespace {

std::size_t placeOf(std::uint64_t key, std::size_t places)
{
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15U) >> 32) & (places - 1);
}

QString folderName(const FileNode& file)
{
    const FileNode* const parent = file.parent();
    if (parent != nullptr && parent->parent() != nullptr) {
        return displayText(parent->name());
    }
    const FilePath folder = file.path().parent();
    const std::string_view name = folder.lastComponent();
    return displayText(name.empty() ? std::string_view(folder.bytes()) : name);
}

} // namespace

QString GroupTexts::size(std::int64_t bytes)
{
    Size& known = m_sizes[placeOf(static_cast<std::uint64_t>(bytes), places)];
    if (known.bytes != bytes) {
        known = {bytes, ByteFormatter::string(bytes)};
    }
    return known.text;
}

QString GroupTexts::folder(const FileNode& file)
{
    const FileNode* const node = file.parent();
    if (node == nullptr) {
        return folderName(file);
    }
    Folder& known = m_folders[placeOf(reinterpret_cast<std::uintptr_t>(node), places)];
    if (known.node != node) {
        known = {node, folderName(file)};
    }
    return known.name;
}

} // namespace quorvane::DuplicateFinder
