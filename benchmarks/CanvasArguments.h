// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

namespace quorvane {

struct CanvasSize
{
    double width = 1600;
    double height = 1000;
};

/// "WxH" in points, for example "1600x1000"; absent for anything else and for sizes that are not
/// finite or negative.
std::optional<CanvasSize> canvasSizeFromText(std::string_view text);

} // namespace quorvane
