// SPDX-License-Identifier: MIT
#include "FolderSearch.h"
#include "JsonText.h"
#include "SearchQueryParser.h"
#include "TreeSource.h"

#include <algorithm>
#include <chrono>
#include <iostream>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {{"dump", true},     {"query", true},     {"kind", true},
                                  {"category", true}, {"min-bytes", true}, {"age", true},
                                  {"now", true},      {"times", true}};

struct FolderSearchWords
{
    FolderSearch::Query query;
    double now = SearchQueryParser::currentMs() / 1000.0;
    std::int64_t times = 1;
};

/// Takes the option's value through a reader; false when that gives nothing.
template<class Value, class Read>
bool take(const Arguments& arguments, std::string_view name, Value& value, Read read)
{
    const std::optional<std::string_view> given = arguments.value(name);
    if (!given) {
        return true;
    }
    const auto known = read(*given);
    if (known) {
        value = *known;
    }
    return known.has_value();
}

std::string readWords(const Arguments& arguments, FolderSearchWords& words)
{
    const std::string_view text = arguments.value("query").value_or("");
    words.query.text = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    if (!take(arguments, "kind", words.query.kind, kindFilterFromRawValue)) {
        return "--kind needs everything, files or folders";
    }
    if (!take(arguments, "category", words.query.category, fileTypeCategoryFromRawValue)) {
        return "--category needs the key of a category, for example doc";
    }
    if (!take(arguments, "min-bytes", words.query.minBytes, byteFilterFromRawValue)) {
        return "--min-bytes needs any, mb1, mb10, mb100 or gb1";
    }
    if (!take(arguments, "age", words.query.age, ageFilterFromRawValue)) {
        return "--age needs any, lastMonth, lastYear or overYear";
    }
    if (!take(arguments, "now", words.now, realFromText) ||
        !take(arguments, "times", words.times, integerFromText) || words.times < 1) {
        return "--now needs seconds since 1970, --times a number from 1";
    }
    return {};
}

int runFolderSearch(const Arguments& arguments)
{
    FolderSearchWords words;
    if (const std::string fault = readWords(arguments, words); !fault.empty()) {
        return complain(fault, exitUsage);
    }
    const auto loaded = loadTree(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    const NodeIndex nodes(std::get<std::shared_ptr<FileTree>>(loaded)->root());
    const LockedFlag stop;
    std::vector<FolderSearch::Hit> hits;
    std::vector<double> seconds;
    for (std::int64_t i = 0; i < words.times; ++i) {
        const auto start = std::chrono::steady_clock::now();
        hits = FolderSearch::ranked(nodes, words.query, words.now, stop);
        seconds.push_back(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
    for (const FolderSearch::Hit& hit : hits) {
        std::string line;
        JsonObject object(line);
        object.path(hit.node->path().bytes());
        object.integer("score", hit.score);
        object.endLine();
        std::cout << line;
    }
    std::sort(seconds.begin(), seconds.end());
    std::cerr << "search seconds: " << seconds[seconds.size() / 2] << '\n';
    return exitSuccess;
}

} // namespace

const Command folderSearchCommand{
    "folder-search",
    "(DIR | --dump FILE) [--query S] [--kind K] [--category KEY] [--min-bytes F] [--age F] "
    "[--now SECONDS] [--times N]",
    "Search a scan by names and filters and print the best matches.", options, runFolderSearch};

} // namespace quorvane
