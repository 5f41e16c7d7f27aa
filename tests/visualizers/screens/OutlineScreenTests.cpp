// SPDX-License-Identifier: MIT
#include "OutlineScreen.h"

#include "CanvasFixture.h"
#include "QuorvaneStyle.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QHeaderView>
#include <QMenu>

namespace quorvane {
namespace {

template<class Screen>
class OutlineFixture : public CanvasFixture
{
protected:
    void open(const std::string& text)
    {
        showTree(text);
        m_screen.resize(900, 600);
        m_screen.show();
        QApplication::setActiveWindow(&m_screen);
        ASSERT_TRUE(
            waitFor([this] { return m_screen.outline().outline().node() == m_state.shownNode(); }));
    }

    QModelIndex row(const std::string& path) { return m_screen.outline().indexOf(*node(path)); }
    Row rowOf(const std::string& path) { return m_screen.table().rowOf(row(path)); }
    /// 0 is the name.
    QString textOf(const std::string& path, std::size_t column)
    {
        return column == 0 ? rowOf(path).title : rowOf(path).cells[column - 1].text;
    }
    void click(const std::string& path)
    {
        NodeRowView& table = m_screen.table();
        QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                          table.visualRect(row(path)).center());
    }

    Screen m_screen{m_state};
};

using ListViewTests = OutlineFixture<ListView>;
using FoldersViewTests = OutlineFixture<FoldersView>;

constexpr const char* someFiles = "box/\n  a.png 600 4096 @86400\n  b.txt 400\nlone.mp4 500\n";

TEST_F(ListViewTests, ShowsNameBothSizesAndDate)
{
    open(someFiles);
    ASSERT_TRUE(m_screen.table().titles());
    const Row& titles = *m_screen.table().titles();
    EXPECT_EQ(titles.title, QStringLiteral("Name"));
    ASSERT_EQ(titles.cells.size(), 3U);
    const char* const texts[] = {"Size", "Size on disk", "Modified"};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(titles.cells[i].text, QLatin1String(texts[i]));
    }
    EXPECT_EQ(textOf("box/a.png", 0), QStringLiteral("a.png"));
    EXPECT_EQ(textOf("box/a.png", 1), QStringLiteral("600 B"));
    EXPECT_EQ(textOf("box/a.png", 2), QStringLiteral("4.0 KB"));
    EXPECT_TRUE(textOf("box/a.png", 3).startsWith(QStringLiteral("Jan ")));
}

TEST_F(ListViewTests, ModelKeepsTheRulesOfModels)
{
    open(someFiles);
    QAbstractItemModelTester tester(&m_screen.outline(),
                                    QAbstractItemModelTester::FailureReportingMode::Fatal);
    m_state.setBloatFilters({{"Caches", false}});
    ASSERT_TRUE(waitFor([this] { return m_screen.outline().rowCount() == 2; }));
}

TEST_F(ListViewTests, ClickOnAFolderOpensItAndOnAFileSelects)
{
    open(someFiles);
    click("lone.mp4");
    EXPECT_EQ(m_state.selectedNode.value(), node("lone.mp4"));
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
    click("box");
    EXPECT_EQ(m_state.focusNode.value(), node("box"));
    EXPECT_TRUE(waitFor([this] {
        return m_screen.outline().rowCount() == 2 && row("box/a.png").isValid() &&
               !row("box/a.png").parent().isValid();
    }));
}

TEST_F(ListViewTests, ArrowKeysSelectWithoutOpening)
{
    open(someFiles);
    click("lone.mp4");
    QTest::keyClick(&m_screen.table(), Qt::Key_Up);
    EXPECT_EQ(m_state.selectedNode.value(), node("box"));
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
    QTest::keyClick(&m_screen.table(), Qt::Key_Return);
    EXPECT_EQ(m_state.focusNode.value(), node("box"));
}

TEST_F(ListViewTests, TypingFindsARow)
{
    open(someFiles);
    click("lone.mp4");
    QTest::keyClicks(&m_screen.table(), QStringLiteral("bo"));
    EXPECT_EQ(m_state.selectedNode.value(), node("box"));
}

TEST_F(ListViewTests, FollowsTheSelectionIntoClosedFolders)
{
    open(someFiles);
    m_state.select(node("box/b.txt"));
    EXPECT_TRUE(m_screen.table().isExpanded(row("box")));
    EXPECT_EQ(m_screen.table().currentIndex(), row("box/b.txt"));
    m_state.select(nullptr);
    EXPECT_FALSE(m_screen.table().selectionModel()->hasSelection());
}

TEST_F(ListViewTests, SizeModeChangesNeitherRowsNorOrder)
{
    open("large 9 1\nsmall 1 9\n");
    m_state.setSizeMode(m_state.sizeMode() == SizeMode::disk ? SizeMode::logical : SizeMode::disk);
    EXPECT_EQ(row("large").row(), 0);
    EXPECT_EQ(row("small").row(), 1);
    EXPECT_EQ(textOf("small", 1), QStringLiteral("1 B"));
    EXPECT_EQ(textOf("small", 2), QStringLiteral("9 B"));
}

TEST_F(ListViewTests, ColumnsCanBeResized)
{
    open(someFiles);
    NodeRowView& table = m_screen.table();
    const auto cells = [&] { return table.placesOf(row("lone.mp4")).cells; };
    const std::vector<QRect> before = cells();
    QWidget* const header = table.header()->viewport();
    const QPoint edge(before[1].left(), 10);
    QTest::mousePress(header, Qt::LeftButton, {}, edge);
    QTest::mouseMove(header, edge - QPoint(30, 0));
    QTest::mouseRelease(header, Qt::LeftButton, {}, edge - QPoint(30, 0));
    const std::vector<QRect> after = cells();
    EXPECT_EQ(after[1].width(), before[1].width() + 30);
    EXPECT_EQ(after[1].right(), before[1].right());
    EXPECT_EQ(after[0].left(), before[0].left() - 30) << "the name has that much less";
    EXPECT_EQ(after[0].width(), before[0].width());
}

TEST_F(ListViewTests, RowsTellAssistiveTechnologyAllThatTheyShow)
{
    open(someFiles);
    EXPECT_TRUE(row("box/a.png")
                    .data(Qt::AccessibleTextRole)
                    .toString()
                    .startsWith(QStringLiteral("a.png, 600 B, 4.0 KB on disk, Jan ")));
    EXPECT_TRUE(row("box")
                    .data(Qt::AccessibleTextRole)
                    .toString()
                    .startsWith(QStringLiteral("box, folder, 1000 B, 2 files, ")));
    QAccessibleInterface* const tree = QAccessible::queryAccessibleInterface(&m_screen.table());
    EXPECT_EQ(tree->role(), QAccessible::Tree);
    EXPECT_EQ(tree->childCount(), 2);
    EXPECT_TRUE(tree->child(0)->state().collapsed);
}

TEST_F(ListViewTests, AHiddenListFollowsTheSelectionWhenItComesOnShow)
{
    open(someFiles);
    click("lone.mp4");
    m_screen.hide();
    m_state.select(node("box"));
    m_screen.show();
    EXPECT_EQ(m_screen.table().currentIndex(), row("box"));
    QTest::keyClick(&m_screen.table(), Qt::Key_Return);
    EXPECT_EQ(m_state.focusNode.value(), node("box"));
}

TEST_F(ListViewTests, RightClickOpensTheNodeMenu)
{
    open(someFiles);
    NodeRowView& table = m_screen.table();
    const QPoint place = table.visualRect(row("lone.mp4")).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, table.viewport()->mapToGlobal(place));
    QApplication::sendEvent(table.viewport(), &event);
    auto* const menu = table.findChild<QMenu*>(QStringLiteral("nodeContextMenu"));
    ASSERT_TRUE(menu);
    menu->close();
}

TEST_F(ListViewTests, SelectedRowAtTheEndKeepsClearOfTheCardsCorners)
{
    std::string many;
    for (int i = 0; i < 60; ++i) {
        many += "f" + std::to_string(100 + i) + ".txt 5\n";
    }
    open(many);
    auto* const style = new QuorvaneStyle;
    style->setParent(&m_screen);
    m_screen.table().setStyle(style);
    m_screen.table().scrollToBottom();
    const QImage before = m_screen.grab().toImage();
    m_state.select(node("f159.txt"));
    ASSERT_TRUE(m_screen.table().selectionModel()->hasSelection());
    const QImage after = m_screen.grab().toImage();
    // The edge of the card is one wide, its corner 10.
    for (const int x : {1, 2, before.width() - 3, before.width() - 2}) {
        EXPECT_EQ(after.pixelColor(x, before.height() - 2),
                  before.pixelColor(x, before.height() - 2))
            << x;
    }
    const QPoint middle(before.width() / 2, before.height() - 3);
    EXPECT_NE(after.pixelColor(middle), before.pixelColor(middle));
}

TEST_F(FoldersViewTests, ShowsFilesOfFoldersAndSizes)
{
    open(someFiles);
    EXPECT_EQ(textOf("box", 1), QStringLiteral("2"));
    EXPECT_EQ(textOf("lone.mp4", 1), QString());
    EXPECT_EQ(textOf("box", 2), QStringLiteral("1000 B"));
}

TEST_F(FoldersViewTests, RowThatHasJustAppearedCanBeClicked)
{
    open(someFiles);
    NodeRowView& table = m_screen.table();
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                      table.placesOf(row("box")).chevron.center());
    ASSERT_TRUE(table.isExpanded(row("box")));
    click("box/a.png");
    EXPECT_EQ(m_state.selectedNode.value(), node("box/a.png"));
    table.collapse(row("box"));
    click("lone.mp4");
    EXPECT_EQ(m_state.selectedNode.value(), node("lone.mp4"));
}

TEST_F(FoldersViewTests, StagedRowsHaveTheTrash)
{
    open(someFiles);
    EXPECT_EQ(rowOf("box").symbol, QStringLiteral("folder"));
    EXPECT_EQ(rowOf("box").symbolColor, ThemeColor::accentText);
    m_state.toggleStaged(node("box"));
    EXPECT_EQ(rowOf("box").symbol, QStringLiteral("trash.fill"));
    EXPECT_EQ(rowOf("box").symbolColor, ThemeColor::redText);
    EXPECT_EQ(rowOf("lone.mp4").symbol, QStringLiteral("folder"));
}

TEST_F(FoldersViewTests, ClickOnlySelects)
{
    open(someFiles);
    click("box");
    EXPECT_EQ(m_state.selectedNode.value(), node("box"));
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
}

TEST_F(FoldersViewTests, OldTreeGoesEvenWhileHidden)
{
    open(someFiles);
    m_screen.hide();
    m_state.rootNode = nullptr;
    m_state.focusNode = nullptr;
    EXPECT_TRUE(waitFor([this] { return !m_screen.outline().outline().node(); }));
}

} // namespace
} // namespace quorvane
