// SPDX-License-Identifier: MIT
#include "Command.h"
#include "DiskScanner.h"
#include "FloorWalk.h"
#include "JsonText.h"
#include "ProcessMemory.h"
#include "TreeSource.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iostream>

namespace quorvane {
namespace {

constexpr std::int64_t mostWorkers = 256;
constexpr OptionRule options[] = {{"workers", true}, {"floor", false}, {"json", false}};

struct Measures
{
    WalkTotals totals;
    double wallSeconds = 0;
    double cpuSeconds = 0;
    double finalPassSeconds = 0;
    double indexSeconds = 0;
    double dropSeconds = 0;
    std::int64_t peakMemoryBytes = 0;
    std::int64_t residentGrowthBytes = 0;
    std::int64_t treeBytes = 0;
    std::int64_t indexBytes = 0;
    std::int64_t workers = 0;
};

double secondsOf(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Wall and processor time of the whole process since it was made.
class Stopwatch
{
public:
    double wallSeconds() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - m_wall).count();
    }
    double cpuSeconds() const { return cpu() - m_cpu; }

private:
    static double cpu()
    {
        rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
    }

    std::chrono::steady_clock::time_point m_wall = std::chrono::steady_clock::now();
    double m_cpu = cpu();
};

std::int64_t peakMemoryBytes()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return std::int64_t{usage.ru_maxrss} * 1024;
}

/// A folder counts itself among its directories; what lies below it does not.
WalkTotals totalsOf(const FileNode& root, const NodeIndex& index)
{
    WalkTotals totals;
    totals.entries = static_cast<std::int64_t>(index.size()) - 1;
    totals.files = root.fileCount();
    totals.directories = root.directoryCount() - 1;
    totals.logicalBytes = root.scannedBytes();
    totals.diskBytes = root.scannedBytesOnDisk();
    return totals;
}

std::optional<std::string> measureScan(const FilePath& folder, int workers, Measures& measures)
{
    const std::int64_t residentBefore = residentBytes();
    DiskScanner scanner(workers);
    const Stopwatch watch;
    DiskScanner::Result result = scanner.scan(folder, [](const ScanProgress&) { return true; });
    if (const DiskScanError* error = std::get_if<DiskScanError>(&result)) {
        return error->message;
    }
    auto tree = std::move(std::get<std::shared_ptr<FileTree>>(result));
    const Stopwatch indexWatch;
    NodeIndex index(tree->root());
    measures.indexSeconds = indexWatch.wallSeconds();
    measures.wallSeconds = watch.wallSeconds();
    measures.cpuSeconds = watch.cpuSeconds();
    measures.residentGrowthBytes = residentBytes() - residentBefore;
    measures.finalPassSeconds = scanner.finalPassSeconds();
    measures.workers = scanner.workerCount();
    measures.totals = totalsOf(tree->root(), index);
    measures.treeBytes = static_cast<std::int64_t>(tree->byteSize());
    measures.indexBytes = static_cast<std::int64_t>(index.size() * sizeof(FileNode*));
    const Stopwatch dropWatch;
    index = NodeIndex();
    tree.reset();
    measures.dropSeconds = dropWatch.wallSeconds();
    measures.peakMemoryBytes = peakMemoryBytes();
    return std::nullopt;
}

std::optional<std::string> measureFloor(const FilePath& folder, int workers, Measures& measures)
{
    // The scanner chooses by itself when it is given none; the floor goes with its choice.
    measures.workers = DiskScanner(workers).workerCount();
    const Stopwatch watch;
    const auto result = floorWalk(folder, static_cast<int>(measures.workers));
    measures.wallSeconds = watch.wallSeconds();
    measures.cpuSeconds = watch.cpuSeconds();
    if (const std::string* message = std::get_if<std::string>(&result)) {
        return *message;
    }
    measures.totals = std::get<WalkTotals>(result);
    measures.peakMemoryBytes = peakMemoryBytes();
    return std::nullopt;
}

double bytesPerEntry(const Measures& measures)
{
    const auto entries = static_cast<double>(std::max(measures.totals.entries, std::int64_t{1}));
    return static_cast<double>(measures.treeBytes + measures.indexBytes) / entries;
}

std::string jsonLine(const Measures& measures)
{
    std::string line;
    JsonObject object(line);
    object.integer("entries", measures.totals.entries);
    object.integer("files", measures.totals.files);
    object.integer("directories", measures.totals.directories);
    object.integer("logicalBytes", measures.totals.logicalBytes);
    object.integer("diskBytes", measures.totals.diskBytes);
    object.real("wallSeconds", measures.wallSeconds);
    object.real("cpuSeconds", measures.cpuSeconds);
    object.real("finalPassSeconds", measures.finalPassSeconds);
    object.real("indexSeconds", measures.indexSeconds);
    object.integer("peakMemoryBytes", measures.peakMemoryBytes);
    object.integer("residentGrowthBytes", measures.residentGrowthBytes);
    object.integer("treeBytes", measures.treeBytes);
    object.integer("indexBytes", measures.indexBytes);
    object.real("bytesPerEntry", bytesPerEntry(measures));
    object.real("dropSeconds", measures.dropSeconds);
    object.integer("workers", measures.workers);
    object.endLine();
    return line;
}

void printForReaders(const Measures& measures, std::ostream& out)
{
    const WalkTotals& totals = measures.totals;
    out << totals.entries << " entries: " << totals.files << " files, " << totals.directories
        << " folders, " << totals.logicalBytes << " bytes, " << totals.diskBytes << " on disk\n"
        << measures.workers << " workers: " << measures.wallSeconds << " s, " << measures.cpuSeconds
        << " s of processor time\n"
        << "final pass " << measures.finalPassSeconds << " s, index " << measures.indexSeconds
        << " s, drop " << measures.dropSeconds << " s\n"
        << "tree and index " << bytesPerEntry(measures) << " bytes an entry, peak memory "
        << measures.peakMemoryBytes << " bytes\n";
}

int runScan(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("scan needs one DIR; try --help", exitUsage);
    }
    const std::optional<std::int64_t> workers =
        integerFromText(arguments.value("workers").value_or("0"));
    if (!workers || *workers < 0 || *workers > mostWorkers) {
        return complain("--workers needs a whole number from 0 to 256; 0 chooses", exitUsage);
    }
    const FilePath folder = folderFromArgument(arguments.operands().front());
    Measures measures;
    const auto measure = arguments.has("floor") ? measureFloor : measureScan;
    if (const auto fault = measure(folder, static_cast<int>(*workers), measures)) {
        return complain(*fault, exitFailure);
    }
    if (arguments.has("json")) {
        std::cout << jsonLine(measures);
    } else {
        printForReaders(measures, std::cout);
    }
    return exitSuccess;
}

} // namespace

const Command scanCommand{"scan", "DIR [--workers N] [--floor] [--json]",
                          "Scan and index a folder and tell what it took; with --floor the bare "
                          "system calls.",
                          options, runScan};

} // namespace quorvane
