// SPDX-License-Identifier: MIT
#include "EntryNames.h"

#include "SeededRandom.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>

namespace quorvane {
namespace {

// Lengths are spread evenly between these: 15.5 in the mean.
constexpr std::size_t shortestName = 8;
constexpr std::size_t longestName = 23;

constexpr std::string_view extensions[] = {
    ".jpg", ".jpg",  ".png", ".heic", ".gif",  ".svg",  ".mp4",  ".mov", ".mkv", ".pdf",
    ".txt", ".docx", ".md",  ".xlsx", ".cpp",  ".h",    ".h",    ".py",  ".js",  ".js",
    ".ts",  ".rs",   ".go",  ".java", ".html", ".css",  ".json", ".xml", ".zip", ".tar.gz",
    ".dmg", ".deb",  ".mp3", ".flac", ".wav",  ".log",  ".o",    ".so",  ".db",  ".lock",
    ".bin", ".dat",  ".tmp", "",      "",      ".yaml", ".toml", ".map", ".ttf", ".sqlite"};

constexpr std::string_view topFolders[] = {"Documents", "Library", "Pictures", ".cache"};

constexpr std::string_view knownFolders[] = {
    "node_modules", "build", "src",     "DerivedData", "__pycache__", "Caches", "vendor",
    "target",       "dist",  ".gradle", "containers",  "projects",    "venv",   "packages"};

constexpr std::string_view wideLetters[] = {"é", "ß", "ø", "日本", "мир", "🗂"};

/// In base 36, so that a place takes few bytes of a short name.
std::string placeText(std::size_t place)
{
    static constexpr char digits[] = "0123456789abcdefghijklmnopqrstuvwxyz";
    std::string text;
    do {
        text.insert(text.begin(), digits[place % 36]);
        place /= 36;
    } while (place > 0);
    return text;
}

/// Letters, the mark, the place, the extension. The place behind the last mark keeps names apart.
std::string composedName(SeededRandom& random, std::size_t place, char mark,
                         std::string_view extension)
{
    const std::size_t wanted =
        shortestName + static_cast<std::size_t>(random.below(longestName - shortestName + 1));
    const std::string ending = mark + placeText(place) + std::string(extension);
    const std::size_t letters = wanted > ending.size() ? wanted - ending.size() : 1;
    std::string name = random.oneIn(50) ? "." : "";
    if (random.oneIn(64)) {
        name += wideLetters[random.below(std::size(wideLetters))];
    }
    while (name.size() < letters) {
        const bool isCapital = name.empty() && random.oneIn(3);
        name.push_back(static_cast<char>((isCapital ? 'A' : 'a') + random.below(26)));
    }
    return name + ending;
}

} // namespace

std::string generatedFileName(SeededRandom& random, std::size_t place)
{
    return composedName(random, place, '-', extensions[random.below(std::size(extensions))]);
}

std::string generatedFolderName(SeededRandom& random, std::size_t place, bool isAtTop)
{
    if (isAtTop && place < std::size(topFolders)) {
        return std::string(topFolders[place]);
    }
    if (!isAtTop && place < std::size(knownFolders) && random.oneIn(6)) {
        return std::string(knownFolders[place]);
    }
    return composedName(random, place, '_', "");
}

} // namespace quorvane
