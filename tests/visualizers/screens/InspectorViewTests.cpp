// SPDX-License-Identifier: MIT
#include "InspectorView.h"

#include "CanvasFixture.h"
#include "InspectorRows.h"
#include "PathText.h"
#include "Tile.h"

#include <QLabel>

namespace quorvane {
namespace {

class InspectorViewTests : public CanvasFixture
{
protected:
    void SetUp() override
    {
        std::string text = "many/\n";
        for (int i = 1; i <= 12; ++i) {
            text += "  file" + std::to_string(100 + i) + " " + std::to_string(i * 1024) + "\n";
        }
        showTree(text + "empty/\nlink@ 12\n");
        m_state.setInspectorVisible(true);
        m_host.resize(300, 900);
        m_view.resize(300, 900);
        m_host.show();
        settle();
    }

    void settle() { QCoreApplication::processEvents(); }

    void select(const std::string& path)
    {
        m_state.select(path.empty() ? nullptr : node(path));
        settle();
    }

    bool isShown(const char* name)
    {
        return m_host.findChild<QWidget*>(QLatin1String(name))->isVisible();
    }

    QString text(const char* name)
    {
        return m_host.findChild<QLabel*>(QLatin1String(name))->text();
    }

    ActionTile& tile(const char* name)
    {
        return *m_host.findChild<ActionTile*>(QLatin1String(name));
    }

    QStringList rowsOf(const char* name)
    {
        QStringList rows;
        for (const auto* const row :
             m_host.findChild<QWidget*>(QLatin1String(name))->findChildren<FactRow*>()) {
            if (row->isVisible()) {
                rows.append(row->label() + QLatin1Char('=') + row->value());
            }
        }
        return rows;
    }

    QWidget m_host;
    InspectorView m_view{m_state, &m_host};
};

TEST_F(InspectorViewTests, TellsThatNothingIsSelected)
{
    select({});
    EXPECT_TRUE(isShown("inspectorNothing"));
    EXPECT_FALSE(isShown("inspectorPath"));
}

TEST_F(InspectorViewTests, ShowsOnlyWhileTheModelSaysSo)
{
    EXPECT_TRUE(m_view.isVisible());
    m_state.setInspectorVisible(false);
    settle();
    EXPECT_FALSE(m_view.isVisible());
    select("many");
    m_state.setInspectorVisible(true);
    settle();
    EXPECT_TRUE(m_view.isVisible());
    EXPECT_EQ(text("inspectorName"), QStringLiteral("many"));
}

TEST_F(InspectorViewTests, ListsTheNineLargestOfAFolder)
{
    select("many");
    EXPECT_EQ(text("inspectorKind"), QStringLiteral("Folder"));
    EXPECT_EQ(m_host.findChild<PathText*>()->toPlainText(), QStringLiteral("/scan/many"));
    const QStringList rows = rowsOf("largestInside");
    ASSERT_EQ(rows.size(), 9);
    EXPECT_EQ(rows.first(), QStringLiteral("file112=12.0 KB"));
    EXPECT_EQ(rows.last(), QStringLiteral("file104=4.0 KB"));
}

TEST_F(InspectorViewTests, AnEmptyFolderHasNothingInside)
{
    select("empty");
    EXPECT_FALSE(isShown("largestInside"));
    select("many/file101");
    EXPECT_FALSE(isShown("largestInside"));
}

TEST_F(InspectorViewTests, TheRootCanBeShownButNotStaged)
{
    EXPECT_EQ(m_state.selectedNode.value(), m_state.rootNode.value());
    EXPECT_FALSE(tile("inspectorStage").isEnabled());
    EXPECT_TRUE(tile("inspectorReveal").isEnabled());
    EXPECT_TRUE(tile("inspectorOpen").isEnabled());
}

TEST_F(InspectorViewTests, ActsOnTheSelection)
{
    select("many/file105");
    tile("inspectorReveal").click();
    tile("inspectorOpen").click();
    EXPECT_EQ(m_platform.workspace.revealed, std::vector{FilePath("/scan/many/file105")});
    EXPECT_EQ(m_platform.workspace.opened, std::vector{FilePath("/scan/many/file105")});
    EXPECT_EQ(tile("inspectorStage").text(), QStringLiteral("Stage for Cleanup"));
    tile("inspectorStage").click();
    settle();
    EXPECT_TRUE(node("many/file105")->isStagedForTrash());
    EXPECT_EQ(tile("inspectorStage").text(), QStringLiteral("Unstage"));
    tile("inspectorStage").click();
    settle();
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
}

TEST_F(InspectorViewTests, WhatIsNotOnTheDiskTellsNoCreation)
{
    select("many/file105");
    for (const QString& row : rowsOf("inspectorFacts")) {
        EXPECT_FALSE(row.startsWith(QLatin1String("Created"))) << row.toStdString();
    }
    EXPECT_TRUE(rowsOf("inspectorFacts").contains(QStringLiteral("Size=5.0 KB")));
}

} // namespace
} // namespace quorvane
