// SPDX-License-Identifier: MIT
#include "CanvasArguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace quorvane {
namespace {

std::optional<double> lengthFromText(std::string_view text)
{
    double length = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, length);
    if (parsed.ec != std::errc() || parsed.ptr != end || !std::isfinite(length) || length < 0) {
        return std::nullopt;
    }
    return length;
}

} // namespace

std::optional<CanvasSize> canvasSizeFromText(std::string_view text)
{
    const std::size_t cross = text.find('x');
    if (cross == text.npos) {
        return std::nullopt;
    }
    const std::optional<double> width = lengthFromText(text.substr(0, cross));
    const std::optional<double> height = lengthFromText(text.substr(cross + 1));
    if (!width || !height) {
        return std::nullopt;
    }
    return CanvasSize{*width, *height};
}

std::string readCanvasRequest(const Arguments& arguments, CanvasRequest& request)
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

} // namespace quorvane
