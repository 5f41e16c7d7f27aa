// SPDX-License-Identifier: MIT
#include "DuplicateSearch.h"

#include "AliasFilter.h"
#include "CheckedMath.h"
#include "GroupTexts.h"
#include "SizeCounters.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <limits>
#include <numeric>
#include <span>
#include <system_error>
#include <thread>
#include <utility>

namespace quorvane::DuplicateFinder {
namespace {

constexpr double walkEnd = 0.06;
constexpr std::int64_t walkStep = 2048; ///< nodes between two reports of the walk
constexpr ProgressRange samplingRange{walkEnd, 0.34, 0.4, 64};
constexpr ProgressRange verifyingRange{0.4, 0.6, std::numeric_limits<double>::infinity(), 16};

/// How far a file's dates may lag behind the clock, in seconds: some file systems count in twos.
constexpr std::int64_t coarsestDate = 2;

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::int64_t secondsSince1970()
{
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::size_t workerCount(int wanted)
{
    const unsigned count =
        wanted > 0 ? static_cast<unsigned>(wanted) : std::thread::hardware_concurrency();
    return std::max(count, 1U);
}

/// Visits a tree's nodes, the last of a folder's children first, until the visitor returns false.
template<typename Visitor>
bool visitNodes(FileNode& root, const Visitor& visit)
{
    // What stands for the children of a folder that are yet to come, last one first.
    std::vector<std::span<FileNode>> stack{std::span<FileNode>(&root, 1)};
    while (!stack.empty()) {
        if (stack.back().empty()) {
            stack.pop_back();
            continue;
        }
        FileNode& node = stack.back().back();
        stack.back() = stack.back().first(stack.back().size() - 1);
        if (!visit(node)) {
            return false;
        }
        if (node.isDirectory()) {
            stack.push_back(node.children());
        }
    }
    return true;
}

} // namespace

DuplicateSearch::DuplicateSearch(const NodePointer& root, std::int64_t minimumBytes,
                                 const ProgressCallback& progress,
                                 const CancelCallback& isCancelled, const Options& options)
    : m_root(root)
    , m_minimumBytes(minimumBytes)
    , m_progress(progress)
    , m_isCancelled(isCancelled)
    , m_options(options)
    , m_fileSystem(options.fileSystem != nullptr ? *options.fileSystem : FileSystemCalls::system())
    , m_contents(options.contents != nullptr ? *options.contents : FileContentCalls::system())
    , m_clock(options.clock ? options.clock : steadySeconds)
    , m_workerProgress(progress, m_clock)
    , m_passStart(steadySeconds())
{}

Groups DuplicateSearch::run()
{
    if (!walk()) {
        return {};
    }
    if (m_candidates.empty()) {
        m_progress(1.0);
        return {};
    }
    if (!sample()) {
        return {};
    }
    if (m_candidates.empty()) {
        m_progress(1.0);
        return {};
    }
    return verify() ? build() : Groups();
}

bool DuplicateSearch::walk()
{
    std::vector<SizedFile> files;
    if (!collect(files) || m_isCancelled()) {
        return false;
    }
    m_progress(walkEnd);
    keepEqualSizes(files);
    report(Pass::walk, m_walked);
    return true;
}

bool DuplicateSearch::collect(std::vector<SizedFile>& files)
{
    constexpr const char* place = "DuplicateFinder.find";
    FileNode& root = *m_root;
    const auto total = static_cast<double>(
        std::max(checkedAdd(checkedAdd(root.fileCount(), root.directoryCount(), place), 1, place),
                 std::int64_t{1}));
    const auto isWanted = [this](const FileNode& node) {
        return node.isRegularFile() && node.scannedBytes() >= m_minimumBytes;
    };
    SizeCounters sizes;
    std::int64_t count = 0;
    const bool isCounted = visitNodes(root, [&](FileNode& node) {
        if (m_isCancelled()) {
            return false;
        }
        if (isWanted(node)) {
            sizes.add(node.scannedBytes());
        }
        if (++count % walkStep == 0) {
            m_progress(static_cast<double>(count) * walkEnd / total);
        }
        return true;
    });
    if (!isCounted) {
        return false;
    }
    m_walked = static_cast<std::size_t>(count);
    // Once more, now that it is known for which files there has to be room.
    files.reserve(sizes.shared());
    count = 0;
    return sizes.shared() == 0 || visitNodes(root, [&](FileNode& node) {
               if (isWanted(node) && sizes.isShared(node.scannedBytes())) {
                   files.push_back({node.scannedBytes(), &node});
               }
               return ++count % walkStep != 0 || !m_isCancelled();
           });
}

void DuplicateSearch::keepEqualSizes(std::vector<SizedFile>& files)
{
    std::sort(files.begin(), files.end(), [](const SizedFile& a, const SizedFile& b) {
        return a.bytes != b.bytes ? a.bytes > b.bytes : std::less<>()(a.file, b.file);
    });
    const auto hasTwin = [&](std::size_t i) {
        return (i > 0 && files[i - 1].bytes == files[i].bytes) ||
               (i + 1 < files.size() && files[i + 1].bytes == files[i].bytes);
    };
    std::size_t count = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        count += hasTwin(i) ? 1 : 0;
    }
    m_candidates.reserve(count);
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (hasTwin(i)) {
            m_candidates.emplace_back(files[i].file);
        }
    }
}

bool DuplicateSearch::sample()
{
    const std::int64_t unchangedBefore = secondsSince1970() - coarsestDate;
    const std::size_t workers = std::min(workerCount(m_options.workers), m_candidates.size());
    for (std::size_t i = 0; i < workers; ++i) {
        m_digesters.push_back(
            std::make_unique<FileDigester>(m_fileSystem, m_contents, unchangedBefore));
    }
    m_workerProgress.begin(samplingRange, m_candidates.size());
    const auto sizeAt = [this](std::size_t place) {
        return m_candidates[place].file()->scannedBytes();
    };
    const auto bucketAt = [&](std::size_t begin) {
        const std::int64_t bytes = sizeAt(begin);
        std::size_t end = begin + 1;
        while (end < m_candidates.size() && sizeAt(end) == bytes) {
            ++end;
        }
        return Bucket{end, {}};
    };
    const bool isDone = narrow(bucketAt, [this](Window& window) { sampleWindow(window); });
    report(Pass::sampling, m_workerProgress.done());
    return isDone;
}

bool DuplicateSearch::verify()
{
    Buckets sampled;
    sampled.swap(m_buckets);
    m_workerProgress.begin(verifyingRange, m_candidates.size());
    const auto nextSampled = [&](std::size_t) {
        const Bucket bucket = sampled.front();
        sampled.pop_front();
        return bucket;
    };
    const bool isDone = narrow(nextSampled, [this](Window& window) { verifyWindow(window); });
    report(Pass::verifying, m_workerProgress.done());
    return isDone;
}

Groups DuplicateSearch::build()
{
    if (m_isCancelled()) {
        return {};
    }
    const std::vector<FoundGroup> sorted = sortedGroups();
    Groups groups;
    groups.reserve(sorted.size());
    GroupTexts texts;
    for (const FoundGroup& found : sorted) {
        std::vector<FileNode*> files;
        files.reserve(found.end - found.begin);
        for (std::size_t place = found.begin; place < found.end; ++place) {
            files.push_back(m_candidates[place].file());
        }
        const std::int64_t bytes = files.front()->scannedBytes();
        groups.emplace_back(bytes, std::move(files), m_root, texts);
    }
    report(Pass::building, groups.size());
    m_progress(1.0);
    return groups;
}

std::vector<DuplicateSearch::FoundGroup> DuplicateSearch::sortedGroups()
{
    // Before the groups are made, which are much larger than what sorts them.
    std::vector<FoundGroup> found;
    found.reserve(m_buckets.size());
    std::size_t begin = 0;
    for (; !m_buckets.empty(); m_buckets.pop_front()) {
        const std::size_t end = m_buckets.front().end;
        const std::int64_t bytes = m_candidates[begin].file()->scannedBytes();
        found.push_back({Group::reclaimable(bytes, end - begin), begin, end});
        begin = end;
    }
    std::sort(found.begin(), found.end(), [this](const FoundGroup& a, const FoundGroup& b) {
        if (a.reclaimable != b.reclaimable) {
            return a.reclaimable > b.reclaimable;
        }
        const int names =
            m_candidates[a.begin].file()->name().compare(m_candidates[b.begin].file()->name());
        return names != 0 ? names < 0 : a.begin < b.begin;
    });
    return found;
}

bool DuplicateSearch::narrow(const BucketAt& bucketAt,
                             const std::function<void(Window&)>& digestAll)
{
    std::size_t place = 0;
    for (std::size_t begin = 0; begin < m_candidates.size();) {
        Window window = openWindow(bucketAt, begin);
        digestAll(window);
        if (m_isCancelled()) {
            return false;
        }
        for (const std::size_t end : window.ends) {
            const std::size_t at = begin - window.begin;
            const std::size_t size = end - begin;
            splitByDigest(
                {window.files.subspan(at, size), std::span(window.digests).subspan(at, size)},
                m_candidates, place, m_buckets);
            begin = end;
        }
    }
    m_candidates.erase(m_candidates.begin() + static_cast<std::ptrdiff_t>(place),
                       m_candidates.end());
    return true;
}

DuplicateSearch::Window DuplicateSearch::openWindow(const BucketAt& bucketAt, std::size_t begin)
{
    Window window{begin, {}, {}, {}, {}};
    window.digests.reserve(std::min(windowFiles, m_candidates.size() - begin));
    std::size_t end = begin;
    while (end < m_candidates.size() && end - begin < windowFiles) {
        const Bucket bucket = bucketAt(end);
        end = bucket.end;
        window.ends.push_back(end);
        // Only the last bucket can go beyond the room; doubling would take more than it needs.
        window.digests.reserve(end - begin);
        window.digests.resize(end - begin, bucket.digest);
    }
    window.files = std::span(m_candidates).subspan(begin, end - begin);
    return window;
}

void DuplicateSearch::sampleWindow(Window& window)
{
    const std::size_t count = window.files.size();
    std::vector<std::uint32_t> places;
    std::optional<HeadTable> heads;
    if (count <= mostTabledFiles) {
        // Folder by folder: a disk is read in its own order, or near it.
        places.resize(count);
        std::iota(places.begin(), places.end(), 0U);
        std::sort(places.begin(), places.end(), [&](std::uint32_t a, std::uint32_t b) {
            return window.files[a] < window.files[b];
        });
        heads.emplace(count);
    }
    HeadTable* const table = heads ? &*heads : nullptr;
    inParallel(count, [&](FileDigester& digester, std::size_t i) {
        runStep(window, digester, places.empty() ? i : places[i],
                [&](FileDigester& own, std::size_t place) {
                    return sampleOne(own, window, table, static_cast<std::uint32_t>(place));
                });
    });
    if (heads) {
        for (const std::uint32_t place : heads->waiting()) {
            window.files[place].drop();
        }
    }
}

bool DuplicateSearch::sampleOne(FileDigester& digester, Window& window, HeadTable* heads,
                                std::uint32_t place)
{
    HeadTable::Meeting meeting;
    FileDigester::HeadFilter isWanted;
    if (heads != nullptr) {
        isWanted = [&](std::uint64_t head) {
            meeting = heads->meet(head, place);
            return !meeting.isFirst;
        };
    }
    std::optional<Sample> sample = digester.partialDigest(*window.files[place].file(), isWanted);
    if (meeting.waiting != HeadTable::nobody &&
        !sampleOne(digester, window, nullptr, meeting.waiting)) {
        window.files[meeting.waiting].drop();
    }
    if (!sample) {
        return false;
    }
    if (sample->isTurnedAway) {
        // From the meeting on it belongs to whichever worker comes upon a file like it.
        return true;
    }
    window.digests[place] = sample->digest;
    if (sample->head) {
        m_headStates.keep(sample->digest, std::move(sample->head));
    }
    if (sample->coversWholeFile) {
        window.files[place].markSampledWhole();
    }
    return true;
}

void DuplicateSearch::verifyWindow(Window& window)
{
    window.identities.resize(window.files.size());
    // As listed: the longest file is begun first, so that no worker is left alone with it.
    inParallel(window.files.size(), [&](FileDigester& digester, std::size_t i) {
        runStep(window, digester, i, [&](FileDigester& own, std::size_t place) {
            const Candidate& candidate = window.files[place];
            const FileNode& file = *candidate.file();
            const Sha256::State* const head = m_headStates.find(window.digests[place]);
            const std::optional<Digest> full = candidate.isSampledWhole()
                                                   ? own.fullDigest(file, window.digests[place])
                                               : head != nullptr ? own.fullDigest(file, *head)
                                                                 : own.fullDigest(file);
            window.digests[place] = full.value_or(Digest{});
            window.identities[place] = own.identity();
            return full.has_value();
        });
    });
    dropAliases(window);
}

void DuplicateSearch::dropAliases(Window& window) const
{
    const AliasFilter filter(m_fileSystem, m_contents);
    std::size_t begin = 0;
    for (const std::size_t end : window.ends) {
        if (m_isCancelled()) {
            return;
        }
        const std::size_t size = end - window.begin - begin;
        filter.dropAliases(window.files.subspan(begin, size),
                           std::span(window.identities).subspan(begin, size));
        begin += size;
    }
}

void DuplicateSearch::runStep(Window& window, FileDigester& digester, std::size_t place,
                              const Step& step)
{
    if (m_isCancelled() || !step(digester, place)) {
        window.files[place].drop();
        return;
    }
    m_workerProgress.countOne();
}

void DuplicateSearch::inParallel(std::size_t count,
                                 const std::function<void(FileDigester&, std::size_t)>& work)
{
    std::atomic<std::size_t> next{0};
    const auto serve = [&](FileDigester& digester) {
        for (std::size_t i = next++; i < count; i = next++) {
            work(digester, i);
        }
    };
    std::vector<std::thread> threads;
    threads.reserve(m_digesters.size());
    try {
        for (std::size_t i = 1; i < m_digesters.size(); ++i) {
            threads.emplace_back(serve, std::ref(*m_digesters[i]));
        }
    } catch (const std::system_error&) {
        // At the system's limit of threads those that are there do all the work.
    }
    serve(*m_digesters.front());
    for (std::thread& thread : threads) {
        thread.join();
    }
}

std::int64_t DuplicateSearch::bytesRead() const
{
    std::int64_t bytes = 0;
    for (const auto& digester : m_digesters) {
        bytes += digester->bytesRead();
    }
    return bytes;
}

void DuplicateSearch::report(Pass pass, std::size_t files)
{
    const double now = steadySeconds();
    const std::int64_t bytes = bytesRead();
    if (m_options.onPassEnd) {
        m_options.onPassEnd(
            {pass, now - m_passStart, static_cast<std::int64_t>(files), bytes - m_bytesBefore});
    }
    m_bytesBefore = bytes;
    m_passStart = steadySeconds();
}

Groups find(const NodePointer& root, std::int64_t minimumBytes, const ProgressCallback& progress,
            const CancelCallback& isCancelled, const Options& options)
{
    return DuplicateSearch(root, minimumBytes, progress, isCancelled, options).run();
}

} // namespace quorvane::DuplicateFinder
