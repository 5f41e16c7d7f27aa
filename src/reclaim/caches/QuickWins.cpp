// SPDX-License-Identifier: MIT
#include "QuickWins.h"

#include "ByteFormatter.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"
#include "ProtectedPlaces.h"
#include "Text.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace quorvane {
namespace QuickWins {
namespace {

constexpr std::string_view notMadeAgain = "not made again";

constexpr std::array<FolderTarget, 9> targets{{
    {"Library/Developer/Xcode/DerivedData",
     "Xcode Derived Data",
     "Intermediate build products. Xcode regenerates them on next build.",
     {}},
    {"Library/Developer/Xcode/Archives", "Xcode Archives",
     "Archived app releases and their dSYMs. Safe to delete after shipping or moving off-drive.",
     notMadeAgain},
    {"Library/Developer/CoreSimulator/Devices", "iOS Simulator devices",
     "Full OS images for the simulator, one per device. Simulators you no longer use can be huge.",
     "holds what you put into them"},
    {"Library/Developer/Xcode/iOS DeviceSupport",
     "iOS device support",
     "Symbols for old iOS devices you have plugged in. Regenerated per iOS version.",
     {}},
    {"Library/Developer/Xcode/watchOS DeviceSupport",
     "watchOS device support",
     "watchOS debug symbol sets from paired watches.",
     {}},
    {"Library/Developer/Xcode/tvOS DeviceSupport",
     "tvOS device support",
     "tvOS debug symbol sets from paired Apple TVs.",
     {}},
    {"Library/Application Support/MobileSync/Backup", "iOS device backups",
     "Local Finder backups of iOS devices. Each can be tens of gigabytes.", notMadeAgain},
    {"Library/Containers/com.apple.mail/Data/Library/Mail Downloads",
     "Mail attachments cache",
     "Attachments downloaded for Quick Look. Safe to clear.",
     {}},
    {"Library/WebKit", "WebKit website data", "Website storage and cache data, shared with Safari.",
     "may hold logins"},
}};

constexpr std::array<std::string_view, 16> targetNames{
    "node_modules", "DerivedData", "Pods",    ".git",   "__pycache__", ".venv",
    "venv",         "build",       "dist",    ".cache", "target",      ".swiftpm",
    "Carthage",     "bazel-",      ".gradle", "vendor"};
constexpr std::string_view bazelPrefix = "bazel-";

constexpr FolderMeter::Rules visibleContents{true, false, false};

bool isScanTarget(std::string_view name)
{
    return std::find(targetNames.begin(), targetNames.end(), name) != targetNames.end() ||
           name.starts_with(bazelPrefix);
}

bool isBefore(const QuickWin& a, const QuickWin& b)
{
    return a.bytes != b.bytes ? a.bytes > b.bytes : a.name < b.name;
}

/// Puts the node that comes later in the list of hits first, as the heap functions want it.
bool isLaterHit(const FileNode* a, const FileNode* b)
{
    if (a->scannedBytes() != b->scannedBytes()) {
        return a->scannedBytes() < b->scannedBytes();
    }
    return a->name() != b->name() ? a->name() > b->name() : a->id() > b->id();
}

std::vector<const FileNode*> matchingFolders(const FileNode& root)
{
    std::vector<const FileNode*> hits;
    std::vector<const FileNode*> pending;
    if (root.isDirectory()) {
        pending.push_back(&root);
    }
    while (!pending.empty()) {
        const FileNode& folder = *pending.back();
        pending.pop_back();
        if (isScanTarget(folder.name())) {
            hits.push_back(&folder);
        }
        // A folder's count tells how many folders it holds: once they are found, the rest of what
        // may be thousands of files is not looked at.
        std::int64_t foldersLeft = folder.directoryCount() - 1;
        for (const FileNode& child : folder.children()) {
            if (foldersLeft <= 0) {
                break;
            }
            if (child.isDirectory()) {
                pending.push_back(&child);
                foldersLeft -= child.directoryCount();
            }
        }
    }
    return hits;
}

QuickWin scanHit(const FileNode& node, FilePath path, std::string_view rootName)
{
    QuickWin win;
    win.id = "scan:" + std::to_string(node.id());
    win.name = node.name();
    win.url = std::move(path);
    win.bytes = node.scannedBytes();
    win.detail = "Found under " + std::string(rootName) + ". Common build/junk directory.";
    return win;
}

std::optional<std::int64_t> latestChange(const FileNode& folder)
{
    std::optional<std::int64_t> latest;
    std::vector<const FileNode*> pending{&folder};
    while (!pending.empty()) {
        const FileNode& node = *pending.back();
        pending.pop_back();
        for (const FileNode& child : node.children()) {
            if (child.isDirectory()) {
                pending.push_back(&child);
            } else {
                latest = std::max(latest, child.dateModified());
            }
        }
    }
    return latest;
}

/// Finds the folder of a path below the root by its names; null when there is none.
const FileNode* nodeAt(const FileNode& root, const FilePath& path)
{
    std::string_view rest = path.bytes();
    const FilePath rootPath = root.path();
    if (!rootPath.holds(path)) {
        return nullptr;
    }
    rest.remove_prefix(rootPath.bytes().size());
    const FileNode* node = &root;
    while (node != nullptr && !rest.empty()) {
        rest.remove_prefix(rest.front() == '/' ? 1 : 0);
        const std::string_view name = rest.substr(0, rest.find('/'));
        const std::span<FileNode> children = node->children();
        const auto child =
            std::find_if(children.begin(), children.end(),
                         [name](const FileNode& each) { return each.name() == name; });
        node = child == children.end() ? nullptr : &*child;
        rest.remove_prefix(name.size());
    }
    return node;
}

std::vector<QuickWin> rows(const HomeFolders& folders, FileSystemCalls& calls)
{
    std::vector<QuickWin> rows;
    for (const FolderTarget& target : targets) {
        QuickWin win;
        win.id = target.relativePath;
        win.name = target.name;
        win.url = folders.home.appending(target.relativePath);
        win.detail = target.detail;
        win.evidence.caution = target.caution;
        rows.push_back(std::move(win));
    }
    for (FoundPlace& found : resolvedPlaces(folders, calls)) {
        QuickWin win;
        win.id = std::move(found.id);
        win.name = std::move(found.name);
        win.url = std::move(found.path);
        win.detail = found.place->detail;
        win.upkeep = found.place->upkeep;
        win.command = found.place->command;
        rows.push_back(std::move(win));
    }
    return rows;
}

} // namespace

std::span<const FolderTarget> homeTargets()
{
    return targets;
}

std::span<const std::string_view> scanTargetNames()
{
    return targetNames;
}

std::vector<QuickWin> detect(const HomeFolders& folders, FolderMeter::Hooks hooks)
{
    return detect(folders, std::move(hooks), FileSystemCalls::system(), FileContentCalls::system());
}

std::vector<QuickWin> detect(const HomeFolders& folders, FolderMeter::Hooks hooks,
                             FileSystemCalls& calls, FileContentCalls& contents)
{
    const std::function<bool()> isCancelled = hooks.isCancelled;
    std::vector<QuickWin> all = rows(folders, calls);
    std::vector<FilePath> paths;
    paths.reserve(all.size());
    std::transform(all.begin(), all.end(), std::back_inserter(paths),
                   [](const QuickWin& win) { return win.url; });
    const auto sums = FolderMeter(visibleContents, std::move(hooks), calls).measure(paths);
    if (isCancelled && isCancelled()) {
        return {};
    }
    std::vector<QuickWin> wins;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (!sums[i] || sums[i]->allocatedBytes < 1) {
            continue;
        }
        QuickWin& win = all[i];
        const std::string_view caution = win.evidence.caution;
        win.bytes = sums[i]->allocatedBytes;
        win.evidence = evidenceFor(win.url, calls, contents);
        win.evidence.caution = caution;
        win.evidence.lastChanged = sums[i]->lastModified;
        win.seen = statusOf(win.url, calls);
        wins.push_back(std::move(win));
    }
    sort(wins);
    return wins;
}

std::vector<QuickWin> detect(const NodePointer& scanRoot, std::size_t limit,
                             std::span<const FilePath> irreplaceable)
{
    if (!scanRoot) {
        return {};
    }
    std::vector<const FileNode*> hits = matchingFolders(*scanRoot);
    std::make_heap(hits.begin(), hits.end(), isLaterHit);
    std::vector<QuickWin> wins;
    while (wins.size() < limit && !hits.empty()) {
        std::pop_heap(hits.begin(), hits.end(), isLaterHit);
        FilePath path = hits.back()->path();
        if (!touches(path, irreplaceable)) {
            wins.push_back(scanHit(*hits.back(), std::move(path), scanRoot->name()));
        }
        hits.pop_back();
    }
    return wins;
}

void addEvidence(std::vector<QuickWin>& scanHits, const FileNode& scanRoot,
                 std::span<const FoundPlace> ownToolPlaces, FileSystemCalls& calls,
                 FileContentCalls& contents)
{
    for (QuickWin& hit : scanHits) {
        if (const FoundPlace* const found = placeTouching(hit.url, ownToolPlaces)) {
            hit.upkeep = Upkeep::ownTool;
            hit.command = found->place->command;
        }
        hit.evidence = evidenceFor(hit.url, calls, contents);
        if (const FileNode* const node = nodeAt(scanRoot, hit.url)) {
            hit.evidence.lastChanged = latestChange(*node);
        }
    }
}

void sort(std::vector<QuickWin>& wins)
{
    std::stable_sort(wins.begin(), wins.end(), isBefore);
}

std::vector<QuickWin> filtered(const std::vector<QuickWin>& wins, const BloatKeys& hidden)
{
    std::vector<QuickWin> shown;
    std::copy_if(wins.begin(), wins.end(), std::back_inserter(shown), [&](const QuickWin& win) {
        const std::optional<std::string_view> key = win.bloatCategory();
        return !key || !hidden.contains(*key);
    });
    return shown;
}

} // namespace QuickWins

bool QuickWin::isOfSystem() const
{
    return isProtectedPlace(url);
}

QString QuickWin::formattedBytes() const
{
    return ByteFormatter::string(bytes);
}

std::optional<std::string_view> QuickWin::bloatCategory() const
{
    return BloatFilter::match(lowercased(name + ' ' + url.bytes()));
}

} // namespace quorvane
