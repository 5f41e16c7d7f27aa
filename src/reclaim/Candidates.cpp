// SPDX-License-Identifier: MIT
#include "Candidates.h"

#include "CheckedMath.h"
#include "PinnedEntry.h"
#include "TrashFolders.h"

#include <algorithm>
#include <span>
#include <string>

namespace quorvane::DuplicateFinder {
namespace {

constexpr std::int64_t walkStep = 2048; ///< nodes between two reports

enum class Visit { goOn, passOver, stop };

/// Visits a tree's nodes, the last of a folder's children first. The visitor tells whether to go
/// on, to pass over what lies below the node, or to stop. The nodes themselves lead the way: not
/// even the deepest or the widest tree takes any memory. False when it was stopped.
template<typename Visitor>
bool visitNodes(FileNode& root, const Visitor& visit)
{
    FileNode* node = &root;
    for (;;) {
        const Visit answer = visit(*node);
        if (answer == Visit::stop) {
            return false;
        }
        const std::span<FileNode> children = node->children();
        if (!children.empty() && answer == Visit::goOn) {
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
}

} // namespace

std::optional<std::size_t> collectCandidates(FileNode& root, std::int64_t minimumBytes,
                                             const TrashFolders& trash,
                                             const ProgressCallback& progress,
                                             const CancelCallback& isCancelled,
                                             Candidates& candidates)
{
    constexpr const char* place = "DuplicateFinder.find";
    const auto total = static_cast<double>(
        std::max(checkedAdd(checkedAdd(root.fileCount(), root.directoryCount(), place), 1, place),
                 std::int64_t{1}));
    // An upper bound: only the part that is filled becomes resident.
    candidates.reserve(static_cast<std::size_t>(root.fileCount()));
    std::int64_t count = 0;
    const FilePath rootPath = root.path();
    const FilePath realRoot = PinnedEntry::realPathOf(rootPath).value_or(rootPath);
    const bool isRootInTrash = trash.isInTrash(realRoot);
    // The root may be reached through links; the system's tables know it without.
    const auto isTrash = [&](const FileNode& folder) {
        std::string path = folder.path().bytes();
        return trash.isTrash(FilePath(path.replace(0, rootPath.bytes().size(), realRoot.bytes())));
    };
    const bool isDone = visitNodes(root, [&](FileNode& node) {
        if (isCancelled()) {
            return Visit::stop;
        }
        if (++count % walkStep == 0) {
            progress(static_cast<double>(count) * walkEnd / total);
        }
        if (isRootInTrash ||
            (node.isDirectory() && trash.mayBeTrash(node.name()) && isTrash(node))) {
            return Visit::passOver;
        }
        if (node.isRegularFile() && node.scannedBytes() >= minimumBytes) {
            // Larger files come first, those of one size as they lie in memory, folder by folder.
            candidates.emplace_back(node).key = {~static_cast<std::uint64_t>(node.scannedBytes()),
                                                 reinterpret_cast<std::uintptr_t>(&node), 0};
        }
        return Visit::goOn;
    });
    if (!isDone || isCancelled()) {
        return std::nullopt;
    }
    progress(walkEnd);
    if (!candidates.empty()) {
        candidates.back().setEndsBucket(true);
    }
    candidates.resize(splitBuckets(candidates, 0, candidates.size(), 0,
                                   [](const Candidate&) -> std::size_t { return 1; }),
                      Candidate(root));
    return static_cast<std::size_t>(count);
}

std::size_t bucketEnd(const Candidates& candidates, std::size_t begin)
{
    while (!candidates[begin].endsBucket()) {
        ++begin;
    }
    return begin + 1;
}

std::size_t splitBuckets(Candidates& candidates, std::size_t begin, std::size_t end,
                         std::size_t place, std::size_t (*words)(const Candidate&))
{
    while (begin < end) {
        const std::size_t next = bucketEnd(candidates, begin);
        Candidate* const first = candidates.data() + begin;
        Candidate* const last =
            std::remove_if(first, candidates.data() + next,
                           [](const Candidate& candidate) { return candidate.isDropped(); });
        std::sort(first, last,
                  [](const Candidate& a, const Candidate& b) { return a.key < b.key; });
        const std::size_t count = first < last ? words(*first) : 0;
        for (Candidate* run = first; run < last;) {
            Candidate* const runEnd = std::find_if_not(run, last, [&](const Candidate& candidate) {
                return std::equal(run->key.begin(),
                                  run->key.begin() + static_cast<std::ptrdiff_t>(count),
                                  candidate.key.begin());
            });
            if (runEnd - run > 1) {
                for (; run < runEnd; ++run) {
                    candidates[place] = *run;
                    candidates[place++].setEndsBucket(run + 1 == runEnd);
                }
            }
            run = runEnd;
        }
        begin = next;
    }
    return place;
}

} // namespace quorvane::DuplicateFinder
