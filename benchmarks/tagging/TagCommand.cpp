// SPDX-License-Identifier: MIT
#include "Command.h"
#include "JsonText.h"
#include "TagEngine.h"
#include "TreeSource.h"

#include <chrono>
#include <ctime>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <variant>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {{"rules", true}, {"dump", true}, {"echo", false}};

void print(const TagMatches& matches, std::ostream& out)
{
    for (std::size_t i = 0; i < matches.size(); ++i) {
        const TagMatch match = matches.at(i);
        std::string line;
        JsonObject object(line);
        object.path(match.url.bytes());
        object.integer("bytes", match.bytes);
        object.text("tagName", match.tagName.toStdString());
        object.text("tagColor", match.tagColorRaw);
        object.endLine();
        out << line;
    }
    std::string line;
    JsonObject object(line);
    object.text("summary", matches.summary().toStdString());
    object.endLine();
    out << line;
}

int runTag(const Arguments& arguments)
{
    const std::optional<std::string_view> file = arguments.value("rules");
    if (!file) {
        return complain("tag needs --rules FILE; try --help", exitUsage);
    }
    std::ifstream in(std::string(*file), std::ios::binary);
    const std::string json(std::istreambuf_iterator<char>(in), {});
    if (!in.is_open() || in.bad()) {
        return complain(std::string(*file) + ": cannot be read", exitFailure);
    }
    const std::optional<std::vector<TagRule>> rules = decodeTagRules(json);
    if (!rules) {
        return complain(std::string(*file) + ": is not a list of tag rules", exitUsage);
    }
    if (arguments.has("echo")) {
        if (!arguments.operands().empty() || arguments.has("dump")) {
            return complain("tag --echo takes no tree; try --help", exitUsage);
        }
        std::cout << encodeTagRules(*rules).toStdString() << '\n';
        return exitSuccess;
    }
    const auto loaded = loadTree(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    const NodePointer root = std::get<std::shared_ptr<FileTree>>(loaded)->rootPointer();
    TagEngine::Options settings;
    settings.volumes = TagEngine::volumesNow();
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t processorStart = std::clock();
    const TagMatches matches = TagEngine::scan(*rules, root, settings, [](double) {});
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    const double processor = static_cast<double>(std::clock() - processorStart) / CLOCKS_PER_SEC;
    print(matches, std::cout);
    std::cerr << "tag seconds: " << seconds.count() << "\nprocessor seconds: " << processor << '\n';
    return exitSuccess;
}

} // namespace

const Command tagCommand{"tag", "--rules FILE (--echo | DIR | --dump FILE)",
                         "Apply tag rules to a tree and print the matches, or print the rules as "
                         "they are stored.",
                         options, runTag};

} // namespace quorvane
