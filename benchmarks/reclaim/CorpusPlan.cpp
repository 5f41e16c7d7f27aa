// SPDX-License-Identifier: MIT
#include "CorpusPlan.h"

#include "SeededRandom.h"

#include <algorithm>
#include <cmath>

namespace quorvane {
namespace {

constexpr std::int64_t filesInAFolder = 40;
constexpr std::uint64_t deepestFolder = 8;
constexpr std::int64_t smallBytes = 1024; ///< a search passes over smaller files
constexpr std::size_t largeFiles = 4;     ///< of a corpus of small ones
constexpr std::uint64_t streamOfFolders = 3'000'000'019;
constexpr std::uint64_t streamOfFamilies = 4'000'000'007;
constexpr std::uint64_t streamOfPlaces = 5'000'000'029;

/// How heavy a file is against others: from 1 to a few thousand, few of them heavy.
double someWeight(SeededRandom& random)
{
    const double power = random.oneIn(12) ? 7 + static_cast<double>(random.below(5000)) / 1000
                                          : static_cast<double>(random.below(7000)) / 1000;
    return std::exp2(power);
}

} // namespace

/// Files that have their size in common.
struct CorpusPlan::Family
{
    enum class Kind { copies, nearCopies, sameSize, small };

    Kind kind = Kind::sameSize;
    std::size_t members = 1;
    double weight = 0;      ///< of each member; 0 for small files
    std::int64_t bytes = 0; ///< of a small file
};

CorpusPlan::CorpusPlan(const CorpusShape& shape)
    : m_shape(shape)
{
    makeFolders();
    if (shape.kind == CorpusKind::mixed) {
        addMixedFiles();
    } else {
        addSmallFiles();
    }
}

void CorpusPlan::addSmallFiles()
{
    SeededRandom random(m_shape.seed, streamOfFamilies);
    const auto names = static_cast<std::size_t>(m_shape.files);
    const std::size_t large = std::min(largeFiles, names - 1);
    const std::size_t links = (names - large) / 10;
    // One more makes the sum come out.
    const std::size_t own = names - large - links - 1;
    std::int64_t used = 0;
    while (m_entries.size() < own) {
        const std::size_t members = random.oneIn(8) ? 2 + random.below(3) : 1;
        Family family{Family::Kind::copies, std::min(members, own - m_entries.size()), 0, 0};
        const auto bytes = smallBytes + static_cast<std::int64_t>(random.below(15 * smallBytes));
        used += bytes * static_cast<std::int64_t>(family.members);
        addFamily(family, bytes);
    }
    const auto count = static_cast<std::int64_t>(large);
    const std::int64_t bytes = large > 0 ? (m_shape.bytes - used - smallBytes) / count : 0;
    addFamily({Family::Kind::sameSize, 1, 0, 0}, m_shape.bytes - used - bytes * count);
    addLinks(links, Kind::hardLink);
    const std::size_t first = m_entries.size();
    addFamily({Family::Kind::copies, std::min<std::size_t>(large, 3), 0, 0}, bytes);
    addFamily({Family::Kind::sameSize, large - std::min<std::size_t>(large, 3), 0, 0}, bytes);
    for (std::size_t i = first; i < m_entries.size(); ++i) {
        m_entries[i].isSparse = true;
    }
    if (large > 2) {
        m_entries[first + 2].changedByte = bytes / 2 - bytes / 2 % sparseStep;
    }
}

void CorpusPlan::addMixedFiles()
{
    const std::vector<Family> all = families();
    double weights = 0;
    std::int64_t spent = 0;
    for (const Family& family : all) {
        const auto members = static_cast<double>(family.members);
        weights += members * family.weight;
        spent += static_cast<std::int64_t>(family.members) *
                 (family.kind == Family::Kind::small ? family.bytes : smallBytes);
    }
    const double unit = static_cast<double>(m_shape.bytes - spent) / std::max(weights, 1.0);
    std::int64_t used = 0;
    for (const Family& family : all) {
        const std::int64_t bytes =
            family.kind == Family::Kind::small
                ? family.bytes
                : smallBytes + static_cast<std::int64_t>(family.weight * unit);
        used += bytes * static_cast<std::int64_t>(family.members);
        addFamily(family, bytes);
    }
    // The last family is a single file: it takes what the rounding left.
    if (!m_entries.empty()) {
        m_entries.back().bytes += m_shape.bytes - used;
    }
    const auto files = static_cast<std::size_t>(m_shape.files);
    addLinks((files - m_entries.size()) / 2, Kind::hardLink);
    addLinks(files - m_entries.size(), Kind::symbolicLink);
}

void CorpusPlan::makeFolders()
{
    SeededRandom random(m_shape.seed, streamOfFolders);
    m_folders.emplace_back();
    std::vector<std::uint64_t> depths{0};
    const std::int64_t count = m_shape.files / filesInAFolder;
    for (std::int64_t i = 0; i < count; ++i) {
        std::uint64_t parent = random.below(m_folders.size());
        if (depths[parent] == deepestFolder) {
            parent = 0;
        }
        std::string path = m_folders[parent];
        path.append(path.empty() ? "" : "/").append("folder ").append(std::to_string(i));
        m_folders.push_back(std::move(path));
        depths.push_back(depths[parent] + 1);
    }
}

std::vector<CorpusPlan::Family> CorpusPlan::families() const
{
    SeededRandom random(m_shape.seed, streamOfFamilies);
    const auto files = static_cast<std::size_t>(m_shape.files);
    // The rest are links: two in a hundred.
    const std::size_t own = files - std::min(files / 50, files - std::min<std::size_t>(files, 1));
    std::vector<Family> all;
    std::size_t made = 0;
    const auto add = [&](Family::Kind kind, std::size_t members, double weight,
                         std::int64_t bytes) {
        // The last file is kept for one of a size of its own.
        members = std::min(members, own - made - std::min<std::size_t>(own - made, 1));
        if (members > 0) {
            all.push_back({kind, members, weight, bytes});
            made += members;
        }
    };
    const std::size_t groups = files * 2 / 25;
    for (std::size_t i = 0; i < groups; ++i) {
        const std::size_t copies = random.oneIn(3) ? 3 + random.below(4) : 2;
        add(Family::Kind::copies, copies, someWeight(random), 0);
    }
    for (std::size_t i = 0; i < files / 60; ++i) {
        add(Family::Kind::nearCopies, 2, someWeight(random), 0);
    }
    for (std::size_t i = 0; i < files / 50; ++i) {
        add(Family::Kind::sameSize, 2 + random.below(15), someWeight(random), 0);
    }
    for (std::size_t i = 0; i < files / 20; ++i) {
        add(Family::Kind::small, 1, 0, static_cast<std::int64_t>(random.below(smallBytes)));
    }
    for (; made < own; ++made) {
        all.push_back({Family::Kind::sameSize, 1, someWeight(random), 0});
    }
    return all;
}

void CorpusPlan::addFamily(const Family& family, std::int64_t bytes)
{
    const std::uint64_t content = m_nextContent++;
    for (std::size_t i = 0; i < family.members; ++i) {
        Entry entry;
        entry.folder = someFolder(m_entries.size());
        entry.bytes = bytes;
        const bool isAlike =
            family.kind == Family::Kind::copies || family.kind == Family::Kind::nearCopies;
        entry.content = isAlike || i == 0 ? content : m_nextContent++;
        if (family.kind == Family::Kind::nearCopies && i > 0) {
            // In turn the first byte, the one in the middle, and the last.
            entry.changedByte = (bytes - 1) * static_cast<std::int64_t>(content % 3) / 2;
        }
        m_entries.push_back(entry);
    }
}

void CorpusPlan::addLinks(std::size_t count, Kind kind)
{
    SeededRandom random(m_shape.seed, streamOfPlaces + static_cast<std::uint64_t>(kind));
    const auto isFile = [&](std::size_t i) { return m_entries[i].kind == Kind::file; };
    for (std::size_t i = 0; i < count && !m_entries.empty(); ++i) {
        Entry entry;
        entry.kind = kind;
        do {
            entry.target = random.below(m_entries.size());
        } while (!isFile(entry.target));
        entry.folder = someFolder(m_entries.size());
        entry.bytes = m_entries[entry.target].bytes;
        m_entries.push_back(entry);
    }
}

std::size_t CorpusPlan::someFolder(std::uint64_t number) const
{
    return SeededRandom(m_shape.seed + streamOfPlaces, number).below(m_folders.size());
}

} // namespace quorvane
