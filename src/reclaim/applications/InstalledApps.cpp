// SPDX-License-Identifier: MIT
#include "InstalledApps.h"

#include "BundleInfo.h"
#include "CheckedMath.h"
#include "DiskReader.h"
#include "Workers.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <utility>

namespace quorvane::InstalledApps {
namespace {

constexpr std::string_view bundleExtension = ".app";
constexpr std::string_view appImageExtension = ".AppImage";
/// "AI" and the type at offset 8: the AppImage specification's magic.
constexpr std::size_t magicOffset = 8;
constexpr std::string_view magic("AI\x02", 3);
constexpr std::string_view opt = "/opt/";

std::string_view takeLine(std::string_view& text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

/// The line's columns, parted by runs of blanks, or by single tabs where it has any.
std::vector<std::string_view> columnsOf(std::string_view line)
{
    std::vector<std::string_view> columns;
    const bool hasTabs = line.find('\t') != std::string_view::npos;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(hasTabs ? '\t' : ' '), line.size());
        if (hasTabs || end > 0) {
            columns.push_back(line.substr(0, end));
        }
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return columns;
}

bool endsWithIgnoringCase(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() &&
           std::equal(end.begin(), end.end(), text.end() - static_cast<std::ptrdiff_t>(end.size()),
                      [](char a, char b) {
                          return std::tolower(static_cast<unsigned char>(a)) ==
                                 std::tolower(static_cast<unsigned char>(b));
                      });
}

bool startsWithDigit(std::string_view text)
{
    return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

void takeEntry(FoundApp& found, const DesktopEntry& entry)
{
    found.app.name = entry.name;
    found.app.icon = entry.icon;
    found.app.desktopEntry = entry.path;
}

std::string withSpaces(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '_' || c == '-'; }, ' ');
    return text;
}

std::optional<FoundApp> appImage(const FilePath& path, std::span<const DesktopEntry> entries,
                                 const DiskReader& reader)
{
    const std::optional<EntryStatus> status = reader.status(path);
    if (!status || status->kind != EntryStatus::Kind::regularFile || !status->isExecutable ||
        !isAppImage(reader.head(path, magicOffset + magic.size()))) {
        return std::nullopt;
    }
    const std::string_view fileName = path.lastComponent();
    const std::string product = productName(fileName);
    FoundApp found;
    found.app.id = path.bytes();
    found.app.name = withSpaces(product);
    found.app.bundleURL = path;
    found.app.bundleBytes = status->allocatedBytes;
    found.app.kind = AppKind::appImage;
    found.names.programs = {std::string(fileName), product};
    if (endsWithIgnoringCase(fileName, appImageExtension)) {
        found.names.programs.emplace_back(
            fileName.substr(0, fileName.size() - appImageExtension.size()));
    }
    for (const DesktopEntry& entry : entries) {
        if (entry.isApplication && entry.program == path.bytes()) {
            if (found.app.desktopEntry.isEmpty() && !entry.name.empty()) {
                takeEntry(found, entry);
            }
            found.names.programs.push_back(entry.id);
            found.names.desktopIds.push_back(entry.id);
        }
    }
    return found;
}

/// The entry that stands for several of one application: the one called like it, else the first.
const DesktopEntry& chiefEntry(std::span<const DesktopEntry> entries,
                               std::span<const std::size_t> own, std::string_view name)
{
    const auto chief =
        std::find_if(own.begin(), own.end(), [&](std::size_t i) { return entries[i].id == name; });
    return entries[chief == own.end() ? own.front() : *chief];
}

/// The desktop id of a file by its path below the folder of applications.
std::string entryId(std::string_view relativePath)
{
    constexpr std::string_view extension = ".desktop";
    if (!relativePath.ends_with(extension)) {
        return {};
    }
    relativePath.remove_suffix(extension.size());
    std::string id(relativePath);
    std::replace(id.begin(), id.end(), '/', '-');
    return id;
}

/// Calls work(i) for each i below count, several at once.
template<class Work>
void forEachInParallel(std::size_t count, const Work& work)
{
    constexpr unsigned minWorkers = 2;
    constexpr unsigned maxWorkers = 8;
    std::atomic<std::size_t> next = 0;
    runOnWorkers(std::clamp<std::size_t>(processorCount(), minWorkers, maxWorkers), [&] {
        for (std::size_t i = next++; i < count; i = next++) {
            work(i);
        }
    });
}

std::string_view withoutArchitecture(std::string_view package)
{
    return package.substr(0, package.find(':'));
}

/// Calls visit(path) for each line of a list that begins with the prefix.
template<class Visit>
void eachLineWith(std::string_view list, std::string_view prefix, const Visit& visit)
{
    for (std::size_t at = list.find(prefix); at != std::string_view::npos;
         at = list.find(prefix, at + prefix.size())) {
        if (at == 0 || list[at - 1] == '\n') {
            visit(list.substr(at, list.find('\n', at) - at));
        }
    }
}

} // namespace

bool isAppImage(std::string_view head)
{
    return head.size() >= magicOffset + magic.size() &&
           head.substr(magicOffset, magic.size()) == magic;
}

std::string productName(std::string_view fileName)
{
    constexpr std::array<std::string_view, 9> architectures{
        "x86_64", "amd64", "x64", "i386", "i686", "aarch64", "arm64", "armhf", "linux"};
    std::string_view name = fileName;
    if (endsWithIgnoringCase(name, appImageExtension)) {
        name.remove_suffix(appImageExtension.size());
    }
    for (;;) {
        const auto architecture =
            std::find_if(architectures.begin(), architectures.end(), [&](std::string_view each) {
                return name.size() > each.size() + 1 && endsWithIgnoringCase(name, each) &&
                       std::string_view("-_.").find(name[name.size() - each.size() - 1]) !=
                           std::string_view::npos;
            });
        if (architecture != architectures.end()) {
            name.remove_suffix(architecture->size() + 1);
            continue;
        }
        const std::size_t dash = name.find_last_of("-_");
        if (dash == std::string_view::npos || dash == 0) {
            break;
        }
        std::string_view last = name.substr(dash + 1);
        if (last.starts_with('v')) {
            last.remove_prefix(1);
        }
        if (!startsWithDigit(last)) {
            break;
        }
        name = name.substr(0, dash);
    }
    return std::string(name);
}

std::vector<Bundle> bundles(std::span<const FilePath> folders, const DiskReader& reader)
{
    std::vector<Bundle> bundles;
    std::unordered_map<std::string, std::size_t> byId;
    for (const FilePath& folder : folders) {
        for (const std::string& fileName : reader.names(folder)) {
            const FilePath path = folder.appending(fileName);
            if (fileName.starts_with('.') || !fileName.ends_with(bundleExtension) ||
                !reader.leadsToDirectory(path)) {
                continue;
            }
            const FilePath contents = path.appending("Contents");
            const BundleInfo info = readBundleInfo(
                reader.text(contents.appending("Info.plist"), maxPropertyListBytes).value_or(""));
            Bundle bundle;
            UninstallableApp& app = bundle.found.app;
            app.name = fileName.substr(0, fileName.size() - bundleExtension.size());
            app.id = info.identifier && !info.identifier->empty() ? *info.identifier : app.name;
            app.bundleURL = path;
            if (!info.iconFile.empty() && Leftovers::isPlainName(info.iconFile)) {
                app.icon = contents.appending("Resources").appending(info.iconFile).bytes();
            }
            bundle.found.names.identifier = info.identifier.value_or(app.name);
            bundle.found.names.displayName = app.name;
            const auto [known, isNew] = byId.emplace(app.id, bundles.size());
            if (isNew) {
                bundles.push_back(std::move(bundle));
                continue;
            }
            Bundle& earlier = bundles[known->second];
            bundle.earlierCopies = std::move(earlier.earlierCopies);
            bundle.earlierCopies.push_back(earlier.found.app.bundleURL);
            earlier = std::move(bundle);
        }
    }
    return bundles;
}

std::vector<FoundApp> appImages(std::span<const FilePath> folders,
                                std::span<const DesktopEntry> entries, const DiskReader& reader)
{
    std::vector<FoundApp> found;
    for (const FilePath& folder : folders) {
        for (const std::string& name : reader.names(folder)) {
            if (std::optional<FoundApp> app = appImage(folder.appending(name), entries, reader)) {
                found.push_back(std::move(*app));
            }
        }
    }
    return found;
}

PackageLists packageLists(const FilePath& system, std::span<const DesktopEntry> entries,
                          const DiskReader& reader)
{
    constexpr std::string_view extension = ".list";
    constexpr std::string_view programFolder = "/usr/bin/";
    constexpr std::string_view entryFolder = "/usr/share/applications/";
    constexpr std::size_t maxListBytes = std::size_t{64} << 20;
    std::unordered_map<std::string_view, std::size_t> entryById;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        entryById.emplace(entries[i].id, i);
    }
    PackageLists lists;
    const FilePath folder = system.appending("var/lib/dpkg/info");
    for (const std::string& fileName : reader.names(folder)) {
        if (!fileName.ends_with(extension)) {
            continue;
        }
        PackageLists::Package package;
        package.name = fileName.substr(0, fileName.size() - extension.size());
        const std::string name(withoutArchitecture(package.name));
        lists.names.insert(name);
        package.files = reader.text(folder.appending(fileName), maxListBytes).value_or("");
        eachLineWith(package.files, programFolder, [&](std::string_view path) {
            lists.programs.emplace(path.substr(programFolder.size()), name);
        });
        eachLineWith(package.files, opt, [&](std::string_view path) {
            path.remove_prefix(opt.size());
            lists.optFolders.emplace(path.substr(0, path.find('/')));
        });
        eachLineWith(package.files, entryFolder, [&](std::string_view path) {
            const auto entry = entryById.find(entryId(path.substr(entryFolder.size())));
            if (entry != entryById.end()) {
                package.entries.push_back(entry->second);
            }
        });
        if (!package.entries.empty()) {
            lists.packages.push_back(std::move(package));
        }
    }
    return lists;
}

std::int64_t bytesOfListedFiles(std::string_view files, const FilePath& system,
                                const DiskReader& reader)
{
    std::int64_t bytes = 0;
    std::string path;
    while (!files.empty()) {
        const std::string_view line = takeLine(files);
        if (!line.starts_with('/')) {
            continue;
        }
        path.assign(system.bytes() == "/" ? std::string_view() : system.bytes()).append(line);
        EntryStatus status;
        if (reader.calls().status(FileSystemCalls::noDirectory(), path.c_str(), status) &&
            status.kind == EntryStatus::Kind::regularFile) {
            bytes = checkedAdd(bytes, status.allocatedBytes, "InstalledApps");
        }
    }
    return bytes;
}

std::vector<FoundApp> debianPackages(const PackageLists& lists, const FilePath& system,
                                     std::span<const DesktopEntry> entries,
                                     const DiskReader& reader)
{
    std::vector<FoundApp> apps;
    for (const PackageLists::Package& package : lists.packages) {
        const std::string name(withoutArchitecture(package.name));
        const DesktopEntry& chief = chiefEntry(entries, package.entries, name);
        FoundApp found;
        takeEntry(found, chief);
        found.app.id = "package:" + package.name;
        found.app.bundleURL = chief.path;
        found.app.kind = AppKind::package;
        found.app.systemName = package.name;
        found.names.programs.push_back(name);
        for (const std::size_t i : package.entries) {
            const DesktopEntry& entry = entries[i];
            found.names.programs.push_back(entry.id);
            found.names.desktopIds.push_back(entry.id);
            const std::string program(entry.programName());
            const auto owner = lists.programs.find(program);
            if (owner != lists.programs.end() && owner->second == name) {
                found.names.programs.push_back(program);
                const FilePath path = system.appending("usr/bin").appending(program);
                found.programs.push_back(reader.followingLinks(path));
            }
        }
        apps.push_back(std::move(found));
    }
    forEachInParallel(apps.size(), [&](std::size_t i) {
        apps[i].app.bundleBytes = bytesOfListedFiles(lists.packages[i].files, system, reader);
    });
    return apps;
}

std::vector<FoundApp> optFolders(const PackageLists& lists, const FilePath& system,
                                 std::span<const DesktopEntry> entries, const DiskReader& reader)
{
    const FilePath top = system.appending("opt");
    std::map<std::string, FoundApp> byFolder;
    for (const DesktopEntry& entry : entries) {
        const FilePath program = reader.followingLinks(FilePath(entry.program));
        if (!entry.isApplication || program == top || !top.holds(program)) {
            continue;
        }
        std::string_view below = program.bytes();
        below.remove_prefix(top.bytes().size() + 1);
        const std::string name(below.substr(0, below.find('/')));
        if (!Leftovers::isPlainName(name) || lists.optFolders.contains(name) ||
            !reader.isDirectory(top.appending(name))) {
            continue;
        }
        FoundApp& found = byFolder[name];
        if (found.app.id.empty()) {
            takeEntry(found, entry);
            found.app.bundleURL = top.appending(name);
            found.app.id = found.app.bundleURL.bytes();
            found.app.kind = AppKind::folder;
        }
        found.names.programs.push_back(entry.id);
        found.names.programs.emplace_back(entry.programName());
        found.names.desktopIds.push_back(entry.id);
    }
    std::vector<FoundApp> apps;
    for (auto& [name, found] : byFolder) {
        apps.push_back(std::move(found));
    }
    return apps;
}

std::int64_t bytesFromText(std::string_view text)
{
    constexpr std::pair<std::string_view, double> units[] = {
        {"bytes", 1}, {"byte", 1}, {"B", 1},     {"kB", 1e3}, {"KB", 1e3},
        {"MB", 1e6},  {"GB", 1e9}, {"TB", 1e12}, {"PB", 1e15}};
    constexpr std::string_view noBreakSpace = "\xC2\xA0";
    std::size_t digits = 0;
    double value = 0;
    double place = 0;
    for (; digits < text.size(); ++digits) {
        const char c = text[digits];
        if (c >= '0' && c <= '9') {
            value = place == 0 ? value * 10 + (c - '0') : value + place * (c - '0');
            place /= 10;
        } else if ((c == '.' || c == ',') && place == 0) {
            place = 0.1;
        } else {
            break;
        }
    }
    std::string_view unit = text.substr(digits);
    if (unit.starts_with(noBreakSpace)) {
        unit.remove_prefix(noBreakSpace.size());
    }
    unit.remove_prefix(std::min(unit.find_first_not_of(' '), unit.size()));
    for (const auto& [name, factor] : units) {
        constexpr double limit = 9e18;
        if (digits > 0 && unit == name && value * factor < limit) {
            return static_cast<std::int64_t>(value * factor);
        }
    }
    return 0;
}

std::vector<FoundApp> flatpaks(std::string_view listing, const HomeFolders& folders,
                               std::span<const DesktopEntry> entries)
{
    constexpr std::size_t columnCount = 4;
    std::vector<FoundApp> apps;
    while (!listing.empty()) {
        const std::vector<std::string_view> columns = columnsOf(takeLine(listing));
        if (columns.size() != columnCount || !Leftovers::isPlainName(columns[0]) ||
            columns[0].starts_with('-') || columns[0].find('.') == std::string_view::npos) {
            continue;
        }
        FoundApp found;
        UninstallableApp& app = found.app;
        app.systemName = columns[0];
        app.name = columns[1].empty() ? columns[0] : columns[1];
        app.bundleBytes = bytesFromText(columns[2]);
        app.installation = columns[3];
        app.kind = AppKind::flatpak;
        app.id = "flatpak:" + app.installation + ':' + app.systemName;
        app.bundleURL = app.installation == "user"
                            ? folders.data.appending("flatpak/app")
                            : folders.system.appending("var/lib/flatpak/app");
        app.bundleURL = app.bundleURL.appending(app.systemName);
        found.names.programs = {app.systemName};
        found.names.flatpak = app.systemName;
        for (const DesktopEntry& entry : entries) {
            if (entry.id == app.systemName && !entry.name.empty()) {
                takeEntry(found, entry);
            }
        }
        apps.push_back(std::move(found));
    }
    return apps;
}

std::vector<FoundApp> snaps(std::string_view listing, const FilePath& system,
                            std::span<const DesktopEntry> entries, const DiskReader& reader)
{
    constexpr std::size_t minColumns = 3;
    constexpr std::array<std::string_view, 5> notApplications{"base", "core", "snapd", "kernel",
                                                              "gadget"};
    std::vector<FoundApp> apps;
    for (bool isHeader = true; !listing.empty(); isHeader = false) {
        const std::vector<std::string_view> columns = columnsOf(takeLine(listing));
        if (isHeader || columns.size() < minColumns || !Leftovers::isPlainName(columns[0]) ||
            columns[0].starts_with('-') ||
            std::any_of(notApplications.begin(), notApplications.end(), [&](std::string_view note) {
                return columns.back().find(note) != std::string_view::npos;
            })) {
            continue;
        }
        FoundApp found;
        UninstallableApp& app = found.app;
        app.systemName = columns[0];
        app.name = app.systemName;
        app.kind = AppKind::snap;
        app.id = "snap:" + app.systemName;
        const FilePath image =
            system.appending("var/lib/snapd/snaps")
                .appending(app.systemName + '_' + std::string(columns[2]) + ".snap");
        app.bundleURL = image;
        const std::optional<EntryStatus> status = reader.status(image);
        app.bundleBytes = status ? status->allocatedBytes : 0;
        found.names.snap = app.systemName;
        found.names.programs = {app.systemName};
        for (const DesktopEntry& entry : entries) {
            const bool isOwn = entry.snap.empty() ? entry.id.starts_with(app.systemName + '_')
                                                  : entry.snap == app.systemName;
            if (isOwn && app.desktopEntry.isEmpty() && !entry.name.empty()) {
                takeEntry(found, entry);
            }
        }
        apps.push_back(std::move(found));
    }
    return apps;
}

} // namespace quorvane::InstalledApps
