// SPDX-License-Identifier: MIT
#include "NodeRows.h"
#include "PreviewPanel.h"
#include "ProgramFixture.h"
#include "QuickLookPreview.h"
#include "Theme.h"

#include <QImage>

#include <string>

namespace quorvane {
namespace {

class PreviewJourney : public ProgramFixture
{
protected:
    void SetUp() override
    {
        m_disk.fileWithContents("home/one.txt", std::string(200'000, '1'));
        m_disk.fileWithContents("home/two.txt", std::string(150'000, '2'));
        start();
        scanHome();
        state().setInspectorVisible(true);
        settle();
        QApplication::setActiveWindow(&window());
    }

    PreviewPanel* panel() { return window().findChild<PreviewPanel*>(); }

    bool isPreviewed(const char* name)
    {
        return waitFor([&] {
            return panel() != nullptr && panel()->isVisible() && !panel()->isReading() &&
                   QuickLookPreview::shared().url() == m_disk.path(name);
        });
    }

    /// Shows the list and clicks its row of that number.
    NodeRowView& clickRow(int row)
    {
        state().visualizer = VisualizerType::list;
        EXPECT_TRUE(waitFor([this] {
            auto* const table = window().findChild<NodeRowView*>(QStringLiteral("listTable"));
            return table != nullptr && table->isVisible() && table->model()->rowCount() > 0;
        }));
        auto& table = *window().findChild<NodeRowView*>(QStringLiteral("listTable"));
        const QRect place = table.visualRect(table.model()->index(row, 0));
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, place.center());
        return table;
    }

    void select(const char* name)
    {
        const NodePointer root = state().rootNode.value();
        for (FileNode& child : root->children()) {
            if (child.displayName() == QLatin1String(name)) {
                state().select(NodePointer(root, &child));
            }
        }
        settle();
    }

    /// Of the panel, beside its cross.
    QColor ground()
    {
        const QWidget* const cross = find("closePreviewButton");
        const QPoint place = cross->mapTo(panel(), QPoint(-8, cross->height() / 2));
        return panel()->grab().toImage().pixelColor(place);
    }
};

TEST_F(PreviewJourney, SpaceOpensAndClosesOverTheRealWindow)
{
    select("Movies");
    QTest::keyClick(&window(), Qt::Key_Space);
    ASSERT_TRUE(isPreviewed("home/Movies"));
    EXPECT_EQ(panel()->shownKind(), PreviewContent::Kind::summary) << "a folder";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_FALSE(panel()->isVisible());
    QTest::keyClick(&window(), Qt::Key_Space);
    ASSERT_TRUE(isPreviewed("home/Movies"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(panel()->isVisible());
    EXPECT_EQ(state().focusNode.value(), state().rootNode.value()) << "the key went no further";
}

TEST_F(PreviewJourney, ArrowsMoveTheSelectionInTheListBelow)
{
    NodeRowView& table = clickRow(0);
    EXPECT_EQ(state().selectedNode.value()->displayName(), QStringLiteral("one.txt"));
    QTest::keyClick(&table, Qt::Key_Space);
    ASSERT_TRUE(isPreviewed("home/one.txt"));
    EXPECT_EQ(panel()->shownKind(), PreviewContent::Kind::text);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(table.currentIndex().row(), 1);
    EXPECT_EQ(state().selectedNode.value()->displayName(), QStringLiteral("two.txt"));
    ASSERT_TRUE(isPreviewed("home/two.txt"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    EXPECT_EQ(state().selectedNode.value()->displayName(), QStringLiteral("one.txt"));
    ASSERT_TRUE(isPreviewed("home/one.txt"));
}

TEST_F(PreviewJourney, FollowsTheThemeAtOnce)
{
    select("Movies");
    QTest::keyClick(&window(), Qt::Key_Space);
    ASSERT_TRUE(isPreviewed("home/Movies"));
    EXPECT_EQ(ground(), themeColor(ThemeColor::popover));
    EXPECT_LT(ground().lightness(), 60);
    state().setTheme(AppTheme::light);
    EXPECT_GT(ground().lightness(), 240);
}

TEST_F(PreviewJourney, ClosesWhenAScanDropsTheTree)
{
    select("Movies");
    QTest::keyClick(&window(), Qt::Key_Space);
    ASSERT_TRUE(isPreviewed("home/Movies"));
    // Held up: a scan that ends within the same event leaves the panel no time without a tree.
    m_gate.close();
    state().rescan();
    EXPECT_TRUE(waitFor([this] { return !panel()->isVisible(); }));
    m_gate.open();
    EXPECT_TRUE(waitFor([this] { return !state().isScanning.value(); }));
}

} // namespace
} // namespace quorvane
