// SPDX-License-Identifier: MIT
// What the two parallel passes do with the files of a window.
#include "AliasFilter.h"
#include "DuplicateSearch.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

namespace quorvane::DuplicateFinder {
namespace {

/// A file that waits for another one with its head, as a table of heads keeps it: in one number.
class Waiting
{
public:
    explicit Waiting(std::uint32_t number)
        : m_number(number)
    {}
    Waiting(std::uint32_t place, bool hasLeftHead)
        : m_number(place << 1 | (hasLeftHead ? 1U : 0U))
    {}

    std::uint32_t number() const { return m_number; }
    std::uint32_t place() const { return m_number >> 1; }
    /// Its head is in the page cache only because it was looked at.
    bool hasLeftHead() const { return (m_number & 1) != 0; }

private:
    std::uint32_t m_number;
};

} // namespace

void DuplicateSearch::sampleWindow(Window& window)
{
    const std::size_t count = window.files.size();
    std::vector<std::uint32_t> places;
    std::optional<HeadTable> heads;
    if (!window.shortDigests) {
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
        dropWaiting(window, *heads);
    }
}

void DuplicateSearch::dropWaiting(Window& window, const HeadTable& heads)
{
    const std::vector<std::uint32_t> waiting = heads.waiting();
    inParallel(waiting.size(), [&](FileDigester& digester, std::size_t i) {
        const Waiting file(waiting[i]);
        Candidate& candidate = window.files[file.place()];
        if (file.hasLeftHead() && !m_isCancelled()) {
            digester.takeOutHead(*candidate.file());
        }
        candidate.drop();
    });
}

bool DuplicateSearch::sampleOne(FileDigester& digester, Window& window, HeadTable* heads,
                                std::uint32_t place, bool hasLeftHead)
{
    HeadTable::Meeting meeting;
    FileDigester::HeadFilter isWanted;
    if (heads != nullptr) {
        isWanted = [&](std::uint64_t head, bool isLeft) {
            meeting = heads->meet(head, Waiting(place, isLeft).number());
            return !meeting.isFirst;
        };
    }
    std::optional<Sample> sample =
        digester.partialDigest(*window.files[place].file(), isWanted, hasLeftHead);
    if (meeting.waiting != HeadTable::nobody) {
        const Waiting other(meeting.waiting);
        if (!sampleOne(digester, window, nullptr, other.place(), other.hasLeftHead())) {
            window.files[other.place()].drop();
        }
    }
    if (!sample) {
        return false;
    }
    if (sample->isTurnedAway) {
        // From the meeting on it belongs to whichever worker comes upon a file like it.
        return true;
    }
    const bool isKnownWhole = window.note(place, sample->digest);
    if (isKnownWhole && sample->head) {
        m_headStates.keep(sample->digest, std::move(sample->head));
    }
    window.files[place].setSampleOfUse(sample->hasLeftTail ||
                                       (isKnownWhole && sample->coversWholeFile));
    return true;
}

void DuplicateSearch::verifyWindow(Window& window)
{
    window.identities.resize(window.files.size());
    // As listed: the longest file is begun first, so that no worker is left alone with it.
    inParallel(window.files.size(), [&](FileDigester& digester, std::size_t i) {
        runStep(window, digester, i, [&](FileDigester& own, std::size_t place) {
            return verifyOne(own, window, place);
        });
    });
    dropAliases(window);
}

bool DuplicateSearch::verifyOne(FileDigester& digester, Window& window, std::size_t place)
{
    Candidate& candidate = window.files[place];
    const FileNode& file = *candidate.file();
    const Digest sample = window.bucketDigest(place);
    const bool isOfUse = candidate.isSampleOfUse();
    std::optional<Digest> full;
    if (file.scannedBytes() > wholeSampleBytes) {
        full = digester.fullDigest(file, SampleTraces{m_headStates.find(sample), isOfUse});
    } else {
        full = isOfUse ? digester.fullDigest(file, sample) : digester.fullDigest(file);
    }
    if (!full) {
        return false;
    }
    // The bucket that it comes into has another digest.
    candidate.setSampleOfUse(false);
    window.note(place, *full);
    window.identities[place] = digester.identity();
    return true;
}

void DuplicateSearch::dropAliases(Window& window) const
{
    const AliasFilter filter(m_fileSystem, m_contents, m_isCancelled);
    std::size_t begin = 0;
    for (const std::size_t end : window.ends) {
        if (m_isCancelled()) {
            return;
        }
        filter.dropAliases(window.files.subspan(begin, end - begin),
                           std::span(window.identities).subspan(begin, end - begin));
        begin = end;
    }
}

void DuplicateSearch::runStep(Window& window, FileDigester& digester, std::size_t place,
                              const Step& step)
{
    if (m_isCancelled() || !step(digester, place)) {
        window.files[place].drop();
        return;
    }
    if (m_round <= 1) {
        m_workerProgress.countOne();
    }
}

} // namespace quorvane::DuplicateFinder
