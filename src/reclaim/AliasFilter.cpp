// SPDX-License-Identifier: MIT
#include "AliasFilter.h"

#include "OpenFile.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <tuple>
#include <vector>

namespace quorvane::DuplicateFinder {
namespace {

/// Files that are sorted at once, so that a bucket of millions takes no more room than one of
/// these.
constexpr std::size_t sortedAtOnce = std::size_t{1} << 16;

std::uint32_t mixed(std::uint64_t a, std::uint64_t b)
{
    std::uint64_t mixed = (a ^ (b << 40) ^ (b >> 24)) * 0x9E3779B97F4A7C15U;
    mixed ^= mixed >> 29;
    mixed *= 0xBF58476D1CE4E5B9U;
    return static_cast<std::uint32_t>(mixed >> 32);
}

} // namespace

std::uint32_t identityHint(const OpenFileStatus& status)
{
    return mixed(status.inode, status.device);
}

void AliasFilter::dropAliases(std::span<Candidate> files,
                              std::span<const std::uint32_t> hints) const
{
    const auto parts = static_cast<std::uint32_t>(files.size() / sortedAtOnce + 1);
    std::vector<KeyedPlace> sorted;
    for (std::uint32_t part = 0; part < parts; ++part) {
        const auto belongs = [&](std::size_t i) {
            return hints[i] % parts == part && !files[i].isDropped();
        };
        std::size_t count = 0;
        for (std::size_t i = 0; i < files.size(); ++i) {
            count += belongs(i) ? 1 : 0;
        }
        sorted.clear();
        // Doubling would take more than it needs.
        sorted.reserve(count);
        for (std::size_t i = 0; i < files.size(); ++i) {
            if (belongs(i)) {
                sorted.push_back({hints[i], static_cast<std::uint32_t>(i)});
            }
        }
        std::sort(sorted.begin(), sorted.end());
        for (std::size_t begin = 0; begin < sorted.size();) {
            std::size_t end = begin + 1;
            while (end < sorted.size() && sorted[end].key == sorted[begin].key) {
                ++end;
            }
            if (end - begin > 1) {
                dropAmong(std::span(sorted).subspan(begin, end - begin), files);
            }
            begin = end;
        }
    }
}

void AliasFilter::dropAmong(std::span<KeyedPlace> alike, std::span<Candidate> files) const
{
    NamesOfFiles names;
    for (KeyedPlace& keyed : alike) {
        Candidate& candidate = files[keyed.place];
        const std::optional<Entry> entry = entryOf(*candidate.file());
        if (!entry) {
            // It has gone since it was digested.
            candidate.drop();
            continue;
        }
        Names& known = names[entry->file];
        ++known.found;
        known.links = entry->links;
        const std::size_t name = std::hash<std::string_view>()(candidate.file()->name());
        keyed.key = mixed(entry->file.second ^ name, entry->folder.second);
    }
    std::sort(alike.begin(), alike.end());
    dropRepeated(alike, files, names);
    std::sort(alike.begin(), alike.end(),
              [](const KeyedPlace& a, const KeyedPlace& b) { return a.place < b.place; });
    dropBeyond(alike, files, names);
}

void AliasFilter::dropRepeated(std::span<const KeyedPlace> sorted, std::span<Candidate> files,
                               NamesOfFiles& names) const
{
    using Name = std::tuple<Identity, Identity, std::string_view>;
    for (std::size_t begin = 0; begin < sorted.size();) {
        std::size_t end = begin + 1;
        while (end < sorted.size() && sorted[end].key == sorted[begin].key) {
            ++end;
        }
        // As a rule one name and its repetitions, of which there are as many as mounts.
        std::vector<Name> kept;
        for (std::size_t i = begin; i < end && end - begin > 1; ++i) {
            Candidate& candidate = files[sorted[i].place];
            if (candidate.isDropped()) {
                continue;
            }
            const FileNode& file = *candidate.file();
            const std::optional<Entry> entry = entryOf(file);
            if (!entry) {
                candidate.drop();
                continue;
            }
            const Name name{entry->file, entry->folder, file.name()};
            if (std::find(kept.begin(), kept.end(), name) == kept.end()) {
                kept.push_back(name);
            } else {
                candidate.drop();
                --names[entry->file].found;
            }
        }
        begin = end;
    }
}

void AliasFilter::dropBeyond(std::span<const KeyedPlace> sorted, std::span<Candidate> files,
                             NamesOfFiles& names) const
{
    const bool isAnyBeyond = std::any_of(names.begin(), names.end(), [](const auto& file) {
        return file.second.found > file.second.links;
    });
    if (!isAnyBeyond) {
        return;
    }
    for (auto& file : names) {
        file.second.found = 0;
    }
    for (const KeyedPlace& keyed : sorted) {
        Candidate& candidate = files[keyed.place];
        if (candidate.isDropped()) {
            continue;
        }
        const std::optional<Entry> entry = entryOf(*candidate.file());
        if (!entry || ++names[entry->file].found > entry->links) {
            candidate.drop();
        }
    }
}

std::optional<AliasFilter::Entry> AliasFilter::entryOf(const FileNode& file) const
{
    if (m_isCancelled()) {
        return std::nullopt;
    }
    const FilePath path = file.path();
    const OpenFile open(m_fileSystem, m_contents, path);
    if (!open.isReadable()) {
        return std::nullopt;
    }
    // By way of ".", since the folder itself may be a link.
    const OpenFile folder(m_fileSystem, m_contents, path.parent().appending("."));
    const OpenFileStatus& status = open.status();
    return Entry{{status.device, status.inode},
                 folder.hasStatus() ? Identity{folder.status().device, folder.status().inode}
                                    : Identity{},
                 // A file that is itself the place of a mount has one name there and one at home.
                 std::max<std::uint64_t>(status.links, 1)};
}

} // namespace quorvane::DuplicateFinder
