// SPDX-License-Identifier: MIT
#include "IndexTable.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <limits>
#include <string>

namespace quorvane {
namespace {

constexpr std::size_t wordBytes = sizeof(std::uint64_t);
constexpr std::uint64_t offsetBasis = 0xcbf29ce484222325;

std::uint64_t wordAt(const std::byte* place)
{
    std::uint64_t word = 0;
    std::memcpy(&word, place, wordBytes);
    return word;
}

std::uint64_t mixed(std::uint64_t hash, std::uint64_t word)
{
    constexpr std::uint64_t prime = 0x100000001b3;
    return (hash ^ word) * prime;
}

/// Takes columns off the front of the bytes.
class ColumnReader
{
public:
    explicit ColumnReader(std::span<const std::byte> bytes)
        : m_bytes(bytes)
    {}

    template<class T>
    std::span<const T> take(std::uint64_t count)
    {
        // Neither product nor sum can overflow: no count is accepted that exceeds the bytes.
        if (count > m_bytes.size() / sizeof(T)) {
            m_failed = true;
            return {};
        }
        const std::span<const std::byte> column = m_bytes.first(count * sizeof(T));
        const std::uint64_t filled = (column.size() + wordBytes - 1) / wordBytes * wordBytes;
        m_failed = m_failed || filled > m_bytes.size();
        m_bytes = m_bytes.subspan(std::min<std::uint64_t>(filled, m_bytes.size()));
        return {reinterpret_cast<const T*>(column.data()), count};
    }

    std::string_view takeText(std::uint64_t count)
    {
        const std::span<const char> text = take<char>(count);
        return {text.data(), text.size()};
    }

    bool isAtEnd() const { return !m_failed && m_bytes.empty(); }

private:
    std::span<const std::byte> m_bytes;
    bool m_failed = false;
};

/// Starts at 0, never falls, ends with the length.
bool areStarts(std::span<const std::uint32_t> starts, std::size_t length)
{
    return starts.front() == 0 && starts.back() == length &&
           std::is_sorted(starts.begin(), starts.end());
}

} // namespace

IndexChecksum::IndexChecksum()
{
    m_hashes.fill(offsetBasis);
}

void IndexChecksum::addWord(std::uint64_t word)
{
    std::uint64_t& hash = m_hashes[m_words++ % lanes];
    hash = mixed(hash, word);
}

void IndexChecksum::add(std::span<const std::byte> part)
{
    for (; part.size() >= wordBytes && m_words % lanes != 0; part = part.subspan(wordBytes)) {
        addWord(wordAt(part.data()));
    }
    for (; part.size() >= lanes * wordBytes; part = part.subspan(lanes * wordBytes)) {
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            m_hashes[lane] = mixed(m_hashes[lane], wordAt(part.data() + lane * wordBytes));
        }
    }
    for (; part.size() >= wordBytes; part = part.subspan(wordBytes)) {
        addWord(wordAt(part.data()));
    }
    if (!part.empty()) {
        std::array<std::byte, wordBytes> last{};
        std::copy(part.begin(), part.end(), last.begin());
        addWord(wordAt(last.data()));
    }
}

std::uint64_t IndexChecksum::value() const
{
    std::uint64_t all = offsetBasis;
    for (const std::uint64_t hash : m_hashes) {
        all = mixed(all, hash);
    }
    return all;
}

std::optional<IndexTable> IndexTable::fromBytes(std::span<const std::byte> bytes)
{
    IndexHeader header;
    if (bytes.size() < sizeof header ||
        reinterpret_cast<std::uintptr_t>(bytes.data()) % alignof(IndexHeader) != 0) {
        return std::nullopt;
    }
    std::memcpy(&header, bytes.data(), sizeof header);
    constexpr std::size_t checkedFrom = offsetof(IndexHeader, version);
    if (header.magic != IndexHeader::expectedMagic ||
        header.version != IndexHeader::expectedVersion ||
        header.entries >= std::numeric_limits<Row>::max()) {
        return std::nullopt;
    }
    ColumnReader columns(bytes.subspan(sizeof header));
    IndexTable table;
    table.m_madeMs = header.madeMs;
    table.m_checksum = header.checksum;
    table.m_sizes = columns.take<std::int64_t>(header.entries);
    table.m_dates = columns.take<std::int64_t>(header.entries);
    table.m_parents = columns.take<std::uint32_t>(header.entries);
    table.m_nameStarts = columns.take<std::uint32_t>(header.entries + 1);
    table.m_spelledRows = columns.take<std::uint32_t>(header.spelled);
    table.m_spelledStarts = columns.take<std::uint32_t>(header.spelled + 1);
    table.m_marks = columns.take<std::uint8_t>(header.entries);
    table.m_names = columns.takeText(header.nameBytes);
    table.m_spelling = columns.takeText(header.spellingBytes);
    table.m_root = columns.takeText(header.rootBytes);
    IndexChecksum checksum;
    checksum.add(bytes.subspan(checkedFrom));
    if (!columns.isAtEnd() || checksum.value() != header.checksum || !table.isSound()) {
        return std::nullopt;
    }
    for (Rows level{0, 1}; level.first != level.end; level = table.childrenOf(level)) {
        table.m_levels.push_back(level.first);
    }
    table.m_levels.push_back(table.size());
    return table;
}

bool IndexTable::isSound() const
{
    if (m_sizes.empty() || m_parents.front() != 0 || !m_root.starts_with('/') ||
        !std::is_sorted(m_parents.begin(), m_parents.end())) {
        return false;
    }
    // A parent always stands before its entries, so that every way up ends at the root.
    for (std::size_t row = 1; row < m_parents.size(); ++row) {
        if (m_parents[row] >= row) {
            return false;
        }
    }
    return hasSoundNames() && std::all_of(m_marks.begin(), m_marks.end(), [](std::uint8_t mark) {
               return (mark & ~belowPackages) < static_cast<int>(resultKindCount);
           });
}

bool IndexTable::hasSoundNames() const
{
    if (!areStarts(m_nameStarts, m_names.size()) ||
        !areStarts(m_spelledStarts, m_spelling.size()) ||
        std::adjacent_find(m_spelledRows.begin(), m_spelledRows.end(), std::greater_equal<>()) !=
            m_spelledRows.end() ||
        (!m_spelledRows.empty() && m_spelledRows.back() >= size())) {
        return false;
    }
    for (std::size_t row = 0; row < m_sizes.size(); ++row) {
        if (m_nameStarts[row] == m_nameStarts[row + 1] || m_names[m_nameStarts[row + 1] - 1] != 0) {
            return false;
        }
    }
    // As many NULs as names, and each of those ends in one: none stands inside a name.
    return std::count(m_names.begin(), m_names.end(), '\0') ==
               static_cast<std::ptrdiff_t>(m_sizes.size()) &&
           m_names.find('/') == m_names.npos && m_spelling.find('/') == m_spelling.npos &&
           m_spelling.find('\0') == m_spelling.npos && m_root.find('\0') == m_root.npos;
}

std::string_view IndexTable::name(Row row) const
{
    const auto spelled = std::lower_bound(m_spelledRows.begin(), m_spelledRows.end(), row);
    if (spelled == m_spelledRows.end() || *spelled != row) {
        return foldedName(row);
    }
    const auto i = static_cast<std::size_t>(spelled - m_spelledRows.begin());
    return m_spelling.substr(m_spelledStarts[i], m_spelledStarts[i + 1] - m_spelledStarts[i]);
}

std::string_view IndexTable::foldedName(Row row) const
{
    return m_names.substr(m_nameStarts[row], m_nameStarts[row + 1] - m_nameStarts[row] - 1);
}

FilePath IndexTable::path(Row row) const
{
    std::vector<Row> way;
    for (; row != 0; row = m_parents[row]) {
        way.push_back(row);
    }
    std::string bytes(m_root == "/" ? std::string_view() : m_root);
    std::for_each(way.rbegin(), way.rend(), [&](Row step) {
        bytes.push_back('/');
        bytes.append(name(step));
    });
    return FilePath(bytes.empty() ? "/" : std::move(bytes));
}

IndexTable::Rows IndexTable::childrenOf(Rows folders) const
{
    // The root is its own parent, but not its own entry.
    const auto first = m_parents.begin() + 1;
    const auto rowFor = [&](Row folder) {
        return static_cast<Row>(std::lower_bound(first, m_parents.end(), folder) -
                                m_parents.begin());
    };
    return {rowFor(folders.first), rowFor(folders.end)};
}

std::optional<IndexTable::Row> IndexTable::rowAt(const FilePath& path) const
{
    if (!rootPath().holds(path)) {
        return std::nullopt;
    }
    std::string_view rest =
        std::string_view(path.bytes()).substr(m_root == "/" ? 0 : m_root.size());
    Row row = 0;
    while (!rest.empty()) {
        rest.remove_prefix(std::min(rest.find_first_not_of('/'), rest.size()));
        const std::string_view wanted = rest.substr(0, rest.find('/'));
        rest.remove_prefix(wanted.size());
        if (wanted.empty()) {
            continue;
        }
        const Rows children = childrenOf({row, row + 1});
        Row child = children.first;
        while (child != children.end && name(child) != wanted) {
            ++child;
        }
        if (child == children.end) {
            return std::nullopt;
        }
        row = child;
    }
    return row;
}

} // namespace quorvane
