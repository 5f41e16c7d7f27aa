// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <cstddef>
#include <optional>
#include <span>

namespace quorvane {

/// The bytes of a file of this user, mapped for reading. Meant for files that are replaced whole,
/// as StoredFiles does: such a mapping stays as it was when it was opened. A file that somebody
/// shortens in place ends the process on the next read beyond its end. Movable; any thread.
class MappedFile
{
public:
    /// Absent unless the path is a regular file, no link, that belongs to this user.
    static std::optional<MappedFile> open(const FilePath& file);

    MappedFile(MappedFile&& other) noexcept;
    MappedFile& operator=(MappedFile&& other) noexcept;
    ~MappedFile();

    /// Starts at the boundary of a page. Empty for a file without a byte.
    std::span<const std::byte> bytes() const { return m_bytes; }

private:
    explicit MappedFile(std::span<const std::byte> bytes)
        : m_bytes(bytes)
    {}

    std::span<const std::byte> m_bytes;
};

} // namespace quorvane
