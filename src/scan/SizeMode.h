// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvane {

class FileNode;

/// Which of the two size measures is on show.
enum class SizeMode { logical, disk };

inline constexpr std::array allSizeModes{SizeMode::logical, SizeMode::disk};

/// The stored key: "logical" or "disk".
std::string_view rawValue(SizeMode mode);
std::optional<SizeMode> sizeModeFromRawValue(std::string_view text);
QString title(SizeMode mode);

/// The rolled-up bytes that a screen measures a node by: scannedBytesOnDisk when the mode is disk,
/// else scannedBytes. No floor.
std::int64_t weightBasis(const FileNode& node, SizeMode mode);
/// The same as text with one digit, for example "1.5 GB".
QString basisLabel(const FileNode& node, SizeMode mode);

} // namespace quorvane
