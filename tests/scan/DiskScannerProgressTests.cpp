// SPDX-License-Identifier: MIT
#include "DiskScanner.h"

#include "DiskTree.h"
#include "FaultyFileSystemCalls.h"
#include "ScanSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quorvane {
namespace {

using namespace std::chrono_literals;
using Call = FaultyFileSystemCalls::Call;
using test::failureOf;
using test::scanned;

constexpr const char* cancelled = "Scan cancelled";
constexpr std::chrono::duration<double> reportInterval = 0.08s;

void fillWithFolders(DiskTree& disk, int folders)
{
    for (int i = 0; i < folders; ++i) {
        disk.file("folder" + std::to_string(i) + "/f", 3);
    }
}

/// Keeps every report with the thread that made it, and whether two ever ran at once.
class Reports
{
public:
    DiskScanner::OnProgress callback()
    {
        return [this](const ScanProgress& report) {
            if (m_running.fetch_add(1) != 0) {
                overlapped = true;
            }
            all.push_back(report);
            threads.push_back(std::this_thread::get_id());
            m_running.fetch_sub(1);
            return true;
        };
    }

    std::vector<ScanProgress> all;
    std::vector<std::thread::id> threads;
    std::atomic<bool> overlapped = false;

private:
    std::atomic<int> m_running = 0;
};

TEST(ScanProgressReports, BeginWithZerosAndEndWithTheTotals)
{
    DiskTree disk;
    fillWithFolders(disk, 20);
    disk.symbolicLink("folder0", "link");
    disk.fifo("pipe");
    Reports reports;
    scanned(disk.root(), 4, FileSystemCalls::system(), reports.callback());
    // The first finished folder always reports, so there are three at least.
    ASSERT_GE(reports.all.size(), 3U);
    EXPECT_EQ(reports.all.front(), ScanProgress{});
    EXPECT_EQ(reports.threads.front(), std::this_thread::get_id());
    // The root is not counted, nor are the link and the pipe.
    EXPECT_EQ(reports.all.back(), (ScanProgress{20, 20, 60, ""}));
    EXPECT_EQ(reports.threads.back(), std::this_thread::get_id());
}

TEST(ScanProgressReports, BetweenCarryAPathOfTheScanAndNeverGoBack)
{
    DiskTree disk(DiskTree::Place::memory);
    fillWithFolders(disk, 300);
    Reports reports;
    scanned(disk.root(), 4, FileSystemCalls::system(), reports.callback());
    for (std::size_t i = 1; i < reports.all.size(); ++i) {
        const ScanProgress& report = reports.all[i];
        EXPECT_GE(report.filesScanned, reports.all[i - 1].filesScanned);
        EXPECT_GE(report.directoriesScanned, reports.all[i - 1].directoriesScanned);
        EXPECT_GE(report.bytesSeen, reports.all[i - 1].bytesSeen);
        if (i + 1 < reports.all.size()) {
            EXPECT_EQ(report.currentPath.rfind(disk.root().bytes(), 0), 0U);
        }
    }
}

TEST(ScanProgressReports, EmptyRootHasNothingToCount)
{
    const DiskTree disk;
    Reports reports;
    scanned(disk.root(), 2, FileSystemCalls::system(), reports.callback());
    ASSERT_EQ(reports.all.size(), 3U);
    EXPECT_EQ(reports.all[1], (ScanProgress{0, 0, 0, disk.root().bytes()}));
    EXPECT_EQ(reports.all[2], ScanProgress{});
}

TEST(ScanProgressReports, ComeOneAtATimeAndNoOftenerThanTheInterval)
{
    DiskTree disk;
    fillWithFolders(disk, 12);
    FaultyFileSystemCalls calls;
    // Each folder takes 30 ms, so every third one at the latest finishes in a new interval.
    calls.before(Call::openDirectory,
                 [](int, std::string_view) { std::this_thread::sleep_for(30ms); });
    Reports reports;
    const auto start = std::chrono::steady_clock::now();
    scanned(disk.root(), 1, calls, reports.callback());
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    const std::size_t between = reports.all.size() - 2;
    EXPECT_GE(between, 5U);
    EXPECT_LE(static_cast<double>(between), took / reportInterval + 1);
    EXPECT_FALSE(reports.overlapped);
}

TEST(ScanProgressReports, SlowReaderIsNeverCalledTwiceAtOnce)
{
    DiskTree disk;
    fillWithFolders(disk, 40);
    FaultyFileSystemCalls calls;
    calls.before(Call::openDirectory,
                 [](int, std::string_view) { std::this_thread::sleep_for(10ms); });
    std::atomic<int> running = 0;
    std::atomic<bool> overlapped = false;
    scanned(disk.root(), 4, calls, [&](const ScanProgress&) {
        if (running.fetch_add(1) != 0) {
            overlapped = true;
        }
        // Longer than the interval in which the next report is due.
        std::this_thread::sleep_for(100ms);
        running.fetch_sub(1);
        return true;
    });
    EXPECT_FALSE(overlapped);
}

TEST(ScanProgressReports, MayBeAbsent)
{
    DiskTree disk;
    fillWithFolders(disk, 5);
    EXPECT_EQ(scanned(disk.root())->root().fileCount(), 5);
}

TEST(ScanCancel, AtTheFirstReportStartsNoWorker)
{
    DiskTree disk;
    fillWithFolders(disk, 5);
    FaultyFileSystemCalls calls;
    EXPECT_EQ(failureOf(disk.root(), calls, [](const ScanProgress&) { return false; }), cancelled);
    EXPECT_EQ(calls.count(Call::openDirectory), 0);
    EXPECT_EQ(calls.count(Call::status), 1);
}

TEST(ScanCancel, AfterTheFirstFolderOpensNoOther)
{
    DiskTree disk;
    fillWithFolders(disk, 50);
    FaultyFileSystemCalls calls;
    int reports = 0;
    const auto stopAtSecond = [&](const ScanProgress&) { return ++reports < 2; };
    EXPECT_EQ(failureOf(disk.root(), calls, stopAtSecond, 1), cancelled);
    EXPECT_EQ(calls.count(Call::openDirectory), 1);
    EXPECT_EQ(reports, 2);
    EXPECT_EQ(calls.openNow(), 0);
}

TEST(ScanCancel, AtTheLastReportGivesNoTree)
{
    DiskTree disk;
    fillWithFolders(disk, 5);
    int reports = 0;
    const auto stopAtTotals = [&](const ScanProgress& report) {
        ++reports;
        return reports == 1 || !report.currentPath.empty();
    };
    EXPECT_EQ(failureOf(disk.root(), FileSystemCalls::system(), stopAtTotals), cancelled);
    EXPECT_GE(reports, 3);
}

TEST(ScanCancel, WakesWorkersThatWaitAndThoseInsideAFolder)
{
    constexpr int files = 2000;
    DiskTree disk(DiskTree::Place::memory);
    for (int i = 0; i < files; ++i) {
        disk.file("big/f" + std::to_string(i));
    }
    for (int i = 0; i < 60; ++i) {
        disk.folder("e" + std::to_string(i));
    }
    std::mutex lock;
    std::condition_variable changed;
    bool isStopping = false;
    FaultyFileSystemCalls calls;
    // The empty folders keep the other workers busy until a second report is due.
    calls.before(Call::openDirectory, [](int, std::string_view name) {
        if (name.starts_with('e')) {
            std::this_thread::sleep_for(5ms);
        }
    });
    // Whoever is in the big folder stays at its first file until the stop has been asked for, and
    // then gives the asking thread time to say so.
    calls.before(Call::status, [&](int, std::string_view name) {
        if (name.starts_with('f')) {
            std::unique_lock guard(lock);
            changed.wait_for(guard, 20s, [&] { return isStopping; });
            guard.unlock();
            std::this_thread::sleep_for(2ms);
        }
    });
    int reports = 0;
    const auto stopAtThird = [&](const ScanProgress&) {
        if (++reports < 3) {
            return true;
        }
        const std::lock_guard guard(lock);
        isStopping = true;
        changed.notify_all();
        return false;
    };
    EXPECT_EQ(failureOf(disk.root(), calls, stopAtThird, 4), cancelled);
    EXPECT_LT(calls.count(Call::status), files);
    EXPECT_EQ(calls.openNow(), 0);
}

TEST(ScanCancel, ScannerCanBeUsedAgainAfterwards)
{
    DiskTree disk;
    fillWithFolders(disk, 5);
    DiskScanner scanner(2);
    const auto stopped = scanner.scan(disk.root(), [](const ScanProgress&) { return false; });
    EXPECT_EQ(std::get<DiskScanError>(stopped).message, cancelled);
    const auto finished = scanner.scan(disk.root());
    EXPECT_EQ(std::get<std::shared_ptr<FileTree>>(finished)->root().fileCount(), 5);
}

} // namespace
} // namespace quorvane
