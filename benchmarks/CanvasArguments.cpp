// SPDX-License-Identifier: MIT
#include "CanvasArguments.h"

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

} // namespace quorvane
