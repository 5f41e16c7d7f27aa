// SPDX-License-Identifier: MIT
#include "DuplicateBuckets.h"

#include <algorithm>
#include <utility>

namespace quorvane::DuplicateFinder {
namespace {

void swapPlaces(DigestedFiles all, std::size_t a, std::size_t b)
{
    std::swap(all.files[a], all.files[b]);
    std::swap(all.digests[a], all.digests[b]);
}

DigestedFiles part(DigestedFiles all, std::size_t begin, std::size_t end)
{
    return {all.files.subspan(begin, end - begin), all.digests.subspan(begin, end - begin)};
}

DigestedFiles withoutDropped(DigestedFiles all)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < all.files.size(); ++i) {
        if (!all.files[i].isDropped()) {
            all.files[kept] = all.files[i];
            all.digests[kept] = all.digests[i];
            ++kept;
        }
    }
    return part(all, 0, kept);
}

/// Quicksort in three parts over two lists at once, which std::sort cannot do without a third list.
/// Digests are as good as random, so that no order of them makes it slow.
void sortByDigest(DigestedFiles all)
{
    while (all.files.size() > 1) {
        const Digest pivot = all.digests[all.digests.size() / 2];
        std::size_t less = 0;
        std::size_t next = 0;
        std::size_t greater = all.files.size();
        while (next < greater) {
            if (all.digests[next] < pivot) {
                swapPlaces(all, less++, next++);
            } else if (pivot < all.digests[next]) {
                swapPlaces(all, next, --greater);
            } else {
                ++next;
            }
        }
        DigestedFiles front = part(all, 0, less);
        all = part(all, greater, all.files.size());
        // Only the shorter part goes deeper.
        if (front.files.size() > all.files.size()) {
            std::swap(front, all);
        }
        sortByDigest(front);
    }
}

} // namespace

void splitByDigest(DigestedFiles all, std::vector<Candidate>& list, std::size_t& place,
                   Buckets& buckets)
{
    all = withoutDropped(all);
    sortByDigest(all);
    const std::size_t count = all.files.size();
    for (std::size_t begin = 0; begin < count;) {
        const Digest& digest = all.digests[begin];
        std::size_t end = begin + 1;
        while (end < count && all.digests[end] == digest) {
            ++end;
        }
        if (end - begin > 1) {
            const std::span<Candidate> equal = all.files.subspan(begin, end - begin);
            std::sort(equal.begin(), equal.end());
            std::copy(equal.begin(), equal.end(),
                      list.begin() + static_cast<std::ptrdiff_t>(place));
            place += equal.size();
            buckets.push_back({place, digest});
        }
        begin = end;
    }
}

} // namespace quorvane::DuplicateFinder
