// SPDX-License-Identifier: MIT
#include "AppUninstaller.h"
#include "Command.h"
#include "DevCacheCleaner.h"
#include "FileContentCalls.h"
#include "FileSystemCalls.h"
#include "FolderMeter.h"
#include "JsonText.h"
#include "Programs.h"
#include "QuickWins.h"
#include "TreeSource.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <string>
#include <variant>

namespace quorvane {
namespace {

constexpr OptionRule quickWinOptions[] = {{"home", true}, {"dump", true},   {"limit", true},
                                          {"hide", true}, {"system", true}, {"evidence", false}};
constexpr OptionRule devCacheOptions[] = {
    {"home", true}, {"deep", false}, {"system", true}, {"evidence", false}};

constexpr OptionRule applicationOptions[] = {{"home", true}, {"locations", true}, {"system", true}};

class Stopwatch
{
public:
    ~Stopwatch()
    {
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - m_start;
        std::cerr << m_what << " seconds: " << took.count() << '\n';
    }
    explicit Stopwatch(const char* what)
        : m_what(what)
    {}
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;

private:
    const char* m_what;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

std::optional<HomeFolders> homeFrom(const Arguments& arguments)
{
    const std::optional<std::string_view> home = arguments.value("home");
    if (!home || home->empty()) {
        return std::nullopt;
    }
    HomeFolders folders = HomeFolders::fromEnvironment(folderFromArgument(*home));
    if (const std::optional<std::string_view> system = arguments.value("system")) {
        folders.system = folderFromArgument(*system);
    }
    folders.findPlacesOutside(FileSystemCalls::system(), FileContentCalls::system());
    return folders;
}

std::string_view textOf(Upkeep upkeep)
{
    switch (upkeep) {
    case Upkeep::costly:
        return "costly";
    case Upkeep::ownTool:
        return "ownTool";
    case Upkeep::remade:
        break;
    }
    return "remade";
}

/// What stands beside a row on the screen.
void addEvidence(JsonObject& object, const Evidence& evidence, Upkeep upkeep,
                 std::string_view command)
{
    object.text("upkeep", textOf(upkeep));
    if (!command.empty()) {
        object.text("command", command);
    }
    if (!evidence.basis.empty()) {
        object.text("basis", evidence.basis);
    }
    if (!evidence.caution.empty()) {
        object.text("caution", evidence.caution);
    }
    if (evidence.lastChanged) {
        object.integer("lastChanged", *evidence.lastChanged);
    }
}

std::optional<std::int64_t> limitFrom(const Arguments& arguments)
{
    const std::optional<std::int64_t> limit =
        integerFromText(arguments.value("limit").value_or(std::to_string(QuickWins::defaultLimit)));
    return limit && *limit >= 0 ? limit : std::nullopt;
}

void printWins(const std::vector<QuickWin>& wins, bool withEvidence)
{
    std::string line;
    for (const QuickWin& win : wins) {
        line.clear();
        JsonObject object(line);
        object.text("id", win.id);
        object.text("name", win.name);
        object.path(win.url.bytes());
        object.integer("bytes", win.bytes);
        object.text("detail", win.detail);
        if (const std::optional<std::string_view> family = win.bloatCategory()) {
            object.text("family", *family);
        }
        if (withEvidence) {
            addEvidence(object, win.evidence, win.upkeep, win.command);
        }
        object.endLine();
        std::cout << line;
    }
}

int runQuickWins(const Arguments& arguments)
{
    const std::optional<HomeFolders> folders = homeFrom(arguments);
    const std::optional<std::int64_t> limit = limitFrom(arguments);
    if (!folders || !limit) {
        return complain("quick-wins needs --home HOME and a --limit of 0 or more; try --help",
                        exitUsage);
    }
    FileSystemCalls& calls = FileSystemCalls::system();
    FileContentCalls& contents = FileContentCalls::system();
    std::vector<QuickWin> wins;
    {
        const Stopwatch watch("home");
        wins = QuickWins::detect(*folders);
    }
    if (arguments.has("dump") || !arguments.operands().empty()) {
        const auto loaded = loadTree(arguments);
        if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
            return complain(fault->message, fault->code);
        }
        const NodePointer root = std::get<std::shared_ptr<FileTree>>(loaded)->rootPointer();
        const std::vector<FilePath> irreplaceable = irreplaceablePaths(*folders, calls);
        std::vector<QuickWin> hits;
        {
            const Stopwatch watch("scan hits");
            hits = QuickWins::detect(root, static_cast<std::size_t>(*limit), irreplaceable);
        }
        QuickWins::addEvidence(hits, *root, ownToolPlaces(*folders, calls), calls, contents);
        wins.insert(wins.end(), hits.begin(), hits.end());
        QuickWins::sort(wins);
    }
    BloatKeys hidden;
    for (const std::string_view key : arguments.values("hide")) {
        hidden.emplace(key);
    }
    printWins(QuickWins::filtered(wins, hidden), arguments.has("evidence"));
    return exitSuccess;
}

int runDevCaches(const Arguments& arguments)
{
    const std::optional<HomeFolders> folders = homeFrom(arguments);
    if (!folders || !arguments.operands().empty()) {
        return complain("dev-caches needs --home HOME; try --help", exitUsage);
    }
    std::vector<DevCacheCleaner::CacheItem> items;
    {
        const Stopwatch watch("scan");
        items = arguments.has("deep") ? DevCacheCleaner::findBuildDirectories(*folders)
                                      : DevCacheCleaner::scanCurated(*folders);
    }
    std::string line;
    for (const DevCacheCleaner::CacheItem& item : items) {
        line.clear();
        JsonObject object(line);
        object.text("name", item.name);
        object.path(item.path.bytes());
        object.text("category", DevCacheCleaner::rawValue(item.category));
        object.integer("bytes", item.bytes);
        object.integer("itemCount", item.itemCount);
        if (item.lastModified) {
            object.integer("lastModified", *item.lastModified);
        }
        if (arguments.has("evidence")) {
            addEvidence(object, item.evidence, item.upkeep, item.command);
        }
        object.endLine();
        std::cout << line;
    }
    return exitSuccess;
}

std::vector<FilePath> locationsFrom(std::string_view list)
{
    std::vector<FilePath> locations;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(':'), list.size());
        if (end > 0) {
            locations.push_back(folderFromArgument(list.substr(0, end)));
        }
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return locations;
}

void printApplication(const UninstallableApp& app, bool isBundle)
{
    std::string line;
    JsonObject object(line);
    object.text("id", app.id);
    object.text("name", app.name);
    object.path(app.bundleURL.bytes());
    object.integer("bytes", app.bundleBytes);
    JsonList components(object.list("components"));
    for (const UninstallComponent& component : app.components) {
        JsonObject item(components.next());
        item.path(component.url.bytes());
        item.integer("bytes", component.bytes);
        item.text("label", component.label);
        item.close();
    }
    components.close();
    if (!isBundle) {
        object.text("kind", displayName(app.kind).toStdString());
        object.boolean("isRunning", app.isRunning);
        if (!app.command().empty()) {
            object.text("command", app.command());
        }
    }
    object.endLine();
    std::cout << line;
}

int runApplications(const Arguments& arguments)
{
    const std::optional<HomeFolders> folders = homeFrom(arguments);
    if (!folders || !arguments.operands().empty()) {
        return complain("applications needs --home HOME; try --help", exitUsage);
    }
    const std::optional<std::string_view> locations = arguments.value("locations");
    std::vector<UninstallableApp> apps;
    {
        const Stopwatch watch("applications");
        FileSystemCalls& calls = FileSystemCalls::system();
        apps = locations
                   ? AppUninstaller::scanApplications(locationsFrom(*locations), *folders)
                   : AppUninstaller::allApplications(AppUninstaller::Sources::of(*folders, calls),
                                                     {}, calls, FileContentCalls::system(),
                                                     Programs::system());
    }
    for (const UninstallableApp& app : apps) {
        printApplication(app, locations.has_value());
    }
    return exitSuccess;
}

int runDirectoryBytes(const Arguments& arguments)
{
    if (arguments.operands().empty()) {
        return complain("directory-bytes needs one PATH or more; try --help", exitUsage);
    }
    std::string line;
    for (const std::string_view operand : arguments.operands()) {
        const FilePath path = folderFromArgument(operand);
        line.clear();
        JsonObject object(line);
        object.path(path.bytes());
        object.integer("bytes", directoryBytes(path));
        object.endLine();
        std::cout << line;
    }
    return exitSuccess;
}

} // namespace

const Command quickWinsCommand{
    "quick-wins",
    "--home HOME [DIR | --dump FILE] [--limit 8] [--hide KEY]... [--system ROOT] [--evidence]",
    "Print the folders of a home and of a scan that may go, largest first.", quickWinOptions,
    runQuickWins};

const Command devCachesCommand{"dev-caches", "--home HOME [--deep] [--system ROOT] [--evidence]",
                               "Print the developer caches of a home, or with --deep its build "
                               "folders, largest first.",
                               devCacheOptions, runDevCaches};

const Command applicationsCommand{
    "applications", "--home HOME [--locations DIR[:DIR]...] [--system ROOT]",
    "Print the applications with what they leave behind, largest first; with --locations the "
    "bundles in these folders alone.",
    applicationOptions, runApplications};

const Command directoryBytesCommand{"directory-bytes",
                                    "PATH...",
                                    "Print the bytes on disk of each path's visible contents.",
                                    {},
                                    runDirectoryBytes};

} // namespace quorvane
