// SPDX-License-Identifier: MIT
#include "FileTypeCategory.h"

#include "Text.h"

#include <QStringView>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace quorvane {
namespace {

struct CategoryRow
{
    FileTypeCategory category;
    std::string_view key;
    QStringView label;
    CategoryRgb rgb;
};

constexpr std::array rows{
    CategoryRow{FileTypeCategory::video, "video", u"Video", {0.557, 0.141, 0.667}},
    CategoryRow{FileTypeCategory::image, "image", u"Image", {0.0, 0.675, 0.757}},
    CategoryRow{FileTypeCategory::doc, "doc", u"Doc", {0.984, 0.549, 0.0}},
    CategoryRow{FileTypeCategory::dev, "dev", u"Dev", {0.18, 0.8, 0.443}},
    CategoryRow{FileTypeCategory::archive, "archive", u"Archive", {0.851, 0.22, 0.227}},
    CategoryRow{FileTypeCategory::audio, "audio", u"Audio", {0.361, 0.42, 0.753}},
    CategoryRow{FileTypeCategory::system, "system", u"System", {0.29, 0.435, 0.647}},
    CategoryRow{FileTypeCategory::code, "code", u"Code", {0.161, 0.502, 0.725}},
    CategoryRow{FileTypeCategory::project, "project", u"Projects", {0.62, 0.482, 0.337}},
    CategoryRow{FileTypeCategory::other, "other", u"Other", {0.4, 0.5, 0.66}},
};

constexpr bool rowsFollowTheCases()
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (static_cast<std::size_t>(rows[i].category) != i ||
            rows[i].category != allFileTypeCategories[i]) {
            return false;
        }
    }
    return rows.size() == allFileTypeCategories.size();
}
static_assert(rowsFollowTheCases());

const CategoryRow& rowOf(FileTypeCategory category)
{
    return rows[static_cast<std::size_t>(category)];
}

struct PieceList
{
    FileTypeCategory category;
    std::string_view pieces; ///< separated by single blanks
};

constexpr std::array pieceLists{
    PieceList{FileTypeCategory::video, "mp4 mov mkv m4v avi webm flv wmv 3gp"},
    PieceList{FileTypeCategory::image, "jpg jpeg png heic heif gif webp tiff bmp svg raw ico psd"},
    PieceList{FileTypeCategory::audio, "mp3 m4a wav aac flac ogg opus aiff wma"},
    PieceList{FileTypeCategory::archive, "dmg zip tar gz tgz 7z rar bz2 xz jar war iso pkg ipa"},
    PieceList{FileTypeCategory::doc,
              "pdf epub txt md markdown rtf doc docx pages ppt pptx key csv log readme"},
    PieceList{FileTypeCategory::code,
              "js jsx py dylib app framework xcframework bundle kext plugin xpc prefpane component "
              "swiftmodule exe dll so wasm o a bin"},
    PieceList{FileTypeCategory::dev,
              "swift ts tsx mjs cjs m mm c cpp h hpp go rb rs kt kts sh zsh bash cs css scss sass "
              "less json yaml yml sql xml vue html htm gradle plist entitlements xcconfig proto "
              "lock node"},
};

struct Slot
{
    std::string_view piece;
    FileTypeCategory category = FileTypeCategory::other;
};

/// A power of two, four times as large as the table needs, so that a miss ends at once.
constexpr std::size_t slotCount = 512;
constexpr std::size_t longestPiece = 12;

constexpr std::size_t firstSlot(std::string_view piece)
{
    std::uint32_t hash = 2166136261U;
    for (const char c : piece) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
    }
    return (hash ^ (hash >> 15)) & (slotCount - 1);
}

/// Every piece in an open-addressed table. Naming a piece twice or one that is longer than
/// longestPiece does not compile.
constexpr std::array<Slot, slotCount> makeSlots()
{
    std::array<Slot, slotCount> slots{};
    for (const PieceList& list : pieceLists) {
        std::string_view rest = list.pieces;
        while (!rest.empty()) {
            const std::string_view piece = rest.substr(0, rest.find(' '));
            rest.remove_prefix(std::min(piece.size() + 1, rest.size()));
            std::size_t i = firstSlot(piece);
            while (!slots[i].piece.empty()) {
                if (slots[i].piece == piece) {
                    throw "a piece stands twice";
                }
                i = (i + 1) & (slotCount - 1);
            }
            if (piece.size() > longestPiece) {
                throw "a piece is longer than the scratch buffer";
            }
            slots[i] = {piece, list.category};
        }
    }
    return slots;
}

constexpr std::array<Slot, slotCount> slots = makeSlots();

FileTypeCategory lookUp(std::string_view piece)
{
    for (std::size_t i = firstSlot(piece); !slots[i].piece.empty(); i = (i + 1) & (slotCount - 1)) {
        if (slots[i].piece == piece) {
            return slots[i].category;
        }
    }
    return FileTypeCategory::other;
}

/// What follows the last dot, trailing dots left out; the whole name when it holds nothing else.
std::string_view lastPiece(std::string_view name)
{
    const std::size_t last = name.find_last_not_of('.');
    if (last == std::string_view::npos) {
        return name;
    }
    const std::string_view trimmed = name.substr(0, last + 1);
    return trimmed.substr(trimmed.rfind('.') + 1);
}

} // namespace

std::string_view rawValue(FileTypeCategory category)
{
    return rowOf(category).key;
}

std::optional<FileTypeCategory> fileTypeCategoryFromRawValue(std::string_view text)
{
    for (const CategoryRow& row : rows) {
        if (row.key == text) {
            return row.category;
        }
    }
    return std::nullopt;
}

QString displayName(FileTypeCategory category)
{
    return rowOf(category).label.toString();
}

CategoryRgb rgb(FileTypeCategory category)
{
    return rowOf(category).rgb;
}

FileTypeCategory fileTypeCategoryForName(std::string_view name)
{
    const std::string_view piece = lastPiece(name);
    // Lower-casing makes a text at most three times shorter (the Kelvin sign becomes a k).
    if (piece.size() > longestPiece * 3) {
        return FileTypeCategory::other;
    }
    std::array<char, longestPiece * 3> lowered;
    unsigned seen = 0;
    for (std::size_t i = 0; i < piece.size(); ++i) {
        const char c = piece[i];
        seen |= static_cast<unsigned char>(c);
        lowered[i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    if (seen >= 0x80) {
        return lookUp(lowercased(piece));
    }
    return lookUp({lowered.data(), piece.size()});
}

} // namespace quorvane
