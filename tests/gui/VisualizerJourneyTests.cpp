// SPDX-License-Identifier: MIT
#include "AgeBarChart.h"
#include "AgeMapView.h"
#include "HoverTooltip.h"
#include "Label.h"
#include "MovePointer.h"
#include "NodeRows.h"
#include "OutlineModel.h"
#include "ProgramFixture.h"
#include "SegmentedPicker.h"
#include "VisualizerCanvas.h"

#include <QAbstractItemView>
#include <QAction>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QMouseEvent>

#include <string>
#include <utility>

namespace quorvane {
namespace {

/// All nine ways to see one scan of a real folder, walked through with mouse and keys.
class VisualizerJourney : public ProgramFixture
{
protected:
    VisualizerJourney()
    {
        m_disk.file("home/Movies/Iceland/glacier.mov", 400000);
        m_disk.file("home/Movies/Iceland/harbour.mov", 300000);
        m_disk.file("home/Documents/thesis.pdf", 200000);
        m_disk.hole("home/Archive/old.tar", 60000000);
        m_disk.modified("home/Archive/old.tar", 86400);
    }

    void SetUp() override
    {
        start();
        scanHome();
        QApplication::setActiveWindow(&window());
        click("detailsButton");
        ASSERT_TRUE(waitUntilShown("inspectorView"));
    }

    /// Presses the segment of the picker.
    void show(VisualizerType type)
    {
        const auto* const picker = find<SegmentedPicker>("visualizerPicker");
        QTest::mouseClick(picker->segment(static_cast<int>(type)), Qt::LeftButton);
        ASSERT_EQ(state().visualizer.value(), type);
    }

    bool waitUntilSettled(VisualizerCanvas& canvas)
    {
        return waitFor([&] {
            return canvas.isVisible() && canvas.scene() && !canvas.isComputingLayout() &&
                   canvas.scene()->request().target == state().shownNode() &&
                   canvas.scene()->request().size == canvas.size();
        });
    }

    /// A point that hits the item of that name and nothing above it.
    static QPoint pointOn(const VisualizerCanvas& canvas, std::string_view name)
    {
        for (int y = 1; y < canvas.height(); y += 2) {
            for (int x = 1; x < canvas.width(); x += 2) {
                const auto item = canvas.scene()->itemAt(QPointF(x, y));
                if (item && canvas.scene()->nodeOf(*item)->name() == name) {
                    return {x, y};
                }
            }
        }
        ADD_FAILURE() << name << " is not on " << canvas.objectName().toStdString();
        return {};
    }

    static std::string nameOf(const NodePointer& node)
    {
        return node ? std::string(node->name()) : std::string();
    }
    std::string focusName() { return nameOf(state().focusNode.value()); }
    std::string selectedName() { return nameOf(state().selectedNode.value()); }
    bool inspectorShows(const char* name)
    {
        const auto* const shown = find<Label>("inspectorName");
        return waitFor([&] { return shown->text() == QLatin1String(name); });
    }

    /// Opens the menu of what lies there, stages and unstages it, reveals and opens it.
    void useMenu(QWidget& widget, const QPoint& place, std::string_view name)
    {
        m_platform.workspace.revealed.clear();
        m_platform.workspace.opened.clear();
        for (const char* const first : {"Stage for Cleanup", "Unstage from Cleanup"}) {
            QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget.mapToGlobal(place));
            QApplication::sendEvent(&widget, &event);
            QPointer<QMenu> menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_TRUE(menu) << name;
            ASSERT_EQ(menu->actions().size(), 3);
            EXPECT_EQ(menu->actions().at(0)->text(), QLatin1String(first));
            EXPECT_EQ(menu->actions().at(1)->text(), QStringLiteral("Reveal in Finder"));
            EXPECT_EQ(menu->actions().at(2)->text(), QStringLiteral("Open"));
            for (QAction* const action : menu->actions()) {
                action->trigger();
            }
            menu->close();
            ASSERT_TRUE(waitFor([&] { return !menu || !menu->isVisible(); }));
            QCoreApplication::sendPostedEvents(menu, QEvent::DeferredDelete);
        }
        ASSERT_EQ(m_platform.workspace.revealed.size(), 2U);
        EXPECT_EQ(m_platform.workspace.revealed.front(), m_platform.workspace.opened.front());
        const std::string& path = m_platform.workspace.revealed.front().bytes();
        EXPECT_EQ(path.substr(path.rfind('/') + 1), name);
        EXPECT_TRUE(state().stagedNodes.value().empty());
    }

    void walkCanvas(VisualizerType type, const char* objectName);
    void walkOutline(VisualizerType type, const char* objectName, bool opensFolders);
};

void VisualizerJourney::walkCanvas(VisualizerType type, const char* objectName)
{
    show(type);
    auto& canvas = *find<VisualizerCanvas>(objectName);
    ASSERT_TRUE(waitUntilSettled(canvas));

    // Hover names what lies below the pointer and tells its size.
    const QPoint movies = pointOn(canvas, "Movies");
    movePointer(canvas, movies);
    ASSERT_TRUE(canvas.hoveredItem());
    EXPECT_EQ(canvas.scene()->nodeOf(*canvas.hoveredItem())->name(), "Movies");
    const auto* const tooltip = canvas.findChild<HoverTooltip*>();
    EXPECT_TRUE(tooltip->isVisible());
    EXPECT_EQ(canvas.scene()->tooltipOf(*canvas.hoveredItem()).detail,
              QStringLiteral("771.5 KB · 3 files"));

    // A click on a folder zooms in, one on a file only selects it.
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, movies);
    EXPECT_EQ(focusName(), "Movies");
    EXPECT_TRUE(inspectorShows("Movies"));
    ASSERT_TRUE(waitUntilSettled(canvas));
    // In a row of the flame nothing has room beside the widest item.
    const char* const file = type == VisualizerType::flame ? "glacier.mov" : "film.mov";
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, pointOn(canvas, file));
    EXPECT_EQ(focusName(), "Movies");
    EXPECT_EQ(selectedName(), file);
    EXPECT_TRUE(inspectorShows(file));

    // Esc zooms out, and the pointer leaves.
    canvas.setFocus();
    QTest::keyClick(&canvas, Qt::Key_Escape);
    EXPECT_EQ(focusName(), "home");
    ASSERT_TRUE(waitUntilSettled(canvas));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&canvas, &leave);
    EXPECT_FALSE(canvas.hoveredItem());
    EXPECT_FALSE(tooltip->isVisible());
}

TEST_F(VisualizerJourney, FiveCanvasesHoverSelectAndZoom)
{
    walkCanvas(VisualizerType::treemap, "treemapView");
    walkCanvas(VisualizerType::sunburst, "sunburstView");
    walkCanvas(VisualizerType::flame, "flameView");
    walkCanvas(VisualizerType::bubbles, "bubblesView");
    walkCanvas(VisualizerType::mindMap, "mindMapView");
}

void VisualizerJourney::walkOutline(VisualizerType type, const char* objectName, bool opensFolders)
{
    show(type);
    auto& table = *find<NodeRowView>(objectName);
    const auto& model = static_cast<const OutlineModel&>(*table.model());
    ASSERT_TRUE(waitFor([&] { return table.isVisible() && model.rowCount() == 3; }));
    const auto rowOf = [&](const char* name) {
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row, 0).data().toString() == QLatin1String(name)) {
                return model.index(row, 0);
            }
        }
        ADD_FAILURE() << name;
        return QModelIndex();
    };
    table.setFocus();

    QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                      table.visualRect(rowOf("Movies")).center());
    EXPECT_EQ(selectedName(), "Movies");
    EXPECT_TRUE(inspectorShows("Movies"));
    EXPECT_EQ(focusName(), opensFolders ? "Movies" : "home");
    if (opensFolders) {
        ASSERT_TRUE(waitFor([&] { return model.rowCount() == 2; }));
        QTest::keyClick(&table, Qt::Key_Escape);
        EXPECT_EQ(focusName(), "home");
        ASSERT_TRUE(waitFor([&] { return model.rowCount() == 3; }));
    }

    // Typing finds a row, arrows walk and open, and the inspector follows.
    QTest::keyClicks(&table, QStringLiteral("doc"));
    EXPECT_EQ(selectedName(), "Documents");
    EXPECT_TRUE(inspectorShows("Documents"));
    QTest::keyClick(&table, Qt::Key_Up);
    EXPECT_EQ(selectedName(), "Movies");
    QTest::keyClick(&table, Qt::Key_Right);
    EXPECT_TRUE(table.isExpanded(rowOf("Movies")));
    QTest::keyClick(&table, Qt::Key_Down);
    EXPECT_EQ(selectedName(), "Iceland");
    EXPECT_EQ(focusName(), "home");

    // The edge of a column can be dragged.
    const QModelIndex shown = rowOf("Movies");
    const QRect cell = table.placesOf(shown).cells[0];
    QWidget* const handle = table.header()->viewport();
    const QPoint edge(cell.left(), handle->height() / 2);
    const QPoint dragged = edge - QPoint(24, 0);
    QTest::mousePress(handle, Qt::LeftButton, {}, edge);
    QMouseEvent move(QEvent::MouseMove, dragged, handle->mapToGlobal(dragged), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(handle, &move);
    QTest::mouseRelease(handle, Qt::LeftButton, {}, dragged);
    EXPECT_EQ(table.placesOf(shown).cells[0].width(), cell.width() + 24);
}

TEST_F(VisualizerJourney, ListOpensFindsWalksAndResizes)
{
    walkOutline(VisualizerType::list, "listTable", true);
}

TEST_F(VisualizerJourney, FoldersSelectFindWalkAndResize)
{
    walkOutline(VisualizerType::folders, "foldersTable", false);
}

TEST_F(VisualizerJourney, SelectionIsInStepBetweenTheVisualizers)
{
    show(VisualizerType::flame);
    auto& flame = *find<VisualizerCanvas>("flameView");
    ASSERT_TRUE(waitUntilSettled(flame));
    QTest::mouseClick(&flame, Qt::LeftButton, {}, pointOn(flame, "glacier.mov"));
    ASSERT_EQ(selectedName(), "glacier.mov");

    // The outline opens the folders on the way to it.
    show(VisualizerType::folders);
    auto& table = *find<NodeRowView>("foldersTable");
    ASSERT_TRUE(waitFor(
        [&] { return table.currentIndex().data().toString() == QLatin1String("glacier.mov"); }));
    EXPECT_TRUE(table.selectionModel()->isSelected(table.currentIndex()));
    QTest::keyClick(&table, Qt::Key_Down);
    EXPECT_EQ(selectedName(), "harbour.mov");

    show(VisualizerType::topSizes);
    auto& ranked = *find<NodeRowView>("topSizesList");
    ASSERT_TRUE(waitFor([&] {
        return ranked.isVisible() &&
               ranked.currentIndex().data().toString() == QLatin1String("harbour.mov");
    }));
    EXPECT_TRUE(inspectorShows("harbour.mov"));
}

TEST_F(VisualizerJourney, TopSizesRankTheScanAndOpenFolders)
{
    show(VisualizerType::topSizes);
    auto& list = *find<NodeRowView>("topSizesList");
    const QAbstractItemModel& model = *list.model();
    ASSERT_TRUE(waitFor([&] { return list.isVisible() && model.rowCount() > 3; }));
    EXPECT_EQ(model.index(0, 0).data().toString(), QStringLiteral("home"));
    EXPECT_EQ(model.index(1, 0).data().toString(), QStringLiteral("Movies"));
    const QPoint movies = list.visualRect(model.index(1, 0)).center();
    const int rows = model.rowCount();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, movies);
    EXPECT_EQ(focusName(), "Movies");
    EXPECT_TRUE(inspectorShows("Movies"));
    settle();
    // Whatever is in focus, the whole scan is ranked.
    EXPECT_EQ(model.rowCount(), rows);
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(selectedName(), "Iceland");
    QTest::keyClicks(&list, QStringLiteral("gla"));
    EXPECT_EQ(selectedName(), "glacier.mov");
    QTest::keyClick(&list, Qt::Key_Escape);
    EXPECT_EQ(focusName(), "home");
}

TEST_F(VisualizerJourney, AgeMapListsWhatNobodyTouched)
{
    const auto* const basis = find<SegmentedPicker>("sizeBasisPicker");
    QTest::mouseClick(basis->segment(0), Qt::LeftButton);
    ASSERT_EQ(state().sizeMode(), SizeMode::logical);
    show(VisualizerType::ageMap);
    auto& view = *find<AgeMapView>("ageMapView");
    ASSERT_TRUE(waitFor([&] { return view.isVisible() && view.untouched().rowCount() == 1; }));
    EXPECT_EQ(view.chart().buckets().size(), 2U);
    auto& list = *find<NodeRowView>("untouchedList");
    const QPoint row = list.visualRect(list.model()->index(0, 0)).center();
    useMenu(*list.viewport(), row, "old.tar");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, row);
    EXPECT_EQ(selectedName(), "old.tar");
    EXPECT_TRUE(inspectorShows("old.tar"));
    EXPECT_EQ(focusName(), "home");
    // The hole holds nothing on the disk.
    QTest::mouseClick(basis->segment(1), Qt::LeftButton);
    ASSERT_TRUE(waitFor([&] { return view.untouched().rowCount() == 0; }));
    EXPECT_FALSE(list.isVisible());
}

TEST_F(VisualizerJourney, EveryVisualizerOffersTheMenuOfANode)
{
    const std::pair<VisualizerType, const char*> canvases[] = {
        {VisualizerType::treemap, "treemapView"},
        {VisualizerType::sunburst, "sunburstView"},
        {VisualizerType::flame, "flameView"},
        {VisualizerType::bubbles, "bubblesView"},
        {VisualizerType::mindMap, "mindMapView"}};
    for (const auto& [type, name] : canvases) {
        show(type);
        auto& canvas = *find<VisualizerCanvas>(name);
        ASSERT_TRUE(waitUntilSettled(canvas));
        useMenu(canvas, pointOn(canvas, "Movies"), "Movies");
    }
    const std::pair<VisualizerType, const char*> lists[] = {
        {VisualizerType::list, "listTable"},
        {VisualizerType::folders, "foldersTable"},
        {VisualizerType::topSizes, "topSizesList"}};
    for (const auto& [type, name] : lists) {
        show(type);
        auto& list = *find<QAbstractItemView>(name);
        ASSERT_TRUE(
            waitFor([&list = list] { return list.isVisible() && list.model()->rowCount() > 1; }));
        // Both the outline, after the archive, and the ranking, after the root.
        useMenu(*list.viewport(), list.visualRect(list.model()->index(1, 0)).center(), "Movies");
    }
}

} // namespace
} // namespace quorvane
