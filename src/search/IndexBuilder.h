// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "IndexTable.h"
#include "LockedFlag.h"
#include "MountTable.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

class FileNode;

/// Whether a folder is one where a desktop keeps what was thrown away: ".Trash", ".trash",
/// ".Trash-" with the number of a user, or ".local/share/Trash". An index leaves it out.
bool isTrashFolder(const FilePath& folder);

/// Lays entries out as the columns of an index: make one, add a tree once, write. One thread.
class IndexBuilder
{
public:
    /// madeMs: when the tree was begun to be walked, milliseconds since 1970. The folders on which
    /// a volume of the list is mounted stay empty.
    IndexBuilder(std::int64_t madeMs, std::vector<RemoteMount> leftOut);

    /// Adds the tree below its root. False when stop was set, or when it has more entries or bytes
    /// of names than an index holds (2³² of each).
    bool add(FileNode& root, const LockedFlag& stop);
    /// Adds an older index with the tree in the place of the folder at its path; where the older
    /// one has no such folder, the tree is left out. The result is as old as the older of the two.
    bool add(const IndexTable& older, FileNode& root, const LockedFlag& stop);

    /// Puts the index in the place of the file. False when that fails; the file is then as it was.
    bool write(const FilePath& file) const;
    /// What write() writes.
    std::string bytes() const;

private:
    using Row = IndexTable::Row;

    /// Where a row comes from: a node of the tree, or else a row of the older index.
    struct Source
    {
        FileNode* node = nullptr;
        Row older = 0;
    };

    void findUnlisted(FileNode& root);
    bool addAll(const FilePath& root, Source source, const LockedFlag& stop);
    void addEntriesOf(Row folder);
    void addRow(Row parent, Source source, std::uint8_t inherited);
    void addName(std::string_view name);
    bool holdsPackages(Row folder) const;
    std::string_view nameOf(Source source) const;

    std::int64_t m_madeMs;
    std::vector<RemoteMount> m_leftOut;
    const IndexTable* m_older = nullptr;
    FileNode* m_graft = nullptr; ///< stands for the row of the older index below
    Row m_graftedRow = 0;
    std::vector<const FileNode*> m_unlisted;

    std::vector<Source> m_sources;
    std::vector<std::int64_t> m_sizes;
    std::vector<std::int64_t> m_dates;
    std::vector<std::uint32_t> m_parents;
    std::vector<std::uint32_t> m_nameStarts{0};
    std::vector<std::uint32_t> m_spelledRows;
    std::vector<std::uint32_t> m_spelledStarts{0};
    std::vector<std::uint8_t> m_marks;
    std::string m_names;
    std::string m_spelling;
    std::string m_root;
};

} // namespace quorvane
