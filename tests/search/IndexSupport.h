// SPDX-License-Identifier: MIT
#pragma once

#include "FileTree.h"
#include "IndexTable.h"
#include "MountTable.h"
#include "SearchResult.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace quorvane {
class IndexBuilder;
} // namespace quorvane

namespace quorvane::test {

/// An index whose bytes are in memory.
class IndexInMemory
{
public:
    /// What the first constructor has the index say.
    static constexpr std::int64_t madeMs = 1'700'000'000'000;

    explicit IndexInMemory(FileNode& root, std::vector<RemoteMount> leftOut = {});
    explicit IndexInMemory(const IndexBuilder& builder);
    explicit IndexInMemory(std::string bytes);

    std::string bytes() const { return m_bytes; }
    /// Absent for bytes that are no index.
    const std::optional<IndexTable>& table() const { return m_table; }

private:
    void read();

    std::string m_bytes;
    std::vector<std::uint64_t> m_aligned;
    std::optional<IndexTable> m_table;
};

/// Makes the checksum of bytes that are long enough to have one say that they are whole.
void repairChecksum(std::string& bytes);

/// Asks for every value of every row, and searches.
void readEverything(const IndexTable& table);

/// A finished tree at "/odd" with so many entries: names in capitals, with marks, with newlines, of
/// bytes that are not text, "node_modules" among them; the same for the same seed.
std::shared_ptr<FileTree> oddTree(unsigned seed, std::size_t entries);
/// A finished tree at "/chain" of folders "d" inside one another, with a file "end" in the last.
std::shared_ptr<FileTree> chainTree(int depth);

/// A request that some of a tree answers.
SearchRequest randomRequest(std::mt19937& random, FileNode& root);
/// Paths of the best entries, by asking each for its path and its name.
std::vector<std::string> plainSearch(FileNode& root, const SearchRequest& request,
                                     std::size_t limit);

} // namespace quorvane::test
