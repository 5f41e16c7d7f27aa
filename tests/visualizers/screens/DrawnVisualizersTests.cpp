// SPDX-License-Identifier: MIT
#include "CanvasFixture.h"
#include "CanvasViews.h"
#include "HoverTooltip.h"
#include "MovePointer.h"

#include <QContextMenuEvent>
#include <QMenu>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

/// What holds for every canvas beside the treemap.
template<class View>
class DrawnVisualizersTests : public CanvasFixture
{
protected:
    void open(const std::string& text)
    {
        showTree(text);
        m_view.resize(800, 600);
        m_view.show();
        ASSERT_TRUE(waitFor([this] { return m_view.scene() && !m_view.isComputingLayout(); }));
    }

    /// A point of the canvas that lies on a node.
    QPoint pointOn(const std::string& path)
    {
        const FileNode* wanted = node(path).get();
        for (int y = 0; y < m_view.height(); y += 3) {
            for (int x = 0; x < m_view.width(); x += 3) {
                const auto item = m_view.scene()->itemAt(QPointF(x, y));
                if (item && m_view.scene()->nodeOf(*item) == wanted) {
                    return {x, y};
                }
            }
        }
        ADD_FAILURE() << path << " is not on the canvas";
        return {};
    }

    View m_view{this->m_state};
};

using Views = ::testing::Types<SunburstView, FlameView, BubblesView, MindMapView>;
TYPED_TEST_SUITE(DrawnVisualizersTests, Views);

constexpr const char* twoFolders = "box/\n  a.mp4 600\n  b.mp4 400\nlone.mp4 500\n";

TYPED_TEST(DrawnVisualizersTests, ClickOnAFolderOpensIt)
{
    this->open(twoFolders);
    QTest::mouseClick(&this->m_view, Qt::LeftButton, {}, this->pointOn("box"));
    EXPECT_EQ(this->m_state.focusNode.value(), this->node("box"));
    EXPECT_EQ(this->m_state.selectedNode.value(), this->node("box"));
}

TYPED_TEST(DrawnVisualizersTests, ClickBesideEverythingSelectsNothing)
{
    this->open(twoFolders);
    QTest::mouseClick(&this->m_view, Qt::LeftButton, {}, {799, 599});
    EXPECT_EQ(this->m_state.selectedNode.value(), nullptr);
}

TYPED_TEST(DrawnVisualizersTests, TooltipStandsInTheCorner)
{
    this->open(twoFolders);
    movePointer(this->m_view, this->pointOn("box"));
    const auto* const tooltip = this->m_view.template findChild<HoverTooltip*>();
    ASSERT_TRUE(tooltip->isVisible());
    EXPECT_EQ(tooltip->pos(), QPoint(8, 8));
}

TYPED_TEST(DrawnVisualizersTests, TooltipMakesRoomForTheMenu)
{
    this->open(twoFolders);
    const QPoint place = this->pointOn("box");
    movePointer(this->m_view, place);
    const auto* const tooltip = this->m_view.template findChild<HoverTooltip*>();
    ASSERT_TRUE(tooltip->isVisible());
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, this->m_view.mapToGlobal(place));
    QApplication::sendEvent(&this->m_view, &event);
    EXPECT_FALSE(tooltip->isVisible());
    auto* const menu = this->m_view.template findChild<QMenu*>(QStringLiteral("nodeContextMenu"));
    ASSERT_TRUE(menu);
    menu->close();
}

TYPED_TEST(DrawnVisualizersTests, WheelDoesNotZoom)
{
    this->open(twoFolders);
    const QPoint place = this->pointOn("box");
    movePointer(this->m_view, place);
    QWheelEvent event(place, this->m_view.mapToGlobal(place), QPoint(0, -30), QPoint(0, -240),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&this->m_view, &event);
    EXPECT_EQ(this->m_state.focusNode.value(), this->m_state.rootNode.value());
}

TYPED_TEST(DrawnVisualizersTests, FolderOfNothingButEmptyItemsSaysSo)
{
    this->open("a.mp4 0\nbox/\n  b.mp4 0\n");
    EXPECT_EQ(this->m_view.scene()->itemCount(), 0U);
    EXPECT_EQ(this->m_view.emptyText(), QStringLiteral("Nothing to display"));
}

TYPED_TEST(DrawnVisualizersTests, WithoutATreeItSaysSo)
{
    this->m_view.resize(400, 300);
    this->m_view.show();
    EXPECT_EQ(this->m_view.emptyText(), QStringLiteral("No scan yet"));
    EXPECT_TRUE(this->m_view.accessibleLabel().endsWith(QStringLiteral(" of , 0 bytes")));
    EXPECT_TRUE(this->m_view.accessibleValue().startsWith(QStringLiteral("0 ")));
}

TYPED_TEST(DrawnVisualizersTests, ValueCountsTheItems)
{
    this->open("a.mp4 600\n");
    ASSERT_EQ(this->m_view.scene()->itemCount(), 1U);
    EXPECT_TRUE(this->m_view.accessibleValue().startsWith(QStringLiteral("1 ")));
}

TYPED_TEST(DrawnVisualizersTests, EmptyFolderSaysSo)
{
    this->open("empty/\n");
    EXPECT_EQ(this->m_view.scene()->itemCount(), 0U);
    EXPECT_EQ(this->m_view.emptyText(), QStringLiteral("Nothing to display"));
}

class SunburstKeysTests : public CanvasFixture
{};

TEST_F(SunburstKeysTests, KeysStayOnTheCanvas)
{
    // Seven rings, of which the last ones lie beyond the corners.
    std::string text;
    for (int depth = 0; depth < 7; ++depth) {
        const std::string indent(static_cast<std::size_t>(2 * depth), ' ');
        for (const char* const file : {"a", "b", "c"}) {
            text += indent + file + std::to_string(depth) + " 10\n";
        }
        text += indent + "deeper/\n";
    }
    showTree(text + std::string(14, ' ') + "last 10\n");
    SunburstView view(m_state);
    view.resize(600, 600);
    view.show();
    ASSERT_TRUE(waitFor([&] { return view.scene() && !view.isComputingLayout(); }));
    const QRectF canvas(view.rect());
    int beyond = 0;
    for (std::size_t i = 0; i < view.scene()->itemCount(); ++i) {
        beyond += view.scene()->boundsOf(i).intersects(canvas) ? 0 : 1;
    }
    ASSERT_GT(beyond, 0);
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Up, Qt::Key_Left, Qt::Key_Down}) {
        for (int step = 0; step < 30; ++step) {
            QTest::keyClick(&view, key);
            ASSERT_TRUE(view.hoveredItem());
            EXPECT_TRUE(view.scene()->boundsOf(*view.hoveredItem()).intersects(canvas));
        }
    }
}

class SmallBubblesTests : public CanvasFixture
{};

TEST_F(SmallBubblesTests, CanvasOfAHundredPointsHasTheEmptyText)
{
    showTree(twoFolders);
    BubblesView view(m_state);
    view.resize(400, 100);
    view.show();
    ASSERT_TRUE(waitFor([&] { return view.scene() && !view.isComputingLayout(); }));
    EXPECT_EQ(view.scene()->itemCount(), 0U);
    EXPECT_EQ(view.emptyText(), QStringLiteral("Nothing to display"));
    view.resize(400, 101);
    EXPECT_TRUE(waitFor([&] { return view.scene()->itemCount() > 0; }));
}

class EmptyMindMapTests : public CanvasFixture
{
protected:
    /// What the view shows once nothing is on its way.
    QImage picture()
    {
        m_view.resize(800, 600);
        m_view.show();
        EXPECT_TRUE(waitFor([this] {
            return !m_view.isComputingLayout() && (m_view.scene() || !m_state.shownNode());
        }));
        QApplication::processEvents();
        return m_view.grab().toImage();
    }

    /// The columns that differ from the ground in the rows above the axis, where only words are.
    static std::pair<int, int> wordColumns(const QImage& picture)
    {
        const QRgb ground = picture.pixel(400, 100);
        int first = picture.width();
        int last = -1;
        for (int y = 285; y < 298; ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) != ground) {
                    first = std::min(first, x);
                    last = std::max(last, x);
                }
            }
        }
        return {first, last};
    }

    void expectAxisAndWords()
    {
        const QImage shown = picture();
        const QRgb ground = shown.pixel(400, 100);
        for (const int x : {12, 200, 700, 787}) {
            const bool isOnAxis = shown.pixel(x, 299) != ground || shown.pixel(x, 300) != ground;
            EXPECT_TRUE(isOnAxis) << x;
        }
        const auto [first, last] = wordColumns(shown);
        ASSERT_GT(last, first);
        // 60 points right of the middle.
        EXPECT_NEAR((first + last) / 2.0, 460, 3);
    }

    MindMapView m_view{m_state};
};

TEST_F(EmptyMindMapTests, WithoutATreeItHasItsAxisAndTheWordsBesideTheMiddle)
{
    expectAxisAndWords();
}

TEST_F(EmptyMindMapTests, EmptyFolderHasItsAxisAndTheWordsBesideTheMiddle)
{
    showTree("empty/\n");
    expectAxisAndWords();
}

class CanvasTextsTests : public CanvasFixture
{};

TEST_F(CanvasTextsTests, EachCanvasHasItsLabelAndValue)
{
    showTree("a.mp4 1024\n");
    const SunburstView sunburst(m_state);
    const FlameView flame(m_state);
    const BubblesView bubbles(m_state);
    const MindMapView mindMap(m_state);
    EXPECT_EQ(sunburst.accessibleLabel(), QStringLiteral("Sunburst of scan, 1.0 KB"));
    EXPECT_EQ(sunburst.accessibleValue(), QStringLiteral("0 rings, click a slice to drill down"));
    EXPECT_EQ(flame.accessibleLabel(), QStringLiteral("Flame graph of scan, 1.0 KB"));
    EXPECT_EQ(flame.accessibleValue(),
              QStringLiteral("0 rectangles; width is proportional to size"));
    EXPECT_EQ(bubbles.accessibleLabel(), QStringLiteral("Bubble map of scan, 1.0 KB"));
    EXPECT_EQ(bubbles.accessibleValue(), QStringLiteral("0 bubbles, click a bubble to drill down"));
    EXPECT_EQ(mindMap.accessibleLabel(), QStringLiteral("Mind map of scan, 1.0 KB"));
    EXPECT_EQ(mindMap.accessibleValue(), QStringLiteral("0 bands radiating from a center axis"));
    EXPECT_EQ(flame.caption(),
              QStringLiteral("Depth increases downward · width is proportional to size"));
}

} // namespace
} // namespace quorvane
