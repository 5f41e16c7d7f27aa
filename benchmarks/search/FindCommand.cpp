// SPDX-License-Identifier: MIT
#include "FileIndex.h"
#include "FileSystemCalls.h"
#include "JsonRecord.h"
#include "JsonText.h"
#include "MappedFile.h"
#include "SpotlightSearcher.h"
#include "TreeSource.h"

#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <vector>

namespace quorvane {
namespace {

constexpr OptionRule findOptions[] = {{"scope", true},     {"query", true},     {"kind", true},
                                      {"min-bytes", true}, {"max-bytes", true}, {"from-ms", true},
                                      {"now", true},       {"times", true},     {"index", true}};
constexpr OptionRule indexOptions[] = {{"out", true}};
constexpr OptionRule formatOptions[] = {{"now", true}};

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

QString textFrom(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

struct FindWords
{
    SearchRequest request;
    double nowMs = SearchQueryParser::currentMs();
    std::int64_t times = 1;
};

/// Returns what is wrong with the options; empty when nothing is.
std::string readFindWords(const Arguments& arguments, FindWords& words)
{
    SearchRequest& request = words.request;
    request.query = textFrom(arguments.value("query").value_or(""));
    if (const auto scope = arguments.value("scope")) {
        request.scope = folderFromArgument(*scope);
    }
    if (const auto kind = arguments.value("kind")) {
        request.kind = searchFilterKindFromRawValue(*kind);
        if (!request.kind) {
            return "no such kind: " + std::string(*kind);
        }
    }
    const auto readInteger = [&](std::string_view name, std::optional<std::int64_t>& number) {
        const auto given = arguments.value(name);
        number = given ? integerFromText(*given) : std::nullopt;
        return !given || number;
    };
    const auto readReal = [&](std::string_view name, std::optional<double>& number) {
        const auto given = arguments.value(name);
        number = given ? realFromText(*given) : std::nullopt;
        return !given || number;
    };
    std::optional<double> now;
    std::optional<std::int64_t> times;
    if (!readInteger("min-bytes", request.filters.minBytes) ||
        !readInteger("max-bytes", request.filters.maxBytes) || !readInteger("times", times) ||
        !readReal("from-ms", request.filters.fromMs) || !readReal("now", now)) {
        return "--min-bytes, --max-bytes, --from-ms, --now and --times need a number";
    }
    words.nowMs = now.value_or(words.nowMs);
    words.times = std::max<std::int64_t>(times.value_or(1), 1);
    return {};
}

void print(const SearchResult& result, double nowMs)
{
    std::string line;
    JsonObject object(line);
    object.path(result.path.bytes());
    object.text("name", result.name());
    object.text("kind", rawValue(result.kind));
    object.integer("size", result.size);
    object.real("modifiedMS", result.modifiedMS);
    object.text("sizeLabel", result.sizeLabel().toStdString());
    object.text("dateLabel", result.dateLabel(nowMs).toStdString());
    object.endLine();
    std::cout << line;
}

/// Opens the index at --index, or makes one of DIR at the place. Returns what is wrong; empty when
/// nothing is.
std::string openIndex(const Arguments& arguments, MappedFileIndex& index)
{
    if (!arguments.has("index")) {
        const FilePath folder = folderFromArgument(arguments.operands().front());
        if (index.make(folder, LockedFlag()) != MappedFileIndex::Outcome::made) {
            return "cannot index " + folder.bytes();
        }
    }
    return index.open() ? std::string() : "cannot read the index";
}

int runFind(const Arguments& arguments)
{
    FindWords words;
    if (const std::string fault = readFindWords(arguments, words); !fault.empty()) {
        return complain(fault, exitUsage);
    }
    const std::optional<std::string_view> given = arguments.value("index");
    if (arguments.operands().size() != (given ? 0 : 1)) {
        return complain("find needs one DIR, or --index FILE in its place; try --help", exitUsage);
    }
    const QTemporaryDir place;
    FileSystemCalls& calls = FileSystemCalls::system();
    MappedFileIndex index(given ? folderFromArgument(*given)
                                : FilePath::fromText(place.path()).appending("index"),
                          calls);
    if (const std::string fault = openIndex(arguments, index); !fault.empty()) {
        return complain(fault, exitFailure);
    }
    const LockedFlag stop;
    std::vector<SearchResult> results;
    std::vector<double> seconds;
    for (std::int64_t i = 0; i < words.times; ++i) {
        // Each time with an empty cache.
        SpotlightSearcher searcher(index, calls);
        const auto start = std::chrono::steady_clock::now();
        results = searcher.search(words.request, words.nowMs, stop);
        seconds.push_back(secondsSince(start));
    }
    for (const SearchResult& result : results) {
        print(result, words.nowMs);
    }
    std::sort(seconds.begin(), seconds.end());
    std::cerr << "search seconds: " << seconds[seconds.size() / 2] << '\n';
    return exitSuccess;
}

int runIndex(const Arguments& arguments)
{
    const std::optional<std::string_view> out = arguments.value("out");
    if (arguments.operands().size() != 1 || !out) {
        return complain("index needs one DIR and --out FILE; try --help", exitUsage);
    }
    const FilePath file = folderFromArgument(*out);
    const LockedFlag stop;
    MappedFileIndex index(file, FileSystemCalls::system());
    const auto start = std::chrono::steady_clock::now();
    if (index.make(folderFromArgument(arguments.operands().front()), stop) !=
        MappedFileIndex::Outcome::made) {
        return complain("no index was made", exitFailure);
    }
    const double makeSeconds = secondsSince(start);
    const auto opening = std::chrono::steady_clock::now();
    const std::optional<MappedFile> mapped = MappedFile::open(file);
    const std::optional<IndexTable> table =
        mapped ? IndexTable::fromBytes(mapped->bytes()) : std::nullopt;
    if (!table) {
        return complain("the index cannot be read back", exitFailure);
    }
    std::string line;
    JsonObject object(line);
    object.integer("entries", std::int64_t{table->size()} - 1);
    object.integer("bytes", static_cast<std::int64_t>(mapped->bytes().size()));
    object.real("makeSeconds", makeSeconds);
    object.real("openSeconds", secondsSince(opening));
    object.endLine();
    std::cout << line;
    return exitSuccess;
}

std::string classified(const JsonRecord& record, std::string& out)
{
    const std::optional<std::string_view> name = record.text("name");
    const std::optional<bool> isDir = record.boolean("isDir");
    if (!name || !isDir) {
        return "needs name and isDir";
    }
    JsonObject object(out);
    object.text("kind", rawValue(FileKindClassifier::classify(*name, *isDir)));
    object.endLine();
    return {};
}

int runClassify(const Arguments& arguments)
{
    return arguments.operands().empty() ? answerLines(classified)
                                        : complain("classify takes no operand", exitUsage);
}

int runFormat(const Arguments& arguments)
{
    const std::optional<double> now = realFromText(arguments.value("now").value_or(""));
    if (!arguments.operands().empty() || !now) {
        return complain("format needs --now with milliseconds since 1970", exitUsage);
    }
    return answerLines([&](const JsonRecord& record, std::string& out) -> std::string {
        const std::optional<std::int64_t> bytes = record.integer("bytes");
        const std::optional<double> ms = record.real("ms");
        if (!bytes && !ms) {
            return "needs bytes or ms";
        }
        const QString text = bytes ? SearchResultsFormatter::size(*bytes)
                                   : SearchResultsFormatter::relativeDate(*ms, *now);
        JsonObject object(out);
        object.text("text", text.toStdString());
        object.endLine();
        return {};
    });
}

} // namespace

const Command findCommand{
    "find",
    "(DIR | --index FILE) [--scope PATH] [--query S] [--kind K] [--min-bytes N] [--max-bytes N] "
    "[--from-ms X] "
    "[--now MS] [--times N]",
    "Index DIR in a temporary place, as if it were the whole machine, and search it.", findOptions,
    runFind};
const Command indexCommand{"index", "DIR --out FILE",
                           "Make the index of DIR and tell its size and the seconds it took.",
                           indexOptions, runIndex};
const Command classifyCommand{"classify",
                              "",
                              "Tell the kind of the file named on each line of standard input.",
                              {},
                              runClassify};
const Command formatCommand{"format", "--now MS",
                            "Tell the text for the size or date on each line of standard input.",
                            formatOptions, runFormat};

} // namespace quorvane
