// SPDX-License-Identifier: MIT
#include "OutlineScreen.h"

#include "CanvasFixture.h"
#include "OutlineTable.h"
#include "QuorvaneStyle.h"
#include "Symbols.h"

#include <QAbstractItemModelTester>
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
    QString textOf(const std::string& path, int column)
    {
        return row(path).siblingAtColumn(column).data().toString();
    }
    void click(const std::string& path)
    {
        OutlineTable& table = m_screen.table();
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
    const OutlineModel& model = m_screen.outline();
    ASSERT_EQ(model.columnCount(), 4);
    const char* const titles[] = {"Name", "Size", "Size on disk", "Modified"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(model.headerData(i, Qt::Horizontal, Qt::DisplayRole).toString(),
                  QLatin1String(titles[i]));
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
    QHeaderView* const header = m_screen.table().header();
    for (int column = 1; column < 4; ++column) {
        EXPECT_EQ(header->sectionResizeMode(column), QHeaderView::Interactive);
    }
}

TEST_F(ListViewTests, RightClickOpensTheNodeMenu)
{
    open(someFiles);
    OutlineTable& table = m_screen.table();
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
    OutlineTable& table = m_screen.table();
    const QRect box = table.visualRect(row("box"));
    // Left of the name, where the chevron is.
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, {box.left() - 6, box.center().y()});
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
    const auto icon = [this](const char* path) {
        return qvariant_cast<QIcon>(row(path).data(Qt::DecorationRole)).pixmap(16).toImage();
    };
    const auto symbol = [](const char* name, ThemeColor color) {
        return symbolIcon(QLatin1String(name), color).pixmap(16).toImage();
    };
    EXPECT_EQ(icon("box"), symbol("folder", ThemeColor::accentText));
    m_state.toggleStaged(node("box"));
    EXPECT_EQ(icon("box"), symbol("trash.fill", ThemeColor::redText));
    EXPECT_EQ(icon("lone.mp4"), symbol("folder", ThemeColor::accentText));
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
