// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quorvane {

/// What a folder with duplicates holds: files of every size, or many small ones, among them many
/// hard links, and four large ones with holes.
enum class CorpusKind { mixed, small };

/// What a folder with duplicates shall look like.
struct CorpusShape
{
    std::int64_t files = 0; ///< names of regular files and links, folders not counted
    std::int64_t bytes = 0; ///< the sum of all files' contents, a hard link not counted again
    std::uint64_t seed = 0;
    CorpusKind kind = CorpusKind::mixed;
};

/// The smallest number of bytes for a number of files: so that sizes can differ, and of small files
/// so that the large ones are larger.
constexpr std::int64_t minCorpusBytes(std::int64_t files, CorpusKind kind = CorpusKind::mixed)
{
    return files * (kind == CorpusKind::mixed ? 2048 : 20480);
}

/// Which files a corpus has, before anything is made. Two in twenty-five begin a group of two to
/// six copies; others differ from a copy in one byte at the front, in the middle or at the end,
/// share only a size, lie below a kilobyte, or are links. Sizes spread over powers of two, so that
/// most files are small and most bytes lie in large ones. A corpus of small files has sizes from 1
/// to 16 KiB, two to four copies of one in eight, a hard link for one name in ten, and four large
/// files of one size, of which two are copies and one differs in one byte. A plain value, the same
/// for the same shape.
class CorpusPlan
{
public:
    enum class Kind { file, hardLink, symbolicLink };

    struct Entry
    {
        Kind kind = Kind::file;
        std::size_t folder = 0;
        std::int64_t bytes = 0;
        std::uint64_t content = 0;     ///< files of one number and size have the same bytes
        std::int64_t changedByte = -1; ///< place of the one byte that is different, if any
        std::size_t target = 0;        ///< of a link: an earlier entry that is a file
        bool isSparse = false;         ///< a megabyte of data in sixteen, holes between
    };

    /// In a sparse file data lies in the first dataBytes of every sparseStep.
    static constexpr std::int64_t sparseStep = 16777216;
    static constexpr std::int64_t dataBytes = 1048576;

    explicit CorpusPlan(const CorpusShape& shape);

    const CorpusShape& shape() const { return m_shape; }
    const std::vector<Entry>& entries() const { return m_entries; }
    /// Relative paths without a slash at the end; folder 0 is the top, the empty path, and every
    /// other stands after its parent.
    const std::vector<std::string>& folders() const { return m_folders; }

private:
    struct Family;

    void addMixedFiles();
    void addSmallFiles();
    void makeFolders();
    std::vector<Family> families() const;
    void addFamily(const Family& family, std::int64_t bytes);
    void addLinks(std::size_t count, Kind kind);
    std::size_t someFolder(std::uint64_t number) const;

    CorpusShape m_shape;
    std::vector<Entry> m_entries;
    std::vector<std::string> m_folders;
    std::uint64_t m_nextContent = 0;
};

} // namespace quorvane
