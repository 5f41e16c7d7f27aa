// SPDX-License-Identifier: MIT
#include "FolderSearch.h"

#include "FileNode.h"
#include "FileTree.h"
#include "Text.h"
#include "Workers.h"

#include <algorithm>
#include <atomic>
#include <string>

namespace quorvane {
namespace {

constexpr std::array<std::string_view, allKindFilters.size()> kindNames{"everything", "files",
                                                                        "folders"};
constexpr std::array<QStringView, allKindFilters.size()> kindTitles{u"Everything", u"Files",
                                                                    u"Folders"};
constexpr std::array<std::string_view, allByteFilters.size()> byteNames{"any", "mb1", "mb10",
                                                                        "mb100", "gb1"};
constexpr std::array<QStringView, allByteFilters.size()> byteTitles{
    u"Any size", u"> 1 MB", u"> 10 MB", u"> 100 MB", u"> 1 GB"};
constexpr std::array<std::int64_t, allByteFilters.size()> byteLimits{0, 1048576, 10485760,
                                                                     104857600, 1073741824};
constexpr std::array<std::string_view, allAgeFilters.size()> ageNames{"any", "lastMonth",
                                                                      "lastYear", "overYear"};
constexpr std::array<QStringView, allAgeFilters.size()> ageTitles{
    u"Any age", u"Modified < 30 days", u"Modified < 1 year", u"Unchanged > 1 year"};

/// Ids between two looks at the stop flag.
constexpr std::int64_t stopInterval = 1 << 14;
/// Below this a second thread is not worth its start.
constexpr std::int64_t minIdsForTwo = 1 << 15;

template<class Filter, class Names>
std::optional<Filter> filterNamed(const Names& names, std::string_view text)
{
    const auto found = std::find(names.begin(), names.end(), text);
    return found == names.end() ? std::nullopt
                                : std::optional(static_cast<Filter>(found - names.begin()));
}

template<class Filter>
std::size_t indexOf(Filter filter)
{
    return static_cast<std::size_t>(filter);
}

/// Lower-cases name after name, most of them in the same room.
class LowerCase
{
public:
    /// Valid until the next call.
    std::string_view of(std::string_view name)
    {
        unsigned char all = 0;
        if (name.size() <= m_ascii.size()) {
            for (std::size_t i = 0; i < name.size(); ++i) {
                const char c = name[i];
                all |= static_cast<unsigned char>(c);
                m_ascii[i] = asciiLower(c);
            }
            if (all < 0x80) {
                return {m_ascii.data(), name.size()};
            }
        }
        m_text = lowercased(name);
        return m_text;
    }

private:
    std::array<char, 256> m_ascii{};
    std::string m_text;
};

/// Whether a word may begin at the place: at the start, behind white space and behind "-", "_" and
/// ".".
bool beginsAt(std::string_view name, std::size_t place)
{
    if (place == 0) {
        return true;
    }
    const char before = name[place - 1];
    if (before == '-' || before == '_' || before == '.') {
        return true;
    }
    std::size_t start = place - 1;
    while (start > 0 && (static_cast<unsigned char>(name[start]) & 0xC0U) == 0x80U) {
        --start;
    }
    const QString character = displayText(name.substr(start, place - start));
    return character.size() == 1 && character.front().isSpace();
}

/// One search, over one part of the ids at a time.
class Ranking
{
public:
    Ranking(const NodeIndex& nodes, const FolderSearch::Query& query, double now,
            const LockedFlag& stop)
        : m_nodes(nodes)
        , m_query(query)
        , m_words(FolderSearch::wordsOf(query.text))
        , m_text(query.text.toStdString())
        , m_now(now)
        , m_stop(stop)
    {}

    /// Without words all scores are equal, and the first are the best.
    std::size_t limit() const
    {
        return m_words.empty() ? FolderSearch::maxHits : FolderSearch::maxRanked;
    }

    /// The first matches of the ids, in their order.
    std::vector<FolderSearch::Hit> walk(std::int64_t first, std::int64_t end) const
    {
        std::vector<FolderSearch::Hit> hits;
        LowerCase lower;
        for (std::int64_t id = first; id != end && hits.size() < limit(); ++id) {
            if (id % stopInterval == 0 && m_stop.get()) {
                break;
            }
            FileNode* const node = m_nodes.find(id);
            if (node == nullptr || !passesFilters(*node)) {
                continue;
            }
            std::int64_t points = 0;
            if (m_words.empty()) {
                hits.push_back({node, 0});
            } else if (match(lower.of(node->name()), points)) {
                hits.push_back({node, points * 10 + bonus(*node)});
            }
        }
        return hits;
    }

private:
    bool passesFilters(const FileNode& node) const
    {
        switch (m_query.kind) {
        case KindFilter::everything:
            break;
        case KindFilter::files:
            if (node.isDirectory() || node.isSymbolicLink()) {
                return false;
            }
            break;
        case KindFilter::folders:
            if (!node.isDirectory()) {
                return false;
            }
            break;
        }
        return (!m_query.category || fileTypeCategoryForName(node.name()) == *m_query.category) &&
               (m_query.minBytes == ByteFilter::any ||
                node.scannedBytes() >= byteLimits[indexOf(m_query.minBytes)]) &&
               passesAge(node);
    }

    bool passesAge(const FileNode& node) const
    {
        constexpr double monthSeconds = 2592000;
        constexpr double yearSeconds = 31536000;
        if (m_query.age == AgeFilter::any) {
            return true;
        }
        const std::optional<std::int64_t> modified = node.dateModified();
        if (!modified) {
            return false;
        }
        const auto date = static_cast<double>(*modified);
        return m_query.age == AgeFilter::lastMonth  ? date >= m_now - monthSeconds
               : m_query.age == AgeFilter::lastYear ? date >= m_now - yearSeconds
                                                    : date < m_now - yearSeconds;
    }

    /// Whether every word occurs; by its first occurrence it adds to the points.
    bool match(std::string_view lower, std::int64_t& points) const
    {
        for (const std::string& word : m_words) {
            const std::size_t place = lower.find(word);
            if (place == lower.npos) {
                return false;
            }
            points += lower == word ? 60 : beginsAt(lower, place) ? 40 : 20;
        }
        return true;
    }

    std::int64_t bonus(const FileNode& node) const
    {
        constexpr std::int64_t megabyte = 1048576;
        constexpr std::int64_t maxSizeBonus = 12;
        return (node.name() == m_text ? 500 : 0) + (node.isDirectory() ? 5 : 0) +
               std::min(node.scannedBytes() / megabyte, maxSizeBonus);
    }

    const NodeIndex& m_nodes;
    const FolderSearch::Query& m_query;
    std::vector<std::string> m_words;
    std::string m_text;
    double m_now;
    const LockedFlag& m_stop;
};

/// The first matches of all ids.
std::vector<FolderSearch::Hit> walkAll(const Ranking& ranking, std::int64_t end)
{
    if (end < minIdsForTwo) {
        return ranking.walk(0, end);
    }
    std::vector<FolderSearch::Hit> hits;
    std::vector<FolderSearch::Hit> behind;
    std::atomic<int> next = 0;
    runOnWorkers(2, [&] {
        for (int half = next++; half < 2; half = next++) {
            (half == 0 ? hits : behind) =
                half == 0 ? ranking.walk(0, end / 2) : ranking.walk(end / 2, end);
        }
    });
    hits.insert(hits.end(), behind.begin(), behind.end());
    hits.resize(std::min(hits.size(), ranking.limit()));
    return hits;
}

} // namespace

std::string_view rawValue(KindFilter filter)
{
    return kindNames[indexOf(filter)];
}

std::string_view rawValue(ByteFilter filter)
{
    return byteNames[indexOf(filter)];
}

std::string_view rawValue(AgeFilter filter)
{
    return ageNames[indexOf(filter)];
}

std::optional<KindFilter> kindFilterFromRawValue(std::string_view text)
{
    return filterNamed<KindFilter>(kindNames, text);
}

std::optional<ByteFilter> byteFilterFromRawValue(std::string_view text)
{
    return filterNamed<ByteFilter>(byteNames, text);
}

std::optional<AgeFilter> ageFilterFromRawValue(std::string_view text)
{
    return filterNamed<AgeFilter>(ageNames, text);
}

QString title(KindFilter filter)
{
    return kindTitles[indexOf(filter)].toString();
}

QString title(ByteFilter filter)
{
    return byteTitles[indexOf(filter)].toString();
}

QString title(AgeFilter filter)
{
    return ageTitles[indexOf(filter)].toString();
}

std::vector<std::string> FolderSearch::wordsOf(const QString& text)
{
    std::vector<std::string> words;
    QString word;
    const auto take = [&] {
        if (!word.isEmpty()) {
            words.push_back(word.toLower().toStdString());
            word.clear();
        }
    };
    for (const QChar c : text) {
        if (c.isSpace()) {
            take();
        } else {
            word += c;
        }
    }
    take();
    return words;
}

std::vector<FolderSearch::Hit> FolderSearch::ranked(const NodeIndex& nodes, const Query& query,
                                                    double now, const LockedFlag& stop)
{
    const Ranking ranking(nodes, query, now, stop);
    std::vector<Hit> hits = walkAll(ranking, nodes.idEnd());
    std::stable_sort(hits.begin(), hits.end(),
                     [](const Hit& a, const Hit& b) { return a.score > b.score; });
    hits.resize(std::min(hits.size(), maxHits));
    return hits;
}

} // namespace quorvane
