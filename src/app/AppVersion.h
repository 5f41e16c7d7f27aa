// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

/// The version that the program shows where its bundle has none.
struct AppVersion
{
    static constexpr const char* string = QUORVANE_VERSION;
    static constexpr const char* build = "1";
};

} // namespace quorvane
