// SPDX-License-Identifier: MIT
#include "PaintCommand.h"

#include "BenchApplication.h"
#include "BubblesScene.h"
#include "CanvasArguments.h"
#include "FlameScene.h"
#include "JsonText.h"
#include "LockedFlag.h"
#include "MindMapScene.h"
#include "SeededRandom.h"
#include "SnapshotStore.h"
#include "SunburstScene.h"
#include "Theme.h"
#include "TreeSource.h"
#include "TreemapScene.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <array>
#include <chrono>
#include <iostream>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

constexpr int repaints = 7;
constexpr int hovers = 200;
constexpr double largestSide = 16'384;
constexpr std::int64_t largestScale = 4;
constexpr OptionRule options[] = {{"size", true},  {"mode", true},    {"focus", true},
                                  {"hide", true},  {"dump", true},    {"kind", true},
                                  {"scale", true}, {"colored", false}};

using MakeScene = ScenePointer (*)(const SceneRequest& request, const LockedFlag& stop);

struct PaintedKind
{
    std::string_view name;
    MakeScene make;
};

constexpr std::array kinds{
    PaintedKind{"treemap", &TreemapScene::make}, PaintedKind{"sunburst", &SunburstScene::make},
    PaintedKind{"flame", &FlameScene::make}, PaintedKind{"bubbles", &BubblesScene::make},
    PaintedKind{"mindmap", &MindMapScene::make}};

/// The treemap unless another is asked for; null for a name that is none.
MakeScene kindOf(const Arguments& arguments)
{
    const std::string_view wanted = arguments.value("kind").value_or("treemap");
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [&](const PaintedKind& kind) { return kind.name == wanted; });
    return found == kinds.end() ? nullptr : found->make;
}

/// The median of what one call takes over so many calls.
template<typename Call>
double medianMilliseconds(int calls, Call&& call)
{
    std::vector<double> times;
    for (int i = 0; i < calls; ++i) {
        const auto start = std::chrono::steady_clock::now();
        call();
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        times.push_back(took.count());
    }
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

/// What a canvas does when the pointer comes to rest on another tile: find it, compose the cached
/// pictures, put the tile back and frame it.
void hover(QPainter& painter, const CanvasRendering& rendering, const QPointF& point,
           const QColor& accent)
{
    const bool isDimmed = !rendering.dimmed.isNull();
    painter.drawImage(QPointF(0, 0), isDimmed ? rendering.dimmed : rendering.bright);
    if (const std::optional<std::size_t> item = rendering.scene->itemAt(point)) {
        if (isDimmed) {
            rendering.scene->restoreItem(painter, *item, rendering.bright, rendering.dimmed);
        }
        rendering.scene->paintHighlight(painter, *item, CanvasScene::Highlight::hovered, accent);
    }
}

/// Pixels for each point, 1 unless another is asked for; absent for what is no scale of a screen.
std::optional<int> scaleOf(const Arguments& arguments)
{
    const std::optional<std::int64_t> scale =
        integerFromText(arguments.value("scale").value_or("1"));
    return scale && *scale >= 1 && *scale <= largestScale ? std::optional(static_cast<int>(*scale))
                                                          : std::nullopt;
}

std::string measuredLine(const SceneRequest& request, MakeScene make, int scale)
{
    const LockedFlag stop;
    const CanvasStyle style{font(TextStyle::caption), QApplication::palette().color(QPalette::Base),
                            static_cast<qreal>(scale)};
    ScenePointer scene;
    const double layout = medianMilliseconds(repaints, [&] { scene = make(request, stop); });
    const CanvasRendering rendering = renderScene(scene, style, stop);
    QImage picture = rendering.bright;
    const double repaint = medianMilliseconds(repaints, [&] {
        picture.fill(style.ground);
        scene->paint(picture, style, false);
    });
    SeededRandom random(1);
    const auto some = [&](int length) {
        return static_cast<double>(random.below(static_cast<std::uint64_t>(length)));
    };
    QPainter painter(&picture);
    const double hovering = medianMilliseconds(hovers, [&] {
        const QPointF point(some(request.size.width()), some(request.size.height()));
        hover(painter, rendering, point, themeColor(ThemeColor::accent));
    });
    std::string line;
    JsonObject object(line);
    object.integer("slices", static_cast<std::int64_t>(scene->itemCount()));
    object.real("layoutMilliseconds", layout);
    object.real("repaintMilliseconds", repaint);
    object.real("hoverMilliseconds", hovering);
    object.endLine();
    return line;
}

/// What the whole tree has grown by since a time when every second large file was half as large.
std::shared_ptr<const SnapshotGrowth> someGrowth(const NodePointer& root)
{
    ScanSnapshot past = SnapshotStore::capture(*root).snapshot;
    for (std::size_t i = 0; i < past.items.size(); i += 2) {
        past.items[i].bytes /= 2;
    }
    SnapshotHeading heading = past;
    return std::make_shared<const SnapshotGrowth>(std::move(heading), std::move(past.items), root);
}

int runPaint(const Arguments& arguments)
{
    CanvasRequest canvas;
    if (const std::string fault = readCanvasRequest(arguments, canvas); !fault.empty()) {
        return complain(fault, exitUsage);
    }
    const MakeScene make = kindOf(arguments);
    if (make == nullptr) {
        return complain("--kind needs treemap, sunburst, flame, bubbles or mindmap", exitUsage);
    }
    const std::optional<int> scale = scaleOf(arguments);
    if (!scale) {
        return complain("--scale needs a number from 1 to 4", exitUsage);
    }
    const auto isDrawable = [](double side) { return side >= 1 && side <= largestSide; };
    if (!isDrawable(canvas.size.width) || !isDrawable(canvas.size.height)) {
        return complain("--size needs sides from 1 to 16384 points", exitUsage);
    }
    const auto loaded = loadFocus(arguments);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    const FocusedTree& focused = std::get<FocusedTree>(loaded);
    const BenchApplication application(BenchApplication::Display::offscreen);
    SceneRequest request;
    request.target = NodePointer(focused.tree, focused.focus);
    request.isScanRoot = focused.isRoot();
    request.size = QSizeF(canvas.size.width, canvas.size.height).toSize();
    request.sizeMode = canvas.mode;
    request.hidden = canvas.hidden;
    if (arguments.has("colored")) {
        request.growth = someGrowth(focused.tree->rootPointer());
    }
    std::cout << measuredLine(request, make, *scale);
    return exitSuccess;
}

} // namespace

const Command paintCommand{
    "paint",
    "(DIR | --dump FILE) [--kind KIND] [--size WxH] [--scale N] [--mode disk|logical] [--focus "
    "SUBPATH] "
    "[--hide KEY]... [--colored]",
    "Paint a visualiser and tell the milliseconds of layout, full repaint and hover.", options,
    runPaint};

} // namespace quorvane
