// SPDX-License-Identifier: MIT
#include "SnapshotsView.h"

#include "AppState.h"
#include "Button.h"
#include "DiskTree.h"
#include "FakePlatform.h"
#include "Label.h"
#include "RowView.h"
#include "SnapshotChart.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QLocale>
#include <QTest>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <string>
#include <utility>

namespace quorvane {
namespace {

class SnapshotsViewTests : public testing::Test
{
protected:
    SnapshotsViewTests() { forgetAll(); }
    ~SnapshotsViewTests() override { forgetAll(); }

    void SetUp() override
    {
        m_window.resize(1320, 900);
        m_view.resize(1320, 900);
        m_window.show();
        QApplication::setActiveWindow(&m_window);
        await();
    }

    static void forgetAll()
    {
        std::filesystem::remove_all(SnapshotStore::snapshotsDirectory().bytes());
    }

    static void settle() { QCoreApplication::processEvents(); }

    void await()
    {
        ASSERT_TRUE(waitFor(
            [this] { return !m_state.isSnapshotBusy.value() && !m_state.isComparing.value(); }));
        settle();
    }

    void scan()
    {
        m_state.startScan(m_disk.root());
        ASSERT_TRUE(waitFor([this] { return !m_state.isScanning.value(); }));
        await();
    }

    void press(const char* objectName)
    {
        QTest::mouseClick(&part<QWidget>(objectName), Qt::LeftButton);
        await();
    }

    /// A snapshot of the disk as it is.
    void save()
    {
        scan();
        press("saveSnapshotButton");
    }

    void store(double date, std::int64_t rootBytes, const std::string& root)
    {
        ScanSnapshot snapshot;
        snapshot.id = QUuid::createUuid();
        snapshot.date = date;
        snapshot.rootBytes = rootBytes;
        snapshot.rootPath = root;
        ASSERT_TRUE(SnapshotStore(SnapshotStore::snapshotsDirectory()).save(snapshot));
    }

    void choose(int row)
    {
        auto& picker = part<QComboBox>("compareSnapshotPicker");
        picker.setCurrentIndex(row + 1);
        Q_EMIT picker.activated(row + 1);
        await();
    }

    template<class T>
    T& part(const char* objectName)
    {
        return *m_window.findChild<T*>(QLatin1String(objectName));
    }

    Row rowAt(const char* list, int row)
    {
        auto& view = part<RowView>(list);
        return view.rowOf(view.model()->index(row, 0));
    }

    DiskTree m_disk;
    FakePlatform m_platform;
    AppState m_state{m_platform.platform()};
    QWidget m_window;
    SnapshotsView m_view{m_state, &m_window};
};

TEST_F(SnapshotsViewTests, WithoutSnapshotsItTellsWhatTheyAreFor)
{
    EXPECT_TRUE(part<QWidget>("noSnapshots").isVisible());
    EXPECT_FALSE(part<QWidget>("compareSnapshotPicker").isVisible());
    EXPECT_FALSE(part<Button>("saveSnapshotButton").isEnabled());
    EXPECT_TRUE(part<Button>("refreshSnapshotsButton").isEnabled());
    scan();
    EXPECT_TRUE(part<Button>("saveSnapshotButton").isEnabled());
}

TEST_F(SnapshotsViewTests, ASavedScanIsListedWithDateSizeAndRoot)
{
    m_disk.file("a", 102400);
    save();
    ASSERT_EQ(part<RowView>("savedSnapshotsList").model()->rowCount(), 1);
    EXPECT_EQ(part<Label>("savedSnapshotsHeading").text(), QStringLiteral("Saved snapshots (1)"));
    const Row row = rowAt("savedSnapshotsList", 0);
    EXPECT_EQ(row.title, m_state.snapshots.value()[0].formattedDate(QLocale()));
    EXPECT_EQ(row.path, m_disk.root().displayText());
    EXPECT_EQ(row.cells.at(0).text, QStringLiteral("100.0 KB"));
    EXPECT_EQ(row.actions.at(0).toolTip.isEmpty() ? row.actions.at(0).name
                                                  : row.actions.at(0).toolTip,
              QStringLiteral("Delete this snapshot"));
    EXPECT_FALSE(part<QWidget>("snapshotDiffTable").isVisible());
    EXPECT_FALSE(part<QWidget>("changedItems").isVisible());
}

TEST_F(SnapshotsViewTests, WhileBusyTheButtonsAreOffAndTheStatusShows)
{
    m_disk.file("a", 102400);
    save();
    m_state.loadSnapshots();
    settle();
    // Still under way: its result comes through the event loop, which has not been waited for.
    if (m_state.isSnapshotBusy) {
        EXPECT_FALSE(part<Button>("saveSnapshotButton").isEnabled());
        EXPECT_FALSE(part<Button>("refreshSnapshotsButton").isEnabled());
        EXPECT_FALSE(rowAt("savedSnapshotsList", 0).actions.at(0).isEnabled);
    }
    await();
    EXPECT_TRUE(part<Button>("refreshSnapshotsButton").isEnabled());
    EXPECT_TRUE(rowAt("savedSnapshotsList", 0).actions.at(0).isEnabled);
}

TEST_F(SnapshotsViewTests, AChosenSnapshotIsComparedWithToday)
{
    m_disk.file("grown", 102400);
    m_disk.file("gone", 204800);
    m_disk.file("same", 307200);
    save();
    m_disk.file("grown", 512000);
    m_disk.remove("gone");
    scan();
    choose(0);
    EXPECT_EQ(part<Label>("changedItems").text(), QStringLiteral("3 changed items"));
    EXPECT_FALSE(part<QWidget>("showingTop").isVisible());
    // 400 KiB more, 200 KiB less.
    EXPECT_EQ(part<Label>("netChange").text(), QStringLiteral("Net growth +200.0 KB"));
    ASSERT_EQ(part<RowView>("snapshotDiffTable").model()->rowCount(), 3);
    const Row first = rowAt("snapshotDiffTable", 0);
    EXPECT_EQ(first.title, QStringLiteral("/grown"));
    EXPECT_EQ(first.cells.at(0).text, QStringLiteral("100.0 KB"));
    EXPECT_EQ(first.cells.at(1).text, QStringLiteral("500.0 KB"));
    EXPECT_EQ(first.cells.at(2).text, QStringLiteral("+400.0 KB"));
    EXPECT_EQ(first.cells.at(2).color, ThemeColor::orangeText);
    const Row second = rowAt("snapshotDiffTable", 1);
    EXPECT_EQ(second.title, QStringLiteral("/gone"));
    EXPECT_EQ(second.cells.at(2).text, QStringLiteral("−200.0 KB"));
    EXPECT_EQ(second.cells.at(2).color, ThemeColor::greenText);
    EXPECT_EQ(rowAt("snapshotDiffTable", 2).cells.at(2).color, ThemeColor::orangeText);
}

TEST_F(SnapshotsViewTests, ANetOfNothingReadsAsGrowth)
{
    m_disk.file("a", 102400);
    save();
    choose(0);
    EXPECT_EQ(part<Label>("netChange").text(), QStringLiteral("Net growth +0 B"));
    EXPECT_EQ(part<Label>("changedItems").text(), QStringLiteral("1 changed items"));
}

TEST_F(SnapshotsViewTests, TheLargest400RowsAreShownAndTheNetCountsAll)
{
    for (int i = 0; i < 400; ++i) {
        m_disk.file("f" + std::to_string(i), 65536);
    }
    save();
    choose(0);
    EXPECT_EQ(part<RowView>("snapshotDiffTable").model()->rowCount(), 400);
    EXPECT_FALSE(part<QWidget>("showingTop").isVisible());
    m_disk.file("one more", 65536);
    scan();
    EXPECT_EQ(part<Label>("changedItems").text(), QStringLiteral("401 changed items"));
    EXPECT_EQ(part<RowView>("snapshotDiffTable").model()->rowCount(), 400);
    EXPECT_TRUE(part<QWidget>("showingTop").isVisible());
    EXPECT_EQ(part<Label>("showingTop").text(), QStringLiteral("Showing top 400"));
    EXPECT_EQ(part<Label>("netChange").text(), QStringLiteral("Net growth +64.0 KB"));
}

TEST_F(SnapshotsViewTests, DeletingTheChosenSnapshotEmptiesTheComparison)
{
    m_disk.file("a", 102400);
    save();
    save();
    choose(0);
    EXPECT_TRUE(part<QWidget>("snapshotDiffTable").isVisible());
    auto& saved = part<RowView>("savedSnapshotsList");
    QTest::mouseClick(saved.viewport(), Qt::LeftButton, {},
                      saved.partRect(saved.model()->index(0, 0), RowPart{0, 0}).center());
    await();
    EXPECT_EQ(saved.model()->rowCount(), 1);
    EXPECT_FALSE(part<QWidget>("snapshotDiffTable").isVisible());
    EXPECT_EQ(part<QComboBox>("compareSnapshotPicker").currentIndex(), 0);
}

TEST_F(SnapshotsViewTests, ARowLeadsToItsFileOrTheFolderThatIsLeftOfIt)
{
    m_disk.file("sub/grown", 102400);
    m_disk.file("sub/gone", 90000);
    save();
    m_disk.file("sub/grown", 512000);
    m_disk.remove("sub/gone");
    scan();
    choose(0);
    auto& table = part<RowView>("snapshotDiffTable");
    const auto open = [&](int row) {
        table.setFocus();
        table.setCurrentIndex(table.model()->index(row, 0));
        QTest::keyClick(&table, Qt::Key_Return);
        return m_state.selectedNode.value()->name();
    };
    EXPECT_EQ(open(0), "grown");
    EXPECT_EQ(m_state.section.value(), AppSection::analysis);
    EXPECT_EQ(open(1), "sub");
    EXPECT_EQ(m_state.focusNode.value()->name(), "sub");
}

TEST_F(SnapshotsViewTests, TheChartHasAPointForEachSnapshotOfTheSameRoot)
{
    store(1000, 5000, "/a");
    store(2000, 6000, "/b");
    store(3000, 7000, "/a");
    press("refreshSnapshotsButton");
    auto& chart = part<SnapshotChart>("snapshotChart");
    const auto list = m_state.snapshots.value();
    ASSERT_EQ(list.size(), 3U);
    EXPECT_TRUE(chart.pointOf(list[0].id));
    EXPECT_FALSE(chart.pointOf(list[1].id));
    ASSERT_TRUE(chart.pointOf(list[2].id));
    // Later is further right, and more is further up.
    EXPECT_GT(chart.pointOf(list[0].id)->x(), chart.pointOf(list[2].id)->x());
    EXPECT_LT(chart.pointOf(list[0].id)->y(), chart.pointOf(list[2].id)->y());
    choose(1);
    EXPECT_TRUE(chart.pointOf(list[1].id));
    EXPECT_FALSE(chart.pointOf(list[0].id));
}

TEST_F(SnapshotsViewTests, AClickOnAPointChoosesItsSnapshot)
{
    store(1000, 5000, "/a");
    store(3000, 7000, "/a");
    press("refreshSnapshotsButton");
    auto& chart = part<SnapshotChart>("snapshotChart");
    const auto list = m_state.snapshots.value();
    QTest::mouseClick(&chart, Qt::LeftButton, {}, chart.pointOf(list[1].id)->toPoint());
    EXPECT_EQ(m_state.baseSnapshotID.value(), list[1].id);
    chart.setFocus();
    QTest::keyClick(&chart, Qt::Key_Right);
    EXPECT_EQ(m_state.baseSnapshotID.value(), list[0].id);
}

TEST_F(SnapshotsViewTests, InANarrowWindowTheSavedListLiesBelowTheTable)
{
    m_disk.file("a", 102400);
    save();
    choose(0);
    const auto& table = part<QWidget>("snapshotDiffTable");
    const auto& saved = part<QWidget>("savedSnapshotsList");
    const auto place = [&](const QWidget& widget) { return widget.mapTo(&m_view, QPoint()); };
    EXPECT_TRUE(waitFor([&] { return place(saved).x() >= place(table).x() + table.width(); }));
    m_view.resize(760, 900);
    EXPECT_TRUE(waitFor([&] { return place(saved).y() >= place(table).y() + table.height(); }));
}

TEST(ChartTicks, AreRoundAndCoverTheRange)
{
    constexpr std::int64_t gb = std::int64_t{1} << 30;
    const auto ticks = chartTicks(402 * gb, 509 * gb);
    ASSERT_GE(ticks.size(), 4U);
    EXPECT_LE(ticks.size(), 7U);
    EXPECT_LE(ticks.front(), 402 * gb);
    EXPECT_GE(ticks.back(), 509 * gb);
    for (std::size_t i = 1; i < ticks.size(); ++i) {
        EXPECT_EQ(ticks[i] - ticks[i - 1], ticks[1] - ticks[0]);
        EXPECT_EQ(ticks[i] % gb, 0);
    }
}

TEST(ChartTicks, HoldForEverySize)
{
    for (const auto& [low, high] :
         {std::pair<std::int64_t, std::int64_t>{0, 0},
          {7, 7},
          {0, 1},
          {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::max()},
          {0, std::numeric_limits<std::int64_t>::max()}}) {
        const auto ticks = chartTicks(low, high);
        EXPECT_GE(ticks.size(), 2U) << low << " " << high;
        EXPECT_LE(ticks.size(), 8U);
        EXPECT_TRUE(std::is_sorted(ticks.begin(), ticks.end()));
        EXPECT_LE(ticks.front(), low);
    }
}

} // namespace
} // namespace quorvane
