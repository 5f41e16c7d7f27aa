// SPDX-License-Identifier: MIT
#include "AppUninstaller.h"

#include "CheckedMath.h"
#include "DiskReader.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"
#include "FolderMeter.h"
#include "InstalledApps.h"
#include "Leftovers.h"

#include <QLocale>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <thread>
#include <utility>

namespace quorvane::AppUninstaller {
namespace {

constexpr std::chrono::seconds listTimeout{20};
constexpr const char* sumPlace = "AppUninstaller";

using IsCancelled = std::function<bool()>;

/// The applications and, in the same places, what else is known of them.
struct Found
{
    std::vector<UninstallableApp> apps;
    std::vector<Leftovers::Names> names;
    std::vector<std::vector<FilePath>> programs;

    void add(FoundApp found)
    {
        apps.push_back(std::move(found.app));
        names.push_back(std::move(found.names));
        programs.push_back(std::move(found.programs));
    }
    void add(std::vector<FoundApp> all)
    {
        std::for_each(all.begin(), all.end(), [this](FoundApp& each) { add(std::move(each)); });
    }
};

/// What has to be measured on the disk, each for the application of that index.
struct ToMeasure
{
    std::vector<FilePath> paths;
    std::vector<std::size_t> apps;

    void add(const FilePath& path, std::size_t app)
    {
        paths.push_back(path);
        apps.push_back(app);
    }
    void measureInto(Found& found, const IsCancelled& isCancelled, FileSystemCalls& calls) const
    {
        const std::vector<std::int64_t> bytes = directoryBytes(paths, isCancelled, calls);
        for (std::size_t i = 0; i < paths.size(); ++i) {
            std::int64_t& sum = found.apps[apps[i]].bundleBytes;
            sum = checkedAdd(sum, bytes[i], sumPlace);
        }
    }
};

void addBundles(Found& found, ToMeasure& toMeasure, std::span<const FilePath> folders,
                const DiskReader& reader)
{
    for (InstalledApps::Bundle& bundle : InstalledApps::bundles(folders, reader)) {
        const std::size_t app = found.apps.size();
        toMeasure.add(bundle.found.app.bundleURL, app);
        for (const FilePath& copy : bundle.earlierCopies) {
            toMeasure.add(copy, app);
        }
        found.add(std::move(bundle.found));
    }
}

void lookAtWhatGoes(std::vector<UninstallableApp>& apps, FileSystemCalls& calls)
{
    for (UninstallableApp& app : apps) {
        if (app.goesToTrash()) {
            app.seen = statusOf(app.bundleURL, calls);
        }
    }
}

void split(std::string_view text, char separator, std::vector<std::string>& parts)
{
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) {
            parts.emplace_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::string_view environment(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

std::string listingOf(Programs& programs, std::vector<std::string> command,
                      const IsCancelled& isCancelled)
{
    std::optional<Programs::Output> output = programs.run(command, listTimeout, isCancelled);
    return output && output->exitCode == 0 ? std::move(output->text) : std::string();
}

/// Whether a package that is none of the application's own has that name, or a program of it.
bool isClaimedByPackage(const InstalledApps::PackageLists& lists, const UninstallableApp& app,
                        const std::string& name)
{
    const std::string_view own =
        app.kind == AppKind::package
            ? std::string_view(app.systemName).substr(0, app.systemName.find(':'))
            : std::string_view();
    const auto owner = lists.programs.find(name);
    return (name != own && lists.names.contains(name)) ||
           (owner != lists.programs.end() && owner->second != own);
}

/// Whether the control group is that of a systemd scope for the application, whose names escape a
/// "-" as "\x2d".
bool isScopeOf(std::string_view controlGroup, std::string_view prefix, std::string_view name,
               char end)
{
    std::string escaped;
    for (const char c : name) {
        escaped += c == '-' ? std::string("\\x2d") : std::string(1, c);
    }
    for (const std::string& each : {std::string(name), escaped}) {
        const std::string scope = '/' + std::string(prefix) + each + end;
        if (controlGroup.find(scope) != std::string_view::npos) {
            return true;
        }
    }
    return false;
}

} // namespace

std::vector<FilePath> defaultLocations(const FilePath& home, FileSystemCalls& calls)
{
    std::vector<FilePath> locations{FilePath("/Applications")};
    const FilePath own = home.appending("Applications");
    if (DiskReader(calls, FileContentCalls::system()).leadsToDirectory(own)) {
        locations.push_back(own);
    }
    return locations;
}

std::vector<UninstallableApp> scanApplications(std::span<const FilePath> sourceDirectories,
                                               const HomeFolders& folders,
                                               const IsCancelled& isCancelled)
{
    return scanApplications(sourceDirectories, folders, isCancelled, FileSystemCalls::system(),
                            FileContentCalls::system());
}

std::vector<UninstallableApp> scanApplications(std::span<const FilePath> sourceDirectories,
                                               const HomeFolders& folders,
                                               const IsCancelled& isCancelled,
                                               FileSystemCalls& calls, FileContentCalls& contents)
{
    Found found;
    ToMeasure toMeasure;
    addBundles(found, toMeasure, sourceDirectories, DiskReader(calls, contents));
    toMeasure.measureInto(found, isCancelled, calls);
    Leftovers::attach(found.apps, found.names, folders, {}, isCancelled, calls);
    if (isCancelled && isCancelled()) {
        return {};
    }
    lookAtWhatGoes(found.apps, calls);
    sort(found.apps);
    return std::move(found.apps);
}

Sources Sources::of(const HomeFolders& folders, FileSystemCalls& calls)
{
    Sources sources;
    sources.folders = folders;
    sources.bundleFolders = defaultLocations(folders.home, calls);
    for (const char* const each : {"Applications", "AppImages", ".local/bin", "Downloads"}) {
        sources.appImageFolders.push_back(folders.home.appending(each));
    }
    sources.entryFolders = {folders.data.appending("applications"),
                            folders.data.appending("flatpak/exports/share/applications")};
    std::vector<std::string> dataFolders;
    const bool isOwnHome = FilePath(std::string(environment("HOME"))) == folders.home;
    if (isOwnHome && folders.system.bytes() == "/") {
        split(environment("XDG_DATA_DIRS"), ':', dataFolders);
    }
    for (const std::string& each : dataFolders) {
        sources.entryFolders.push_back(FilePath(each).appending("applications"));
    }
    for (const char* const each :
         {"var/lib/flatpak/exports/share/applications", "usr/local/share/applications",
          "usr/share/applications", "var/lib/snapd/desktop/applications"}) {
        const FilePath folder = folders.system.appending(each);
        if (!folders.system.isEmpty() &&
            std::find(sources.entryFolders.begin(), sources.entryFolders.end(), folder) ==
                sources.entryFolders.end()) {
            sources.entryFolders.push_back(folder);
        }
    }
    sources.locale = QLocale::system().name().toStdString();
    split(environment("XDG_CURRENT_DESKTOP"), ':', sources.desktops);
    return sources;
}

std::vector<UninstallableApp> allApplications(const Sources& sources,
                                              const IsCancelled& isCancelled,
                                              FileSystemCalls& calls, FileContentCalls& contents,
                                              Programs& programs)
{
    const DiskReader reader(calls, contents);
    const FilePath& system = sources.folders.system;
    // Flatpak and snap take their time to start; the disk is read meanwhile.
    std::string flatpakListing;
    std::string snapListing;
    std::thread asking([&] {
        flatpakListing = listingOf(
            programs, {"flatpak", "list", "--app", "--columns=application,name,size,installation"},
            isCancelled);
        snapListing = listingOf(programs, {"snap", "list"}, isCancelled);
    });
    const std::vector<DesktopEntry> entries =
        desktopEntries(sources.entryFolders, sources.locale, reader);
    std::vector<DesktopEntry> visible;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(visible),
                 [&](const DesktopEntry& entry) { return entry.isVisible(sources.desktops); });
    Found found;
    ToMeasure toMeasure;
    addBundles(found, toMeasure, sources.bundleFolders, reader);
    found.add(InstalledApps::appImages(sources.appImageFolders, entries, reader));
    InstalledApps::PackageLists lists;
    if (!system.isEmpty()) {
        lists = InstalledApps::packageLists(system, visible, reader);
        for (FoundApp& folder : InstalledApps::optFolders(lists, system, visible, reader)) {
            toMeasure.add(folder.app.bundleURL, found.apps.size());
            found.add(std::move(folder));
        }
        found.add(InstalledApps::debianPackages(lists, system, visible, reader));
    }
    asking.join();
    found.add(InstalledApps::flatpaks(flatpakListing, sources.folders, entries));
    found.add(InstalledApps::snaps(snapListing, system, entries, reader));
    toMeasure.measureInto(found, isCancelled, calls);
    Leftovers::attach(
        found.apps, found.names, sources.folders,
        [&](const UninstallableApp& app, std::string_view name) {
            return app.kind != AppKind::bundle && isClaimedByPackage(lists, app, std::string(name));
        },
        isCancelled, calls);
    if (isCancelled && isCancelled()) {
        return {};
    }
    const std::vector<Programs::Running> running = programs.running();
    for (std::size_t i = 0; i < found.apps.size(); ++i) {
        found.apps[i].isRunning = isRunning(found.apps[i], found.programs[i], running);
    }
    lookAtWhatGoes(found.apps, calls);
    sort(found.apps);
    return std::move(found.apps);
}

void sort(std::vector<UninstallableApp>& apps)
{
    std::stable_sort(apps.begin(), apps.end(),
                     [](const UninstallableApp& a, const UninstallableApp& b) {
                         return a.totalBytes() != b.totalBytes() ? a.totalBytes() > b.totalBytes()
                                                                 : a.name < b.name;
                     });
}

bool isRunning(const UninstallableApp& app, std::span<const FilePath> programs,
               std::span<const Programs::Running> running)
{
    return std::any_of(running.begin(), running.end(), [&](const Programs::Running& each) {
        const FilePath executable(each.executable);
        switch (app.kind) {
        case AppKind::bundle:
        case AppKind::appImage:
        case AppKind::folder:
            return !executable.isEmpty() && app.bundleURL.holds(executable);
        case AppKind::flatpak:
            return isScopeOf(each.controlGroup, "app-flatpak-", app.systemName, '-');
        case AppKind::snap:
            return isScopeOf(each.controlGroup, "snap.", app.systemName, '.');
        case AppKind::package:
            return std::find(programs.begin(), programs.end(), executable) != programs.end();
        }
        return false;
    });
}

} // namespace quorvane::AppUninstaller
