// SPDX-License-Identifier: MIT
#include "CandidateWalk.h"

#include "CheckedMath.h"
#include "SizeCounters.h"

#include <algorithm>
#include <functional>
#include <span>

namespace quorvane::DuplicateFinder {
namespace {

constexpr std::int64_t walkStep = 2048; ///< nodes between two reports

/// Visits a tree's nodes, the last of a folder's children first, until the visitor returns false.
/// The nodes themselves lead the way: not even the deepest or the widest tree takes any memory.
template<typename Visitor>
bool visitNodes(FileNode& root, const Visitor& visit)
{
    FileNode* node = &root;
    while (visit(*node)) {
        const std::span<FileNode> children = node->children();
        if (!children.empty()) {
            node = &children.back();
            continue;
        }
        while (node != &root && node == node->parent()->children().data()) {
            node = node->parent();
        }
        if (node == &root) {
            return true;
        }
        --node;
    }
    return false;
}

} // namespace

CandidateWalk::CandidateWalk(FileNode& root, std::int64_t minimumBytes,
                             const ProgressCallback& progress, const CancelCallback& isCancelled)
    : m_root(root)
    , m_minimumBytes(minimumBytes)
    , m_progress(progress)
    , m_isCancelled(isCancelled)
{}

bool CandidateWalk::run(std::vector<Candidate>& candidates)
{
    std::vector<SizedFile> files;
    if (!collect(files) || m_isCancelled()) {
        return false;
    }
    m_progress(walkEnd);
    keepEqualSizes(files, candidates);
    return true;
}

bool CandidateWalk::isWanted(const FileNode& node) const
{
    return node.isRegularFile() && node.scannedBytes() >= m_minimumBytes;
}

bool CandidateWalk::collect(std::vector<SizedFile>& files)
{
    constexpr const char* place = "DuplicateFinder.find";
    const auto total = static_cast<double>(std::max(
        checkedAdd(checkedAdd(m_root.fileCount(), m_root.directoryCount(), place), 1, place),
        std::int64_t{1}));
    SizeCounters sizes;
    std::int64_t count = 0;
    const bool isCounted = visitNodes(m_root, [&](FileNode& node) {
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
    m_nodes = static_cast<std::size_t>(count);
    // Once more, now that it is known for which files there has to be room.
    files.reserve(sizes.shared());
    count = 0;
    return sizes.shared() == 0 || visitNodes(m_root, [&](FileNode& node) {
               if (isWanted(node) && sizes.isShared(node.scannedBytes())) {
                   files.push_back({node.scannedBytes(), &node});
               }
               return ++count % walkStep != 0 || !m_isCancelled();
           });
}

void CandidateWalk::keepEqualSizes(std::vector<SizedFile>& files,
                                   std::vector<Candidate>& candidates)
{
    std::sort(files.begin(), files.end(), [](const SizedFile& a, const SizedFile& b) {
        return a.bytes != b.bytes ? a.bytes > b.bytes : std::less<>()(a.file, b.file);
    });
    const auto isLikeNext = [&](std::size_t i) {
        return i + 1 < files.size() && files[i + 1].bytes == files[i].bytes;
    };
    const auto hasTwin = [&](std::size_t i) {
        return isLikeNext(i) || (i > 0 && isLikeNext(i - 1));
    };
    std::size_t count = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        count += hasTwin(i) ? 1 : 0;
    }
    candidates.reserve(count);
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (hasTwin(i)) {
            candidates.emplace_back(files[i].file).setEndsBucket(!isLikeNext(i));
        }
    }
}

} // namespace quorvane::DuplicateFinder
