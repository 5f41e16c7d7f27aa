// SPDX-License-Identifier: MIT
#include "TreemapScene.h"

#include "LockedFlag.h"
#include "TreeText.h"

#include <gtest/gtest.h>

#include <QPainter>

#include <algorithm>

namespace quorvane {
namespace {

class TreemapSceneTests : public ::testing::Test
{
protected:
    std::shared_ptr<const TreemapScene> scene(const std::string& text, QSize size = {800, 600},
                                              const std::string& target = {})
    {
        m_tree = test::treeFromText(text);
        SceneRequest request;
        FileNode& node = test::nodeAt(m_tree->root(), target);
        request.target = NodePointer(m_tree->rootPointer(), &node);
        request.isScanRoot = target.empty();
        request.size = size;
        const LockedFlag stop;
        return std::static_pointer_cast<const TreemapScene>(TreemapScene::make(request, stop));
    }

    std::string nameAt(const CanvasScene& scene, double x, double y) const
    {
        const std::optional<std::size_t> item = scene.itemAt(QPointF(x, y));
        return item ? std::string(scene.nodeOf(*item)->name()) : std::string("nothing");
    }

    std::shared_ptr<FileTree> m_tree;
};

constexpr const char* folderOfTwo = "things/\n  a.txt 600\n  b.txt 400\n";

TEST_F(TreemapSceneTests, PointerOnAHeaderHitsTheFolder)
{
    EXPECT_EQ(nameAt(*scene(folderOfTwo), 400, 5), "things");
}

TEST_F(TreemapSceneTests, PointerOnAChildHitsTheChild)
{
    const auto one = scene(folderOfTwo);
    EXPECT_EQ(nameAt(*one, 100, 300), "a.txt");
    EXPECT_EQ(nameAt(*one, 700, 300), "b.txt");
}

TEST_F(TreemapSceneTests, PointerInTheGapBelowChildrenHitsTheFolder)
{
    const auto one = scene(folderOfTwo);
    const QRectF folder = one->boundsOf(0);
    // The body is inset by one point: its outermost line belongs to the folder.
    EXPECT_EQ(nameAt(*one, folder.left() + 0.4, folder.center().y()), "things");
}

TEST_F(TreemapSceneTests, PointerOutsideEverythingHitsNothing)
{
    const auto one = scene(folderOfTwo);
    EXPECT_FALSE(one->itemAt(QPointF(-1, 5)));
    // The zones end two points before the edge that parts them.
    EXPECT_FALSE(one->itemAt(QPointF(400, 599)));
}

TEST_F(TreemapSceneTests, ChainSliceWinsOverTheTileBeneath)
{
    EXPECT_EQ(nameAt(*scene("a/\n  b/\n    c/\n      x.txt 10\n      y.txt 10\n"), 400, 5), "c");
}

TEST_F(TreemapSceneTests, AggregateTellsWhatItStandsFor)
{
    std::string text = "box/\n  big.bin 1000000\n";
    for (int i = 0; i < 200; ++i) {
        text += "  n" + std::to_string(i) + ".txt 100\n";
    }
    const auto one = scene(text + "other.bin 1000000\n");
    const auto& slices = one->slices();
    const auto aggregate = std::find_if(slices.begin(), slices.end(),
                                        [](const auto& slice) { return slice.isAggregateTile; });
    ASSERT_NE(aggregate, slices.end());
    const auto item = static_cast<std::size_t>(aggregate - slices.begin());
    const TooltipText tip = one->tooltipOf(item);
    EXPECT_EQ(tip.title, QStringLiteral("box"));
    EXPECT_EQ(tip.detail,
              QStringLiteral("200 micro files totaling 19.5 KB, click to zoom into box"));
    EXPECT_EQ(one->idOf(item), -(test::nodeAt(m_tree->root(), "box").id() + 1000003));
    EXPECT_EQ(one->nodeOf(item), &test::nodeAt(m_tree->root(), "box"));
}

TEST_F(TreemapSceneTests, TooltipShowsLogicalBytesWhateverTheMode)
{
    const auto one = scene("sparse.img 2048 1048576\n");
    EXPECT_EQ(one->request().sizeMode, SizeMode::disk);
    EXPECT_EQ(one->tooltipOf(0).title, QStringLiteral("sparse.img"));
    EXPECT_EQ(one->tooltipOf(0).detail, QStringLiteral("2.0 KB"));
}

TEST_F(TreemapSceneTests, FolderTooltipTellsItsFiles)
{
    EXPECT_EQ(scene(folderOfTwo)->tooltipOf(0).detail, QStringLiteral("1000 B · 2 files"));
}

TEST_F(TreemapSceneTests, FindsTheItemOfANode)
{
    const auto one = scene(folderOfTwo);
    FileNode& file = test::nodeAt(m_tree->root(), "things/b.txt");
    const std::optional<std::size_t> item = one->itemOf(file);
    ASSERT_TRUE(item);
    EXPECT_EQ(one->nodeOf(*item), &file);
    EXPECT_FALSE(one->itemOf(m_tree->root()));
}

TEST_F(TreemapSceneTests, BodyIsInsetByOnePointAtMost)
{
    TreemapLayout::Slice wide;
    wide.rect = {10, 20, 100, 50};
    EXPECT_EQ(TreemapScene::body(wide), (Rect{11, 21, 98, 48}));
    TreemapLayout::Slice thin;
    thin.rect = {0, 0, 2, 1};
    // 2 × 0.5 - 0.5 = 0.5 on the wide side, nothing on the other.
    EXPECT_EQ(TreemapScene::body(thin), (Rect{0.5, 0, 1, 1}));
}

TEST_F(TreemapSceneTests, CornersFollowTheShorterSide)
{
    TreemapLayout::Slice slice;
    EXPECT_DOUBLE_EQ(TreemapScene::cornerRadius(slice, {0, 0, 100, 4}), 1);
    EXPECT_DOUBLE_EQ(TreemapScene::cornerRadius(slice, {0, 0, 100, 50}), 2.5);
    EXPECT_DOUBLE_EQ(TreemapScene::cornerRadius(slice, {0, 0, -1, 50}), 0);
}

TEST_F(TreemapSceneTests, RestoringAFolderLeavesItsChildrenDimmed)
{
    const auto one = scene(folderOfTwo, {400, 300});
    QImage bright(400, 300, QImage::Format_RGB32);
    bright.fill(Qt::white);
    QImage dimmed(400, 300, QImage::Format_RGB32);
    dimmed.fill(Qt::black);
    QImage canvas = dimmed;
    {
        QPainter painter(&canvas);
        one->restoreItem(painter, 0, bright, dimmed);
    }
    EXPECT_EQ(canvas.pixelColor(200, 5), QColor(Qt::white));
    EXPECT_EQ(canvas.pixelColor(50, 150), QColor(Qt::black));
}

TEST_F(TreemapSceneTests, StoppedLayoutIsEmpty)
{
    m_tree = test::treeFromText(folderOfTwo);
    SceneRequest request;
    request.target = m_tree->rootPointer();
    request.size = QSize(400, 300);
    LockedFlag stop;
    stop.set(true);
    EXPECT_EQ(TreemapScene::make(request, stop)->itemCount(), 0U);
}

} // namespace
} // namespace quorvane
