// SPDX-License-Identifier: MIT
#include "Command.h"
#include "DiskScanner.h"
#include "DuplicateFinder.h"
#include "JsonText.h"
#include "ProcessMemory.h"
#include "TreeSource.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <iostream>
#include <vector>

namespace quorvane {
namespace {

constexpr std::int64_t mostThreads = 256;
constexpr OptionRule options[] = {{"threads", true}, {"json", false}};
constexpr std::array<std::string_view, 4> passNames{"walk", "sampling", "verifying", "building"};

struct MeasuredPass
{
    DuplicateFinder::PassReport report;
    std::int64_t peakMemoryBytes = 0;
};

struct Search
{
    DuplicateFinder::Groups groups;
    std::vector<MeasuredPass> passes;
    double scanSeconds = 0;
    double seconds = 0;
    std::int64_t memoryBefore = 0; ///< in memory when the search began, tree included
};

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string_view nameOf(const MeasuredPass& pass)
{
    return passNames[static_cast<std::size_t>(pass.report.pass)];
}

Search search(const NodePointer& root, int threads)
{
    Search found;
    DuplicateFinder::Options settings;
    settings.workers = threads;
    settings.onPassEnd = [&](const DuplicateFinder::PassReport& report) {
        found.passes.push_back({report, peakResidentBytes()});
        forgetPeakResidentBytes();
    };
    found.memoryBefore = residentBytes();
    forgetPeakResidentBytes();
    const auto start = std::chrono::steady_clock::now();
    found.groups = DuplicateFinder::find(
        root, DuplicateFinder::defaultMinimumBytes, [](double) {}, DuplicateFinder::neverCancelled,
        settings);
    found.seconds = secondsSince(start);
    return found;
}

std::vector<std::string> sortedPaths(const DuplicateFinder::Group& group)
{
    std::vector<std::string> paths;
    paths.reserve(group.files().size());
    for (const FileNode* file : group.files()) {
        paths.push_back(file->path().bytes());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

void appendGroup(JsonList& list, const DuplicateFinder::Group& group)
{
    JsonObject object(list.next());
    object.integer("size", group.bytes());
    object.paths(sortedPaths(group));
    object.close();
}

std::string jsonLine(const Search& found)
{
    std::string line;
    JsonObject object(line);
    JsonList groups(object.list("groups"));
    for (const DuplicateFinder::Group& group : found.groups) {
        appendGroup(groups, group);
    }
    groups.close();
    JsonList passes(object.list("passes"));
    for (const MeasuredPass& pass : found.passes) {
        JsonObject member(passes.next());
        member.text("name", nameOf(pass));
        member.real("seconds", pass.report.seconds);
        member.integer("files", pass.report.files);
        member.integer("bytesRead", pass.report.bytesRead);
        member.integer("peakMemoryBytes", pass.peakMemoryBytes);
        member.close();
    }
    passes.close();
    object.real("scanSeconds", found.scanSeconds);
    object.real("seconds", found.seconds);
    object.integer("memoryBeforeBytes", found.memoryBefore);
    object.endLine();
    return line;
}

void printForReaders(const Search& found, std::ostream& out)
{
    for (const DuplicateFinder::Group& group : found.groups) {
        std::string line;
        for (const std::string& path : sortedPaths(group)) {
            line += "  ";
            appendJsonText(line, path);
            line += '\n';
        }
        out << group.files().size() << " files of " << group.bytes() << " bytes\n" << line;
    }
    for (const MeasuredPass& pass : found.passes) {
        out << nameOf(pass) << ": " << pass.report.seconds << " s, " << pass.report.files
            << " items, " << pass.report.bytesRead << " bytes read, "
            << pass.peakMemoryBytes - found.memoryBefore << " bytes of memory\n";
    }
    out << found.groups.size() << " groups in " << found.seconds << " s after a scan of "
        << found.scanSeconds << " s\n";
}

int runDuplicates(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("duplicates needs one DIR; try --help", exitUsage);
    }
    const std::optional<std::int64_t> threads =
        integerFromText(arguments.value("threads").value_or("0"));
    if (!threads || *threads < 0 || *threads > mostThreads) {
        return complain("--threads needs a whole number from 0 to 256; 0 chooses", exitUsage);
    }
    const auto start = std::chrono::steady_clock::now();
    DiskScanner scanner(static_cast<int>(*threads));
    DiskScanner::Result result = scanner.scan(folderFromArgument(arguments.operands().front()),
                                              [](const ScanProgress&) { return true; });
    if (const DiskScanError* error = std::get_if<DiskScanError>(&result)) {
        return complain(error->message, exitFailure);
    }
    const NodePointer root = std::get<std::shared_ptr<FileTree>>(result)->rootPointer();
    const double scanSeconds = secondsSince(start);
    Search found = search(root, static_cast<int>(*threads));
    found.scanSeconds = scanSeconds;
    if (arguments.has("json")) {
        std::cout << jsonLine(found);
    } else {
        printForReaders(found, std::cout);
    }
    return exitSuccess;
}

} // namespace

const Command duplicatesCommand{"duplicates", "DIR [--threads N] [--json]",
                                "Scan a folder, find the files with identical contents and tell "
                                "what it took.",
                                options, runDuplicates};

} // namespace quorvane
