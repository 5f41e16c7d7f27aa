// SPDX-License-Identifier: MIT
#include "BloatFilter.h"
#include "CanvasArguments.h"
#include "Command.h"
#include "JsonText.h"
#include "SizeMode.h"
#include "TreeSource.h"
#include "TreemapLayout.h"

#include <algorithm>
#include <chrono>
#include <iostream>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {
    {"size", true}, {"mode", true}, {"focus", true}, {"hide", true}, {"dump", true}};

struct Request
{
    CanvasSize size;
    SizeMode mode = SizeMode::disk;
    BloatKeys hidden;
};

/// The message of a fault is empty when there is none.
std::string readRequest(const Arguments& arguments, Request& request)
{
    if (const auto text = arguments.value("size")) {
        const std::optional<CanvasSize> size = canvasSizeFromText(*text);
        if (!size) {
            return "--size needs WxH, for example 1600x1000";
        }
        request.size = *size;
    }
    if (const auto text = arguments.value("mode")) {
        const std::optional<SizeMode> mode = sizeModeFromRawValue(*text);
        if (!mode) {
            return "--mode needs disk or logical";
        }
        request.mode = *mode;
    }
    for (const std::string_view key : arguments.values("hide")) {
        const auto items = BloatFilter::items();
        const bool isKnown = std::any_of(items.begin(), items.end(),
                                         [&](const auto& item) { return item.key == key; });
        if (!isKnown) {
            std::string known;
            for (const BloatFilter::Item& item : items) {
                known += known.empty() ? "" : ", ";
                known += item.key;
            }
            return "--hide needs one of: " + known;
        }
        request.hidden.emplace(key);
    }
    return {};
}

std::string sliceLine(const TreemapLayout::Slice& slice)
{
    std::string line;
    JsonObject object(line);
    object.integer("id", slice.id);
    object.integer("nodeID", slice.nodeID);
    object.path(slice.node->path().bytes());
    object.real("x", slice.rect.x);
    object.real("y", slice.rect.y);
    object.real("width", slice.rect.width);
    object.real("height", slice.rect.height);
    object.integer("depth", slice.depth);
    object.boolean("isFolder", slice.isFolder);
    if (slice.labelOverride) {
        object.text("labelOverride", *slice.labelOverride);
    } else {
        object.null("labelOverride");
    }
    if (slice.folderBodyCategory) {
        object.text("folderBodyCategory", rawValue(*slice.folderBodyCategory));
    } else {
        object.null("folderBodyCategory");
    }
    object.boolean("isAggregateTile", slice.isAggregateTile);
    object.integer("aggregateCount", slice.aggregateCount);
    object.integer("aggregateBytes", slice.aggregateBytes);
    object.text("aggregateCategory", rawValue(slice.aggregateCategory));
    object.integer("rootIndex", slice.rootIndex);
    object.endLine();
    return line;
}

int runTreemap(const Arguments& arguments)
{
    Request request;
    if (const std::string fault = readRequest(arguments, request); !fault.empty()) {
        return complain(fault, exitUsage);
    }
    const auto loaded = loadTree(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    FileTree& tree = *std::get<std::shared_ptr<FileTree>>(loaded);
    const std::string_view focusPath = arguments.value("focus").value_or("");
    FileNode* const focus = nodeAt(tree, focusPath);
    if (focus == nullptr) {
        return complain("no such entry in the tree: " + std::string(focusPath), exitFailure);
    }
    const auto start = std::chrono::steady_clock::now();
    const std::vector<TreemapLayout::Slice> slices = TreemapLayout::layoutSlate(
        *focus, Rect{0, 0, request.size.width, request.size.height}, request.mode == SizeMode::disk,
        focus == &tree.root(), request.hidden);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    for (const TreemapLayout::Slice& slice : slices) {
        std::cout << sliceLine(slice);
    }
    std::cerr << "layout seconds: " << took.count() << '\n';
    return exitSuccess;
}

} // namespace

const Command treemapCommand{
    "treemap",
    "(DIR | --dump FILE) [--size WxH] [--mode disk|logical] [--focus SUBPATH] [--hide KEY]...",
    "Print the treemap's slices in paint order, one JSON object a line.", options, runTreemap};

} // namespace quorvane
