// SPDX-License-Identifier: MIT
#include "DuplicateSearch.h"

#include "CandidateWalk.h"
#include "GroupTexts.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <limits>
#include <span>
#include <system_error>
#include <thread>
#include <utility>

namespace quorvane::DuplicateFinder {
namespace {

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
    , m_windowFiles(options.windowFiles > 0 ? options.windowFiles : usualWindowFiles)
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
    CandidateWalk walk(*m_root, m_minimumBytes, m_progress, m_isCancelled);
    if (!walk.run(m_candidates)) {
        return false;
    }
    report(Pass::walk, walk.nodes());
    return true;
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
    const bool isDone = narrow([this](Window& window) { sampleWindow(window); });
    report(Pass::sampling, m_workerProgress.done());
    return isDone;
}

bool DuplicateSearch::verify()
{
    m_isVerifying = true;
    m_workerProgress.begin(verifyingRange, m_candidates.size());
    bool isDone = true;
    // Once, but for what is left of buckets that were too large for whole digests.
    for (m_round = 1; m_round == 1 || (isDone && m_isUnsettled); ++m_round) {
        m_isUnsettled = false;
        isDone = narrow([this](Window& window) { verifyWindow(window); });
    }
    m_headStates.forget();
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
        const std::size_t end = bucketEnd(found.begin);
        std::vector<FileNode*> files;
        files.reserve(end - found.begin);
        for (std::size_t place = found.begin; place < end; ++place) {
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
    found.reserve(static_cast<std::size_t>(
        std::count_if(m_candidates.begin(), m_candidates.end(),
                      [](const Candidate& candidate) { return candidate.endsBucket(); })));
    for (std::size_t begin = 0; begin < m_candidates.size();) {
        const std::size_t end = bucketEnd(begin);
        const std::int64_t bytes = m_candidates[begin].file()->scannedBytes();
        found.push_back({Group::reclaimable(bytes, end - begin), begin});
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

std::size_t DuplicateSearch::bucketEnd(std::size_t begin) const
{
    while (!m_candidates[begin].endsBucket()) {
        ++begin;
    }
    return begin + 1;
}

bool DuplicateSearch::narrow(const std::function<void(Window&)>& digestAll)
{
    std::size_t place = 0;
    for (std::size_t begin = 0; begin < m_candidates.size();) {
        const std::size_t end = bucketEnd(begin);
        if (m_candidates[end - 1].isSettled()) {
            std::copy(m_candidates.data() + begin, m_candidates.data() + end,
                      m_candidates.data() + place);
            place += end - begin;
            begin = end;
            continue;
        }
        Window window = openWindow(begin);
        digestAll(window);
        if (m_isCancelled()) {
            return false;
        }
        begin += window.files.size();
        splitWindow(window, place);
    }
    m_candidates.erase(m_candidates.begin() + static_cast<std::ptrdiff_t>(place),
                       m_candidates.end());
    return true;
}

DuplicateSearch::Window DuplicateSearch::openWindow(std::size_t begin)
{
    Window window;
    std::size_t end = begin;
    while (end < m_candidates.size()) {
        const std::size_t next = bucketEnd(end);
        if (end != begin && (next - begin > m_windowFiles || m_candidates[next - 1].isSettled())) {
            break;
        }
        end = next;
        window.ends.push_back(end - begin);
    }
    const std::size_t count = end - begin;
    window.files = std::span(m_candidates).subspan(begin, count);
    if (count > mostWholeDigests()) {
        window.shortDigests = std::make_unique<ShortDigests>(
            count, mostKnownDigests(),
            m_options.partBits > 0 ? m_options.partBits : ShortDigests::mostPartBits);
    }
    // Room for all at once: to grow by doubling would take more than it needs.
    window.digests.reserve(window.shortDigests ? 1 : count);
    for (const std::size_t bucketEnd : window.ends) {
        Digest digest = {};
        if (m_isVerifying && !m_sampleDigests.empty()) {
            digest = m_sampleDigests.front();
            m_sampleDigests.pop_front();
        }
        window.digests.resize(window.shortDigests ? 1 : bucketEnd, digest);
    }
    return window;
}

void DuplicateSearch::splitWindow(Window& window, std::size_t& place)
{
    const auto note = [this](Candidate& last, const Digest* digest) {
        if (m_isVerifying) {
            last.setSettled(digest != nullptr);
            m_isUnsettled = m_isUnsettled || digest == nullptr;
        } else {
            m_sampleDigests.push_back(digest != nullptr ? *digest : Digest{});
        }
    };
    const auto forget = [this](const Candidate& file) {
        if (file.isSampleOfUse() && file.file()->scannedBytes() > wholeSampleBytes &&
            !m_isCancelled()) {
            m_digesters.front()->takeOutTail(*file.file());
        }
    };
    if (window.shortDigests) {
        const ShortDigests& digests = *window.shortDigests;
        splitByKey<ShortDigests::Key>(
            {window.files, window.shortDigests->keys()}, m_candidates, place,
            [&](Candidate& last, const ShortDigests::Key& key) {
                note(last, ShortDigests::isWhole(key) ? &digests.whole(key) : nullptr);
            },
            forget);
        return;
    }
    const KeyedFiles<Digest> all{window.files, window.digests};
    std::size_t begin = 0;
    for (const std::size_t end : window.ends) {
        splitByKey<Digest>(
            all.part(begin, end), m_candidates, place,
            [&](Candidate& last, const Digest& digest) { note(last, &digest); }, forget);
        begin = end;
    }
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
