// SPDX-License-Identifier: MIT
#include "NodeColors.h"

#include "TreeText.h"
#include "TreemapColors.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <vector>

namespace quorvane {
namespace {

/// Sets a palette for one test and puts back what was there.
class WithPalette
{
public:
    explicit WithPalette(AppPalette palette) { NodeColors::setActivePalette(palette); }
    WithPalette(const WithPalette&) = delete;
    WithPalette& operator=(const WithPalette&) = delete;
    ~WithPalette() { NodeColors::setActivePalette(m_before); }

private:
    AppPalette m_before = NodeColors::activePalette();
};

const std::map<AppPalette, std::vector<double>> hueTable{
    {AppPalette::defaultHues, {0.03, 0.1, 0.21, 0.36, 0.5, 0.6, 0.71, 0.88}},
    {AppPalette::forest, {0.06, 0.12, 0.18, 0.25, 0.33, 0.41, 0.07, 0.5}},
    {AppPalette::ocean, {0.5, 0.55, 0.58, 0.62, 0.66, 0.7, 0.52, 0.72}},
    {AppPalette::midnight, {0.58, 0.64, 0.7, 0.75, 0.8, 0.85, 0.62, 0.72}},
    {AppPalette::aurora, {0.15, 0.28, 0.42, 0.55, 0.68, 0.82, 0.95, 0.05}},
};

const std::vector<Color> tiles{{0.24, 0.35, 0.5},  {0.29, 0.49, 0.35}, {0.49, 0.42, 0.35},
                               {0.22, 0.25, 0.32}, {0.29, 0.33, 0.39}, {0.29, 0.36, 0.42},
                               {0.54, 0.58, 0.64}, {0.18, 0.23, 0.31}};

/// FNV-1a with the multiplication written out as shifts: the prime is 2^40 + 2^8 + 0xb3.
std::uint64_t slowHash(const std::string& bytes)
{
    std::uint64_t value = 14695981039346656037U;
    for (const char c : bytes) {
        value ^= static_cast<std::uint64_t>(static_cast<unsigned char>(c));
        std::uint64_t product = (value << 40) + (value << 8);
        for (int i = 0; i < 0xb3; ++i) {
            product += value;
        }
        value = product;
    }
    return value;
}

const std::vector<std::string> paths{"/",
                                     "/home/x",
                                     "/home/X",
                                     "/home/x/Documents",
                                     "/home/x/Library",
                                     "/caf\xC3\xA9",
                                     "/cafe\xCC\x81",
                                     "/bad\xFF",
                                     "/a/b/c/d/e/f",
                                     "/Volumes/Disk 1"};

TEST(NodeColors, StartsWithSlate)
{
    EXPECT_EQ(NodeColors::activePalette(), AppPalette::slate);
}

TEST(NodeColors, HashGivesThePublishedValues)
{
    EXPECT_EQ(NodeColors::hash(""), 0xcbf29ce484222325U);
    EXPECT_EQ(NodeColors::hash("a"), 0xaf63dc4c8601ec8cU);
    EXPECT_EQ(NodeColors::hash("foobar"), 0x85944171f73967e8U);
}

TEST(NodeColors, HashTakesTheBytesAsTheyAre)
{
    for (const std::string& path : paths) {
        EXPECT_EQ(NodeColors::hash(path), slowHash(path)) << path;
    }
    // The same letter composed and decomposed.
    EXPECT_NE(NodeColors::hash("caf\xC3\xA9"), NodeColors::hash("cafe\xCC\x81"));
}

TEST(NodeColors, HuesComeFromThePalettesRow)
{
    for (const auto& [palette, hues] : hueTable) {
        const WithPalette active(palette);
        const auto row = NodeColors::folderPalette();
        EXPECT_EQ(std::vector(row.begin(), row.end()), hues);
        for (const std::string& path : paths) {
            EXPECT_EQ(NodeColors::hue(path), hues[slowHash(path) % 8]) << path;
            EXPECT_EQ(NodeColors::folderBase(path),
                      Color::hsb(hues[slowHash(path) % 8], 0.55, 0.86))
                << path;
        }
    }
}

TEST(NodeColors, SlateAnswersHuesFromTheDefaultRow)
{
    const WithPalette active(AppPalette::slate);
    const auto row = NodeColors::folderPalette();
    EXPECT_EQ(std::vector(row.begin(), row.end()), hueTable.at(AppPalette::defaultHues));
    EXPECT_EQ(NodeColors::hue("/home/x"),
              hueTable.at(AppPalette::defaultHues)[slowHash("/home/x") % 8]);
}

TEST(NodeColors, SlateFoldersTakeATile)
{
    const WithPalette active(AppPalette::slate);
    EXPECT_EQ(std::vector(NodeColors::slateTiles.begin(), NodeColors::slateTiles.end()), tiles);
    for (const std::string& path : paths) {
        EXPECT_EQ(NodeColors::folderBase(path), tiles[slowHash(path) % 8]) << path;
    }
}

TEST(NodeColors, AFileIsColouredByItsCategory)
{
    const auto tree = test::treeFromText("A.MP4 1\nb.unknown 1\nlink.zip@ 1\n");
    EXPECT_EQ(NodeColors::leafColor(test::nodeAt(tree->root(), "A.MP4")),
              (Color{0.557, 0.141, 0.667}));
    EXPECT_EQ(NodeColors::leafColor(test::nodeAt(tree->root(), "link.zip")),
              (Color{0.851, 0.22, 0.227}));
    EXPECT_EQ(NodeColors::leafColor(test::nodeAt(tree->root(), "b.unknown")),
              (Color{0.4, 0.5, 0.66}));
}

TEST(NodeColors, AFolderIsColouredByItsFullPathNotItsName)
{
    const WithPalette active(AppPalette::ocean);
    const auto tree = test::treeFromText("a/\n  same.mp4/\nb/\n  same.mp4/\n");
    EXPECT_EQ(NodeColors::leafColor(test::nodeAt(tree->root(), "a/same.mp4")),
              NodeColors::folderBase("/scan/a/same.mp4"));
    EXPECT_EQ(NodeColors::leafColor(test::nodeAt(tree->root(), "b/same.mp4")),
              NodeColors::folderBase("/scan/b/same.mp4"));
    EXPECT_EQ(NodeColors::leafColor(tree->root()), NodeColors::folderBase("/scan"));
}

TEST(NodeColors, OtherHasNoAccentButTheSameColour)
{
    EXPECT_EQ(NodeColors::categoryAccent("x.unknown"), std::nullopt);
    EXPECT_EQ(NodeColors::categoryAccent("x.ZIP"),
              NodeColors::legendColor(FileTypeCategory::archive));
    EXPECT_EQ(NodeColors::genericFileColor, NodeColors::legendColor(FileTypeCategory::other));
}

TEST(NodeColors, LegendColoursAreTheCategoriesOwn)
{
    for (const FileTypeCategory category : allFileTypeCategories) {
        const CategoryRgb fixed = rgb(category);
        EXPECT_EQ(NodeColors::legendColor(category), (Color{fixed.r, fixed.g, fixed.b, 1}));
    }
}

TEST(NodeColors, BoundaryIsOpaqueOnlyForSlate)
{
    {
        const WithPalette active(AppPalette::slate);
        EXPECT_EQ(NodeColors::boundaryColor(), (Color{0.03, 0.035, 0.04, 1}));
    }
    for (const auto& [palette, hues] : hueTable) {
        const WithPalette active(palette);
        EXPECT_EQ(NodeColors::boundaryColor(), (Color{0, 0, 0, 0.28}));
    }
}

TEST(NodeColors, LighteningMovesToWhiteAndDarkeningToBlack)
{
    const Color color{0.2, 0.5, 1, 0.3};
    const Color lighter = NodeColors::lightened(color, 0.5);
    EXPECT_DOUBLE_EQ(lighter.r, 0.6);
    EXPECT_DOUBLE_EQ(lighter.g, 0.75);
    EXPECT_DOUBLE_EQ(lighter.b, 1);
    EXPECT_EQ(lighter.a, 1);
    const Color darker = NodeColors::darkened(color, 0.75);
    EXPECT_DOUBLE_EQ(darker.r, 0.05);
    EXPECT_DOUBLE_EQ(darker.g, 0.125);
    EXPECT_DOUBLE_EQ(darker.b, 0.25);
    EXPECT_EQ(darker.a, 1);
    EXPECT_EQ(NodeColors::lightened(color, 0), (Color{0.2, 0.5, 1}));
    EXPECT_EQ(NodeColors::lightened(color, 1), Color::white());
    EXPECT_EQ(NodeColors::darkened(color, 1), (Color{0, 0, 0}));
}

TEST(NodeColors, AColourThatIsNoneCountsAsWhite)
{
    const Color none{std::numeric_limits<double>::quiet_NaN(), 0.1, 0.1};
    EXPECT_EQ(NodeColors::lightened(none, 0.4), Color::white());
    EXPECT_EQ(NodeColors::darkened(none, 0.25), (Color{0.75, 0.75, 0.75}));
}

TEST(NodeColors, CanvasOfEachPalette)
{
    const std::map<AppPalette, std::optional<Color>> washes{
        {AppPalette::defaultHues, std::nullopt},
        {AppPalette::forest, Color::hsb(0.28, 0.18, 0.93)},
        {AppPalette::ocean, Color::hsb(0.58, 0.16, 0.95)},
        {AppPalette::midnight, Color::hsb(0.72, 0.14, 0.94)},
        {AppPalette::aurora, Color::hsb(0.8, 0.12, 0.97)},
        {AppPalette::slate, Color{0.063, 0.071, 0.082}}};
    for (const auto& [palette, wash] : washes) {
        const WithPalette active(palette);
        EXPECT_EQ(NodeColors::canvasWash(), wash);
    }
}

TEST(NodeColors, WindowTintOfEachPalette)
{
    EXPECT_EQ(NodeColors::shellTint(AppPalette::defaultHues).a, 0);
    EXPECT_EQ(NodeColors::shellTint(AppPalette::forest), Color::hsb(0.32, 0.42, 0.5));
    EXPECT_EQ(NodeColors::shellTint(AppPalette::ocean), Color::hsb(0.56, 0.42, 0.58));
    EXPECT_EQ(NodeColors::shellTint(AppPalette::midnight), Color::hsb(0.7, 0.4, 0.56));
    EXPECT_EQ(NodeColors::shellTint(AppPalette::aurora), Color::hsb(0.82, 0.44, 0.62));
    EXPECT_EQ(NodeColors::shellTint(AppPalette::slate), (Color{0.22, 0.3, 0.42}));
}

TEST(TreemapColors, AreOpaque)
{
    EXPECT_EQ(TreemapColors::folderBodyColor, (Color{0.086, 0.094, 0.11, 1}));
    EXPECT_EQ(TreemapColors::folderHeaderColor, (Color{0.169, 0.18, 0.212, 1}));
    EXPECT_EQ(TreemapColors::folderSizeColor, (Color{0.627, 0.647, 0.71, 1}));
}

} // namespace
} // namespace quorvane
