// SPDX-License-Identifier: MIT
#include "CanvasFixture.h"
#include "CanvasViews.h"
#include "HoverTooltip.h"
#include "MovePointer.h"

#include <QMenu>
#include <QSignalSpy>
#include <QWheelEvent>

namespace quorvane {
namespace {

class TreemapViewTests : public CanvasFixture
{
protected:
    void open(const std::string& text)
    {
        showTree(text);
        m_view.resize(800, 600);
        m_view.show();
        ASSERT_TRUE(waitFor([this] { return isSettled(); }));
    }

    bool isSettled() const
    {
        return m_view.scene() && !m_view.isComputingLayout() &&
               m_view.scene()->request().target == m_state.shownNode();
    }

    void hover(const QPoint& point) { movePointer(m_view, point); }

    void wheel(int delta)
    {
        const QPointF place(10, 10);
        QWheelEvent event(place, m_view.mapToGlobal(place), QPoint(0, delta), QPoint(0, delta * 8),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&m_view, &event);
        EXPECT_FALSE(event.isAccepted());
    }

    std::string hoveredName() const
    {
        const auto item = m_view.hoveredItem();
        return item ? std::string(m_view.scene()->nodeOf(*item)->name()) : std::string();
    }

    TreemapView m_view{m_state};
};

constexpr const char* folderAndFile = "things/\n  a.txt 600\n  b.txt 400\nlone.bin 500\n";

TEST_F(TreemapViewTests, HoverNamesTheTileAndShowsItsTooltip)
{
    open("things/\n  a.txt 600\n  b.txt 400\n");
    hover({100, 300});
    EXPECT_EQ(hoveredName(), "a.txt");
    EXPECT_TRUE(m_view.findChild<HoverTooltip*>()->isVisible());
    hover({400, 5});
    EXPECT_EQ(hoveredName(), "things");
}

TEST_F(TreemapViewTests, LeavingEndsTheHover)
{
    open("a.txt 10\n");
    hover({100, 100});
    ASSERT_TRUE(m_view.hoveredItem());
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&m_view, &leave);
    EXPECT_FALSE(m_view.hoveredItem());
    EXPECT_FALSE(m_view.findChild<HoverTooltip*>()->isVisible());
}

TEST_F(TreemapViewTests, HoveringDimsAllOtherTiles)
{
    open("a.mp4 500\nb.mp4 500\n");
    const QImage before = m_view.grab().toImage();
    hover({100, 300});
    const QImage after = m_view.grab().toImage();
    EXPECT_EQ(after.pixel(100, 200), before.pixel(100, 200));
    EXPECT_LT(qRed(after.pixel(700, 200)), qRed(before.pixel(700, 200)));
}

TEST_F(TreemapViewTests, ClickOnAFolderZoomsIn)
{
    open(folderAndFile);
    QTest::mouseClick(&m_view, Qt::LeftButton, {}, {100, 5});
    EXPECT_EQ(m_state.focusNode.value(), node("things"));
    EXPECT_EQ(m_state.selectedNode.value(), node("things"));
    EXPECT_TRUE(waitFor([this] { return isSettled(); }));
}

TEST_F(TreemapViewTests, ClickOnAFileSelectsIt)
{
    open("a.txt 10\n");
    QTest::mouseClick(&m_view, Qt::LeftButton, {}, {100, 100});
    EXPECT_EQ(m_state.selectedNode.value(), node("a.txt"));
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
}

TEST_F(TreemapViewTests, ClickBesideAllTilesSelectsNothing)
{
    open("a.txt 10\n");
    // The lower gutter belongs to no tile.
    QTest::mouseClick(&m_view, Qt::LeftButton, {}, {400, 599});
    EXPECT_EQ(m_state.selectedNode.value(), nullptr);
}

TEST_F(TreemapViewTests, ReleaseOnAnotherTileIsNoClick)
{
    open("a.txt 500\nb.txt 500\n");
    QTest::mousePress(&m_view, Qt::LeftButton, {}, {100, 300});
    QTest::mouseRelease(&m_view, Qt::LeftButton, {}, {700, 300});
    EXPECT_EQ(m_state.selectedNode.value(), m_state.rootNode.value());
}

TEST_F(TreemapViewTests, WheelTowardsTheUserZoomsIntoTheHoveredFolder)
{
    open(folderAndFile);
    hover({100, 5});
    wheel(-3);
    EXPECT_EQ(m_state.focusNode.value(), node("things"));
}

TEST_F(TreemapViewTests, WheelAwayZoomsOut)
{
    open(folderAndFile);
    m_state.focus(node("things"));
    ASSERT_TRUE(waitFor([this] { return isSettled(); }));
    hover({100, 100});
    wheel(3);
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
}

TEST_F(TreemapViewTests, SmallWheelStepsDoNothing)
{
    open(folderAndFile);
    hover({100, 5});
    wheel(-2);
    wheel(2);
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
    EXPECT_EQ(m_state.selectedNode.value(), m_state.rootNode.value());
}

TEST_F(TreemapViewTests, WheelOnAFileZoomsNowhere)
{
    open("a.txt 10\n");
    hover({100, 100});
    wheel(-5);
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
}

TEST_F(TreemapViewTests, WheelOutsideTheCanvasDoesNothing)
{
    open(folderAndFile);
    hover({100, 5});
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&m_view, &leave);
    wheel(-5);
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
}

TEST_F(TreemapViewTests, StaleLayoutDoesNotReplaceTheNewerOne)
{
    open("one/\n  two/\n    a.txt 9\n    b.txt 8\n  c.txt 4\nd.txt 3\n");
    m_state.focus(node("one"));
    // The first layout starts and is overtaken before its answer can arrive.
    QCoreApplication::processEvents();
    m_state.focus(node("one/two"));
    ASSERT_TRUE(waitFor([this] { return isSettled(); }));
    EXPECT_EQ(m_view.scene()->request().target, node("one/two"));
    const ScenePointer shown = m_view.scene();
    // Whatever still comes in leaves it there.
    for (int turn = 0; turn < 50; ++turn) {
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(m_view.scene(), shown);
}

TEST_F(TreemapViewTests, OldTilesStayUntilTheNewLayoutArrives)
{
    open(folderAndFile);
    const ScenePointer before = m_view.scene();
    m_state.focus(node("things"));
    EXPECT_EQ(m_view.scene(), before);
}

TEST_F(TreemapViewTests, NewLayoutOnlyForANewKey)
{
    open(folderAndFile);
    const ScenePointer before = m_view.scene();
    m_state.select(node("lone.bin"));
    m_view.update();
    for (int turn = 0; turn < 20; ++turn) {
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(m_view.scene(), before);
    m_view.resize(801, 600);
    ASSERT_TRUE(waitFor([&] { return m_view.scene() != before; }));
    EXPECT_EQ(m_view.scene()->request().size, QSize(801, 600));
}

TEST_F(TreemapViewTests, SizeModeAndHiddenFamiliesAskForANewLayout)
{
    open("node_modules/\n  a.js 10\nkept.txt 10\n");
    EXPECT_EQ(m_view.scene()->request().sizeMode, SizeMode::disk);
    m_state.setSizeMode(SizeMode::logical);
    ASSERT_TRUE(
        waitFor([this] { return m_view.scene()->request().sizeMode == SizeMode::logical; }));
    auto filters = BloatFilter::defaultBloatFilters();
    filters["Node.js"] = false;
    m_state.setBloatFilters(filters);
    ASSERT_TRUE(waitFor([this] { return m_view.scene()->request().hidden.size() == 1; }));
    EXPECT_EQ(m_view.scene()->itemCount(), 1U);
}

TEST_F(TreemapViewTests, PaletteRepaintsWithoutMovingATile)
{
    open(folderAndFile);
    const QRectF before = m_view.scene()->boundsOf(0);
    const ScenePointer scene = m_view.scene();
    m_state.setPalette(AppPalette::forest);
    ASSERT_TRUE(waitFor([&] { return m_view.scene() != scene || !m_view.isComputingLayout(); }));
    EXPECT_EQ(m_view.scene()->boundsOf(0), before);
    m_state.setPalette(AppPalette::slate);
}

TEST_F(TreemapViewTests, WithoutATreeItSaysSo)
{
    m_view.resize(400, 300);
    m_view.show();
    EXPECT_EQ(m_view.accessibleLabel(), QStringLiteral("Treemap of , 0 bytes"));
    EXPECT_EQ(m_view.accessibleValue(), QStringLiteral("0 regions, grow by clicking a folder"));
    EXPECT_EQ(m_view.scene(), nullptr);
    EXPECT_EQ(m_view.emptyText(), QStringLiteral("No scan yet"));
}

TEST_F(TreemapViewTests, EmptyFolderHasNothingToDisplay)
{
    open("");
    EXPECT_EQ(m_view.scene()->itemCount(), 0U);
    EXPECT_EQ(m_view.emptyText(), QStringLiteral("Nothing to display"));
}

TEST_F(TreemapViewTests, DroppingTheTreeDropsTheScene)
{
    open(folderAndFile);
    m_state.rootNode = nullptr;
    m_state.focusNode = nullptr;
    ASSERT_TRUE(waitFor([this] { return m_view.scene() == nullptr; }));
}

TEST_F(TreemapViewTests, AnotherTreeWithTheSameIdsIsLaidOutAnew)
{
    open(folderAndFile);
    const ScenePointer before = m_view.scene();
    showTree(folderAndFile);
    ASSERT_TRUE(waitFor([&] { return m_view.scene() && m_view.scene() != before; }));
    EXPECT_TRUE(waitFor([this] { return isSettled(); }));
}

TEST_F(TreemapViewTests, DescribesItselfToAssistiveTechnology)
{
    open("things/\n  a.txt 600\n  b.txt 424\n");
    EXPECT_EQ(m_view.accessibleLabel(), QStringLiteral("Treemap of scan, 1.0 KB"));
    EXPECT_EQ(m_view.accessibleValue(), QString::number(m_view.scene()->itemCount()) +
                                            QStringLiteral(" regions, grow by clicking a folder"));
}

TEST_F(TreemapViewTests, ArrowKeysWalkTheTilesAndReturnOpens)
{
    open("things/\n  a.txt 600\n  b.txt 400\n");
    m_view.setFocus();
    QTest::keyClick(&m_view, Qt::Key_Right);
    EXPECT_EQ(hoveredName(), "things");
    QTest::keyClick(&m_view, Qt::Key_Right);
    EXPECT_EQ(hoveredName(), "b.txt");
    QTest::keyClick(&m_view, Qt::Key_Left);
    EXPECT_NE(hoveredName(), "b.txt");
    QTest::keyClick(&m_view, Qt::Key_Return);
    EXPECT_NE(m_state.selectedNode.value(), m_state.rootNode.value());
}

TEST_F(TreemapViewTests, MenuActsOnTheHoveredNode)
{
    open("a.txt 10\n");
    const QPoint place(100, 100);
    hover(place);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, m_view.mapToGlobal(place));
    QApplication::sendEvent(&m_view, &event);
    auto* const menu = m_view.findChild<QMenu*>(QStringLiteral("nodeContextMenu"));
    ASSERT_NE(menu, nullptr);
    QStringList texts;
    for (QAction* const action : menu->actions()) {
        texts << action->text();
        action->trigger();
    }
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Stage for Cleanup"),
                                  QStringLiteral("Reveal in Finder"), QStringLiteral("Open")}));
    EXPECT_TRUE(node("a.txt")->isStagedForTrash());
    const FilePath path = node("a.txt")->path();
    EXPECT_EQ(m_platform.workspace.revealed, std::vector<FilePath>{path});
    EXPECT_EQ(m_platform.workspace.opened, std::vector<FilePath>{path});
    menu->close();
}

TEST_F(TreemapViewTests, NoMenuWithoutANode)
{
    open("a.txt 10\n");
    const QPoint gutter(400, 599);
    QContextMenuEvent event(QContextMenuEvent::Mouse, gutter, m_view.mapToGlobal(gutter));
    QApplication::sendEvent(&m_view, &event);
    EXPECT_EQ(m_view.findChild<QMenu*>(QStringLiteral("nodeContextMenu")), nullptr);
}

TEST_F(TreemapViewTests, HiddenCanvasDoesNoWork)
{
    showTree(folderAndFile);
    m_view.resize(400, 300);
    for (int turn = 0; turn < 20; ++turn) {
        QCoreApplication::processEvents();
    }
    EXPECT_FALSE(m_view.isComputingLayout());
    EXPECT_EQ(m_view.scene(), nullptr);
}

} // namespace
} // namespace quorvane
