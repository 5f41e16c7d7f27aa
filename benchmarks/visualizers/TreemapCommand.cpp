// SPDX-License-Identifier: MIT
#include "CanvasArguments.h"
#include "Command.h"
#include "JsonText.h"
#include "TreeSource.h"
#include "TreemapLayout.h"

#include <chrono>
#include <iostream>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {
    {"size", true}, {"mode", true}, {"focus", true}, {"hide", true}, {"dump", true}};

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
    CanvasRequest request;
    if (const std::string fault = readCanvasRequest(arguments, request); !fault.empty()) {
        return complain(fault, exitUsage);
    }
    const auto loaded = loadFocus(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    const FocusedTree& focused = std::get<FocusedTree>(loaded);
    const auto start = std::chrono::steady_clock::now();
    const std::vector<TreemapLayout::Slice> slices = TreemapLayout::layoutSlate(
        *focused.focus, Rect{0, 0, request.size.width, request.size.height},
        request.mode == SizeMode::disk, focused.isRoot(), request.hidden);
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
