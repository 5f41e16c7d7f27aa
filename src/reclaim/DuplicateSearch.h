// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateBuckets.h"
#include "DuplicateFinder.h"
#include "FileDigester.h"
#include "HeadStates.h"
#include "HeadTable.h"
#include "ShortDigests.h"
#include "WorkerProgress.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace quorvane::DuplicateFinder {

/// One search from the walk to the groups. Made for one run() on one thread.
///
/// Memory beyond the tree and the groups that come out, in bytes, where n files share their size
/// with others: what CandidateWalk takes, of which 8 n stay until the groups are built. Then, while
/// contents are read, 32 for each set of files with equal ends, and for a window what it needs: 41
/// to 84 for each of windowFiles files, or of twice as many of one size, or 12 for each of still
/// more of one size. 65536 for each worker, and for large files what HeadStates takes. At the end
/// 16 for each group. A million files thus take 25 million bytes if they are of one size, and at
/// most 37 million whatever they are.
class DuplicateSearch
{
public:
    /// Files whose digests are kept at once, if sizes allow it.
    static constexpr std::size_t usualWindowFiles = std::size_t{1} << 16;

    /// The arguments of find(), which must outlive this.
    DuplicateSearch(const NodePointer& root, std::int64_t minimumBytes,
                    const ProgressCallback& progress, const CancelCallback& isCancelled,
                    const Options& options);
    DuplicateSearch(const DuplicateSearch&) = delete;
    DuplicateSearch& operator=(const DuplicateSearch&) = delete;
    ~DuplicateSearch() = default;

    Groups run();

private:
    /// Candidates that make a group, from that place on.
    struct FoundGroup
    {
        std::int64_t reclaimable;
        std::size_t begin;
    };
    /// A run of buckets whose files are digested before those of the next.
    struct Window
    {
        std::vector<std::size_t> ends; ///< of its buckets, counted from its first file
        std::span<Candidate> files;
        /// Of its files, at first those of their buckets. With short digests only that of the
        /// bucket, which is then the one bucket of the window.
        std::vector<Digest> digests;
        std::unique_ptr<ShortDigests> shortDigests;
        std::vector<std::uint32_t> identities; ///< hints of its files, once they are verified

        const Digest& bucketDigest(std::size_t place) const
        {
            return shortDigests ? digests.front() : digests[place];
        }
        /// False when not all of the digest is kept. One thread a place.
        bool note(std::size_t place, const Digest& digest)
        {
            if (shortDigests) {
                return shortDigests->note(place, digest);
            }
            digests[place] = digest;
            return true;
        }
    };
    /// What happens to the file at that place of a window: it gives it a new digest. False drops
    /// the file.
    using Step = std::function<bool(FileDigester&, std::size_t place)>;

    /// Each of the three passes leaves its survivors in m_candidates; false for a cancel.
    bool walk();
    bool sample();
    bool verify();
    Groups build();
    std::vector<FoundGroup> sortedGroups();

    std::size_t bucketEnd(std::size_t begin) const;
    /// Splits every bucket of the candidates that is not settled by what the pass makes of its
    /// files. False for a cancel.
    bool narrow(const std::function<void(Window&)>& digestAll);
    Window openWindow(std::size_t begin);
    void splitWindow(Window& window, std::size_t& place);
    void sampleWindow(Window& window);
    void verifyWindow(Window& window);
    void dropAliases(Window& window) const;
    bool verifyOne(FileDigester& digester, Window& window, std::size_t place);
    /// hasLeftHead: see FileDigester::partialDigest().
    bool sampleOne(FileDigester& digester, Window& window, HeadTable* heads, std::uint32_t place,
                   bool hasLeftHead = false);
    void dropWaiting(Window& window, const HeadTable& heads);
    void runStep(Window& window, FileDigester& digester, std::size_t place, const Step& step);
    /// Runs work(digester, i) for every i below count on all workers, and returns when all is done.
    void inParallel(std::size_t count, const std::function<void(FileDigester&, std::size_t)>& work);
    /// A window of more files, which are then of one bucket, has short digests.
    std::size_t mostWholeDigests() const { return m_windowFiles * 2; }
    /// So many of these are whole all the same.
    std::size_t mostKnownDigests() const { return std::max<std::size_t>(m_windowFiles / 16, 1); }
    std::int64_t bytesRead() const;
    void report(Pass pass, std::size_t files);

    const NodePointer& m_root;
    const std::int64_t m_minimumBytes;
    const ProgressCallback& m_progress;
    const CancelCallback& m_isCancelled;
    const Options& m_options;
    FileSystemCalls& m_fileSystem;
    FileContentCalls& m_contents;
    const std::function<double()> m_clock;
    WorkerProgress m_workerProgress;
    std::vector<std::unique_ptr<FileDigester>> m_digesters;

    const std::size_t m_windowFiles;
    /// Bucket by bucket, larger files first.
    std::vector<Candidate> m_candidates;
    /// Of the buckets that sampling left, for verifying to take one by one. Nothing where files
    /// were too many for whole digests. A deque grows without moving what is there.
    std::deque<Digest> m_sampleDigests;
    HeadStates m_headStates;

    bool m_isVerifying = false;
    int m_round = 0;            ///< of verifying
    bool m_isUnsettled = false; ///< a bucket needs another round
    double m_passStart;
    std::int64_t m_bytesBefore = 0;
};

} // namespace quorvane::DuplicateFinder
