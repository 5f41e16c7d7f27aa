// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "SearchResult.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace quorvane {

/// The file of an index begins with this. Numbers are in the machine's own byte order. Behind the
/// header stand these columns, each filled up with zeros to a multiple of eight bytes:
///
///     sizes          i64  entries        the entry's own bytes (st_size)
///     dates          i64  entries        when it was modified, seconds since 1970
///     parents        u32  entries        row of the folder that holds it
///     nameStarts     u32  entries + 1    where in `names` its folded name begins
///     spelledRows    u32  spelled        rows whose name is not its own folded form, ascending
///     spelledStarts  u32  spelled + 1    where in `spelling` the name of each begins
///     marks          u8   entries        ResultKind, and belowPackages
///     names          byte nameBytes      folded names, each with a NUL behind it
///     spelling       byte spellingBytes  names as the disk has them
///     root           byte rootBytes      path of the folder that was walked
///
/// Row 0 is the root, with an empty name, and is never found. The others stand level by level, and
/// in a level in the order of their parents: so what lies below a folder is one run of rows in each
/// level, and shallow entries come first. A file of another version or byte order is made anew.
struct IndexHeader
{
    static constexpr std::uint64_t expectedMagic = 0x315844494E565251; ///< "QRVNIDX1"
    static constexpr std::uint32_t expectedVersion = 1;

    std::uint64_t magic = expectedMagic; ///< tells the byte order, too
    std::uint64_t checksum = 0;          ///< of all that follows; see IndexChecksum
    std::uint64_t version = expectedVersion;
    std::int64_t madeMs = 0; ///< when its oldest part was begun, milliseconds since 1970
    std::uint64_t entries = 0;
    std::uint64_t spelled = 0;
    std::uint64_t nameBytes = 0;
    std::uint64_t spellingBytes = 0;
    std::uint64_t rootBytes = 0;
};

/// Set in a row's mark when a folder named "node_modules" stands above it.
inline constexpr std::uint8_t belowPackages = 0x80;

/// FNV-1a over words of eight bytes in four lanes in turn, whose states are then taken as words
/// themselves. A change of any one word always changes it.
class IndexChecksum
{
public:
    IndexChecksum();
    /// Takes a part as if it were filled up with zeros to a multiple of eight bytes.
    void add(std::span<const std::byte> part);
    std::uint64_t value() const;

private:
    static constexpr std::size_t lanes = 4;

    void addWord(std::uint64_t word);

    std::array<std::uint64_t, lanes> m_hashes;
    std::size_t m_words = 0;
};

/// The rows of an index, read where they lie. Every row and offset was checked when it was made
/// from the bytes, which must outlive it and stay as they are. Any thread.
class IndexTable
{
public:
    using Row = std::uint32_t;

    /// A run of rows; half open.
    struct Rows
    {
        Row first = 0;
        Row end = 0;
    };

    /// Absent for bytes that are not whole, or not an index of this version in every detail. Reads
    /// all of them.
    static std::optional<IndexTable> fromBytes(std::span<const std::byte> bytes);

    /// Number of rows, the root among them.
    Row size() const { return static_cast<Row>(m_sizes.size()); }
    std::int64_t madeMs() const { return m_madeMs; }
    /// Tells one index from another.
    std::uint64_t checksum() const { return m_checksum; }
    FilePath rootPath() const { return FilePath(std::string(m_root)); }

    std::int64_t bytesOf(Row row) const { return m_sizes[row]; }
    std::int64_t modifiedSeconds(Row row) const { return m_dates[row]; }
    ResultKind kind(Row row) const
    {
        return static_cast<ResultKind>(m_marks[row] & ~belowPackages);
    }
    bool isBelowPackages(Row row) const { return (m_marks[row] & belowPackages) != 0; }
    Row parent(Row row) const { return m_parents[row]; }
    /// The name as the disk has it.
    std::string_view name(Row row) const;
    std::string_view foldedName(Row row) const;
    FilePath path(Row row) const;

    /// The entries of the folders in a run of rows of one level; itself a run of one level.
    Rows childrenOf(Rows folders) const;
    /// The row at a path at or below the root.
    std::optional<Row> rowAt(const FilePath& path) const;
    /// Where each level begins, and the end of the last.
    std::span<const Row> levels() const { return m_levels; }

    /// The folded names of all rows from where this row's begins, NULs between them.
    std::string_view foldedNamesFrom(Row row) const { return m_names.substr(m_nameStarts[row]); }
    std::span<const std::uint32_t> nameStarts() const { return m_nameStarts; }

private:
    bool isSound() const;
    bool hasSoundNames() const;

    std::int64_t m_madeMs = 0;
    std::uint64_t m_checksum = 0;
    std::span<const std::int64_t> m_sizes;
    std::span<const std::int64_t> m_dates;
    std::span<const std::uint32_t> m_parents;
    std::span<const std::uint32_t> m_nameStarts;
    std::span<const std::uint32_t> m_spelledRows;
    std::span<const std::uint32_t> m_spelledStarts;
    std::span<const std::uint8_t> m_marks;
    std::string_view m_names;
    std::string_view m_spelling;
    std::string_view m_root;
    std::vector<Row> m_levels;
};

} // namespace quorvane
