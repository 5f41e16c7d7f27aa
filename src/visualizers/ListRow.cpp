// SPDX-License-Identifier: MIT
#include "ListRow.h"

#include "FileNode.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <string_view>

namespace quorvane {
namespace {

using namespace std::string_view_literals;

constexpr std::array pictures{"png"sv, "jpg"sv, "jpeg"sv, "heic"sv, "gif"sv, "tiff"sv};
constexpr std::array papers{"pdf"sv};
constexpr std::array archives{"zip"sv, "dmg"sv, "7z"sv, "tar"sv, "gz"sv, "bz2"sv};
constexpr std::array sources{"swift"sv, "py"sv, "js"sv, "ts"sv,  "rb"sv,
                             "go"sv,    "rs"sv, "c"sv,  "cpp"sv, "h"sv};
constexpr std::array films{"mp4"sv, "mov"sv, "m4v"sv};
constexpr std::array sounds{"mp3"sv, "m4a"sv, "wav"sv, "flac"sv};

struct IconRule
{
    std::span<const std::string_view> extensions;
    const char* symbol;
};

constexpr std::array iconRules{
    IconRule{pictures, "photo"},      IconRule{papers, "doc.richtext"},
    IconRule{archives, "archivebox"}, IconRule{sources, "chevron.left.forwardslash.chevron.right"},
    IconRule{films, "film"},          IconRule{sounds, "music.note"}};

/// What stands behind the last dot, in lower case; empty without a dot.
std::string extensionOf(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    std::string extension(dot == name.npos ? std::string_view() : name.substr(dot + 1));
    for (char& letter : extension) {
        letter = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    }
    return extension;
}

QString formatted(std::optional<std::int64_t> seconds, const QString& format)
{
    return seconds ? QLocale::c().toString(QDateTime::fromSecsSinceEpoch(*seconds), format)
                   : QString();
}

} // namespace

QString ListRow::iconName(const FileNode& node)
{
    if (node.isSymbolicLink()) {
        return QStringLiteral("link");
    }
    if (node.isDirectory()) {
        return QStringLiteral("folder");
    }
    const std::string extension = extensionOf(node.name());
    for (const IconRule& rule : iconRules) {
        if (std::find(rule.extensions.begin(), rule.extensions.end(), extension) !=
            rule.extensions.end()) {
            return QString::fromLatin1(rule.symbol);
        }
    }
    return QStringLiteral("doc");
}

QString ListRow::dateText(std::optional<std::int64_t> seconds)
{
    return formatted(seconds, QStringLiteral("MMM d, yyyy"));
}

QString ListRow::dateAndTimeText(std::optional<std::int64_t> seconds)
{
    return formatted(seconds, QStringLiteral("MMM d, yyyy 'at' h:mm AP"));
}

QString ListRow::shareText(std::int64_t bytes, std::int64_t total)
{
    const double share = static_cast<double>(bytes) / static_cast<double>(total) * 100;
    return QString::number(share, 'f', 1) + QLatin1Char('%');
}

} // namespace quorvane
