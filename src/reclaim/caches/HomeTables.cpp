// SPDX-License-Identifier: MIT
#include "HomeTables.h"

#include "DirectoryWalk.h"
#include "DiskReader.h"
#include "FileSystemCalls.h"
#include "MountTable.h"
#include "SteamLibraries.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>

namespace quorvane {
namespace {

using Base = HomePlace::Base;

constexpr auto packages = CacheCategory::packageManagers;
constexpr auto languages = CacheCategory::languageCaches;
constexpr auto builds = CacheCategory::buildDirs;
constexpr auto remade = Upkeep::remade;
constexpr auto costly = Upkeep::costly;
constexpr auto ownTool = Upkeep::ownTool;
/// In place of a command.
constexpr std::string_view byItself;
constexpr std::nullopt_t desktop = std::nullopt;

constexpr HomePlace places[] = {
    // Node.js and its kin
    {Base::home, ".npm/_cacache", "npm Cache",
     "Downloaded packages. The next install fetches what it needs.", remade, packages, byItself},
    {Base::home, ".npm/_npx", "npx Cache",
     "Packages that npx has run. The next run fetches them again.", remade, packages, byItself},
    {Base::cache, "yarn", "Yarn Classic Cache",
     "Downloaded packages. The next install fetches what it needs.", remade, packages, byItself},
    {Base::home, ".yarn/berry/cache", "Yarn Berry Cache",
     "Downloaded packages. The next install fetches what it needs.", remade, packages, byItself},
    {Base::data, "pnpm/store", "pnpm Store",
     "Projects share its files by hard links, so moving it frees little. The command removes what "
     "no project uses.",
     ownTool, packages, "pnpm store prune"},
    {Base::mount, ".pnpm-store", "pnpm Store of a Volume",
     "Projects share its files by hard links, so moving it frees little. The command removes what "
     "no project uses.",
     ownTool, packages, "pnpm store prune"},
    {Base::home, ".bun/install/cache", "Bun Cache",
     "Downloaded packages. The next install fetches what it needs.", remade, packages, byItself},
    {Base::cache, "deno", "Deno Cache", "Downloaded modules. The next run fetches what it needs.",
     remade, packages, byItself},
    {Base::cache, "ms-playwright", "Playwright Browsers",
     "Browsers for tests. The next install downloads hundreds of megabytes again.", costly,
     packages, byItself},
    {Base::cache, "Cypress", "Cypress Cache",
     "Browsers for tests. The next install downloads hundreds of megabytes again.", costly,
     packages, byItself},
    {Base::cache, "puppeteer", "Puppeteer Browsers",
     "Browsers for tests. The next install downloads hundreds of megabytes again.", costly,
     packages, byItself},
    // Python
    {Base::cache, "pip", "pip Cache",
     "Downloaded and built wheels. The next install makes them again.", remade, languages,
     byItself},
    {Base::cache, "uv", "uv Cache",
     "Downloaded and built wheels; files that environments share stay on the disk. The next "
     "install makes them again.",
     remade, languages, byItself},
    {Base::cache, "pypoetry/cache", "Poetry Cache",
     "Package lists and downloads. The next poetry install fetches them again.", remade, languages,
     byItself},
    {Base::cache, "pypoetry/artifacts", "Poetry Artifacts",
     "Downloaded and built packages. The next poetry install makes them again.", remade, languages,
     byItself},
    {Base::home, "miniconda3/pkgs", "Conda Packages",
     "Environments share its files by hard links. The command removes what none uses.", ownTool,
     packages, "conda clean --all"},
    {Base::home, ".conda/pkgs", "Conda User Packages",
     "Environments share its files by hard links. The command removes what none uses.", ownTool,
     packages, "conda clean --all"},
    {Base::cache, "pre-commit", "pre-commit Environments",
     "Checkouts and environments of hooks. The next commit makes them again.", remade, languages,
     byItself},
    // Other languages
    {Base::cache, "composer", "Composer Cache",
     "Downloaded PHP packages. The next install fetches what it needs.", remade, packages,
     byItself},
    {Base::cache, "gem", "Ruby Gems Index", "Lists of gems. The next install downloads them again.",
     costly, languages, byItself},
    {Base::home, ".nuget/packages", "NuGet Packages",
     "Unpacked packages of every project. The next restore downloads them again.", costly, packages,
     byItself},
    {Base::home, ".cargo/registry", "Cargo Registry",
     "Downloaded crates and their sources. The next build or cargo fetch brings them back.", remade,
     languages, byItself},
    {Base::home, ".cargo/git", "Cargo Git Cache",
     "Clones of crates. The next build or cargo fetch brings them back.", remade, languages,
     byItself},
    {Base::home, ".rustup/toolchains", "Rust Toolchains",
     "Installed compilers. Each is a download: rustup toolchain install.", costly, languages,
     byItself},
    {Base::cache, "go-build", "go Build Cache",
     "Compiled packages. The next build makes them again.", remade, languages, byItself},
    {Base::home, "go/pkg/mod", "go Module Cache",
     "Its folders are read-only and would get stuck in the Trash. The command removes them; the "
     "next build downloads them again.",
     ownTool, languages, "go clean -modcache"},
    {Base::home, ".gradle/caches", "Gradle Caches",
     "Downloaded libraries and build results. The next build downloads and builds again.", costly,
     packages, byItself},
    {Base::home, ".gradle/wrapper/dists", "Gradle Distributions",
     "Copies of Gradle itself. The next build downloads the ones it names.", costly, packages,
     byItself},
    {Base::home, ".m2/repository", "Maven Repository",
     "Downloaded libraries. The next build downloads them again; what was installed locally is "
     "lost.",
     costly, packages, byItself},
    // Building
    {Base::cache, "ccache", "ccache", "Compiled objects. The next build fills it again.", remade,
     builds, byItself},
    {Base::cache, "sccache", "sccache", "Compiled objects. The next build fills it again.", remade,
     builds, byItself},
    {Base::cache, "bazel", "Bazel Output",
     "Its folders are read-only and would get stuck in the Trash. Run the command in each "
     "workspace.",
     ownTool, builds, "bazel clean --expunge"},
    {Base::cache, "JetBrains", "JetBrains Caches",
     "Indexes of projects, made again at the next start over some minutes. Local history is lost.",
     costly, languages, byItself},
    {Base::home, "Android/Sdk", "Android SDK",
     "Platforms and tools. Android Studio downloads gigabytes again.", costly, packages, byItself},
    // Models
    {Base::cache, "huggingface/hub", "Hugging Face Models",
     "Downloaded models and data sets. Each use downloads again what it needs.", costly, languages,
     byItself},
    {Base::home, ".ollama/models", "Ollama Models",
     "Downloaded language models. Each is gigabytes to download again.", costly, languages,
     byItself},
    {Base::cache, "whisper", "Whisper Models",
     "Downloaded speech models. The next use downloads again what it needs.", costly, languages,
     byItself},
    {Base::cache, "torch", "PyTorch Hub",
     "Downloaded models. The next use downloads again what it needs.", costly, languages, byItself},
    // Containers
    {Base::system, "var/lib/docker", "Docker Data",
     "Images, containers and volumes. The command removes what no container uses and leaves "
     "volumes alone.",
     ownTool, packages, "docker system prune"},
    {Base::data, "containers", "Podman Data",
     "Images, containers and volumes. The command removes what no container uses and leaves "
     "volumes alone.",
     ownTool, packages, "podman system prune"},
    // The desktop
    {Base::data, "flatpak/runtime", "Flatpak Runtimes",
     "What Flatpak applications run on. The command removes those that none uses.", ownTool,
     desktop, "flatpak uninstall --user --unused"},
    {Base::system, "var/lib/flatpak/runtime", "Flatpak Runtimes of the System",
     "What Flatpak applications run on. The command removes those that none uses.", ownTool,
     desktop, "flatpak uninstall --system --unused"},
    {Base::home, ".var/app/*/cache", "Cache of *",
     "Cache of a Flatpak application. Made again when it next starts.", remade, desktop, byItself},
    {Base::config, "*/Cache", "* Cache",
     "Pages and pictures that the application has fetched. Made again when it next starts.", remade,
     desktop, byItself},
    {Base::config, "*/Code Cache", "* Code Cache",
     "Compiled scripts of the application. Made again when it next starts.", remade, desktop,
     byItself},
    {Base::config, "*/CachedData", "* Cached Data",
     "Compiled scripts of the application. Made again when it next starts.", remade, desktop,
     byItself},
    {Base::config, "*/GPUCache", "* GPU Cache",
     "Compiled shaders of the application. Made again when it next starts.", remade, desktop,
     byItself},
    {Base::cache, "mozilla", "Firefox Cache",
     "Pages and pictures of visited sites. Made again as you browse; profiles stay.", remade,
     desktop, byItself},
    {Base::cache, "google-chrome", "Chrome Cache",
     "Pages and pictures of visited sites. Made again as you browse; profiles stay.", remade,
     desktop, byItself},
    {Base::cache, "chromium", "Chromium Cache",
     "Pages and pictures of visited sites. Made again as you browse; profiles stay.", remade,
     desktop, byItself},
    {Base::cache, "thumbnails", "Thumbnails",
     "Small pictures of files. Made again when a folder is opened.", remade, desktop, byItself},
    {Base::cache, "mesa_shader_cache", "Shader Cache",
     "Compiled shaders of the graphics driver. Made again on use.", remade, desktop, byItself},
    {Base::steam, "steamapps/shadercache", "Steam Shader Cache",
     "Compiled shaders of games. Downloaded or built again when a game is next played.", costly,
     desktop, byItself},
    // The machine
    {Base::system, "var/cache/apt/archives", "Downloaded Packages",
     "Packages that apt has installed already. Only an administrator may remove them.", ownTool,
     desktop, "sudo apt clean"},
    {Base::system, "var/log/journal", "System Journal",
     "Log of the system. The command shortens it to the size that you name.", ownTool, desktop,
     "sudo journalctl --vacuum-size=200M"},
    {Base::system, "var/lib/systemd/coredump", "Core Dumps",
     "Memory of crashed programs. The system removes old ones by itself; the command does so now.",
     ownTool, desktop, "sudo systemd-tmpfiles --clean"},
    {Base::system, "var/lib/snapd/snaps", "Snap Revisions",
     "Installed and former revisions of snaps. \"snap list --all\" shows those that are disabled.",
     ownTool, desktop, "sudo snap remove NAME --revision=N"},
};

struct LostPlace
{
    Base base;
    std::string_view path;
};

/// What cannot be had back: data, logins, keys.
constexpr LostPlace lostPlaces[] = {
    {Base::cache, "pypoetry/virtualenvs"},
    {Base::cache, "huggingface/token"},
    {Base::cache, "huggingface/stored_tokens"},
    {Base::home, ".ollama/id_ed25519"},
    {Base::home, ".android/avd"},
    {Base::home, ".mozilla"},
    {Base::home, ".thunderbird"},
    {Base::home, ".ssh"},
    {Base::home, ".gnupg"},
    {Base::home, ".var/app/*/data"},
    {Base::home, ".var/app/*/config"},
    {Base::config, "google-chrome/Default"},
    {Base::config, "chromium/Default"},
    {Base::config, "*/Cookies"},
    {Base::config, "*/Local Storage"},
    {Base::config, "*/IndexedDB"},
    {Base::config, "*/User"},
    {Base::steam, "steamapps/compatdata"},
    {Base::data, "containers/storage/volumes"},
    {Base::data, "gnome-boxes/images"},
    {Base::data, "libvirt/images"},
    {Base::data, "keyrings"},
    {Base::data, "Trash"},
    {Base::home, "VirtualBox VMs"},
    {Base::system, "var/lib/docker/volumes"},
};

std::vector<FilePath> baseFolders(const HomeFolders& folders, Base base)
{
    switch (base) {
    case Base::cache:
        return {folders.cache};
    case Base::config:
        return {folders.config};
    case Base::data:
        return {folders.data};
    case Base::system:
        return {folders.system};
    case Base::mount:
        return folders.mounts;
    case Base::steam: {
        std::vector<FilePath> libraries{folders.data.appending("Steam")};
        std::copy_if(folders.steamLibraries.begin(), folders.steamLibraries.end(),
                     std::back_inserter(libraries),
                     [&](const FilePath& each) { return each != libraries.front(); });
        return libraries;
    }
    case Base::home:
        break;
    }
    return {folders.home};
}

bool exists(FileSystemCalls& calls, const FilePath& path)
{
    const ReachablePlace place(calls, path);
    EntryStatus status;
    return place.isReachable() && calls.status(place.parent(), place.name(), status);
}

/// Names in a folder, sorted.
std::vector<std::string> namesIn(FileSystemCalls& calls, const FilePath& folder)
{
    const ReachablePlace place(calls, folder);
    const int descriptor =
        place.isReachable() ? calls.openDirectory(place.parent(), place.name()) : -1;
    std::vector<std::string> names;
    if (descriptor < 0) {
        return names;
    }
    const OpenDirectory directory(calls, descriptor);
    NameList list;
    calls.appendNames(descriptor, list);
    for (std::size_t i = 0; i < list.spans.size(); ++i) {
        names.emplace_back(list.nameAt(i));
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Whether the folder may be looked into without a mount that nobody has asked for.
bool isOrdinary(FileSystemCalls& calls, const FilePath& folder)
{
    const ReachablePlace place(calls, FilePath(folder.bytes() + "/."));
    return place.isReachable() &&
           calls.volumeKind(place.parent(), place.name()) == VolumeKind::ordinary;
}

struct Resolved
{
    FilePath path;
    std::string star; ///< what the "*" stood for; empty without one
};

/// The paths that a pattern with at most one "*" stands for. Behind a "*" only what is there.
std::vector<Resolved> resolve(FileSystemCalls& calls, const FilePath& base,
                              std::string_view pattern)
{
    const std::size_t star = pattern.find('*');
    if (base.isEmpty()) {
        return {};
    }
    if (star == std::string_view::npos) {
        return {{base.appending(pattern), {}}};
    }
    const FilePath above =
        star == 0 ? base : base.appending(pattern.substr(0, star - std::string_view("/").size()));
    std::vector<Resolved> found;
    for (std::string& name : namesIn(calls, above)) {
        if (name.starts_with('.')) {
            continue;
        }
        const FilePath path = above.appending(name).appending(pattern.substr(star + 2));
        if (exists(calls, path)) {
            found.push_back({path, std::move(name)});
        }
    }
    return found;
}

std::string withStar(std::string_view text, std::string_view star)
{
    std::string result(text);
    if (const std::size_t at = result.find('*'); at != std::string::npos) {
        result.replace(at, 1, star);
    }
    return result;
}

std::string idOf(const FilePath& path, const FilePath& home)
{
    if (path != home && home.holds(path)) {
        return path.bytes().substr(home.bytes().size() + (home.bytes() == "/" ? 0 : 1));
    }
    return path.bytes();
}

} // namespace

HomeFolders HomeFolders::below(const FilePath& home)
{
    return {home,
            home.appending(".cache"),
            home.appending(".config"),
            home.appending(".local/share"),
            home.appending(".local/state"),
            {}};
}

HomeFolders HomeFolders::fromEnvironment(const FilePath& home)
{
    HomeFolders folders = below(home);
    const char* const own = std::getenv("HOME");
    const bool isOwnHome = own != nullptr && FilePath(own) == home;
    const auto take = [&](FilePath& folder, const char* variable) {
        const char* const value = std::getenv(variable);
        if (value == nullptr || *value != '/') {
            return;
        }
        FilePath path{std::string(value)};
        if (isOwnHome || home.holds(path)) {
            folder = std::move(path);
        }
    };
    take(folders.cache, "XDG_CACHE_HOME");
    take(folders.config, "XDG_CONFIG_HOME");
    take(folders.data, "XDG_DATA_HOME");
    take(folders.state, "XDG_STATE_HOME");
    return folders;
}

void HomeFolders::findPlacesOutside(const MountTable& mountTable, FileSystemCalls& calls,
                                    FileContentCalls& contents)
{
    const DiskReader reader(calls, contents);
    for (const char* const list :
         {"Steam/steamapps/libraryfolders.vdf", "Steam/config/libraryfolders.vdf"}) {
        if (const std::optional<std::string> text = reader.text(data.appending(list))) {
            steamLibraries = steamLibrariesIn(*text);
            break;
        }
    }
    const std::vector<RemoteMount>& remote = mountTable.remote();
    for (const FilePath& mount : mountTable.mountPoints()) {
        const bool isRemote =
            std::any_of(remote.begin(), remote.end(),
                        [&](const RemoteMount& each) { return each.mountPoint == mount; });
        if (!isRemote && isOrdinary(calls, mount)) {
            mounts.push_back(mount);
        }
    }
}

void HomeFolders::findPlacesOutside(FileSystemCalls& calls, FileContentCalls& contents)
{
    const std::optional<MountTable> table = system.isEmpty() ? std::nullopt : MountTable::read();
    findPlacesOutside(table.value_or(MountTable()), calls, contents);
}

std::span<const HomePlace> linuxPlaces()
{
    return places;
}

std::vector<FoundPlace> resolvedPlaces(const HomeFolders& folders, FileSystemCalls& calls)
{
    std::vector<FoundPlace> found;
    for (const HomePlace& place : places) {
        for (const FilePath& base : baseFolders(folders, place.base)) {
            for (Resolved& each : resolve(calls, base, place.path)) {
                std::string id = idOf(each.path, folders.home);
                found.push_back(
                    {&place, std::move(each.path), withStar(place.name, each.star), std::move(id)});
            }
        }
    }
    return found;
}

std::vector<FoundPlace> ownToolPlaces(const HomeFolders& folders, FileSystemCalls& calls)
{
    std::vector<FoundPlace> found = resolvedPlaces(folders, calls);
    std::erase_if(found, [&](const FoundPlace& each) {
        return each.place->upkeep != Upkeep::ownTool || !exists(calls, each.path);
    });
    return found;
}

const FoundPlace* placeTouching(const FilePath& folder, std::span<const FoundPlace> places)
{
    const auto place = std::find_if(places.begin(), places.end(), [&](const FoundPlace& each) {
        return folder.holds(each.path) || each.path.holds(folder);
    });
    return place == places.end() ? nullptr : &*place;
}

std::vector<FilePath> irreplaceablePaths(const HomeFolders& folders, FileSystemCalls& calls)
{
    std::vector<FilePath> found;
    for (const LostPlace& place : lostPlaces) {
        for (const FilePath& base : baseFolders(folders, place.base)) {
            for (Resolved& each : resolve(calls, base, place.path)) {
                if (exists(calls, each.path)) {
                    found.push_back(std::move(each.path));
                }
            }
        }
    }
    // ".Trash", ".Trash-UID" and ".Trashes", whosoever they are.
    for (const FilePath& mount : folders.mounts) {
        for (const std::string& name : namesIn(calls, mount)) {
            if (name.starts_with(".Trash")) {
                found.push_back(mount.appending(name));
            }
        }
    }
    return found;
}

bool touches(const FilePath& folder, std::span<const FilePath> irreplaceable)
{
    return std::any_of(irreplaceable.begin(), irreplaceable.end(), [&](const FilePath& path) {
        return folder.holds(path) || path.holds(folder);
    });
}

} // namespace quorvane
