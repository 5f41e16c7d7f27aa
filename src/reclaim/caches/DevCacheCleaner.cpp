// SPDX-License-Identifier: MIT
#include "DevCacheCleaner.h"

#include "ByteFormatter.h"
#include "CheckedMath.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace quorvane::DevCacheCleaner {
namespace {

struct CategoryRow
{
    std::string_view rawValue;
    std::string_view displayName;
    std::string_view systemImage;
};

constexpr std::array<CategoryRow, 4> categories{{
    {"xcode", "Xcode", "macwindow.badge.plus"},
    {"packageManagers", "Package managers", "shippingbox"},
    {"languageCaches", "Language caches", "chevron.left.forwardslash.chevron.right"},
    {"buildDirs", "Build folders", "wrench.and.screwdriver"},
}};

constexpr std::array<Location, 20> locations{{
    {"Xcode DerivedData", "Library/Developer/Xcode/DerivedData", Category::xcode},
    {"Xcode Archives", "Library/Developer/Xcode/Archives", Category::xcode},
    {"iOS DeviceSupport", "Library/Developer/Xcode/iOS DeviceSupport", Category::xcode},
    {"CoreSimulator Devices", "Library/Developer/CoreSimulator/Devices", Category::xcode},
    {"CoreSimulator Caches", "Library/Developer/CoreSimulator/Caches", Category::xcode},
    {"SwiftPM Cache", "Library/Caches/org.swift.swiftpm", Category::packageManagers},
    {"CocoaPods Cache", "Library/Caches/CocoaPods", Category::packageManagers},
    {"Carthage Cache", "Library/Caches/org.carthage.Carthage", Category::packageManagers},
    {"Gradle Caches", ".gradle/caches", Category::packageManagers},
    {"Maven Repository", ".m2/repository", Category::packageManagers},
    {"npm Cache", ".npm/_cacache", Category::packageManagers},
    {"Yarn Cache", ".yarn", Category::packageManagers},
    {"pnpm Store", "Library/Caches/pnpm", Category::packageManagers},
    {"NuGet Packages", ".nuget/packages", Category::packageManagers},
    {"pip Cache", "Library/Caches/pip", Category::languageCaches},
    {"go Build Cache", "Library/Caches/go-build", Category::languageCaches},
    {"go Module Cache", "go/pkg/mod", Category::languageCaches},
    {"Cargo Registry", ".cargo/registry", Category::languageCaches},
    {"Cargo Git Cache", ".cargo/git", Category::languageCaches},
    {"Ruby Gems Cache", "Library/Caches/com.apple.RubyGems", Category::languageCaches},
}};

/// What a person has to know of a fixed row before it goes.
struct LocationCaution
{
    std::string_view subpath;
    std::string_view caution;
};

constexpr LocationCaution locationCautions[] = {
    {"Library/Developer/Xcode/Archives", "not made again"},
    {"Library/Developer/CoreSimulator/Devices", "holds what you put into them"},
    {".yarn", "may hold Yarn itself"},
};

/// The entry with a separator is compared with single names and so matches none; it stays.
constexpr std::array<std::string_view, 8> buildNames{"node_modules",  ".build",      "DerivedData",
                                                     "Pods",          "__pycache__", ".venv",
                                                     "vendor/bundle", ".swiftpm"};
constexpr std::array<std::string_view, 3> neverEntered{".git", ".Trash", "Library"};

constexpr FolderMeter::Rules wholeFolder{false, true, false};
constexpr FolderMeter::Rules wholeFolderOfVolume{false, true, true};

constexpr std::size_t rowsBetweenReports = 5;
constexpr const char* sumPlace = "DevCacheCleaner::totalBytes";

const CategoryRow& rowOf(Category category)
{
    return categories[static_cast<std::size_t>(category)];
}

void take(CacheItem& item, const FolderSums& sums)
{
    item.bytes = sums.bytes;
    item.itemCount = sums.itemCount;
    item.lastModified = sums.lastModified;
}

/// What the place knows of a folder beyond its name.
void take(CacheItem& item, const HomePlace& place)
{
    item.upkeep = place.upkeep;
    item.detail = place.detail;
    item.command = place.command;
}

CacheItem rowOf(const Location& location, const FilePath& home)
{
    CacheItem row;
    row.name = location.name;
    row.path = home.appending(location.subpath);
    row.category = location.category;
    for (const LocationCaution& each : locationCautions) {
        if (each.subpath == location.subpath) {
            row.evidence.caution = each.caution;
        }
    }
    return row;
}

/// The fixed rows, told what the Linux places know of them, then the rows of those places.
std::vector<CacheItem> allRows(const HomeFolders& folders, FileSystemCalls& calls)
{
    std::vector<CacheItem> rows;
    std::unordered_map<std::string, std::size_t> byPath;
    for (const Location& location : locations) {
        rows.push_back(rowOf(location, folders.home));
        byPath.emplace(rows.back().id(), rows.size() - 1);
    }
    for (FoundPlace& found : resolvedPlaces(folders, calls)) {
        if (!found.place->category) {
            continue;
        }
        const auto [known, isNew] = byPath.emplace(found.path.bytes(), rows.size());
        if (isNew) {
            CacheItem row;
            row.name = std::move(found.name);
            row.path = std::move(found.path);
            row.category = *found.place->category;
            rows.push_back(std::move(row));
        }
        take(rows[known->second], *found.place);
    }
    return rows;
}

void sortLargestFirst(std::vector<CacheItem>& items)
{
    std::stable_sort(items.begin(), items.end(),
                     [](const CacheItem& a, const CacheItem& b) { return a.bytes > b.bytes; });
}

void judge(CacheItem& item, const FilePath& root, FileSystemCalls& calls,
           FileContentCalls& contents)
{
    item.root = root;
    const std::string_view caution = item.evidence.caution;
    item.evidence = evidenceFor(item.path, calls, contents);
    if (!caution.empty()) {
        item.evidence.caution = caution;
    }
    item.evidence.lastChanged = item.lastModified;
    item.seen = statusOf(item.path, calls);
}

} // namespace

std::string_view rawValue(Category category)
{
    return rowOf(category).rawValue;
}

QString displayName(Category category)
{
    return QString::fromUtf8(rowOf(category).displayName.data(),
                             static_cast<qsizetype>(rowOf(category).displayName.size()));
}

std::string_view systemImage(Category category)
{
    return rowOf(category).systemImage;
}

std::span<const Location> curatedLocations()
{
    return locations;
}

std::span<const std::string_view> buildDirectoryNames()
{
    return buildNames;
}

QString CacheItem::formattedBytes() const
{
    return ByteFormatter::string(bytes);
}

QString CacheItem::formattedItems() const
{
    return QString::number(itemCount) +
           (itemCount == 1 ? QStringLiteral(" item") : QStringLiteral(" items"));
}

std::optional<Metrics> metrics(const FilePath& path)
{
    const auto sums = FolderMeter(wholeFolder).measure({&path, 1}).front();
    return sums ? std::optional(Metrics{sums->bytes, sums->itemCount, sums->lastModified})
                : std::nullopt;
}

std::optional<CacheItem> item(const Location& location, const FilePath& home)
{
    CacheItem row = rowOf(location, home);
    const auto sums = FolderMeter(wholeFolder).measure({&row.path, 1}).front();
    if (!sums) {
        return std::nullopt;
    }
    take(row, *sums);
    return row;
}

std::vector<CacheItem> scanCurated(const HomeFolders& folders, const Progress& progress,
                                   const IsCancelled& isCancelled)
{
    return scanCurated(folders, progress, isCancelled, {}, FileSystemCalls::system(),
                       FileContentCalls::system());
}

std::vector<CacheItem> scanCurated(const HomeFolders& folders, const Progress& progress,
                                   const IsCancelled& isCancelled,
                                   const std::function<void(std::size_t)>& onMeasured,
                                   FileSystemCalls& calls, FileContentCalls& contents)
{
    std::vector<CacheItem> rows = allRows(folders, calls);
    std::vector<FilePath> paths;
    paths.reserve(rows.size());
    std::transform(rows.begin(), rows.end(), std::back_inserter(paths),
                   [](const CacheItem& row) { return row.path; });
    FolderMeter::Hooks hooks;
    hooks.isCancelled = isCancelled;
    hooks.onMeasured = [&, total = static_cast<double>(rows.size())](std::size_t done) {
        if (progress && (done - 1) % rowsBetweenReports == 0) {
            progress(static_cast<double>(done - 1) / total);
        }
        if (onMeasured) {
            onMeasured(done);
        }
    };
    const auto sums = FolderMeter(wholeFolder, std::move(hooks), calls).measure(paths);
    if (isCancelled && isCancelled()) {
        return {};
    }
    std::vector<CacheItem> items;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (sums[i]) {
            take(rows[i], *sums[i]);
            judge(rows[i], rows[i].path.parent(), calls, contents);
            items.push_back(std::move(rows[i]));
        }
    }
    if (progress) {
        progress(1);
    }
    sortLargestFirst(items);
    return items;
}

std::vector<CacheItem> findBuildDirectories(const HomeFolders& folders,
                                            std::span<const std::string_view> names,
                                            const Progress& progress,
                                            const IsCancelled& isCancelled,
                                            const std::function<void(std::int64_t)>& onFolders)
{
    return findBuildDirectories(folders, names, progress, isCancelled, onFolders,
                                FileSystemCalls::system(), FileContentCalls::system());
}

std::vector<CacheItem> findBuildDirectories(const HomeFolders& folders,
                                            std::span<const std::string_view> names,
                                            const Progress& progress,
                                            const IsCancelled& isCancelled,
                                            const std::function<void(std::int64_t)>& onFolders,
                                            FileSystemCalls& calls, FileContentCalls& contents)
{
    const FolderMeter meter(wholeFolderOfVolume, {isCancelled, {}, onFolders}, calls);
    std::vector<FolderMeter::Found> found = meter.search(folders.home, {names, neverEntered});
    const std::vector<FoundPlace> ownTool = ownToolPlaces(folders, calls);
    const std::vector<FilePath> irreplaceable = irreplaceablePaths(folders, calls);
    std::vector<CacheItem> items;
    for (FolderMeter::Found& each : found) {
        if (touches(each.path, irreplaceable)) {
            continue;
        }
        CacheItem item;
        item.name = each.path.lastComponent();
        item.path = std::move(each.path);
        take(item, each.sums);
        if (const FoundPlace* const place = placeTouching(item.path, ownTool)) {
            take(item, *place->place);
        }
        judge(item, folders.home, calls, contents);
        items.push_back(std::move(item));
    }
    if (isCancelled && isCancelled()) {
        return items;
    }
    if (progress) {
        progress(1);
    }
    std::sort(items.begin(), items.end(),
              [](const CacheItem& a, const CacheItem& b) { return a.path < b.path; });
    sortLargestFirst(items);
    return items;
}

std::vector<CacheItem> merged(const std::vector<CacheItem>& items,
                              const std::vector<CacheItem>& incoming)
{
    if (items.empty()) {
        return incoming;
    }
    std::vector<CacheItem> all = items;
    std::unordered_map<std::string_view, std::size_t> byPath;
    for (std::size_t i = 0; i < items.size(); ++i) {
        byPath.emplace(items[i].id(), i);
    }
    for (const CacheItem& item : incoming) {
        const auto [known, isNew] = byPath.emplace(item.id(), all.size());
        if (isNew) {
            all.push_back(item);
        } else {
            all[known->second] = item;
        }
    }
    sortLargestFirst(all);
    return all;
}

std::int64_t totalBytes(std::span<const CacheItem> items)
{
    std::unordered_set<std::string_view> paths;
    for (const CacheItem& item : items) {
        paths.insert(item.id());
    }
    std::int64_t total = 0;
    for (const CacheItem& item : items) {
        FilePath above = item.path.parent();
        while (above.bytes().size() > 1 && !paths.contains(above.bytes())) {
            above = above.parent();
        }
        if (above.bytes().size() <= 1) {
            total = checkedAdd(total, item.bytes, sumPlace);
        }
    }
    return total;
}

} // namespace quorvane::DevCacheCleaner
