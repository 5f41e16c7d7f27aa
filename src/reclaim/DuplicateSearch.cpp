// SPDX-License-Identifier: MIT
#include "Candidates.h"
#include "DuplicateFinder.h"
#include "FileDigester.h"
#include "GroupTexts.h"
#include "TrashFolders.h"
#include "Workers.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace quorvane::DuplicateFinder {
namespace {

/// How the files of a parallel pass become a progress: start + share × done / all, at most limit,
/// looked at after every `step` files.
struct ProgressRange
{
    double start;
    double share;
    double limit;
    std::size_t step;
};
constexpr ProgressRange samplingRange{walkEnd, 0.34, 0.4, 64};
constexpr ProgressRange verifyingRange{0.4, 0.6, std::numeric_limits<double>::infinity(), 16};
constexpr double minGap = 0.05; ///< seconds between two reports from the workers

/// Files that are sampled before the next ones are, so that progress is even.
constexpr std::size_t windowFiles = 16384;

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::size_t workerCount(int wanted)
{
    const unsigned count =
        wanted > 0 ? static_cast<unsigned>(wanted) : std::thread::hardware_concurrency();
    return std::max(count, 1U);
}

/// Counts what the workers have done and reports it, no more often than every minGap over both
/// parallel passes.
class WorkerProgress
{
public:
    WorkerProgress(const ProgressCallback& report, const std::function<double()>& clock)
        : m_report(report)
        , m_clock(clock)
    {}

    /// Begins a pass over so many files. Not while workers run.
    void begin(const ProgressRange& range, std::size_t all)
    {
        m_range = range;
        m_all = static_cast<double>(all);
        m_done = 0;
    }
    /// Any thread; reports under the lock.
    void countOne()
    {
        const std::lock_guard guard(m_lock);
        if (++m_done % m_range.step != 0) {
            return;
        }
        const double progress = std::min(
            static_cast<double>(m_done) * m_range.share / m_all + m_range.start, m_range.limit);
        const double now = m_clock();
        if (progress >= 1) {
            m_report(progress);
        } else if (now - m_lastReport >= minGap) {
            m_lastReport = now;
            m_report(progress);
        }
    }
    std::size_t done() const { return m_done; }

private:
    const ProgressCallback& m_report;
    const std::function<double()>& m_clock;
    ProgressRange m_range = samplingRange;
    double m_all = 0;
    std::mutex m_lock;
    std::size_t m_done = 0;
    double m_lastReport = 0;
};

// How much of a key makes files alike.
std::size_t wordsOfNothing(const Candidate&)
{
    return 0;
}
std::size_t wordsOfHash(const Candidate&)
{
    return 1;
}
std::size_t wordsOfDigest(const Candidate&)
{
    return 3;
}

bool isOneFile(const Candidate& a, const Candidate& b)
{
    return a.key[1] == b.key[1] && a.key[2] == b.key[2];
}

bool isSmall(const Candidate& candidate)
{
    return candidate.file()->scannedBytes() <= wholeSampleBytes;
}

std::size_t wordsOfSample(const Candidate& candidate)
{
    return isSmall(candidate) ? wordsOfDigest(candidate) : wordsOfHash(candidate);
}

/// Beyond so many names of one file they are not counted.
constexpr std::uint64_t maxLinks = 0xFFFF;

/// A hash of what makes a name one name, whatever mount it is seen through, and the number of names
/// that its file has.
std::uint64_t nameKey(const NameOfFile& name, std::string_view text)
{
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
    std::uint64_t hash = std::hash<std::string_view>()(text);
    for (const std::uint64_t word : {name.folder.device, name.folder.inode}) {
        hash = (hash ^ word) * factor;
        hash ^= hash >> 29;
    }
    return (hash & ~maxLinks) | std::min(name.links, maxLinks);
}

std::uint64_t linksOf(const Candidate& named)
{
    const std::uint64_t links = named.key[2] & maxLinks;
    return links == maxLinks ? std::numeric_limits<std::uint64_t>::max() : links;
}

/// One search from the walk to the groups, for one run() on one thread. Beyond the tree and the
/// groups it takes 32 bytes for each file that is large enough to be a candidate, 16 for each
/// group, and 65536 for each worker.
class DuplicateSearch
{
public:
    DuplicateSearch(const NodePointer& root, std::int64_t minimumBytes,
                    const ProgressCallback& progress, const CancelCallback& isCancelled,
                    const Options& options);

    Groups run();

private:
    /// Candidates that make a group, from that place on.
    struct FoundGroup
    {
        std::int64_t reclaimable;
        std::size_t begin;
    };
    /// What happens to a file: it gives it a new key. False drops it.
    using Step = std::function<bool(FileDigester&, Candidate&)>;

    bool walk();
    bool sample();
    bool verify();
    Groups build();

    std::size_t sampleWindow(std::size_t begin, std::size_t end, std::size_t place);
    void markLinked(std::size_t begin, std::size_t end);
    /// Makes the digest of its contents the key.
    static bool digest(FileDigester& digester, Candidate& candidate);
    /// Drops the names that are no copies of each other because they are one and the same name,
    /// seen through two mounts: who moves one of them moves the other. What stays of the names of a
    /// file remains marked as linked when there are several.
    void resolveNames();
    void resolveNames(FileDigester& digester, std::size_t begin, std::size_t end);
    std::vector<FoundGroup> sortedGroups();
    Group groupAt(std::size_t begin, GroupTexts& texts) const;

    /// Runs the step on those files of the range that are not further names of the one before; such
    /// a name takes over what came of it.
    void forEachFile(std::size_t begin, std::size_t end, const Step& step);
    /// Runs work(digester, i) for every i below count on all workers, and returns when all is done.
    void inParallel(std::size_t count, const std::function<void(FileDigester&, std::size_t)>& work);
    void report(Pass pass, std::size_t files);

    const NodePointer& m_root;
    const std::int64_t m_minimumBytes;
    const ProgressCallback& m_progress;
    const CancelCallback& m_isCancelled;
    const Options& m_options;
    const std::function<double()> m_clock;
    WorkerProgress m_workerProgress;
    std::vector<std::unique_ptr<FileDigester>> m_digesters;
    Candidates m_candidates;
    double m_passStart = steadySeconds();
    std::int64_t m_bytesBefore = 0;
};

DuplicateSearch::DuplicateSearch(const NodePointer& root, std::int64_t minimumBytes,
                                 const ProgressCallback& progress,
                                 const CancelCallback& isCancelled, const Options& options)
    : m_root(root)
    , m_minimumBytes(minimumBytes)
    , m_progress(progress)
    , m_isCancelled(isCancelled)
    , m_options(options)
    , m_clock(options.clock ? options.clock : steadySeconds)
    , m_workerProgress(progress, m_clock)
{}

Groups DuplicateSearch::run()
{
    for (bool (DuplicateSearch::*pass)() :
         {&DuplicateSearch::walk, &DuplicateSearch::sample, &DuplicateSearch::verify}) {
        if (!(this->*pass)()) {
            return {};
        }
        if (m_candidates.empty()) {
            m_progress(1.0);
            return {};
        }
    }
    return build();
}

bool DuplicateSearch::walk()
{
    const std::optional<std::size_t> nodes =
        collectCandidates(*m_root, m_minimumBytes,
                          m_options.trash != nullptr ? *m_options.trash : TrashFolders::ofSystem(),
                          m_progress, m_isCancelled, m_candidates);
    if (!nodes) {
        return false;
    }
    report(Pass::walk, *nodes);
    return true;
}

bool DuplicateSearch::sample()
{
    FileSystemCalls& fileSystem =
        m_options.fileSystem != nullptr ? *m_options.fileSystem : FileSystemCalls::system();
    FileContentCalls& contents =
        m_options.contents != nullptr ? *m_options.contents : FileContentCalls::system();
    const std::size_t workers = std::min(workerCount(m_options.workers), m_candidates.size());
    for (std::size_t i = 0; i < workers; ++i) {
        m_digesters.push_back(std::make_unique<FileDigester>(fileSystem, contents, m_isCancelled));
    }
    m_workerProgress.begin(samplingRange, m_candidates.size());
    std::size_t place = 0;
    for (std::size_t begin = 0; begin < m_candidates.size() && !m_isCancelled();) {
        std::size_t end = begin;
        while (end < m_candidates.size() && end - begin < windowFiles) {
            end = bucketEnd(m_candidates, end);
        }
        place = sampleWindow(begin, end, place);
        begin = end;
    }
    m_candidates.resize(place, Candidate(*m_root));
    report(Pass::sampling, m_workerProgress.done());
    return !m_isCancelled();
}

std::size_t DuplicateSearch::sampleWindow(std::size_t begin, std::size_t end, std::size_t place)
{
    forEachFile(begin, end, [this](FileDigester& digester, Candidate& candidate) {
        const std::optional<FirstLook> look = digester.look(*candidate.file());
        if (!look) {
            return false;
        }
        candidate.key = {look->head, look->file.device, look->file.inode};
        m_workerProgress.countOne();
        return true;
    });
    markLinked(begin, end);
    // The files with several names, once each.
    forEachFile(begin, end, [](FileDigester& digester, Candidate& candidate) {
        if (candidate.key[0] == 0) {
            candidate.key[0] = digester.head(*candidate.file()).value_or(0);
        }
        return candidate.key[0] != 0;
    });
    end = splitBuckets(m_candidates, begin, end, begin, wordsOfHash);
    forEachFile(begin, end, [](FileDigester& digester, Candidate& candidate) {
        if (isSmall(candidate)) {
            return digest(digester, candidate);
        }
        candidate.key[0] = digester.ends(*candidate.file()).value_or(0);
        return candidate.key[0] != 0;
    });
    return splitBuckets(m_candidates, begin, end, place, wordsOfSample);
}

void DuplicateSearch::markLinked(std::size_t begin, std::size_t end)
{
    while (begin < end) {
        const std::size_t next = bucketEnd(m_candidates, begin);
        m_candidates[next - 1].setEndsBucket(false);
        std::sort(m_candidates.data() + begin, m_candidates.data() + next,
                  [](const Candidate& a, const Candidate& b) {
                      return std::tuple(a.isDropped(), a.key[1], a.key[2]) <
                             std::tuple(b.isDropped(), b.key[1], b.key[2]);
                  });
        m_candidates[next - 1].setEndsBucket(true);
        for (std::size_t i = begin + 1; i < next && !m_candidates[i].isDropped(); ++i) {
            if (isOneFile(m_candidates[i - 1], m_candidates[i])) {
                m_candidates[i - 1].setLinked(true);
                m_candidates[i].setLinked(true);
            }
        }
        begin = next;
    }
}

bool DuplicateSearch::digest(FileDigester& digester, Candidate& candidate)
{
    const std::optional<Contents> contents = digester.contents(*candidate.file());
    if (!contents) {
        return false;
    }
    static_assert(sizeof candidate.key <= sizeof contents->digest);
    std::memcpy(candidate.key.data(), contents->digest.data(), sizeof candidate.key);
    candidate.setBrokenOff(contents->isBrokenOff);
    return true;
}

bool DuplicateSearch::verify()
{
    m_workerProgress.begin(verifyingRange, m_candidates.size());
    // Larger files come first, so that no worker is left alone with one. The sample of a small one
    // was all of it.
    const auto firstSmall =
        std::partition_point(m_candidates.begin(), m_candidates.end(),
                             [](const Candidate& candidate) { return !isSmall(candidate); });
    const auto large = static_cast<std::size_t>(firstSmall - m_candidates.begin());
    forEachFile(0, large, [this](FileDigester& digester, Candidate& candidate) {
        const bool isDone = digest(digester, candidate);
        m_workerProgress.countOne();
        return isDone;
    });
    if (m_isCancelled()) {
        return false;
    }
    for (std::size_t i = large; i < m_candidates.size(); ++i) {
        m_workerProgress.countOne();
    }
    const std::size_t place = splitBuckets(m_candidates, 0, large, 0, wordsOfDigest);
    m_candidates.erase(m_candidates.begin() + static_cast<std::ptrdiff_t>(place), firstSmall);
    report(Pass::verifying, m_workerProgress.done());
    return !m_isCancelled();
}

Groups DuplicateSearch::build()
{
    resolveNames();
    if (m_isCancelled()) {
        return {};
    }
    const std::vector<FoundGroup> found = sortedGroups();
    Groups groups;
    groups.reserve(found.size());
    GroupTexts texts;
    for (const FoundGroup& each : found) {
        if (m_isCancelled()) {
            return {};
        }
        groups.push_back(groupAt(each.begin, texts));
    }
    report(Pass::building, groups.size());
    m_progress(1.0);
    return groups;
}

void DuplicateSearch::resolveNames()
{
    std::vector<std::size_t> begins;
    for (std::size_t begin = 0; begin < m_candidates.size();) {
        const std::size_t end = bucketEnd(m_candidates, begin);
        if (std::any_of(m_candidates.data() + begin, m_candidates.data() + end,
                        [](const Candidate& candidate) { return candidate.isLinked(); })) {
            begins.push_back(begin);
        }
        begin = end;
    }
    inParallel(begins.size(), [&](FileDigester& digester, std::size_t i) {
        resolveNames(digester, begins[i], bucketEnd(m_candidates, begins[i]));
    });
    if (!begins.empty()) {
        m_candidates.resize(splitBuckets(m_candidates, 0, m_candidates.size(), 0, wordsOfNothing),
                            Candidate(*m_root));
    }
}

void DuplicateSearch::resolveNames(FileDigester& digester, std::size_t begin, std::size_t end)
{
    m_candidates[end - 1].setEndsBucket(false);
    Candidate* const first = m_candidates.data() + begin;
    Candidate* const last =
        std::partition(first, m_candidates.data() + end,
                       [](const Candidate& candidate) { return candidate.isLinked(); });
    for (Candidate* candidate = first; candidate < last; ++candidate) {
        candidate->setLinked(false);
        const auto name = m_isCancelled() ? std::nullopt : digester.name(*candidate->file());
        if (name) {
            candidate->key = {name->file.device, name->file.inode,
                              nameKey(*name, candidate->file()->name())};
        } else {
            // It has gone since it was read.
            candidate->drop();
        }
    }
    std::sort(first, last, [](const Candidate& a, const Candidate& b) {
        return std::tuple(a.isDropped(), a.key) < std::tuple(b.isDropped(), b.key);
    });
    const Candidate* previous = nullptr;
    Candidate* kept = nullptr;
    std::uint64_t found = 0;
    for (Candidate* each = first; each < last && !each->isDropped(); ++each) {
        const bool isNewFile = previous == nullptr || previous->key[0] != each->key[0] ||
                               previous->key[1] != each->key[1];
        found = isNewFile ? 0 : found;
        kept = isNewFile ? nullptr : kept;
        const bool isRepeated = !isNewFile && previous->key[2] == each->key[2];
        previous = each;
        if (isRepeated || found == linksOf(*each)) {
            each->drop();
            continue;
        }
        ++found;
        if (kept != nullptr) {
            kept->setLinked(true);
            each->setLinked(true);
        }
        kept = each;
    }
    m_candidates[end - 1].setEndsBucket(true);
}

std::vector<DuplicateSearch::FoundGroup> DuplicateSearch::sortedGroups()
{
    // Before the groups are made, which are much larger than what sorts them.
    std::vector<FoundGroup> found;
    found.reserve(static_cast<std::size_t>(
        std::count_if(m_candidates.begin(), m_candidates.end(),
                      [](const Candidate& candidate) { return candidate.endsBucket(); })));
    for (std::size_t begin = 0; begin < m_candidates.size();) {
        const std::size_t end = bucketEnd(m_candidates, begin);
        Candidate* const first = m_candidates.data() + begin;
        m_candidates[end - 1].setEndsBucket(false);
        std::iter_swap(first, std::min_element(first, m_candidates.data() + end,
                                               [](const Candidate& a, const Candidate& b) {
                                                   return isListedBefore(*a.file(), *b.file());
                                               }));
        m_candidates[end - 1].setEndsBucket(true);
        found.push_back({Group::reclaimable(first->file()->scannedBytes(), end - begin), begin});
        begin = end;
    }
    std::sort(found.begin(), found.end(), [this](const FoundGroup& a, const FoundGroup& b) {
        if (a.reclaimable != b.reclaimable) {
            return a.reclaimable > b.reclaimable;
        }
        const FileNode& first = *m_candidates[a.begin].file();
        const FileNode& second = *m_candidates[b.begin].file();
        const int names = first.name().compare(second.name());
        return names != 0 ? names < 0 : isListedBefore(first, second);
    });
    return found;
}

Group DuplicateSearch::groupAt(std::size_t begin, GroupTexts& texts) const
{
    const std::size_t end = bucketEnd(m_candidates, begin);
    std::vector<FileNode*> files;
    files.reserve(end - begin);
    GroupMarks marks;
    for (std::size_t i = begin; i < end; ++i) {
        const Candidate& candidate = m_candidates[i];
        files.push_back(candidate.file());
        if (candidate.isLinked()) {
            marks.sameFile.push_back(candidate.file());
        }
        if (candidate.isBrokenOff()) {
            marks.brokenOff.push_back(candidate.file());
        }
    }
    const std::int64_t bytes = files.front()->scannedBytes();
    return {bytes, std::move(files), m_root, texts, std::move(marks)};
}

void DuplicateSearch::forEachFile(std::size_t begin, std::size_t end, const Step& step)
{
    std::vector<bool> isNameOfLast(end - begin);
    for (std::size_t i = begin + 1; i < end; ++i) {
        isNameOfLast[i - begin] = m_candidates[i].isLinked() && m_candidates[i - 1].isLinked() &&
                                  !m_candidates[i - 1].endsBucket() &&
                                  isOneFile(m_candidates[i - 1], m_candidates[i]);
    }
    inParallel(end - begin, [&](FileDigester& digester, std::size_t i) {
        Candidate& candidate = m_candidates[begin + i];
        if (!isNameOfLast[i] && !candidate.isDropped() &&
            (m_isCancelled() || !step(digester, candidate))) {
            candidate.drop();
        }
    });
    for (std::size_t i = begin; i < end; ++i) {
        if (isNameOfLast[i - begin]) {
            const Candidate& last = m_candidates[i - 1];
            m_candidates[i].key = last.key;
            m_candidates[i].setBrokenOff(last.isBrokenOff());
            if (last.isDropped()) {
                m_candidates[i].drop();
            }
        }
    }
}

void DuplicateSearch::inParallel(std::size_t count,
                                 const std::function<void(FileDigester&, std::size_t)>& work)
{
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> nextDigester{0};
    runOnWorkers(std::min(m_digesters.size(), count), [&] {
        FileDigester& digester = *m_digesters[nextDigester++];
        for (std::size_t i = next++; i < count; i = next++) {
            work(digester, i);
        }
    });
}

void DuplicateSearch::report(Pass pass, std::size_t files)
{
    std::int64_t bytes = 0;
    for (const auto& digester : m_digesters) {
        bytes += digester->bytesRead();
    }
    if (m_options.onPassEnd) {
        m_options.onPassEnd({pass, steadySeconds() - m_passStart, static_cast<std::int64_t>(files),
                             bytes - m_bytesBefore});
    }
    m_bytesBefore = bytes;
    m_passStart = steadySeconds();
}

} // namespace

Groups find(const NodePointer& root, std::int64_t minimumBytes, const ProgressCallback& progress,
            const CancelCallback& isCancelled, const Options& options)
{
    return DuplicateSearch(root, minimumBytes, progress, isCancelled, options).run();
}

} // namespace quorvane::DuplicateFinder
