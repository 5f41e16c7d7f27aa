// SPDX-License-Identifier: MIT
#pragma once

#include "Arguments.h"
#include "BloatFilter.h"
#include "SizeMode.h"

#include <optional>
#include <string>
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

/// What the options "--size", "--mode" and "--hide" ask for.
struct CanvasRequest
{
    CanvasSize size;
    SizeMode mode = SizeMode::disk;
    BloatKeys hidden;
};

/// Returns what is wrong with the options; empty when nothing is.
std::string readCanvasRequest(const Arguments& arguments, CanvasRequest& request);

} // namespace quorvane
