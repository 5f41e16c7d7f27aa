// SPDX-License-Identifier: MIT
#include "IndexSearch.h"

#include "NameFolding.h"
#include "Workers.h"

#include <algorithm>
#include <atomic>
#include <cstring>

namespace quorvane {
namespace {

using Row = IndexTable::Row;
using Rows = IndexTable::Rows;

/// Rows that a thread takes on at once.
constexpr Row blockRows = 1U << 15;
/// What lies below packages ranks as if it were so much deeper.
constexpr std::int64_t packagesPenalty = 100;

/// Where the text first stands at or behind the place; npos for none.
std::size_t findText(std::string_view in, std::string_view text, std::size_t from)
{
    if (from > in.size()) {
        return std::string_view::npos;
    }
    // memmem(3) has a fast road for long texts that std::string_view::find() lacks.
    const void* const found = memmem(in.data() + from, in.size() - from, text.data(), text.size());
    return found == nullptr ? std::string_view::npos
                            : static_cast<std::size_t>(static_cast<const char*>(found) - in.data());
}

/// The runs of rows that lie below a folder, one for each level.
std::vector<Rows> rowsBelow(const IndexTable& table, Row folder)
{
    if (folder == 0) {
        return {Rows{1, table.size()}};
    }
    std::vector<Rows> runs;
    for (Rows run = table.childrenOf({folder, folder + 1}); run.first != run.end;
         run = table.childrenOf(run)) {
        runs.push_back(run);
    }
    return runs;
}

std::vector<Rows> blocksOf(const std::vector<Rows>& runs)
{
    std::vector<Rows> blocks;
    for (Rows run : runs) {
        while (run.end - run.first > blockRows) {
            blocks.push_back({run.first, run.first + blockRows});
            run.first += blockRows;
        }
        blocks.push_back(run);
    }
    return blocks;
}

struct Hit
{
    std::int64_t key; ///< the smaller, the better
    Row row;

    friend bool operator<(const Hit& a, const Hit& b)
    {
        return a.key != b.key ? a.key < b.key : a.row < b.row;
    }
};

/// Keeps the best of many hits in little room.
class BestHits
{
public:
    explicit BestHits(std::size_t limit)
        : m_limit(limit)
    {}

    void add(Hit hit)
    {
        ++m_seen;
        if (m_isFull && m_worst < hit) {
            return;
        }
        m_hits.push_back(hit);
        if (m_hits.size() >= 2 * m_limit + slack) {
            shrink();
        }
    }

    std::size_t seen() const { return m_seen; }

    void takeFrom(const BestHits& other)
    {
        m_seen += other.m_seen;
        m_hits.insert(m_hits.end(), other.m_hits.begin(), other.m_hits.end());
    }

    const std::vector<Hit>& sorted()
    {
        std::sort(m_hits.begin(), m_hits.end());
        m_hits.resize(std::min(m_hits.size(), m_limit));
        return m_hits;
    }

private:
    static constexpr std::size_t slack = 1024;

    void shrink()
    {
        const auto last = m_hits.begin() + static_cast<std::ptrdiff_t>(m_limit - 1);
        std::nth_element(m_hits.begin(), last, m_hits.end());
        m_hits.resize(m_limit);
        m_worst = m_hits.back();
        m_isFull = true;
    }

    std::size_t m_limit;
    std::size_t m_seen = 0;
    std::vector<Hit> m_hits;
    bool m_isFull = false;
    Hit m_worst{};
};

/// One search. Threads take blocks in ascending order; what was taken is always a whole front part.
class IndexSearch
{
public:
    IndexSearch(const IndexTable& table, const SearchRequest& request, std::size_t limit,
                const LockedFlag& stop)
        : m_table(table)
        , m_request(request)
        , m_words(foldedWords(request.query))
        , m_ranksBySize(request.filters.minBytes || request.filters.maxBytes)
        , m_limit(std::max<std::size_t>(limit, 1))
        , m_stop(stop)
    {
        // The longest word is the rarest as a rule; the others are looked for where it stands.
        std::stable_sort(m_words.begin(), m_words.end(),
                         [](const auto& a, const auto& b) { return a.size() > b.size(); });
    }

    IndexHits run(const std::vector<Rows>& runs)
    {
        m_blocks = blocksOf(runs);
        BestHits best(m_limit);
        BestHits others(m_limit);
        std::atomic<int> worker = 0;
        runOnWorkers(m_blocks.size() > 1 ? 2 : 1, [&] { work(worker++ == 0 ? best : others); });
        best.takeFrom(others);
        IndexHits hits;
        hits.isComplete = best.seen() <= m_limit && m_nextBlock >= m_blocks.size();
        for (const Hit& hit : best.sorted()) {
            hits.rows.push_back(hit.row);
        }
        return hits;
    }

private:
    /// No later row can rank before so many that are not below packages: levels only go down.
    bool hasEnough() const { return !m_ranksBySize && m_certain >= m_limit; }

    void work(BestHits& hits)
    {
        while (!hasEnough() && !m_stop.get()) {
            const std::size_t block = m_nextBlock++;
            if (block >= m_blocks.size()) {
                return;
            }
            const std::size_t found = m_words.empty() ? scanRows(m_blocks[block], hits)
                                                      : scanNames(m_blocks[block], hits);
            m_certain += found;
        }
    }

    /// Returns how many hits are not below packages.
    std::size_t scanRows(Rows rows, BestHits& hits)
    {
        std::size_t certain = 0;
        Level level{0, rows.first}; // found with the first hit
        for (Row row = rows.first; row != rows.end; ++row) {
            certain += consider(row, level, hits) ? 1U : 0U;
        }
        return certain;
    }

    std::size_t scanNames(Rows rows, BestHits& hits)
    {
        const std::span<const std::uint32_t> starts = m_table.nameStarts();
        const std::string_view names =
            m_table.foldedNamesFrom(rows.first).substr(0, starts[rows.end] - starts[rows.first]);
        const std::uint32_t origin = starts[rows.first];
        std::size_t certain = 0;
        Level level{0, rows.first}; // found with the first hit
        Row row = rows.first;
        for (std::size_t at = 0; (at = findText(names, m_words.front(), at)) != names.npos;
             at = starts[row + 1] - origin, ++row) {
            row = rowHolding(static_cast<std::uint32_t>(at) + origin, row, rows.end);
            if (holdsOtherWords(m_table.foldedName(row))) {
                certain += consider(row, level, hits) ? 1U : 0U;
            }
        }
        return certain;
    }

    /// The row whose name a place lies in, at or behind a row that is not behind it.
    Row rowHolding(std::uint32_t place, Row row, Row end) const
    {
        const std::span<const std::uint32_t> starts = m_table.nameStarts();
        Row step = 1;
        Row last = row + 1;
        while (last < end && starts[last] <= place) {
            row = last;
            last = std::min<Row>(end - last > step ? last + step : end, end);
            step *= 2;
        }
        const auto behind = std::upper_bound(starts.begin() + row, starts.begin() + last, place);
        return static_cast<Row>(behind - starts.begin()) - 1;
    }

    bool holdsOtherWords(std::string_view name) const
    {
        return std::all_of(m_words.begin() + 1, m_words.end(), [&](const std::string& word) {
            return findText(name, word, 0) != name.npos;
        });
    }

    /// Where a row stands among the levels.
    struct Level
    {
        std::size_t number;
        Row end;
    };

    Level levelOf(Row row) const
    {
        const std::span<const Row> levels = m_table.levels();
        const auto behind = std::upper_bound(levels.begin(), levels.end(), row);
        return {static_cast<std::size_t>(behind - levels.begin()) - 1, *behind};
    }

    /// Whether the row is a hit that is not below packages.
    bool consider(Row row, Level& level, BestHits& hits) const
    {
        if (m_request.kind && m_table.kind(row) != resultKind(*m_request.kind)) {
            return false;
        }
        const std::int64_t size = m_table.bytesOf(row);
        const double modifiedMs = static_cast<double>(m_table.modifiedSeconds(row)) * 1000.0;
        if (!m_request.filters.pass(size, modifiedMs)) {
            return false;
        }
        const bool isLate = m_table.isBelowPackages(row);
        if (m_ranksBySize) {
            hits.add({~size, row});
            return !isLate;
        }
        if (row >= level.end) {
            level = levelOf(row);
        }
        hits.add({static_cast<std::int64_t>(level.number) + (isLate ? packagesPenalty : 0), row});
        return !isLate;
    }

    const IndexTable& m_table;
    const SearchRequest& m_request;
    std::vector<std::string> m_words;
    bool m_ranksBySize;
    std::size_t m_limit;
    const LockedFlag& m_stop;
    std::vector<Rows> m_blocks;
    std::atomic<std::size_t> m_nextBlock{0};
    std::atomic<std::size_t> m_certain{0};
};

} // namespace

IndexHits searchIndex(const IndexTable& table, const SearchRequest& request, std::size_t limit,
                      const LockedFlag& stop)
{
    // A scope above the folder that was walked holds all of it.
    const bool isWhole = request.scope.holds(table.rootPath());
    const std::optional<Row> folder = isWhole ? std::optional<Row>(0) : table.rowAt(request.scope);
    // No name holds a NUL, which parts the names from each other.
    if (!folder || request.query.contains(QChar(u'\0'))) {
        return {};
    }
    return IndexSearch(table, request, limit, stop).run(rowsBelow(table, *folder));
}

} // namespace quorvane
