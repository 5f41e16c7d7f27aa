// SPDX-License-Identifier: MIT
#include "DiskScanner.h"

#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "Gate.h"
#include "ScanSupport.h"
#include "TreeText.h"
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <fstream>
#include <limits>
#include <string>
#include <system_error>
#include <thread>

namespace quorvane {
namespace {

using Call = FaultyFileSystemCalls::Call;
using test::failureOf;
using test::nodeAt;
using test::scanned;

constexpr std::int64_t pebibyte = std::int64_t{1} << 50;
constexpr std::int64_t exbibyte = std::int64_t{1} << 60;
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

TEST(ClaimedSizes, HolesThatOverflowTogetherLeaveOrdinaryFilesTheirSize)
{
    DiskTree disk(DiskTree::Place::memory);
    try {
        disk.hole("a", 6 * exbibyte);
        disk.hole("b", 6 * exbibyte);
    } catch (const std::system_error&) {
        GTEST_SKIP() << "no file system here takes files of 6 EiB";
    }
    disk.file("folder/film", 70'000);
    for (const int workers : {1, 4}) {
        const auto tree = scanned(disk.root(), workers);
        // All huge files together have 7 EiB; whichever comes first gets what it claims.
        EXPECT_EQ(tree->root().scannedBytes(), 7 * exbibyte + 70'000);
        EXPECT_EQ(tree->root().children().front().scannedBytes(), 6 * exbibyte);
        EXPECT_EQ(nodeAt(tree->root(), "folder").scannedBytes(), 70'000);
    }
}

TEST(ClaimedSizes, OneHugeHoleIsAsLongAsItSays)
{
    DiskTree disk;
    disk.file("hole", 1);
    FaultyFileSystemCalls calls;
    calls.changeStatus([](std::string_view name, EntryStatus& status) {
        if (name == "hole") {
            status.size = 7 * exbibyte;
            status.allocatedBytes = 6 * exbibyte;
        }
    });
    const auto tree = scanned(disk.root(), 1, calls);
    EXPECT_EQ(tree->root().scannedBytes(), 7 * exbibyte);
    EXPECT_EQ(tree->root().scannedBytesOnDisk(), 6 * exbibyte);
}

TEST(ClaimedSizes, ManyLargeOnesEndAtTheirShareOfTheLargestSum)
{
    constexpr int files = 1200;
    DiskTree disk(DiskTree::Place::memory);
    for (int i = 0; i < files; ++i) {
        disk.file("folder" + std::to_string(i % 7) + "/f" + std::to_string(i));
    }
    FaultyFileSystemCalls calls;
    calls.changeStatus([](std::string_view, EntryStatus& status) {
        status.size = pebibyte - 1;
        status.allocatedBytes = largest;
    });
    for (const int workers : {1, 8}) {
        const auto tree = scanned(disk.root(), workers, calls);
        // 1,200 times a pebibyte is more than the exbibyte, less 2 PiB, that such files share. The
        // last lease of each worker may stay unused in part.
        EXPECT_LE(tree->root().scannedBytes(), exbibyte - 2 * pebibyte - 1);
        EXPECT_GE(tree->root().scannedBytes(), exbibyte - 3 * pebibyte);
        EXPECT_EQ(tree->root().scannedBytesOnDisk(), 7 * exbibyte);
    }
}

TEST(ClaimedSizes, FoldersAndLinksThatClaimTheLargestNumberHarmNoSum)
{
    DiskTree disk;
    disk.symbolicLink("nowhere", "folder/link");
    disk.fifo("folder/pipe");
    disk.file("folder/f", 10);
    FaultyFileSystemCalls calls;
    calls.changeStatus([](std::string_view name, EntryStatus& status) {
        if (name != "f") {
            status.size = largest;
            status.allocatedBytes = largest;
        }
    });
    const auto tree = scanned(disk.root(), 1, calls);
    EXPECT_EQ(tree->root().scannedBytes(), 7 * exbibyte + 10);
    EXPECT_EQ(nodeAt(tree->root(), "folder").logicalSize(), pebibyte);
}

/// A disk on which every folder holds as many folders again.
class EndlessDisk final : public FileSystemCalls
{
public:
    int openDirectory(int, const char*) override { return 0; }
    void close(int) override {}
    bool appendNames(int, NameList& names, const std::atomic<bool>&) override
    {
        for (int i = 0; i < 1000; ++i) {
            const std::string name = std::to_string(i);
            names.spans.push_back({names.bytes.size(), static_cast<std::uint32_t>(name.size())});
            names.bytes.append(name).push_back('\0');
        }
        return true;
    }
    bool status(int, const char*, EntryStatus& status) override
    {
        status.kind = EntryStatus::Kind::directory;
        return true;
    }
    bool creationDate(int, const char*, std::int64_t&) override { return false; }
    VolumeKind volumeKind(int, const char*) override { return VolumeKind::ordinary; }
    bool volumeCapacity(const char*, VolumeCapacity&) override { return false; }
    int descriptorLimit() override { return 1024; }
};

/// Address space that this process takes, in bytes (proc_pid_statm(5)).
rlim_t takenAddressSpace()
{
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * 4096;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool mayLimitMemory = false; // a sanitizer's own tables take terabytes of address space
#else
constexpr bool mayLimitMemory = true;
#endif

void scanWithinMemory(rlim_t moreBytes, int workers)
{
    if (!mayLimitMemory || takenAddressSpace() == 0) {
        GTEST_SKIP() << "memory cannot be limited here";
    }
    // In a child, since the limit stays for the life of a process.
    inChildProcess([moreBytes, workers] {
        const rlim_t bytes = takenAddressSpace() + moreBytes;
        const rlimit limit{bytes, bytes};
        ASSERT_EQ(setrlimit(RLIMIT_AS, &limit), 0);
        EndlessDisk disk;
        EXPECT_EQ(failureOf(FilePath("/endless"), disk, {}, workers),
                  "Not enough memory to scan /endless");
    });
}

TEST(ScanWithoutMemory, EndsWithAMessageWhenATreeOutgrowsIt)
{
    scanWithinMemory(rlim_t{256} << 20, 4);
}

TEST(ScanWithoutMemory, EndsWithAMessageWhereNoThreadCanBeHad)
{
    // Less than the stack of one thread.
    scanWithinMemory(rlim_t{4} << 20, 4);
}

TEST(SlowFolder, IsCountedWhileItIsReadAndCanBeLeftByACancel)
{
    constexpr int files = 20'000;
    constexpr int enough = 100;
    DiskTree disk(DiskTree::Place::memory);
    for (int i = 0; i < files; ++i) {
        disk.file("f" + std::to_string(i), 3);
    }
    // The reading stands still after a hundred entries until a report has told of them.
    for (const int workers : {1, 4}) {
        FaultyFileSystemCalls calls;
        Gate gate;
        calls.before(Call::status, [&gate](int number, std::string_view name) {
            if (name.starts_with('f') && number > enough + 1) {
                gate.pass();
                // A slow disk: the rest of the folder would take twenty seconds.
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
        ScanProgress last;
        const auto stop = [&](const ScanProgress& report) {
            last = report;
            if (report.filesScanned < enough) {
                return true;
            }
            gate.open();
            return false;
        };
        EXPECT_EQ(failureOf(disk.root(), calls, stop, workers), "Scan cancelled");
        EXPECT_EQ(last.filesScanned, enough);
        EXPECT_EQ(last.bytesSeen, 3 * enough);
        EXPECT_EQ(last.currentPath, disk.root().bytes());
        EXPECT_LT(calls.count(Call::status), files);
    }
}

TEST(SlowFolder, IsLeftByACancelWhereNoThreadCanBeHad)
{
    DiskTree disk;
    for (int i = 0; i < 50; ++i) {
        disk.file("f" + std::to_string(i), 3);
    }
    inChildProcess([&disk] {
        asUnprivilegedUser([&disk] {
            const rlimit none{0, 0};
            ASSERT_EQ(setrlimit(RLIMIT_NPROC, &none), 0);
            FaultyFileSystemCalls calls;
            const auto stop = [](const ScanProgress& report) { return report.filesScanned == 0; };
            EXPECT_EQ(failureOf(disk.root(), calls, stop), "Scan cancelled");
            // The root's own, and one file: the first report is due at once.
            EXPECT_EQ(calls.count(Call::status), 2);
        });
    });
}

TEST(SlowFolder, ItsListingIsLeftByACancel)
{
    DiskTree disk;
    disk.file("f");
    const int folder = FileSystemCalls::system().openDirectory(FileSystemCalls::noDirectory(),
                                                               disk.root().bytes().c_str());
    const std::atomic<bool> stops{true};
    NameList names;
    EXPECT_TRUE(FileSystemCalls::system().appendNames(folder, names, stops));
    EXPECT_TRUE(names.spans.empty());
    FileSystemCalls::system().close(folder);
}

} // namespace
} // namespace quorvane
