// SPDX-License-Identifier: MIT
#include "TreemapPainter.h"

#include "LockedFlag.h"
#include "NodeColors.h"
#include "Theme.h"
#include "TreeText.h"
#include "TreemapColors.h"
#include "TreemapScene.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quorvane {
namespace {

QColor opaque(const Color& color)
{
    return QColor::fromRgbF(static_cast<float>(color.r), static_cast<float>(color.g),
                            static_cast<float>(color.b));
}

bool isNear(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) <= 2 && std::abs(a.green() - b.green()) <= 2 &&
           std::abs(a.blue() - b.blue()) <= 2;
}

class TreemapPainterTests : public ::testing::Test
{
protected:
    CanvasRendering rendered(const std::string& text, qreal ratio = 1)
    {
        m_tree = test::treeFromText(text);
        SceneRequest request;
        request.target = m_tree->rootPointer();
        request.isScanRoot = true;
        request.size = QSize(400, 300);
        const LockedFlag stop;
        const CanvasStyle style{font(TextStyle::caption), QColor(16, 18, 21), ratio};
        return renderScene(TreemapScene::make(request, stop), style, stop);
    }

    std::shared_ptr<FileTree> m_tree;
};

TEST_F(TreemapPainterTests, FileTakesTheColourOfItsKind)
{
    const CanvasRendering one = rendered("film.mp4 1000\n");
    // Far below the label.
    EXPECT_TRUE(isNear(one.bright.pixelColor(200, 200),
                       opaque(NodeColors::legendColor(FileTypeCategory::video))));
}

TEST_F(TreemapPainterTests, DimmedTileIsHalfGround)
{
    const CanvasRendering one = rendered("film.mp4 1000\n");
    const QColor bright = one.bright.pixelColor(200, 200);
    const QColor dimmed = one.dimmed.pixelColor(200, 200);
    EXPECT_TRUE(isNear(dimmed, QColor((bright.red() + 16) / 2, (bright.green() + 18) / 2,
                                      (bright.blue() + 21) / 2)));
}

TEST_F(TreemapPainterTests, FolderHasAHeaderStripAndABody)
{
    const CanvasRendering one = rendered("things/\n  a.txt 500\n  b.mp3 500\n");
    // The strip's middle, away from the name on the left and the size on the right.
    EXPECT_TRUE(isNear(one.bright.pixelColor(200, 4), opaque(TreemapColors::folderHeaderColor)));
}

TEST_F(TreemapPainterTests, DimmedHeaderOnAPaleGroundIsDarkEnoughForWhiteText)
{
    const CanvasRendering one = rendered("things/\n  a.txt 500\n  b.mp3 500\n");
    const LockedFlag stop;
    const CanvasRendering pale =
        renderScene(one.scene, {QFont(), QColor(0xCF, 0xEC, 0xC0), 1}, stop);
    const auto channel = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    const QColor strip = pale.dimmed.pixelColor(200, 4);
    const double luminance = 0.2126 * channel(strip.redF()) + 0.7152 * channel(strip.greenF()) +
                             0.0722 * channel(strip.blueF());
    EXPECT_GE(1.05 / (luminance + 0.05), 4.5);
    EXPECT_TRUE(isNear(pale.bright.pixelColor(200, 4), opaque(TreemapColors::folderHeaderColor)));
}

TEST_F(TreemapPainterTests, TextOfACoveredTileIsGone)
{
    // The chain's own slice covers the header of the top tile: one name stands there, not two.
    const CanvasRendering chain = rendered("top/\n  inner/\n    a.txt 500\n    b.txt 400\n");
    const CanvasRendering alone = rendered("inner/\n  a.txt 500\n  b.txt 400\n");
    // Inside the strip, clear of the corners, where two edges lie over each other.
    const QRect strip(5, 4, 90, 9);
    EXPECT_EQ(chain.bright.copy(strip), alone.bright.copy(strip));
}

TEST_F(TreemapPainterTests, PictureHasThePixelsOfTheScreen)
{
    EXPECT_EQ(rendered("a.txt 5\n", 2).bright.size(), QSize(800, 600));
    EXPECT_EQ(rendered("a.txt 5\n", 1.5).bright.size(), QSize(600, 450));
}

TEST_F(TreemapPainterTests, EveryPaletteDrawsItsOwnBoundary)
{
    const AppPalette before = NodeColors::activePalette();
    const std::string text = "a.bin 500\nb.bin 500\n";
    NodeColors::setActivePalette(AppPalette::slate);
    const QImage slate = rendered(text).bright;
    NodeColors::setActivePalette(AppPalette::ocean);
    const QImage ocean = rendered(text).bright;
    NodeColors::setActivePalette(before);
    EXPECT_NE(slate, ocean);
}

TEST(LabelScrimTests, ReachesTheContrastAndNoMore)
{
    const auto contrastWith = [](const QColor& fill, double black) {
        const QColor darker = QColor::fromRgbF(fill.redF() * static_cast<float>(1 - black),
                                               fill.greenF() * static_cast<float>(1 - black),
                                               fill.blueF() * static_cast<float>(1 - black));
        return contrastRatio(Qt::white, darker);
    };
    for (const FileTypeCategory category : allFileTypeCategories) {
        const QColor fill = opaque(NodeColors::legendColor(category));
        const double black = labelScrimOpacity(fill);
        EXPECT_GE(contrastWith(fill, black), 5.15) << displayName(category).toStdString();
        if (black > 0) {
            EXPECT_LT(contrastWith(fill, black - 0.02), 5.2) << displayName(category).toStdString();
        }
    }
    EXPECT_EQ(labelScrimOpacity(QColor(Qt::black)), 0);
}

} // namespace
} // namespace quorvane
