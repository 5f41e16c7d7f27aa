// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace quorvane {

/// The colour class of a file name or of a folder's body.
enum class FileTypeCategory : unsigned char {
    video,
    image,
    doc,
    dev,
    archive,
    audio,
    system,
    code,
    project,
    other
};

inline constexpr std::array allFileTypeCategories{
    FileTypeCategory::video,  FileTypeCategory::image,   FileTypeCategory::doc,
    FileTypeCategory::dev,    FileTypeCategory::archive, FileTypeCategory::audio,
    FileTypeCategory::system, FileTypeCategory::code,    FileTypeCategory::project,
    FileTypeCategory::other};

/// The nine categories of the legend, in the order in which it shows them.
inline constexpr std::array legendCategories{
    FileTypeCategory::video,   FileTypeCategory::image, FileTypeCategory::doc,
    FileTypeCategory::code,    FileTypeCategory::dev,   FileTypeCategory::project,
    FileTypeCategory::archive, FileTypeCategory::audio, FileTypeCategory::system};

/// sRGB components, 0 to 1.
struct CategoryRgb
{
    double r;
    double g;
    double b;
};

/// The stored key, for example "project".
std::string_view rawValue(FileTypeCategory category);
std::optional<FileTypeCategory> fileTypeCategoryFromRawValue(std::string_view text);
/// The label, for example "Projects".
QString displayName(FileTypeCategory category);
CategoryRgb rgb(FileTypeCategory category);

/// The category of a file name's last extension, without regard to case; a name without a dot is
/// looked up whole. Never `system` or `project`. Any thread.
FileTypeCategory fileTypeCategoryForName(std::string_view name);

} // namespace quorvane
