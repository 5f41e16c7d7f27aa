// SPDX-License-Identifier: MIT
#include "BreadcrumbBar.h"
#include "HoverTooltip.h"
#include "MovePointer.h"
#include "ProgramFixture.h"
#include "SegmentedPicker.h"
#include "Theme.h"
#include "VisualizerCanvas.h"

#include <QAbstractButton>

namespace quorvane {
namespace {

/// A home with folders two levels deep, walked through as a person would.
class TreemapJourney : public ProgramFixture
{
protected:
    TreemapJourney()
    {
        m_disk.file("home/Movies/Iceland/glacier.mov", 400000);
        m_disk.file("home/Movies/Iceland/harbour.mov", 300000);
        m_disk.hole("home/Movies/sparse.mov", 100000);
    }

    VisualizerCanvas& treemap() { return *find<VisualizerCanvas>("treemapView"); }

    bool isSettled()
    {
        VisualizerCanvas& view = treemap();
        return view.scene() && !view.isComputingLayout() &&
               view.scene()->request().target == state().shownNode() &&
               view.scene()->request().size == view.size() &&
               view.scene()->request().sizeMode == state().sizeMode();
    }

    bool waitUntilSettled()
    {
        return waitFor([this] { return isSettled(); });
    }

    /// A point that hits the tile of that name and nothing above it.
    QPoint pointOn(std::string_view name)
    {
        const ScenePointer scene = treemap().scene();
        for (int y = 1; y < treemap().height(); y += 2) {
            for (int x = 1; x < treemap().width(); x += 2) {
                const auto item = scene->itemAt(QPointF(x, y));
                if (item && scene->nodeOf(*item)->name() == name) {
                    return {x, y};
                }
            }
        }
        ADD_FAILURE() << name << " has no tile";
        return {};
    }

    std::string focusName()
    {
        const NodePointer focus = state().focusNode.value();
        return focus ? std::string(focus->name()) : std::string();
    }
};

TEST_F(TreemapJourney, FromTheWelcomeScreenThroughTheTreeAndBack)
{
    start();
    click("welcomeScanHomeButton");
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    ASSERT_TRUE(waitUntilSettled());

    // Hover names what lies below the pointer.
    movePointer(treemap(), pointOn("letter.txt"));
    ASSERT_TRUE(treemap().hoveredItem());
    EXPECT_TRUE(isShown("hoverTooltip"));

    // Two folders down.
    QTest::mouseClick(&treemap(), Qt::LeftButton, {}, pointOn("Movies"));
    EXPECT_EQ(focusName(), "Movies");
    ASSERT_TRUE(waitUntilSettled());
    QTest::mouseClick(&treemap(), Qt::LeftButton, {}, pointOn("Iceland"));
    EXPECT_EQ(focusName(), "Iceland");
    ASSERT_TRUE(waitUntilSettled());

    // The breadcrumb leads back.
    QList<CrumbButton*> crumbs;
    for (CrumbButton* const crumb : window().findChildren<CrumbButton*>()) {
        if (crumb->isVisible()) {
            crumbs.push_back(crumb);
        }
    }
    ASSERT_EQ(crumbs.size(), 3);
    EXPECT_EQ(crumbs[0]->text(), QStringLiteral("home"));
    EXPECT_EQ(crumbs[2]->text(), QStringLiteral("Iceland"));
    QTest::mouseClick(crumbs[1], Qt::LeftButton);
    EXPECT_EQ(focusName(), "Movies");
    ASSERT_TRUE(waitUntilSettled());

    // Esc leads up from wherever the keyboard is.
    treemap().setFocus();
    QTest::keyClick(&treemap(), Qt::Key_Escape);
    EXPECT_EQ(focusName(), "home");
    EXPECT_EQ(state().selectedNode.value(), nullptr);
    ASSERT_TRUE(waitUntilSettled());
}

TEST_F(TreemapJourney, SizeBasisLaysTheTilesOutAnew)
{
    start();
    scanHome();
    state().focus(state().share(state().rootNode.value()->largestChild()));
    ASSERT_TRUE(waitUntilSettled());
    const auto areaOf = [this](std::string_view name) {
        const ScenePointer scene = treemap().scene();
        for (std::size_t i = 0; i < scene->itemCount(); ++i) {
            if (scene->nodeOf(i)->name() == name) {
                const QRectF bounds = scene->boundsOf(i);
                return bounds.width() * bounds.height();
            }
        }
        return 0.0;
    };
    const double onDisk = areaOf("sparse.mov");
    auto* const picker = find<SegmentedPicker>("sizeBasisPicker");
    QTest::mouseClick(picker->segment(0), Qt::LeftButton);
    EXPECT_EQ(state().sizeMode(), SizeMode::logical);
    ASSERT_TRUE(waitUntilSettled());
    // The hole holds a tenth of the bytes and nothing on the disk.
    EXPECT_GT(areaOf("sparse.mov"), onDisk * 10);
}

TEST_F(TreemapJourney, RescanCancelAndErrorLeadBackToTheWelcomeScreen)
{
    start();
    scanHome();
    ASSERT_TRUE(waitUntilSettled());
    click("rescanButton");
    ASSERT_TRUE(waitFor([this] { return state().hasScan() && !state().isScanning.value(); }));
    ASSERT_TRUE(waitUntilShown("visualizerHost"));

    m_gate.close();
    click("rescanButton");
    ASSERT_TRUE(waitUntilShown("scanProgressView"));
    click("cancelScanButton");
    m_gate.open();
    ASSERT_TRUE(waitUntilShown("welcomeView"));
    EXPECT_FALSE(state().hasScan());
    EXPECT_EQ(state().errorMessage.value(), std::nullopt);

    state().startScan(m_disk.path("other/notes.md"));
    ASSERT_TRUE(waitUntilShown("scanErrorView"));
    EXPECT_EQ(state().errorMessage.value(),
              QStringLiteral("Not a directory: ") + m_disk.path("other/notes.md").displayText());
    click("tryAgainButton");
    EXPECT_TRUE(waitUntilShown("welcomeView"));
}

TEST_F(TreemapJourney, LightThemeLeavesTheCanvasDark)
{
    start();
    scanHome();
    ASSERT_TRUE(waitUntilSettled());
    const QColor canvas = treemap().grab().toImage().pixelColor(treemap().width() / 2, 1);
    state().setTheme(AppTheme::light);
    ASSERT_TRUE(waitFor([] { return !theme().isDark(); }));
    ASSERT_TRUE(waitUntilSettled());
    EXPECT_EQ(treemap().grab().toImage().pixelColor(treemap().width() / 2, 1), canvas);
    state().setTheme(AppTheme::dark);
    EXPECT_TRUE(waitFor([] { return theme().isDark(); }));
}

TEST_F(TreemapJourney, VanishedFolderStaysOnShow)
{
    start();
    scanHome();
    ASSERT_TRUE(waitUntilSettled());
    // A folder that vanishes after the scan stays on show; opening it tells the desktop its path.
    m_disk.remove("home/Movies");
    const NodePointer movies = state().share(state().rootNode.value()->largestChild());
    state().focus(movies);
    ASSERT_TRUE(waitUntilSettled());
    state().revealInFinder(*movies);
    EXPECT_EQ(m_platform.workspace.revealed, std::vector<FilePath>{m_disk.path("home/Movies")});
}

} // namespace
} // namespace quorvane
