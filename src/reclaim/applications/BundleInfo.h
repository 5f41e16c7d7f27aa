// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

/// What the property list of a bundle tells. Bytes, UTF-8 as a rule.
struct BundleInfo
{
    std::optional<std::string> identifier; ///< CFBundleIdentifier
    std::string iconFile;                  ///< CFBundleIconFile; empty for none
};

/// Property lists beyond this size are not read.
inline constexpr std::size_t maxPropertyListBytes = std::size_t{1} << 20;

/// Reads a property list, XML or binary. Without either key where it is none, is not a dictionary,
/// or is nested deeper than any real one. Any thread.
BundleInfo readBundleInfo(std::string_view propertyList);

} // namespace quorvane
