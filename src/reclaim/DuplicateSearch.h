// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateBuckets.h"
#include "DuplicateFinder.h"
#include "FileDigester.h"
#include "HeadStates.h"
#include "HeadTable.h"
#include "WorkerProgress.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace quorvane::DuplicateFinder {

/// One search from the walk to the groups. Made for one run() on one thread.
///
/// Memory beyond the tree and the groups that come out, in bytes: a million for the
/// counters of sizes and 16 for each regular file that seems to share its size with another, until
/// the walk is done, and 8 for each of those that do, which stay. Then 40 for each set of files
/// with equal ends, later 24, and 32 to 84 for each file of a window: windowFiles files, but all
/// files of one size, or of equal ends, at least; 32 beyond mostTabledFiles, and 4 more while they
/// are verified. 65536 for each worker, and for
/// large files what HeadStates takes. A million files thus take 24 megabytes, and 44 if they all
/// are of one size.
class DuplicateSearch
{
public:
    /// Files whose digests are kept at once, if sizes allow it.
    static constexpr std::size_t windowFiles = std::size_t{1} << 16;
    /// A window of more files, all but a few of one size, does without a table of heads.
    static constexpr std::size_t mostTabledFiles = windowFiles * 4;

    /// The arguments of find(), which must outlive this.
    DuplicateSearch(const NodePointer& root, std::int64_t minimumBytes,
                    const ProgressCallback& progress, const CancelCallback& isCancelled,
                    const Options& options);
    DuplicateSearch(const DuplicateSearch&) = delete;
    DuplicateSearch& operator=(const DuplicateSearch&) = delete;
    ~DuplicateSearch() = default;

    Groups run();

private:
    struct SizedFile
    {
        std::int64_t bytes;
        FileNode* file;
    };
    /// Candidates that make a group.
    struct FoundGroup
    {
        std::int64_t reclaimable;
        std::size_t begin;
        std::size_t end;
    };
    /// A run of buckets whose files are digested before those of the next.
    struct Window
    {
        std::size_t begin;
        std::vector<std::size_t> ends; ///< of its buckets
        std::span<Candidate> files;
        std::vector<Digest> digests;           ///< of its files, at first those of their buckets
        std::vector<std::uint32_t> identities; ///< hints of its files, once they are verified
    };
    /// What happens to the file at that place of a window: it gives it a new digest. False drops
    /// the file.
    using Step = std::function<bool(FileDigester&, std::size_t place)>;
    /// The bucket of the candidates from that place on, asked for in order.
    using BucketAt = std::function<Bucket(std::size_t begin)>;

    /// Each of the three passes leaves its survivors in m_candidates; false for a cancel.
    bool walk();
    bool sample();
    bool verify();
    Groups build();
    std::vector<FoundGroup> sortedGroups();

    bool collect(std::vector<SizedFile>& files);
    void keepEqualSizes(std::vector<SizedFile>& files);
    /// Splits every bucket of the candidates by what the pass makes of its files.
    bool narrow(const BucketAt& bucketAt, const std::function<void(Window&)>& digestAll);
    Window openWindow(const BucketAt& bucketAt, std::size_t begin);
    void sampleWindow(Window& window);
    void verifyWindow(Window& window);
    void dropAliases(Window& window) const;
    bool sampleOne(FileDigester& digester, Window& window, HeadTable* heads, std::uint32_t place);
    void runStep(Window& window, FileDigester& digester, std::size_t place, const Step& step);
    /// Runs work(digester, i) for every i below count on all workers, and returns when all is done.
    void inParallel(std::size_t count, const std::function<void(FileDigester&, std::size_t)>& work);
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

    /// Bucket by bucket, larger files first.
    std::vector<Candidate> m_candidates;
    /// Of sampling, then of verifying.
    Buckets m_buckets;
    HeadStates m_headStates;

    std::size_t m_walked = 0; ///< nodes
    double m_passStart;
    std::int64_t m_bytesBefore = 0;
};

} // namespace quorvane::DuplicateFinder
