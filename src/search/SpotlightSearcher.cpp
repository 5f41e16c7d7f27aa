// SPDX-License-Identifier: MIT
#include "SpotlightSearcher.h"

#include "DirectoryWalk.h"
#include "FileSystemCalls.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

namespace quorvane {
namespace {

constexpr std::string_view trashEnding = ".trash";
constexpr std::string_view trashFolder = "/.Trash/";
constexpr std::string_view packagesFolder = "/node_modules/";

bool contains(std::string_view text, std::string_view part)
{
    return text.find(part) != text.npos;
}

/// The result for an entry, if it passes the request's kind and filters.
std::optional<SearchResult> resultFor(FilePath path, const EntryStatus& status,
                                      const SearchRequest& request)
{
    SearchResult result;
    result.kind = FileKindClassifier::classify(path.lastComponent(),
                                               status.kind == EntryStatus::Kind::directory);
    result.size = status.size;
    result.modifiedMS = static_cast<double>(status.modifiedSeconds) * 1000.0;
    if ((request.kind && result.kind != resultKind(*request.kind)) ||
        !request.filters.pass(result.size, result.modifiedMS)) {
        return std::nullopt;
    }
    result.path = std::move(path);
    return result;
}

std::string printed(const std::optional<std::int64_t>& value)
{
    return value ? std::to_string(*value) : "nil";
}

std::string cacheKey(const SearchRequest& request)
{
    std::string key(request.kind ? rawValue(*request.kind) : std::string_view());
    key += " (" + printed(request.filters.minBytes) + ", " + printed(request.filters.maxBytes) +
           ", " +
           (request.filters.fromMs ? QString::number(*request.filters.fromMs, 'g', 17).toStdString()
                                   : "nil") +
           ") " + request.scope.bytes() + ' ' + request.query.toStdString();
    return key;
}

bool hasWords(const QString& query)
{
    return !query.trimmed().isEmpty();
}

} // namespace

std::size_t searchRank(const FilePath& path)
{
    constexpr std::size_t packagesPenalty = 100;
    const std::string_view bytes = path.bytes();
    std::size_t components = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        components += bytes[i] != '/' && (i == 0 || bytes[i - 1] == '/') ? 1U : 0U;
    }
    return components + (contains(bytes, packagesFolder) ? packagesPenalty : 0);
}

bool SpotlightSearcher::needsIndex(const SearchRequest& request)
{
    const bool isWhole = request.scope == FilePath("/");
    return hasWords(request.query) || !request.filters.isEmpty() || (isWhole && request.kind);
}

SpotlightSearcher::SpotlightSearcher(FileIndex& index, FileSystemCalls& calls)
    : m_index(index)
    , m_calls(calls)
{}

std::vector<SearchResult> SpotlightSearcher::search(const SearchRequest& request, double nowMs,
                                                    const LockedFlag& stop)
{
    if (!needsIndex(request)) {
        return request.scope == FilePath("/") ? std::vector<SearchResult>()
                                              : listDirectChildren(request, stop);
    }
    const std::string key = cacheKey(request);
    const double now = nowMs / 1000.0;
    const std::uint64_t generation = m_index.generation();
    {
        const std::lock_guard guard(m_lock);
        const auto cached = m_cache.find(key);
        if (cached != m_cache.end() && cached->second.generation == generation &&
            now - cached->second.at < cacheTTL) {
            return cached->second.results;
        }
    }
    const std::optional<std::vector<SearchResult>> results = runIndex(request, stop);
    if (!results || stop.get()) {
        return {};
    }
    const std::lock_guard guard(m_lock);
    m_cache[key] = Cached{now, generation, *results};
    return *results;
}

/// Candidates that are gone or have changed leave room for further ones.
std::optional<std::vector<SearchResult>> SpotlightSearcher::runIndex(const SearchRequest& request,
                                                                     const LockedFlag& stop) const
{
    constexpr std::size_t growth = 16;
    std::vector<SearchResult> results;
    for (std::size_t limit = maxResults;; limit *= growth) {
        const std::optional<FileIndex::Candidates> candidates =
            m_index.candidates(request, limit, stop);
        if (!candidates) {
            return std::nullopt;
        }
        results = checked(candidates->paths, request, stop);
        if (candidates->isComplete || results.size() >= maxResults || stop.get()) {
            break;
        }
    }
    if (request.filters.minBytes || request.filters.maxBytes) {
        std::stable_sort(results.begin(), results.end(),
                         [](const auto& a, const auto& b) { return a.size > b.size; });
    } else {
        std::stable_sort(results.begin(), results.end(), [](const auto& a, const auto& b) {
            return searchRank(a.path) < searchRank(b.path);
        });
    }
    results.resize(std::min(results.size(), maxResults));
    return results;
}

std::vector<SearchResult> SpotlightSearcher::checked(const std::vector<FilePath>& paths,
                                                     const SearchRequest& request,
                                                     const LockedFlag& stop) const
{
    std::vector<SearchResult> results;
    for (const FilePath& path : paths) {
        if (stop.get()) {
            break;
        }
        if (path.bytes().ends_with(trashEnding) || contains(path.bytes(), trashFolder)) {
            continue;
        }
        EntryStatus status;
        const ReachablePlace place(m_calls, path);
        if (!place.isReachable() || !m_calls.status(place.parent(), place.name(), status)) {
            continue;
        }
        if (std::optional<SearchResult> result = resultFor(path, status, request)) {
            results.push_back(std::move(*result));
        }
    }
    return results;
}

/// In the order of the file system.
std::vector<SearchResult> SpotlightSearcher::listDirectChildren(const SearchRequest& request,
                                                                const LockedFlag& stop) const
{
    std::vector<SearchResult> results;
    // The folder itself may be a link.
    std::error_code fault;
    const FilePath real(std::filesystem::canonical(request.scope.bytes(), fault).native());
    const ReachablePlace place(m_calls, fault ? request.scope : real);
    const int opened =
        place.isReachable() ? m_calls.openDirectory(place.parent(), place.name()) : -1;
    if (opened < 0) {
        return results;
    }
    const OpenDirectory directory(m_calls, opened);
    NameList names;
    if (!m_calls.appendNames(opened, names)) {
        return results;
    }
    for (std::size_t i = 0; i < names.spans.size() && results.size() < maxResults; ++i) {
        const std::string_view name(names.nameAt(i), names.spans[i].length);
        EntryStatus status;
        if (stop.get() || name.starts_with('.') ||
            !m_calls.status(opened, names.nameAt(i), status)) {
            continue;
        }
        if (std::optional<SearchResult> result =
                resultFor(request.scope.appending(name), status, request)) {
            results.push_back(std::move(*result));
        }
    }
    return results;
}

} // namespace quorvane
