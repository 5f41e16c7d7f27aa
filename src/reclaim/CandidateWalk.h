// SPDX-License-Identifier: MIT
#pragma once

#include "Candidate.h"
#include "DuplicateFinder.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quorvane::DuplicateFinder {

inline constexpr double walkEnd = 0.06; ///< progress at the end of the walk

/// The first pass: finds the files that share their size with others. Takes a million bytes and 16
/// for each file that seems to, and at the end 8 for each that does.
class CandidateWalk
{
public:
    /// The arguments of find(), which must outlive this.
    CandidateWalk(FileNode& root, std::int64_t minimumBytes, const ProgressCallback& progress,
                  const CancelCallback& isCancelled);

    /// Fills the list bucket by bucket, each of one size, larger files first. False for a cancel.
    bool run(std::vector<Candidate>& candidates);
    /// Nodes that were walked.
    std::size_t nodes() const { return m_nodes; }

private:
    struct SizedFile
    {
        std::int64_t bytes;
        FileNode* file;
    };

    bool collect(std::vector<SizedFile>& files);
    static void keepEqualSizes(std::vector<SizedFile>& files, std::vector<Candidate>& candidates);
    bool isWanted(const FileNode& node) const;

    FileNode& m_root;
    const std::int64_t m_minimumBytes;
    const ProgressCallback& m_progress;
    const CancelCallback& m_isCancelled;
    std::size_t m_nodes = 0;
};

} // namespace quorvane::DuplicateFinder
