// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QTimeZone>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// What a screenshot is to be called: the day it was taken and the most title-like line of text on
/// it. Pure functions over names, as bytes, and recognised lines, as text; any thread.
struct ScreenshotNaming
{
    /// A line is good for a name from this score on.
    static constexpr int minScore = 35;
    /// User-perceived characters of the text in a proposed name.
    static constexpr int maxSlugLength = 60;
    /// What file systems take as a name (NAME_MAX of limits.h(0p)).
    static constexpr std::size_t maxNameBytes = 255;

    /// Whether the extension is one of the seven kinds of picture that are looked at.
    static bool isImageName(std::string_view filename);
    /// Whether the desktop would call a screenshot so, in one of several languages.
    static bool matchesScreenshotName(std::string_view filename);
    /// Whether the name without its extension holds " – ".
    static bool alreadyRenamed(std::string_view filename);

    /// How much the line looks like a title; the words of menus and buttons count against it.
    static int lineScore(const QString& line);
    /// The best line, ready for a file name but for its blanks. Absent when no line is good enough.
    static std::optional<QString> bestSlug(const std::vector<QString>& lines);
    static QString titleCase(const QString& text);
    /// Without what some file system refuses in a name, at most so many user-perceived characters.
    static QString sanitize(const QString& text, int max);

    /// The day that the name holds as yyyy-MM-dd, else the one of created (seconds since 1970) in
    /// the zone, written "yyyy-MM-dd"; absent when there is neither.
    static std::optional<QString> captureDay(std::string_view filename,
                                             std::optional<std::int64_t> created,
                                             const QTimeZone& zone);
    /// A whole file name of at most maxNameBytes; the present one where the lines give no title, or
    /// where the file has the proposed name with a number already.
    static std::string proposeName(std::string_view filename, const std::vector<QString>& lines,
                                   std::optional<std::int64_t> created, const QTimeZone& zone);
    /// "{stem} {number}.{extension}" within maxNameBytes: the stem gives way.
    static std::string numbered(std::string_view name, int number);

    /// A name without its extension and the extension without its point, as the name has them.
    static std::string_view stemOf(std::string_view filename);
    static std::string_view extensionOf(std::string_view filename);
};

} // namespace quorvane
