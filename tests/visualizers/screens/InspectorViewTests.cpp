// SPDX-License-Identifier: MIT
#include "InspectorView.h"

#include "CanvasFixture.h"
#include "DiskScanner.h"
#include "DiskTree.h"
#include "EmptyState.h"
#include "FaultyFileSystemCalls.h"
#include "Gate.h"
#include "InspectorFacts.h"
#include "InspectorRows.h"
#include "PathText.h"
#include "PlainIconTheme.h"
#include "Theme.h"
#include "Tile.h"

#include <QLabel>
#include <QTextCursor>

#include <algorithm>
#include <atomic>
#include <thread>

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
    EXPECT_EQ(m_host.findChild<EmptyState*>(QStringLiteral("inspectorNothing"))->symbol(),
              QStringLiteral("info.circle"));
    EXPECT_FALSE(isShown("inspectorPath"));
    QStringList texts;
    for (const QLabel* const label :
         m_host.findChild<QWidget*>(QStringLiteral("inspectorNothing"))->findChildren<QLabel*>()) {
        texts.append(label->text());
    }
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Nothing selected"),
                                  QStringLiteral("Click anything in a visualisation to inspect it "
                                                 "here.")}));
}

TEST_F(InspectorViewTests, NamesItsActions)
{
    select("many/file105");
    const struct
    {
        const char* objectName;
        const char* text;
    } actions[] = {{"inspectorQuickLook", "Quick Look"},
                   {"inspectorReveal", "Reveal in Finder"},
                   {"inspectorOpen", "Open"},
                   {"inspectorStage", "Stage for Cleanup"}};
    for (const auto& action : actions) {
        EXPECT_EQ(tile(action.objectName).text(), QLatin1String(action.text));
    }
    EXPECT_EQ(tile("inspectorQuickLook").toolTip(),
              QStringLiteral("Preview with Quick Look (Space)"));
    EXPECT_EQ(tile("inspectorReveal").symbol(), QStringLiteral("magnifyingglass"));
    EXPECT_EQ(tile("inspectorOpen").symbol(), QStringLiteral("arrow.up.forward.app"));
}

TEST_F(InspectorViewTests, ThePathCanBeSelectedAsText)
{
    select("many/file105");
    auto& path = *m_host.findChild<PathText*>();
    EXPECT_TRUE(path.textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    path.selectAll();
    EXPECT_EQ(path.textCursor().selectedText(), QStringLiteral("/scan/many/file105"));
}

TEST_F(InspectorViewTests, ALinkIsASymbolicLink)
{
    select("link");
    EXPECT_EQ(text("inspectorKind"), QStringLiteral("Symbolic Link"));
    EXPECT_FALSE(isShown("largestInside"));
    select("many/file105");
    EXPECT_EQ(text("inspectorKind"), QStringLiteral("File"));
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
    EXPECT_EQ(
        m_host.findChild<QWidget*>(QStringLiteral("largestInside"))->findChild<QLabel*>()->text(),
        QStringLiteral("Largest inside"));
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
    EXPECT_TRUE(tile("inspectorQuickLook").isEnabled());
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

class InspectorOnDiskTests : public InspectorViewTests
{
protected:
    bool tellsCreation(const char* name)
    {
        const NodePointer selected = node(name);
        m_state.select(selected);
        settle();
        if (quorvane::tellsCreation(*selected)) {
            EXPECT_TRUE(waitFor([&] { return m_state.creationDate.value().node == selected; }));
            settle();
        }
        const QStringList rows = rowsOf("inspectorFacts");
        return std::any_of(rows.begin(), rows.end(), [](const QString& row) {
            return row.startsWith(QLatin1String("Created="));
        });
    }

    void SetUp() override
    {
        InspectorViewTests::SetUp();
        m_disk.folder("empty");
        m_disk.file("full/file", 10);
        test::TreeTextOptions options;
        options.rootPath = m_disk.root();
        m_tree = test::treeFromText("empty/\nfull/\n  file 10\n", options);
        m_state.rootNode = m_tree->rootPointer();
    }

    DiskTree m_disk;
};

TEST_F(InspectorOnDiskTests, AFolderTellsItsCreationOnlyWhenItIsEmpty)
{
    if (!DiskScanner(1).fileCreationDate(m_disk.path("empty"))) {
        GTEST_SKIP() << "the file system keeps no such date";
    }
    EXPECT_TRUE(tellsCreation("empty"));
    EXPECT_FALSE(isShown("largestInside"));
    EXPECT_FALSE(tellsCreation("full"));
    EXPECT_TRUE(isShown("largestInside"));
    EXPECT_TRUE(tellsCreation("full/file"));
}

TEST_F(InspectorOnDiskTests, ALinkTellsOfItself)
{
    m_disk.symbolicLink("nowhere", "full/link");
    test::TreeTextOptions options;
    options.rootPath = m_disk.root();
    m_tree = test::treeFromText("full/\n  link@ 12\n", options);
    m_state.rootNode = m_tree->rootPointer();
    m_state.select(node("full/link"));
    settle();
    EXPECT_EQ(text("inspectorName"), QStringLiteral("link"));
    EXPECT_EQ(text("inspectorKind"), QStringLiteral("Symbolic Link"));
    EXPECT_EQ(m_host.findChild<PathText*>()->toPlainText(), m_disk.path("full/link").displayText());
    const QStringList rows = rowsOf("inspectorFacts");
    EXPECT_EQ(rows.value(0), QStringLiteral("Size=12 B"));
    EXPECT_TRUE(rows.contains(QStringLiteral("Share of parent=100.0%")));
    EXPECT_FALSE(isShown("largestInside"));
    if (DiskScanner(1).fileCreationDate(m_disk.path("full/link"))) {
        EXPECT_TRUE(tellsCreation("full/link")) << "its own, for its target is not there";
    }
}

TEST_F(InspectorOnDiskTests, WhatFailsToTellItsCreationHasNoSuchRow)
{
    m_disk.remove("full/file");
    EXPECT_FALSE(tellsCreation("full/file"));
}

/// Over a file system that counts.
class InspectorReadingTests : public testing::Test
{
protected:
    int readings() { return m_calls.count(FaultyFileSystemCalls::Call::creationDate); }

    FaultyFileSystemCalls m_calls;
    FakePlatform m_platform{FilePath("/"), m_calls};
    AppState m_state{m_platform.platform()};
    QWidget m_host;
    InspectorView m_view{m_state, &m_host};
};

TEST_F(InspectorReadingTests, ABatchOnItsWayReadsNothing)
{
    const auto tree = test::treeFromText("file 20\nother 10\n");
    m_state.rootNode = tree->rootPointer();
    m_state.select(NodePointer(tree->rootPointer(), &test::nodeAt(tree->root(), "file")));
    m_state.setInspectorVisible(true);
    m_host.show();
    ASSERT_TRUE(waitFor([this] { return m_view.isVisible() && readings() > 0; }));
    QCoreApplication::processEvents();
    const int before = readings();
    const auto* const stage = m_host.findChild<ActionTile*>(QStringLiteral("inspectorStage"));
    m_state.toggleStaged(m_state.selectedNode.value());
    EXPECT_TRUE(waitFor([stage] { return stage->text() == QStringLiteral("Unstage"); }));
    for (const double done : {0.25, 0.5, 0.75, 1.0}) {
        m_state.trashProgress = done;
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(readings(), before);
    m_state.select(NodePointer(tree->rootPointer(), &test::nodeAt(tree->root(), "other")));
    EXPECT_TRUE(waitFor([this, before] { return readings() > before; }));
}

TEST_F(InspectorReadingTests, AVolumeThatHangsHoldsUpOneThreadAndNotTheWindow)
{
    Gate gate;
    std::atomic<bool> isOnMainThread = false;
    m_calls.before(FaultyFileSystemCalls::Call::creationDate,
                   [&, main = std::this_thread::get_id()](int, std::string_view) {
                       isOnMainThread = isOnMainThread || std::this_thread::get_id() == main;
                       gate.pass();
                   });
    const auto tree = test::treeFromText("a 3\nb 2\nc 1\n");
    m_state.rootNode = tree->rootPointer();
    m_state.setInspectorVisible(true);
    m_host.show();
    const auto select = [&](const char* name) {
        m_state.select(NodePointer(tree->rootPointer(), &test::nodeAt(tree->root(), name)));
        QCoreApplication::processEvents();
    };
    select("a");
    ASSERT_TRUE(waitFor([this] { return readings() == 1; }));
    select("b");
    select("c");
    EXPECT_EQ(readings(), 1);
    EXPECT_EQ(m_state.creationDate.value().node, nullptr);
    gate.open();
    // What was passed over on the way is not read at all.
    EXPECT_TRUE(waitFor(
        [this] { return m_state.creationDate.value().node == m_state.selectedNode.value(); }));
    EXPECT_EQ(readings(), 2);
    EXPECT_FALSE(isOnMainThread);
}

TEST_F(InspectorViewTests, ALongNameLeavesTheActionsInTheirPlace)
{
    showTree("short 1\n" + std::string(200, 'n') + " 2\n");
    select("short");
    const int before = tile("inspectorStage").mapTo(&m_host, QPoint()).y();
    select(std::string(200, 'n'));
    settle();
    const int after = tile("inspectorStage").mapTo(&m_host, QPoint()).y();
    // Two lines of the name more, and those of the path.
    const int lineHeight = typeMeasure(TextStyle::heading).lineHeight;
    const auto* const path = m_host.findChild<PathText*>();
    EXPECT_LE(after - before, 2 * lineHeight + path->height());
    EXPECT_EQ(text("inspectorName"), QString(200, QLatin1Char('n')));
}

class InspectorIconTests : public InspectorViewTests
{
protected:
    void SetUp() override
    {
        m_theme.add("folder", Qt::red);
        m_theme.use();
        InspectorViewTests::SetUp();
    }

    PlainIconTheme m_theme;
};

TEST_F(InspectorIconTests, ShowsTheIconThatTheDesktopHas)
{
    auto* const plate = m_host.findChild<SymbolPlate*>(QStringLiteral("inspectorIcon"));
    select("many");
    ASSERT_FALSE(plate->icon().isNull());
    EXPECT_EQ(plate->grab().toImage().pixelColor(plate->rect().center()), QColor(Qt::red));
    select("many/file105");
    EXPECT_TRUE(plate->icon().isNull()) << "the theme has none: the symbol stays";
}

} // namespace
} // namespace quorvane
