// SPDX-License-Identifier: MIT
#include "AgeMap.h"
#include "BubblesLayout.h"
#include "CanvasArguments.h"
#include "Command.h"
#include "FlameLayout.h"
#include "JsonText.h"
#include "MindMapLayout.h"
#include "SunburstLayout.h"
#include "TopSizes.h"
#include "TreeSource.h"

#include <array>
#include <chrono>
#include <iostream>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {
    {"size", true}, {"mode", true}, {"focus", true}, {"hide", true}, {"dump", true}};

struct LayoutInput
{
    const FocusedTree& tree;
    const CanvasRequest& canvas;

    FileNode& focus() const { return *tree.focus; }
};

/// Runs the layout alone and tells its seconds.
template<class Layout>
auto timed(Layout layout)
{
    const auto start = std::chrono::steady_clock::now();
    auto result = layout();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::cerr << "layout seconds: " << took.count() << '\n';
    return result;
}

/// One line of output with the node's path first, if there is a node.
class Line
{
public:
    Line() = default;
    explicit Line(const FileNode& node) { m_object.path(node.path().bytes()); }

    JsonObject& object() { return m_object; }
    void print()
    {
        m_object.endLine();
        std::cout << m_text;
    }

private:
    std::string m_text;
    JsonObject m_object{m_text};
};

void printSunburst(const LayoutInput& input)
{
    const auto slices = timed([&] {
        return SunburstLayout::layout(input.focus(),
                                      SunburstLayout::screenOptions(input.canvas.size.width,
                                                                    input.canvas.size.height,
                                                                    input.canvas.mode),
                                      input.canvas.hidden);
    });
    for (const SunburstLayout::Slice& slice : slices) {
        Line line(*slice.node);
        line.object().real("innerRadius", slice.innerRadius);
        line.object().real("outerRadius", slice.outerRadius);
        line.object().real("startAngle", slice.startAngle);
        line.object().real("endAngle", slice.endAngle);
        line.object().integer("depth", slice.depth);
        line.print();
    }
}

void printFlame(const LayoutInput& input)
{
    const auto slices = timed([&] {
        return FlameLayout::layout(input.focus(), input.canvas.size.width, input.canvas.size.height,
                                   input.canvas.mode, input.canvas.hidden);
    });
    for (const FlameLayout::RectSlice& slice : slices) {
        Line line(*slice.node);
        line.object().real("x", slice.rect.x);
        line.object().real("y", slice.rect.y);
        line.object().real("width", slice.rect.width);
        line.object().real("height", slice.rect.height);
        line.print();
    }
}

void printBubbles(const LayoutInput& input)
{
    const auto bubbles = timed([&] {
        const std::optional<double> radius =
            BubblesLayout::screenRadius(input.canvas.size.width, input.canvas.size.height);
        return radius ? BubblesLayout::flatten(BubblesLayout::layout(
                            input.focus(), *radius, BubblesLayout::screenMaxDepth,
                            input.canvas.mode, input.canvas.hidden))
                      : std::vector<FlatBubble>();
    });
    for (const FlatBubble& bubble : bubbles) {
        Line line(*bubble.node);
        line.object().real("x", bubble.bubble.center.x);
        line.object().real("y", bubble.bubble.center.y);
        line.object().real("radius", bubble.bubble.radius);
        line.object().integer("level", bubble.level);
        line.print();
    }
}

void printMindMap(const LayoutInput& input)
{
    const auto bands = timed([&] {
        return MindMapLayout::layout(input.focus(), input.canvas.mode, input.canvas.hidden);
    });
    for (const MindMapLayout::Band& band : bands) {
        Line line(*band.node);
        line.object().real("inner", band.inner);
        line.object().real("outer", band.outer);
        line.object().real("start", band.start);
        line.object().real("end", band.end);
        line.object().real("weight", band.weight);
        line.object().boolean("hasChildren", band.hasChildren);
        line.print();
    }
}

void printAgeMap(const LayoutInput& input)
{
    const AgeMap map =
        timed([&] { return computeAgeMap(input.focus(), input.canvas.mode, input.canvas.hidden); });
    for (const AgeBucket& bucket : map.buckets) {
        Line line;
        line.object().text("month", bucket.month.toString(QStringLiteral("yyyy-MM")).toStdString());
        line.object().integer("bytes", bucket.bytes);
        line.print();
    }
    for (const FileNode* file : map.untouched) {
        Line line(*file);
        line.object().integer("bytes", weightBasis(*file, input.canvas.mode));
        line.print();
    }
}

/// Ranks the whole tree, whatever folder is in focus, as the screen does.
void printTopSizes(const LayoutInput& input)
{
    FileNode& root = input.tree.tree->root();
    const auto ranked = timed([&] {
        return TopSizes::flattenAndRank(root, input.canvas.mode, input.canvas.hidden,
                                        TopSizes::shownItems);
    });
    for (std::size_t i = 0; i < ranked.size(); ++i) {
        Line line;
        line.object().integer("rank", static_cast<std::int64_t>(i + 1));
        line.object().path(ranked[i]->path().bytes());
        line.object().integer("bytes", weightBasis(*ranked[i], input.canvas.mode));
        line.print();
    }
}

struct LayoutKind
{
    std::string_view name;
    void (*print)(const LayoutInput&);
};

constexpr std::array kinds{
    LayoutKind{"sunburst", printSunburst}, LayoutKind{"flame", printFlame},
    LayoutKind{"bubbles", printBubbles},   LayoutKind{"mindmap", printMindMap},
    LayoutKind{"agemap", printAgeMap},     LayoutKind{"topsizes", printTopSizes}};

int runLayout(const Arguments& all)
{
    const std::string_view word =
        all.operands().empty() ? std::string_view() : all.operands().front();
    const LayoutKind* wanted = nullptr;
    std::string known;
    for (const LayoutKind& kind : kinds) {
        wanted = kind.name == word ? &kind : wanted;
        known += (known.empty() ? "" : ", ") + std::string(kind.name);
    }
    if (wanted == nullptr) {
        return complain("layout needs one of: " + known, exitUsage);
    }
    const Arguments arguments = all.withoutFirstOperand();
    CanvasRequest canvas;
    if (const std::string fault = readCanvasRequest(arguments, canvas); !fault.empty()) {
        return complain(fault, exitUsage);
    }
    const auto loaded = loadFocus(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    wanted->print({std::get<FocusedTree>(loaded), canvas});
    return exitSuccess;
}

} // namespace

const Command layoutCommand{
    "layout",
    "KIND (DIR | --dump FILE) [--size WxH] [--mode disk|logical] [--focus SUBPATH] [--hide KEY]...",
    "Print a layout (sunburst, flame, bubbles, mindmap, agemap, topsizes), one JSON object a line.",
    options, runLayout};

} // namespace quorvane
