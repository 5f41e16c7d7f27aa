// SPDX-License-Identifier: MIT
#include "FileTypeCategory.h"

#include "RandomTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace quorvane {
namespace {

using enum FileTypeCategory;

struct Row
{
    FileTypeCategory category;
    const char* key;
    const char* label;
    double r;
    double g;
    double b;
};

const std::vector<Row> table{
    {video, "video", "Video", 0.557, 0.141, 0.667},
    {image, "image", "Image", 0.0, 0.675, 0.757},
    {doc, "doc", "Doc", 0.984, 0.549, 0.0},
    {dev, "dev", "Dev", 0.18, 0.8, 0.443},
    {archive, "archive", "Archive", 0.851, 0.22, 0.227},
    {audio, "audio", "Audio", 0.361, 0.42, 0.753},
    {FileTypeCategory::system, "system", "System", 0.29, 0.435, 0.647},
    {code, "code", "Code", 0.161, 0.502, 0.725},
    {project, "project", "Projects", 0.62, 0.482, 0.337},
    {other, "other", "Other", 0.4, 0.5, 0.66},
};

const std::map<FileTypeCategory, std::string> pieceTable{
    {video, "mp4 mov mkv m4v avi webm flv wmv 3gp"},
    {image, "jpg jpeg png heic heif gif webp tiff bmp svg raw ico psd"},
    {audio, "mp3 m4a wav aac flac ogg opus aiff wma"},
    {archive, "dmg zip tar gz tgz 7z rar bz2 xz jar war iso pkg ipa"},
    {doc, "pdf epub txt md markdown rtf doc docx pages ppt pptx key csv log readme"},
    {code, "js jsx py dylib app framework xcframework bundle kext plugin xpc prefpane component "
           "swiftmodule exe dll so wasm o a bin"},
    {dev, "swift ts tsx mjs cjs m mm c cpp h hpp go rb rs kt kts sh zsh bash cs css scss sass less "
          "json yaml yml sql xml vue html htm gradle plist entitlements xcconfig proto lock node"},
};

std::map<std::string, FileTypeCategory> pieces()
{
    std::map<std::string, FileTypeCategory> all;
    for (const auto& [category, list] : pieceTable) {
        std::istringstream words(list);
        for (std::string word; words >> word;) {
            all.emplace(word, category);
        }
    }
    return all;
}

std::string inCapitals(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

/// The obvious way: lower-case, split, keep the last piece that is not empty.
FileTypeCategory slowly(std::string name)
{
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    std::istringstream split(name);
    std::string last = name;
    for (std::string piece; std::getline(split, piece, '.');) {
        if (!piece.empty()) {
            last = piece;
        }
    }
    static const std::map<std::string, FileTypeCategory> all = pieces();
    const auto found = all.find(last);
    return found == all.end() ? other : found->second;
}

TEST(FileTypeCategory, TenCasesWithKeyLabelAndColour)
{
    ASSERT_EQ(allFileTypeCategories.size(), table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        const Row& row = table[i];
        EXPECT_EQ(allFileTypeCategories[i], row.category);
        EXPECT_EQ(rawValue(row.category), row.key);
        EXPECT_EQ(displayName(row.category).toStdString(), row.label);
        EXPECT_EQ(rgb(row.category).r, row.r) << row.key;
        EXPECT_EQ(rgb(row.category).g, row.g) << row.key;
        EXPECT_EQ(rgb(row.category).b, row.b) << row.key;
        EXPECT_EQ(fileTypeCategoryFromRawValue(row.key), row.category);
    }
}

TEST(FileTypeCategory, AnUnknownKeyIsNoCase)
{
    EXPECT_FALSE(fileTypeCategoryFromRawValue("projects"));
    EXPECT_FALSE(fileTypeCategoryFromRawValue("Video"));
    EXPECT_FALSE(fileTypeCategoryFromRawValue(""));
}

TEST(FileTypeCategory, TheLegendLeavesOutOther)
{
    const std::vector<FileTypeCategory> expected{
        video, image, doc, code, dev, project, archive, audio, FileTypeCategory::system};
    EXPECT_EQ(std::vector(legendCategories.begin(), legendCategories.end()), expected);
}

TEST(FileTypeCategory, EveryExtensionInAnyCase)
{
    const auto all = pieces();
    EXPECT_EQ(all.size(), 9U + 13 + 9 + 14 + 15 + 21 + 39);
    for (const auto& [piece, category] : all) {
        EXPECT_EQ(fileTypeCategoryForName("some name." + piece), category) << piece;
        EXPECT_EQ(fileTypeCategoryForName("SOME." + inCapitals(piece)), category) << piece;
        EXPECT_EQ(fileTypeCategoryForName(piece), category) << piece;
        EXPECT_EQ(fileTypeCategoryForName("." + piece), category) << piece;
        EXPECT_EQ(fileTypeCategoryForName("x." + piece + ".."), category) << piece;
        EXPECT_EQ(fileTypeCategoryForName(piece + ".quorvane-none"), other) << piece;
        EXPECT_EQ(fileTypeCategoryForName("a." + piece + " "), other) << piece;
    }
}

TEST(FileTypeCategory, NamesWithoutAnExtension)
{
    EXPECT_EQ(fileTypeCategoryForName("Makefile"), other);
    EXPECT_EQ(fileTypeCategoryForName("README"), doc);
    EXPECT_EQ(fileTypeCategoryForName("mp4"), video);
    EXPECT_EQ(fileTypeCategoryForName(""), other);
    EXPECT_EQ(fileTypeCategoryForName("..."), other);
    EXPECT_EQ(fileTypeCategoryForName(".profile"), other);
    EXPECT_EQ(fileTypeCategoryForName(".log"), doc);
}

TEST(FileTypeCategory, OnlyTheLastExtensionCounts)
{
    EXPECT_EQ(fileTypeCategoryForName("a.tar.gz"), archive);
    EXPECT_EQ(fileTypeCategoryForName("photo.jpg.txt"), doc);
    EXPECT_EQ(fileTypeCategoryForName("movie.mp4.part"), other);
}

TEST(FileTypeCategory, ScriptsAndTypedSourcesStandApart)
{
    EXPECT_EQ(fileTypeCategoryForName("a.js"), code);
    EXPECT_EQ(fileTypeCategoryForName("a.ts"), dev);
    EXPECT_EQ(fileTypeCategoryForName("a.mjs"), dev);
    EXPECT_EQ(fileTypeCategoryForName("a.py"), code);
    EXPECT_EQ(fileTypeCategoryForName("a.xlsx"), other);
}

TEST(FileTypeCategory, NoNameIsSystemOrProject)
{
    for (const char* name : {"system", "a.system", "project", "a.project", "projects", "Library"}) {
        EXPECT_EQ(fileTypeCategoryForName(name), other) << name;
    }
}

TEST(FileTypeCategory, BytesBeyondAscii)
{
    EXPECT_EQ(fileTypeCategoryForName("caf\xC3\xA9.mp3"), audio);
    EXPECT_EQ(fileTypeCategoryForName("bad\xFF.PNG"), image);
    EXPECT_EQ(fileTypeCategoryForName("a.mp\xC3\xA9"), other);
    EXPECT_EQ(fileTypeCategoryForName("a.\xFF\xFE"), other);
    // The Kelvin sign, U+212A, is a k in lower case.
    EXPECT_EQ(fileTypeCategoryForName("a.m\xE2\x84\xAAv"), video);
    EXPECT_EQ(fileTypeCategoryForName(std::string(300, 'x') + "\xE2\x84\xAA"), other);
}

TEST(FileTypeCategory, LongPiecesAreOther)
{
    EXPECT_EQ(fileTypeCategoryForName("a.entitlements"), dev);
    EXPECT_EQ(fileTypeCategoryForName("a.xentitlements"), other);
    EXPECT_EQ(fileTypeCategoryForName("a." + std::string(35, 'e')), other);
    EXPECT_EQ(fileTypeCategoryForName("a." + std::string(36, 'e')), other);
    EXPECT_EQ(fileTypeCategoryForName("a." + std::string(5000, 'e') + ".mp4"), video);
}

TEST(FileTypeCategory, AgreesWithTheObviousWayOnRandomNames)
{
    constexpr std::uint64_t seed = 41;
    SCOPED_TRACE(seed);
    test::Dice dice(seed);
    std::vector<std::string> words;
    for (const auto& [piece, category] : pieces()) {
        words.push_back(piece);
    }
    for (int i = 0; i < 50000; ++i) {
        std::string name;
        for (std::uint64_t part = dice.below(4); part > 0; --part) {
            if (dice.chance(0.5)) {
                const std::string& word = words[dice.below(words.size())];
                name += dice.chance(0.5) ? inCapitals(word) : word;
            }
            if (dice.chance(0.3)) {
                name += static_cast<char>('@' + dice.below(60));
            }
            name.append(dice.below(3), '.');
        }
        ASSERT_EQ(fileTypeCategoryForName(name), slowly(name)) << name;
    }
}

} // namespace
} // namespace quorvane
