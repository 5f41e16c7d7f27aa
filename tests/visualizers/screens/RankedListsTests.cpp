// SPDX-License-Identifier: MIT
#include "AgeBarChart.h"
#include "AgeMapView.h"
#include "CanvasFixture.h"
#include "ListRow.h"
#include "NodeColors.h"
#include "NodeRows.h"
#include "PlainIconTheme.h"
#include "ShapePainting.h"
#include "Symbols.h"
#include "Tokens.h"
#include "TopSizesView.h"

#include <QLabel>
#include <QPainter>

#include <algorithm>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

template<class Screen>
class RankedFixture : public CanvasFixture
{
protected:
    void open(const std::string& text)
    {
        showTree(text);
        m_screen.resize(900, 700);
        m_screen.show();
        QApplication::setActiveWindow(&m_screen);
    }

    NodeRowView* list() { return m_screen.template findChild<NodeRowView*>(); }

    void click(int row)
    {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                          list()->visualRect(list()->model()->index(row, 0)).center());
    }

    /// What assistive technology reads for a row.
    QString spoken(int row)
    {
        return list()->model()->index(row, 0).data(Qt::AccessibleTextRole).toString();
    }

    /// All words on the screen beside the rows of its list, from the top.
    QStringList visibleTexts() const
    {
        QApplication::processEvents();
        std::vector<std::pair<int, QString>> found;
        for (const QLabel* const label : m_screen.template findChildren<QLabel*>()) {
            if (label->isVisible() && !label->text().isEmpty()) {
                found.emplace_back(label->mapTo(&m_screen, QPoint(0, 0)).y(), label->text());
            }
        }
        std::stable_sort(found.begin(), found.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        QStringList texts;
        for (const auto& [top, text] : found) {
            texts << text;
        }
        return texts;
    }

    Screen m_screen{m_state};
};

using TopSizesViewTests = RankedFixture<TopSizesView>;
using AgeMapViewTests = RankedFixture<AgeMapView>;

TEST_F(TopSizesViewTests, RanksTheWholeScanWhateverIsInFocus)
{
    open("box/\n  a.mp4 600\nlone.mp4 500\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 4; }));
    EXPECT_EQ(m_screen.totalBytes(), 1100);
    m_state.focus(node("box"));
    QApplication::processEvents();
    ASSERT_TRUE(waitFor([this] { return !m_screen.isComputing(); }));
    EXPECT_EQ(m_screen.totalBytes(), 1100);
    EXPECT_EQ(m_screen.topItems().rowCount(), 4);
    EXPECT_EQ(m_screen.topItems().index(0).data().toString(), QStringLiteral("scan"));
}

TEST_F(TopSizesViewTests, ShowsAHundredRows)
{
    std::string text;
    for (int i = 0; i < 150; ++i) {
        text += "f" + std::to_string(i) + " 1\n";
    }
    open(text);
    EXPECT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 100; }));
}

TEST_F(TopSizesViewTests, ClickOnAFolderOpensIt)
{
    open("box/\n  a.mp4 600\nlone.mp4 500\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 4; }));
    // The file in it is as large and comes first by name.
    click(2);
    EXPECT_EQ(m_state.selectedNode.value(), node("box"));
    EXPECT_EQ(m_state.focusNode.value(), node("box"));
}

TEST_F(TopSizesViewTests, RowTellsRankSizeShareAndFiles)
{
    open("box/\n  a.mp4 600\nlone.mp4 500\n");
    const Row box = TopSizesView::rowOf(*node("box"), 2, 1100, SizeMode::logical);
    EXPECT_EQ(box.number, QStringLiteral("2"));
    EXPECT_EQ(box.describe(), QStringLiteral("2. box, folder, 600 B, 54.5%, 1 files"));
    EXPECT_EQ(TopSizesView::rowOf(*node("lone.mp4"), 4, 0, SizeMode::logical).describe(),
              QStringLiteral("4. lone.mp4, 500 B"));
}

TEST_F(TopSizesViewTests, RowsTellAssistiveTechnologyAllThatTheyShow)
{
    open("box/\n  a.mp4 600\nlone.mp4 500\n");
    m_state.setSizeMode(SizeMode::logical);
    ASSERT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 4; }));
    EXPECT_EQ(spoken(0), QStringLiteral("1. scan, folder, 1.1 KB, 100.0%, 2 files"));
    EXPECT_EQ(spoken(3), QStringLiteral("4. lone.mp4, 500 B, 45.5%"));
}

TEST_F(TopSizesViewTests, TypingFindsARow)
{
    open("box/\n  a.mp4 600\nlone.mp4 500\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 4; }));
    QTest::keyClicks(list(), QStringLiteral("lo"));
    EXPECT_EQ(m_state.selectedNode.value(), node("lone.mp4"));
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
}

TEST_F(TopSizesViewTests, ArrowKeysSelectAndReturnOpens)
{
    open("box/\n  a.mp4 600\nlone.mp4 500\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 4; }));
    click(3);
    QTest::keyClick(list(), Qt::Key_Up);
    EXPECT_EQ(m_state.selectedNode.value(), node("box"));
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(m_state.focusNode.value(), node("box"));
}

TEST_F(TopSizesViewTests, ListFollowsTheSelection)
{
    open("box/\n  a.mp4 600\nlone.mp4 500\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 4; }));
    m_state.select(node("lone.mp4"));
    EXPECT_EQ(list()->currentIndex().row(), 3);
    m_state.select(nullptr);
    EXPECT_FALSE(list()->selectionModel()->hasSelection());
}

TEST_F(TopSizesViewTests, AHiddenListFollowsTheSelectionWhenItComesOnShow)
{
    open("box/\n  a.mp4 600\nlone.mp4 500\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 4; }));
    click(2);
    m_screen.hide();
    m_state.select(node("lone.mp4"));
    m_screen.show();
    EXPECT_EQ(list()->currentIndex().row(), 3);
    m_screen.hide();
    m_state.select(nullptr);
    m_screen.show();
    EXPECT_FALSE(list()->selectionModel()->hasSelection());
    const NodePointer focus = m_state.focusNode.value();
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(m_state.focusNode.value(), focus) << "no old row is opened";
}

TEST_F(TopSizesViewTests, ARowOfAnOldTreeDoesNothing)
{
    open("box/\n  a.mp4 600\nlone.mp4 500\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 4; }));
    const auto old = m_tree;
    m_tree = test::treeFromText("other 5\n");
    m_state.rootNode = m_tree->rootPointer();
    m_state.focusNode = m_tree->rootPointer();
    click(3);
    EXPECT_NE(m_state.selectedNode.value().get(), &test::nodeAt(old->root(), "lone.mp4"));
}

TEST_F(TopSizesViewTests, CircleHasTheColorOfTheNode)
{
    open("lone.mp4 500\nother.pdf 400\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.topItems().rowCount() == 3; }));
    const QImage picture = list()->viewport()->grab().toImage();
    for (const int row : {1, 2}) {
        const QRect place = list()->visualRect(list()->model()->index(row, 0));
        // The circle is ten wide and stands 16 points from the edge.
        const QRgb seen = picture.pixel(place.left() + 21, place.center().y());
        const NodePointer shown = node(row == 1 ? "lone.mp4" : "other.pdf");
        EXPECT_EQ(seen, toQColor(NodeColors::leafColor(*shown)).rgb()) << row;
    }
}

TEST_F(TopSizesViewTests, WithoutAScanItSaysSo)
{
    m_screen.show();
    EXPECT_EQ(visibleTexts(),
              QStringList{QStringLiteral("Scan a folder to rank the largest items.")});
}

TEST_F(AgeMapViewTests, WithoutAScanItSaysSo)
{
    m_screen.show();
    EXPECT_EQ(visibleTexts(), QStringList{QStringLiteral("No scan yet")});
}

TEST_F(AgeMapViewTests, HeadsItsChartAndItsList)
{
    open("new.txt 5 5 @86400\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.chart().buckets().size() == 1; }));
    EXPECT_EQ(
        visibleTexts(),
        (QStringList{QStringLiteral("Bytes by last modified"), QStringLiteral("Big & untouched"),
                     QStringLiteral("Big & Untouched: files over 50 MB untouched for a year+"),
                     QStringLiteral("Nothing big and untouched here. Clean drive!")}));
}

TEST_F(AgeMapViewTests, ShowsMonthsAndOldFiles)
{
    open("old.bin 60000000 60000000 @86400\nnew.txt 5 5 @86400\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.untouched().rowCount() == 1; }));
    ASSERT_EQ(m_screen.chart().buckets().size(), 1U);
    EXPECT_EQ(m_screen.chart().buckets()[0].bytes, 60000005);
    const FileNode* const focus = m_state.focusNode.value().get();
    click(0);
    EXPECT_EQ(m_state.selectedNode.value(), node("old.bin"));
    EXPECT_EQ(m_state.focusNode.value().get(), focus);
}

TEST_F(AgeMapViewTests, RowsTellAssistiveTechnologyAllThatTheyShow)
{
    open("old.bin 62914560 67108864 @86400\n");
    m_state.setSizeMode(SizeMode::logical);
    ASSERT_TRUE(waitFor([this] {
        return !m_screen.isComputing() && m_screen.untouched().rowCount() == 1 &&
               spoken(0).contains(QStringLiteral("60.0 MB"));
    }));
    EXPECT_EQ(spoken(0), QStringLiteral("old.bin, ") +
                             AppState::displayPath(node("old.bin")->path()) +
                             QStringLiteral(", 60.0 MB, ") +
                             ListRow::dateText(node("old.bin")->dateModified()));
    m_state.setSizeMode(SizeMode::disk);
    EXPECT_TRUE(waitFor([this] { return spoken(0).contains(QStringLiteral(", 64.0 MB, ")); }));
}

TEST_F(AgeMapViewTests, HeadingsHaveTheirSymbolsInTheColorOfTheTheme)
{
    const AppTheme before = theme().isDark() ? AppTheme::dark : AppTheme::light;
    const AccentChoice accent = theme().accent();
    for (const AppTheme shownTheme : {AppTheme::dark, AppTheme::light}) {
        setTheme(shownTheme, AccentChoice::blue);
        for (const char* const name : {"calendar", "moon.stars.fill"}) {
            auto* const shown = m_screen.findChild<QWidget*>(QLatin1String(name));
            ASSERT_TRUE(shown);
            QImage picture(shown->size(), QImage::Format_ARGB32_Premultiplied);
            picture.fill(Qt::transparent);
            QImage expected = picture;
            shown->render(&picture, {}, {}, QWidget::RenderFlags());
            QPainter painter(&expected);
            paintSymbol(painter, QLatin1String(name), QRectF(shown->rect()), measure::iconRow,
                        themeColor(ThemeColor::text2));
            painter.end();
            EXPECT_EQ(picture, expected) << name;
        }
    }
    setTheme(before, accent);
}

TEST_F(AgeMapViewTests, RowHasTheDesktopsIconWhereThereIsOne)
{
    PlainIconTheme theme;
    theme.add("video-x-generic", Qt::red);
    theme.use();
    open("old.mp4 60000000 60000000 @86400\nold.pdf 55000000 55000000 @86400\n");
    ASSERT_TRUE(waitFor([this] { return m_screen.untouched().rowCount() == 2; }));
    const QImage picture = list()->viewport()->grab().toImage();
    const auto iconAt = [&](int row) {
        const QRect place = list()->visualRect(list()->model()->index(row, 0));
        // The icon is 16 wide and stands 16 points from the edge.
        return picture.pixelColor(place.left() + 16 + 8, place.center().y());
    };
    EXPECT_EQ(iconAt(0), QColor(Qt::red));
    EXPECT_NE(iconAt(1), QColor(Qt::red));
}

TEST_F(AgeMapViewTests, FolderWithoutDatedFilesSaysSo)
{
    open("empty/\n");
    ASSERT_TRUE(waitFor([this] { return !m_screen.isComputing() && m_screen.chart().isHidden(); }));
    EXPECT_TRUE(m_screen.chart().buckets().empty());
    EXPECT_TRUE(visibleTexts().contains(QStringLiteral("No dated files in this folder.")));
}

TEST(AgeBarChartTests, BarsStandOnTheBottomAsTallAsTheirShare)
{
    AgeBarChart chart;
    chart.resize(203, 100);
    chart.setBuckets({{QStringLiteral("Jan 2025"), QDate(2025, 1, 1), 50},
                      {QStringLiteral("Feb 2025"), QDate(2025, 2, 1), 100},
                      {QStringLiteral("Mar 2025"), QDate(2025, 3, 1), 0}});
    // A third of the width less 3, and a step of 3 more.
    const double width = 203 / 3.0 - 3;
    EXPECT_NEAR(chart.barOf(0).width(), width, 1e-9);
    EXPECT_NEAR(chart.barOf(1).left(), width + 3, 1e-9);
    EXPECT_NEAR(chart.barOf(0).height(), 45, 1e-9);
    EXPECT_NEAR(chart.barOf(1).height(), 90, 1e-9);
    EXPECT_NEAR(chart.barOf(1).bottom(), 100, 1e-9);
    EXPECT_NEAR(chart.barOf(2).height(), 1, 1e-9);
    EXPECT_EQ(chart.accessibleDescription(),
              QStringLiteral("Jan 2025: 50 B, Feb 2025: 100 B, Mar 2025: 0 B"));
}

TEST(AgeBarChartTests, LargestMonthIsTheBrightest)
{
    AgeBarChart chart;
    chart.resize(209, 100);
    chart.setBuckets({{QStringLiteral("Jan 2025"), QDate(2025, 1, 1), 1},
                      {QStringLiteral("Feb 2025"), QDate(2025, 2, 1), 50},
                      {QStringLiteral("Mar 2025"), QDate(2025, 3, 1), 100}});
    const QImage picture = chart.grab().toImage();
    for (const auto& [bucket, brightness] : {std::pair(1, 0.5), std::pair(2, 1.0)}) {
        const QPointF middle = chart.barOf(static_cast<std::size_t>(bucket)).center();
        EXPECT_EQ(picture.pixel(middle.toPoint()),
                  toQColor(Color::hsb(0.55, 0.45, brightness)).rgb())
            << bucket;
    }
}

TEST(AgeBarChartTests, EverySixthMonthIsNamedBelowItsBar)
{
    AgeBarChart chart;
    chart.resize(7 * 90, 100);
    std::vector<AgeBucket> buckets;
    for (int month = 1; month <= 7; ++month) {
        const QDate first(2025, month, 1);
        buckets.push_back({monthText(first), first, 100});
    }
    chart.setBuckets(buckets);
    const QImage picture = chart.grab().toImage();
    const QRgb bar = toQColor(Color::hsb(0.55, 0.45, 1)).rgb();
    for (std::size_t i = 0; i < buckets.size(); ++i) {
        // A point of the plate behind the name, left of its letters.
        const QPoint place(static_cast<int>(chart.barOf(i).left()) + 3, chart.height() - 14);
        EXPECT_EQ(picture.pixel(place) != bar, i % 6 == 0) << i;
    }
}

} // namespace
} // namespace quorvane
