// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorvane::DuplicateFinder {

/// Texts that many groups have in common, so that these share them. Keeps those made last and has a
/// bounded size.
class GroupTexts
{
public:
    /// ByteFormatter's text.
    QString size(std::int64_t bytes);
    /// The name of the folder that holds the file.
    QString folder(const FileNode& file);

private:
    struct Size
    {
        std::int64_t bytes = -1;
        QString text;
    };
    struct Folder
    {
        const FileNode* node = nullptr;
        QString name;
    };
    static constexpr std::size_t places = 4096; ///< of each kind, a power of two

    std::vector<Size> m_sizes = std::vector<Size>(places);
    std::vector<Folder> m_folders = std::vector<Folder>(places);
};

} // namespace quorvane::DuplicateFinder
