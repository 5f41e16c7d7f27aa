// SPDX-License-Identifier: MIT
#pragma once

#include "Candidate.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <utility>
#include <vector>

namespace quorvane::DuplicateFinder {

/// The files of one bucket with the keys that belong to them, place by place: their digests, or
/// what stands for these.
template<typename Key>
struct KeyedFiles
{
    std::span<Candidate> files;
    std::span<Key> keys;

    std::size_t size() const { return files.size(); }
    KeyedFiles part(std::size_t begin, std::size_t end) const
    {
        return {files.subspan(begin, end - begin), keys.subspan(begin, end - begin)};
    }
    void swapPlaces(std::size_t a, std::size_t b) const
    {
        std::swap(files[a], files[b]);
        std::swap(keys[a], keys[b]);
    }
};

template<typename Key>
KeyedFiles<Key> withoutDropped(KeyedFiles<Key> all)
{
    std::size_t kept = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!all.files[i].isDropped()) {
            all.files[kept] = all.files[i];
            all.keys[kept] = all.keys[i];
            ++kept;
        }
    }
    return all.part(0, kept);
}

/// Quicksort in three parts over two lists at once, which std::sort cannot do without a third list.
/// Keys are as good as random, so that no order of them makes it slow.
template<typename Key>
void sortByKey(KeyedFiles<Key> all)
{
    while (all.size() > 1) {
        const Key pivot = all.keys[all.size() / 2];
        std::size_t less = 0;
        std::size_t next = 0;
        std::size_t greater = all.size();
        while (next < greater) {
            if (all.keys[next] < pivot) {
                all.swapPlaces(less++, next++);
            } else if (pivot < all.keys[next]) {
                all.swapPlaces(next, --greater);
            } else {
                ++next;
            }
        }
        KeyedFiles<Key> front = all.part(0, less);
        all = all.part(greater, all.size());
        // Only the shorter part goes deeper.
        if (front.size() > all.size()) {
            std::swap(front, all);
        }
        sortByKey(front);
    }
}

/// Sorts the files of one bucket by their keys, and those of one key by place in memory. Files that
/// are dropped or stand alone with their key go; the others move to `place` of the list and behind
/// it as one new bucket for each key, whose last file and key `onBucket` is told. `onAlone` is told
/// of each file that goes because nothing is like it. `place`, which
/// moves on, must not lie behind the files if it is in the same list. Uses no memory for a file.
template<typename Key>
void splitByKey(KeyedFiles<Key> all, std::vector<Candidate>& list, std::size_t& place,
                const std::function<void(Candidate& last, const Key& key)>& onBucket,
                const std::function<void(const Candidate& file)>& onAlone)
{
    all = withoutDropped(all);
    sortByKey(all);
    for (std::size_t begin = 0; begin < all.size();) {
        const Key key = all.keys[begin];
        std::size_t end = begin + 1;
        while (end < all.size() && all.keys[end] == key) {
            ++end;
        }
        if (end - begin > 1) {
            const std::span<Candidate> equal = all.files.subspan(begin, end - begin);
            std::sort(equal.begin(), equal.end());
            for (const Candidate& candidate : equal) {
                list[place] = candidate;
                list[place].setEndsBucket(false);
                list[place].setSettled(false);
                ++place;
            }
            list[place - 1].setEndsBucket(true);
            onBucket(list[place - 1], key);
        } else {
            onAlone(all.files[begin]);
        }
        begin = end;
    }
}

} // namespace quorvane::DuplicateFinder
