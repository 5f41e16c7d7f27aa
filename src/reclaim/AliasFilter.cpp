// SPDX-License-Identifier: MIT
#include "AliasFilter.h"

#include "OpenFile.h"

#include <algorithm>
#include <vector>

namespace quorvane::DuplicateFinder {
namespace {

/// Files that are sorted at once, so that a bucket of millions takes no more room than one of
/// these.
constexpr std::size_t sortedAtOnce = std::size_t{1} << 16;

struct HintedFile
{
    std::uint32_t hint;
    std::uint32_t place;
};

} // namespace

std::uint32_t identityHint(const OpenFileStatus& status)
{
    std::uint64_t mixed = (status.inode ^ (status.device << 40)) * 0x9E3779B97F4A7C15U;
    mixed ^= mixed >> 29;
    mixed *= 0xBF58476D1CE4E5B9U;
    return static_cast<std::uint32_t>(mixed >> 32);
}

void AliasFilter::dropAliases(std::span<Candidate> files,
                              std::span<const std::uint32_t> hints) const
{
    const auto parts = static_cast<std::uint32_t>(files.size() / sortedAtOnce + 1);
    std::vector<HintedFile> sorted;
    for (std::uint32_t part = 0; part < parts; ++part) {
        sorted.clear();
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (hints[i] % parts == part && !files[i].isDropped()) {
                sorted.push_back({hints[i], static_cast<std::uint32_t>(i)});
            }
        }
        std::sort(sorted.begin(), sorted.end(), [](const HintedFile& a, const HintedFile& b) {
            return a.hint != b.hint ? a.hint < b.hint : a.place < b.place;
        });
        for (std::size_t begin = 0; begin < sorted.size();) {
            std::size_t end = begin + 1;
            while (end < sorted.size() && sorted[end].hint == sorted[begin].hint) {
                ++end;
            }
            Seen seen;
            for (std::size_t i = begin; i < end && end - begin > 1; ++i) {
                Candidate& candidate = files[sorted[i].place];
                if (isAlias(*candidate.file(), seen)) {
                    candidate.drop();
                }
            }
            begin = end;
        }
    }
}

bool AliasFilter::isAlias(const FileNode& file, Seen& seen) const
{
    const FilePath path = file.path();
    const OpenFile open(m_fileSystem, m_contents, path);
    if (!open.isReadable()) {
        // It has gone since it was digested.
        return true;
    }
    const Identity identity{open.status().device, open.status().inode};
    std::uint64_t& names = seen.names[identity];
    // A file that is itself the place of a mount has one name there and one at home.
    if (names >= std::max<std::uint64_t>(open.status().links, 1)) {
        return true;
    }
    // By way of ".", since the folder itself may be a link.
    const OpenFile folder(m_fileSystem, m_contents, path.parent().appending("."));
    const Identity place =
        folder.hasStatus() ? Identity{folder.status().device, folder.status().inode} : Identity{};
    if (!seen.entries.emplace(place, path.lastComponent()).second) {
        return true;
    }
    ++names;
    return false;
}

} // namespace quorvane::DuplicateFinder
