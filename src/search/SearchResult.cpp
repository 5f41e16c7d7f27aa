// SPDX-License-Identifier: MIT
#include "SearchResult.h"

#include "CheckedMath.h"
#include "Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace quorvane {
namespace {

constexpr std::array<std::string_view, resultKindCount> kindNames{
    "Folder",      "Image",   "Video",     "Audio",      "Document", "PDF",
    "Application", "Archive", "Developer", "Disk Image", "Other"};

struct ExtensionKind
{
    std::string_view extension;
    ResultKind kind;
};

using enum ResultKind;
/// Sorted by extension. "txt" and the like are documents, whatever else they could be.
constexpr std::array extensionKinds{
    ExtensionKind{"7z", archive},
    ExtensionKind{"aac", audio},
    ExtensionKind{"aiff", audio},
    ExtensionKind{"avi", video},
    ExtensionKind{"bash", developer},
    ExtensionKind{"bmp", image},
    ExtensionKind{"bz2", archive},
    ExtensionKind{"c", developer},
    ExtensionKind{"cpp", developer},
    ExtensionKind{"css", developer},
    ExtensionKind{"csv", document},
    ExtensionKind{"dmg", diskImage},
    ExtensionKind{"doc", document},
    ExtensionKind{"docx", document},
    ExtensionKind{"flac", audio},
    ExtensionKind{"flv", video},
    ExtensionKind{"gif", image},
    ExtensionKind{"go", developer},
    ExtensionKind{"gz", archive},
    ExtensionKind{"h", developer},
    ExtensionKind{"heic", image},
    ExtensionKind{"html", developer},
    ExtensionKind{"ico", image},
    ExtensionKind{"img", diskImage},
    ExtensionKind{"iso", diskImage},
    ExtensionKind{"java", developer},
    ExtensionKind{"jpeg", image},
    ExtensionKind{"jpg", image},
    ExtensionKind{"js", developer},
    ExtensionKind{"json", developer},
    ExtensionKind{"jsx", developer},
    ExtensionKind{"m4a", audio},
    ExtensionKind{"m4v", video},
    ExtensionKind{"md", document},
    ExtensionKind{"mkv", video},
    ExtensionKind{"mov", video},
    ExtensionKind{"mp3", audio},
    ExtensionKind{"mp4", video},
    ExtensionKind{"odt", document},
    ExtensionKind{"ogg", audio},
    ExtensionKind{"pages", document},
    ExtensionKind{"pdf", pdf},
    ExtensionKind{"php", developer},
    ExtensionKind{"png", image},
    ExtensionKind{"ppt", document},
    ExtensionKind{"pptx", document},
    ExtensionKind{"py", developer},
    ExtensionKind{"rar", archive},
    ExtensionKind{"raw", image},
    ExtensionKind{"rb", developer},
    ExtensionKind{"rs", developer},
    ExtensionKind{"rtf", document},
    ExtensionKind{"scss", developer},
    ExtensionKind{"sh", developer},
    ExtensionKind{"sparsebundle", diskImage},
    ExtensionKind{"sparseimage", diskImage},
    ExtensionKind{"svg", image},
    ExtensionKind{"swift", developer},
    ExtensionKind{"tar", archive},
    ExtensionKind{"tiff", image},
    ExtensionKind{"ts", developer},
    ExtensionKind{"tsx", developer},
    ExtensionKind{"txt", document},
    ExtensionKind{"vue", developer},
    ExtensionKind{"wav", audio},
    ExtensionKind{"webm", video},
    ExtensionKind{"webp", image},
    ExtensionKind{"wma", audio},
    ExtensionKind{"wmv", video},
    ExtensionKind{"xls", document},
    ExtensionKind{"xlsx", document},
    ExtensionKind{"xz", archive},
    ExtensionKind{"yaml", developer},
    ExtensionKind{"yml", developer},
    ExtensionKind{"zip", archive},
    ExtensionKind{"zsh", developer},
};

constexpr bool isBefore(const ExtensionKind& a, const ExtensionKind& b)
{
    return a.extension < b.extension;
}
static_assert(std::is_sorted(extensionKinds.begin(), extensionKinds.end(), isBefore));

/// Longer endings name nothing.
constexpr std::size_t maxEnding = 16;

ResultKind kindOfEnding(std::string_view ending, bool isDir)
{
    if (ending == "app" || ending == "appimage" || ending == "desktop") {
        return application;
    }
    if (isDir) {
        return folder;
    }
    const auto row = std::lower_bound(extensionKinds.begin(), extensionKinds.end(),
                                      ExtensionKind{ending, other}, isBefore);
    return row != extensionKinds.end() && row->extension == ending ? row->kind : other;
}

} // namespace

std::string_view rawValue(ResultKind kind)
{
    return kindNames[static_cast<std::size_t>(kind)];
}

ResultKind FileKindClassifier::classify(std::string_view name, bool isDir)
{
    const ResultKind otherwise = isDir ? folder : other;
    const std::size_t point = name.rfind('.');
    if (point == std::string_view::npos || name.size() - point - 1 > maxEnding) {
        return otherwise;
    }
    const std::string ending = lowercased(name.substr(point + 1));
    const ResultKind kind = kindOfEnding(ending, isDir);
    // A point at the start hides the name and begins no extension; ".app" ends in ".app" all the
    // same.
    return point == 0 && kind != application ? otherwise : kind;
}

QString SearchResultsFormatter::size(std::int64_t bytes)
{
    static constexpr std::array<QStringView, 5> units{u"B", u"KB", u"MB", u"GB", u"TB"};
    constexpr double logarithmOf1024 = 6.931471805599453;
    if (bytes < 0) {
        overflowFault("SearchResultsFormatter.size");
    }
    if (bytes == 0) {
        return QStringLiteral("0 B");
    }
    const auto size = static_cast<double>(bytes);
    const int exponent = std::min(static_cast<int>(std::log(size) / logarithmOf1024), 4);
    // Not QString::number(): that rounds 1.25 up, while ties go to the even digit here.
    std::array<char, 64> digits;
    const auto written =
        std::to_chars(digits.data(), digits.data() + digits.size(),
                      std::ldexp(size, -10 * exponent), std::chars_format::fixed, 1);
    return QLatin1String(digits.data(), written.ptr) + QLatin1Char(' ') +
           units[static_cast<std::size_t>(exponent)];
}

QString SearchResultsFormatter::relativeDate(double ms, double nowMs)
{
    constexpr double dayMs = 86400000.0;
    constexpr double limit = 1e15;
    if (!(ms > 0)) {
        return {};
    }
    const auto days = static_cast<std::int64_t>(std::clamp((nowMs - ms) / dayMs, -limit, limit));
    const auto counted = [](std::int64_t count, QStringView unit) {
        return QString(QString::number(count) + QLatin1Char(' ') + unit + QStringView(u" ago"));
    };
    if (days == 0) {
        return QStringLiteral("Today");
    }
    if (days == 1) {
        return QStringLiteral("Yesterday");
    }
    if (days <= 6) {
        return counted(days, u"days");
    }
    if (days < 30) {
        return counted(days / 7, u"weeks");
    }
    return days < 365 ? counted(days / 30, u"months") : counted(days / 365, u"years");
}

} // namespace quorvane
