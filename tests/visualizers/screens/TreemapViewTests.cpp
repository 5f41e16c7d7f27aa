// SPDX-License-Identifier: MIT
#include "CanvasFixture.h"
#include "CanvasViews.h"
#include "Gate.h"
#include "HoverTooltip.h"
#include "MovePointer.h"

#include <QMenu>
#include <QSignalSpy>
#include <QWheelEvent>

#include <cstddef>
#include <memory>
#include <mutex>

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

/// Holds the layout of the folder "held" up, and knows what came of it.
struct HeldLayout
{
    Gate gate;
    std::mutex lock;
    std::weak_ptr<const CanvasScene> scene;

    static HeldLayout& instance()
    {
        static HeldLayout held;
        return held;
    }

    static ScenePointer make(const SceneRequest& request, const LockedFlag& stop)
    {
        if (request.target->name() != "held") {
            return TreemapScene::make(request, stop);
        }
        HeldLayout& held = instance();
        held.gate.pass();
        // Deaf to the flag, as one that had all its tiles when it was set.
        static const LockedFlag never;
        const ScenePointer made = TreemapScene::make(request, never);
        const std::lock_guard guard(held.lock);
        held.scene = made;
        return made;
    }

    bool isMade()
    {
        const std::lock_guard guard(lock);
        // Equivalent to an empty pointer only as long as nothing was assigned.
        return scene.owner_before(std::weak_ptr<const CanvasScene>()) ||
               std::weak_ptr<const CanvasScene>().owner_before(scene);
    }
    /// A result that is not shown is let go of where it arrives.
    bool isDropped()
    {
        const std::lock_guard guard(lock);
        return scene.expired();
    }
};

TEST_F(TreemapViewTests, StaleLayoutDoesNotReplaceTheNewerOne)
{
    HeldLayout& held = HeldLayout::instance();
    const CanvasTraits traits{&HeldLayout::make, "held", "%1, %2", "%1"};
    VisualizerCanvas canvas(m_state, traits);
    showTree("held/\n  two/\n    a.txt 9\n    b.txt 8\n  c.txt 4\nd.txt 3\n");
    canvas.resize(800, 600);
    canvas.show();
    ASSERT_TRUE(waitFor([&] { return canvas.scene() && !canvas.isComputingLayout(); }));
    m_state.focus(node("held"));
    ASSERT_TRUE(waitFor([&] { return held.gate.hasVisitor(); }));
    m_state.focus(node("held/two"));
    ASSERT_TRUE(waitFor([&] { return canvas.scene()->request().target == node("held/two"); }));
    const ScenePointer shown = canvas.scene();
    held.gate.open();
    ASSERT_TRUE(
        waitFor([&] { return held.isMade() && (held.isDropped() || canvas.scene() != shown); }));
    EXPECT_EQ(canvas.scene(), shown);
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
    EXPECT_FALSE(m_view.isComputingLayout());
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
    const ScenePointer scene = m_view.scene();
    const QImage before = m_view.grab().toImage();
    m_state.setPalette(AppPalette::forest);
    ASSERT_TRUE(waitFor([&] { return m_view.scene() != scene && isSettled(); }));
    EXPECT_NE(m_view.grab().toImage(), before);
    ASSERT_EQ(m_view.scene()->itemCount(), scene->itemCount());
    for (std::size_t item = 0; item < scene->itemCount(); ++item) {
        EXPECT_EQ(m_view.scene()->boundsOf(item), scene->boundsOf(item)) << item;
    }
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
