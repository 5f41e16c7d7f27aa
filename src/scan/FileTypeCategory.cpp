// SPDX-License-Identifier: MIT
#include "FileTypeCategory.h"

#include "Text.h"

#include <QStringView>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

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

/// A piece packed into two words, its last byte lowest, so that comparing it needs no memory.
struct PackedPiece
{
    std::uint64_t tail = 0; ///< the last eight bytes
    std::uint64_t head = 0; ///< those before them

    friend constexpr bool operator==(const PackedPiece&, const PackedPiece&) = default;
};

constexpr std::size_t wordBytes = sizeof(std::uint64_t);
constexpr std::size_t maxPieceLength = 12;

constexpr PackedPiece packed(std::string_view piece)
{
    PackedPiece words;
    for (std::size_t i = 0; i < piece.size(); ++i) {
        const std::size_t fromEnd = piece.size() - 1 - i;
        const std::uint64_t byte = static_cast<unsigned char>(piece[i]);
        (fromEnd < wordBytes ? words.tail : words.head) |= byte << (fromEnd % wordBytes * 8);
    }
    return words;
}

/// All eight bytes lower-cased at once; each has to be ASCII.
constexpr std::uint64_t lowered(std::uint64_t ascii)
{
    constexpr std::uint64_t ones = 0x0101010101010101U;
    const std::uint64_t fromA = ascii + ones * (0x80 - 'A');
    const std::uint64_t pastZ = ascii + ones * (0x7f - 'Z');
    return ascii | ((fromA & ~pastZ & (ones * 0x80)) >> 2);
}
static_assert(lowered(0x405A41617A5B302EU) == 0x407A61617A5B302EU);

struct Slot
{
    PackedPiece piece;
    FileTypeCategory category = FileTypeCategory::other;
};

/// A power of two, several times as large as the table needs, so that a miss ends at once.
constexpr unsigned slotBits = 9;
constexpr std::size_t slotCount = 1U << slotBits;

constexpr std::size_t firstSlot(const PackedPiece& piece)
{
    const std::uint64_t mixed = (piece.tail ^ (piece.head << 7)) * 0x9E3779B97F4A7C15U;
    return static_cast<std::size_t>(mixed >> (64 - slotBits));
}

constexpr std::size_t slotOf(std::span<const Slot, slotCount> pieceSlots, const PackedPiece& piece)
{
    std::size_t i = firstSlot(piece);
    while (pieceSlots[i].piece != PackedPiece() && pieceSlots[i].piece != piece) {
        i = (i + 1) % slotCount;
    }
    return i;
}

/// Every piece in an open-addressed table. Naming a piece twice or one that is longer than
/// maxPieceLength does not compile.
constexpr std::array<Slot, slotCount> makeSlots()
{
    std::array<Slot, slotCount> pieceSlots{};
    for (const PieceList& list : pieceLists) {
        std::string_view rest = list.pieces;
        while (!rest.empty()) {
            const std::string_view piece = rest.substr(0, rest.find(' '));
            rest.remove_prefix(std::min(piece.size() + 1, rest.size()));
            Slot& slot = pieceSlots[slotOf(pieceSlots, packed(piece))];
            if (slot.piece == packed(piece) || piece.size() > maxPieceLength) {
                throw "a piece stands twice or is too long";
            }
            slot = {packed(piece), list.category};
        }
    }
    return pieceSlots;
}

constexpr std::array<Slot, slotCount> pieceSlots = makeSlots();

/// The category of an empty slot is `other`.
FileTypeCategory lookUp(const PackedPiece& piece)
{
    return pieceSlots[slotOf(pieceSlots, piece)].category;
}

/// For a piece with bytes beyond ASCII, some of which may become ASCII: the Kelvin sign, for one.
FileTypeCategory lookUpText(std::string_view piece)
{
    const std::string text = lowercased(piece);
    return text.size() > maxPieceLength ? FileTypeCategory::other : lookUp(packed(text));
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
    // Lower-casing makes a text at most three times shorter.
    constexpr std::size_t maxRawLength = maxPieceLength * 3;
    std::size_t end = name.size();
    while (end > 0 && name[end - 1] == '.') {
        --end;
    }
    PackedPiece piece;
    unsigned seen = 0;
    std::size_t begin = end;
    for (; begin > 0 && name[begin - 1] != '.'; --begin) {
        const std::uint64_t byte = static_cast<unsigned char>(name[begin - 1]);
        const std::size_t fromEnd = end - begin;
        if (fromEnd >= maxRawLength) {
            return FileTypeCategory::other;
        }
        seen |= static_cast<unsigned>(byte);
        (fromEnd < wordBytes ? piece.tail : piece.head) |= byte << (fromEnd % wordBytes * 8);
    }
    if (seen >= 0x80) {
        return lookUpText(name.substr(begin, end - begin));
    }
    if (end - begin > maxPieceLength) {
        return FileTypeCategory::other;
    }
    return lookUp({lowered(piece.tail), lowered(piece.head)});
}

} // namespace quorvane
