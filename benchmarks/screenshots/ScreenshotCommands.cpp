// SPDX-License-Identifier: MIT
#include "Command.h"
#include "JsonText.h"
#include "LockedFlag.h"
#include "ScreenshotNaming.h"
#include "ScreenshotTool.h"
#include "TextRecognizer.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace quorvane {
namespace {

constexpr OptionRule namingOptions[] = {{"zone", true}};
constexpr OptionRule folderOptions[] = {{"rename", false}};

QTimeZone zoneFrom(const Arguments& arguments)
{
    const std::optional<std::string_view> name = arguments.value("zone");
    return name ? QTimeZone(QByteArray(name->data(), static_cast<qsizetype>(name->size())))
                : QTimeZone::systemTimeZone();
}

std::vector<QString> linesOf(const QJsonObject& request)
{
    std::vector<QString> lines;
    for (const QJsonValue line : request.value(QLatin1String("lines")).toArray()) {
        lines.push_back(line.toString());
    }
    return lines;
}

/// False for an operation that there is none of.
bool answer(const QJsonObject& request, const QTimeZone& zone, JsonObject& object)
{
    const auto text = [&request](const char* key) {
        return request.value(QLatin1String(key)).toString();
    };
    const QString operation = text("op");
    if (operation == QLatin1String("matches")) {
        const std::string name = text("name").toStdString();
        object.boolean("matches", ScreenshotNaming::matchesScreenshotName(name));
        object.boolean("renamed", ScreenshotNaming::alreadyRenamed(name));
    } else if (operation == QLatin1String("score")) {
        object.integer("score", ScreenshotNaming::lineScore(text("line")));
    } else if (operation == QLatin1String("slug")) {
        if (const std::optional<QString> slug = ScreenshotNaming::bestSlug(linesOf(request))) {
            object.text("slug", slug->toStdString());
        }
    } else if (operation == QLatin1String("title")) {
        object.text("text", ScreenshotNaming::titleCase(text("text")).toStdString());
    } else if (operation == QLatin1String("sanitize")) {
        const int max = request.value(QLatin1String("max")).toInt();
        object.text("text", ScreenshotNaming::sanitize(text("text"), max).toStdString());
    } else if (operation == QLatin1String("name")) {
        const QJsonValue created = request.value(QLatin1String("created"));
        object.text("name",
                    ScreenshotNaming::proposeName(
                        text("file").toStdString(), linesOf(request),
                        created.isDouble() ? std::optional(created.toInteger()) : std::nullopt,
                        zone));
    } else {
        return false;
    }
    return true;
}

int runNames(const Arguments& arguments)
{
    const QTimeZone zone = zoneFrom(arguments);
    if (!zone.isValid()) {
        return complain("no such time zone; try --help", exitUsage);
    }
    for (std::string line; std::getline(std::cin, line);) {
        std::string out;
        JsonObject object(out);
        const QJsonDocument request = QJsonDocument::fromJson(QByteArray::fromStdString(line));
        if (!request.isObject() || !answer(request.object(), zone, object)) {
            return complain("a line names no operation that there is", exitUsage);
        }
        object.endLine();
        std::cout << out;
    }
    return exitSuccess;
}

int runScreenshots(const Arguments& arguments)
{
    if (arguments.operands().size() != 1) {
        return complain("screenshots takes one folder; try --help", exitUsage);
    }
    const FilePath folder(std::filesystem::absolute(arguments.operands().front()).string());
    const std::unique_ptr<TextRecognizer> recognizer = makeTextRecognizer("");
    if (const std::string package = recognizer->missingPackage(); !package.empty()) {
        return complain("text recognition needs the package " + package, exitFailure);
    }
    std::vector<ScreenshotCandidate> found = ScreenshotTool::proposals(ScreenshotTool::scan(
        folder, FileSystemCalls::system(), *recognizer, QTimeZone::systemTimeZone(), LockedFlag()));
    for (const ScreenshotCandidate& candidate : found) {
        std::string line;
        JsonObject object(line);
        object.text("name", candidate.url.lastComponent());
        object.text("proposedName", candidate.proposedName);
        object.integer("sizeBytes", candidate.sizeBytes);
        if (arguments.has("rename")) {
            object.boolean("renamed", ScreenshotTool::rename(candidate).has_value());
        }
        object.endLine();
        std::cout << line;
    }
    return exitSuccess;
}

} // namespace

const Command screenshotNamesCommand{
    "screenshot-names", "[--zone TZ]",
    "Read naming operations, one JSON object a line, and print what "
    "they give.",
    namingOptions, runNames};
const Command screenshotsCommand{
    "screenshots", "DIR [--rename]",
    "Read the screenshots of a folder and print the names that they would "
    "get; with --rename, give them.",
    folderOptions, runScreenshots};

} // namespace quorvane
