// SPDX-License-Identifier: MIT
#include "DevCacheCleanerView.h"

#include "CleanupCautions.h"
#include "Progress.h"
#include "ToolViewFixture.h"

#include <QCheckBox>

#include <cstdint>
#include <ctime>

namespace quorvane {
namespace {

constexpr RowPart checkBox{RowAction::toggled, 0};

class DevCacheCleanerViewTests : public ToolViewFixture<DevCacheCleanerView>
{
protected:
    void openWithCaches()
    {
        m_disk.file(".npm/_cacache/a", 3000);
        m_disk.file(".cargo/registry/b", 5000);
        m_disk.file("go/pkg/mod/c", 7000);
        open();
        ASSERT_TRUE(waitForText("devCacheStatus",
                                QStringLiteral("3 locations, 14.6 KB reclaimed would free")));
    }

    void trashSelected()
    {
        click("trashDevCaches");
        answer(QStringLiteral("Move to Trash"));
    }
};

TEST_F(DevCacheCleanerViewTests, MeasuresWhenItComesIntoView)
{
    EXPECT_EQ(m_view.shownEmpty(), QStringLiteral("nothing"));
    openWithCaches();
    EXPECT_EQ(part<Label>("screenTitle").text(), QStringLiteral("Dev cache cleaner"));
    EXPECT_EQ(text("devCacheSummary"), QStringLiteral("3 cache locations · reclaimable 14.6 KB"));
    EXPECT_EQ(part<Button>("rescanDevCaches").text(), QStringLiteral("Rescan"));
    EXPECT_TRUE(part<Button>("deepScanHome").isVisible());
    EXPECT_FALSE(part<Button>("cancelDevScan").isVisible());
    EXPECT_FALSE(part<Button>("trashDevCaches").isVisible());
    // Shown again, the list stays.
    m_window.hide();
    m_window.show();
    EXPECT_FALSE(m_state.devCleanupScanIsRunning.value());
}

TEST_F(DevCacheCleanerViewTests, AHomeWithoutCachesSaysWhatItLooksFor)
{
    open();
    ASSERT_TRUE(
        waitForText("devCacheStatus", QStringLiteral("0 locations, 0 B reclaimed would free")));
    EXPECT_EQ(m_view.shownEmpty(), QStringLiteral("nothing"));
    EXPECT_EQ(part<Button>("rescanDevCaches").text(), QStringLiteral("Scan caches"));
}

TEST_F(DevCacheCleanerViewTests, FamiliesHaveHeadingsWithTheirTotals)
{
    openWithCaches();
    const QAbstractItemModel& model = *list().model();
    ASSERT_EQ(model.rowCount(), 5);
    const auto at = [&](int place) { return list().rowOf(model.index(place, 0)); };
    EXPECT_EQ(at(0).kind, RowKind::section);
    EXPECT_EQ(at(0).title, QStringLiteral("Package managers"));
    EXPECT_EQ(at(0).symbol, QStringLiteral("shippingbox"));
    EXPECT_EQ(at(0).cells.back().text, QStringLiteral("2.9 KB"));
    EXPECT_EQ(at(1).title, QStringLiteral("npm Cache"));
    EXPECT_EQ(at(2).title, QStringLiteral("Language caches"));
    EXPECT_EQ(at(2).cells.back().text, QStringLiteral("11.7 KB"));
    EXPECT_EQ(at(3).title, QStringLiteral("go Module Cache"));
    EXPECT_EQ(at(4).title, QStringLiteral("Cargo Registry"));
}

TEST_F(DevCacheCleanerViewTests, ARowTellsPathCountDateAndSize)
{
    m_disk.file(".npm/_cacache/a", 3000);
    m_disk.modified(".npm/_cacache/a", 1'762'171'200); // 3 November 2025, noon
    open();
    ASSERT_TRUE(
        waitForText("devCacheStatus", QStringLiteral("1 locations, 2.9 KB reclaimed would free")));
    const Row npm = row(QStringLiteral("npm Cache"));
    EXPECT_EQ(npm.isChecked, false);
    EXPECT_EQ(npm.symbol, QStringLiteral("folder.fill"));
    EXPECT_EQ(npm.path, m_disk.path(".npm/_cacache").displayText());
    EXPECT_EQ(npm.cells[0].text, QStringLiteral("1 item · Used Nov 3, 2025"));
    EXPECT_EQ(npm.cells[1].text, QStringLiteral("2.9 KB"));
}

TEST_F(DevCacheCleanerViewTests, SelectLargestTakesAllThatMayBeMoved)
{
    openWithCaches();
    EXPECT_EQ(part<Button>("selectLargest").text(), QStringLiteral("Select largest"));
    click("selectLargest");
    EXPECT_EQ(m_view.selected().size(), 2U);
    EXPECT_FALSE(row(QStringLiteral("go Module Cache")).isChecked.has_value());
    EXPECT_EQ(text("devCacheSummary"), QStringLiteral("2 selected · 7.8 KB reclaimable"));
    EXPECT_EQ(part<Button>("selectLargest").text(), QStringLiteral("Clear selection"));
    EXPECT_EQ(part<Button>("trashDevCaches").text(), QStringLiteral("Trash 2"));
    click("selectLargest");
    EXPECT_TRUE(m_view.selected().empty());
    EXPECT_FALSE(part<Button>("trashDevCaches").isVisible());
}

TEST_F(DevCacheCleanerViewTests, ACheckBoxSelectsItsRow)
{
    openWithCaches();
    press(QStringLiteral("npm Cache"), checkBox);
    EXPECT_EQ(m_view.selected(), std::set<std::string>{m_disk.path(".npm/_cacache").bytes()});
    EXPECT_EQ(row(QStringLiteral("npm Cache")).isChecked, true);
    press(QStringLiteral("npm Cache"), checkBox);
    EXPECT_TRUE(m_view.selected().empty());
}

TEST_F(DevCacheCleanerViewTests, WhatGoesByItsOwnToolCannotBeSelected)
{
    openWithCaches();
    const QModelIndex modules = index(QStringLiteral("go Module Cache"));
    EXPECT_EQ(list().rowOf(modules).command, QStringLiteral("go clean -modcache"));
    Q_EMIT list().rowActivated(modules);
    EXPECT_TRUE(m_view.selected().empty());
}

TEST_F(DevCacheCleanerViewTests, MovesWhatWasSelectedAfterAQuestion)
{
    openWithCaches();
    click("selectLargest");
    click("trashDevCaches");
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialogTexts().contains(QStringLiteral("Move 2 items to Trash?")));
    EXPECT_TRUE(
        dialogTexts().contains(QStringLiteral("7.8 KB will be recoverable from the Trash.")));
    answer(QStringLiteral("Cancel"));
    EXPECT_TRUE(isThere(".npm/_cacache"));
    trashSelected();
    ASSERT_TRUE(waitForText("devCacheStatus", QStringLiteral("Moved 2 to Trash")));
    EXPECT_FALSE(isThere(".npm/_cacache"));
    EXPECT_FALSE(isThere(".cargo/registry"));
    EXPECT_TRUE(isThere("go/pkg/mod/c"));
    EXPECT_EQ(m_view.items().size(), 1U);
    EXPECT_TRUE(m_view.selected().empty());
}

TEST_F(DevCacheCleanerViewTests, OneOfThreeThatCannotBeMovedStaysWithItsReason)
{
    m_disk.file(".nuget/packages/a", 4000);
    m_disk.file(".npm/_cacache/a", 3000);
    m_disk.file(".cargo/registry/b", 5000);
    open();
    ASSERT_TRUE(
        waitForText("devCacheStatus", QStringLiteral("3 locations, 11.7 KB reclaimed would free")));
    const auto takeAway = m_platform.trash.answer;
    m_platform.trash.answer = [this, takeAway](const FilePath& path) {
        return path == m_disk.path(".npm/_cacache") ? Trash::Outcome::readOnly : takeAway(path);
    };
    click("selectLargest");
    trashSelected();
    ASSERT_TRUE(waitForText("devCacheStatus", QStringLiteral("Moved 2 to Trash (1 failed)")));
    ASSERT_EQ(m_view.items().size(), 1U);
    EXPECT_TRUE(m_view.selected().empty());
    const auto reason = [this] { return row(QStringLiteral("npm Cache")).badges.back().text; };
    const QString expected =
        QStringLiteral("Not moved: %1 is read-only").arg(m_disk.path(".npm").displayText());
    EXPECT_EQ(reason(), expected);
    click("rescanDevCaches");
    ASSERT_TRUE(
        waitForText("devCacheStatus", QStringLiteral("1 locations, 2.9 KB reclaimed would free")));
    EXPECT_EQ(reason(), expected);
}

TEST_F(DevCacheCleanerViewTests, TheOnlyItemThatCannotBeMovedStaysUnselected)
{
    m_disk.file(".npm/_cacache/a", 3000);
    open();
    ASSERT_TRUE(
        waitForText("devCacheStatus", QStringLiteral("1 locations, 2.9 KB reclaimed would free")));
    m_platform.trash.answer = [](const FilePath&) { return Trash::Outcome::failed; };
    click("selectLargest");
    trashSelected();
    ASSERT_TRUE(waitForText("devCacheStatus", QStringLiteral("Nothing could be moved to Trash.")));
    EXPECT_EQ(m_view.errorMessage(), QStringLiteral("Nothing could be moved to Trash."));
    EXPECT_TRUE(m_view.statusText().isEmpty());
    EXPECT_EQ(m_view.items().size(), 1U);
    EXPECT_TRUE(m_view.selected().empty());
}

TEST_F(DevCacheCleanerViewTests, TheDeepScanAddsBuildFolders)
{
    m_disk.file("project/node_modules/x", 9000);
    openWithCaches();
    click("deepScanHome");
    ASSERT_TRUE(
        waitForText("devCacheStatus", QStringLiteral("4 locations, 23.4 KB reclaimed would free")));
    EXPECT_TRUE(hasRow(QStringLiteral("Build folders")));
    EXPECT_EQ(m_view.items().front().name, "node_modules");
}

TEST_F(DevCacheCleanerViewTests, WhatCallsForASecondThoughtIsSaidInTheQuestion)
{
    m_disk.file("Library/Developer/Xcode/Archives/a", 3000);
    open();
    ASSERT_TRUE(
        waitForText("devCacheStatus", QStringLiteral("1 locations, 2.9 KB reclaimed would free")));
    EXPECT_EQ(row(QStringLiteral("Xcode Archives")).badges.front().tint, Tint::orange);
    click("selectLargest");
    click("trashDevCaches");
    ASSERT_NE(dialog(), nullptr);
    const auto* const panel = dialog()->findChild<CautionPanel*>();
    EXPECT_EQ(panel->lines(),
              QStringList{QStringLiteral("“%1”: not made again.")
                              .arg(m_disk.path("Library/Developer/Xcode/Archives").displayText())});
    answer(QStringLiteral("Cancel"));
}

TEST_F(DevCacheCleanerViewTests, TheQuestionIsAboutWhatItNamedWhateverIsSelectedLater)
{
    openWithCaches();
    press(QStringLiteral("npm Cache"), checkBox);
    click("trashDevCaches");
    // The list is measured anew while the question stands.
    m_view.scan(false);
    ASSERT_TRUE(waitFor([this] { return !m_state.devCleanupScanIsRunning.value(); }));
    answer(QStringLiteral("Move to Trash"));
    ASSERT_TRUE(waitForText("devCacheStatus", QStringLiteral("Moved 1 to Trash")));
    EXPECT_EQ(m_platform.trash.asked(), std::vector{m_disk.path(".npm/_cacache")});
}

TEST_F(DevCacheCleanerViewTests, ACancelKeepsTheListAsItWas)
{
    openWithCaches();
    click("deepScanHome");
    m_state.cancelDevCleanupScan();
    ASSERT_TRUE(waitFor([this] { return !m_state.devCleanupScanIsRunning.value(); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(m_view.items().size(), 3U);
    EXPECT_EQ(m_view.statusText(), QStringLiteral("3 locations, 14.6 KB reclaimed would free"));
}

TEST_F(DevCacheCleanerViewTests, SwitchesShowAndWriteTheFilters)
{
    m_state.setBloatFilters({{"Xcode", false}});
    open();
    QCoreApplication::processEvents();
    EXPECT_FALSE(part<QCheckBox>("filter Xcode").isChecked());
    EXPECT_TRUE(part<QCheckBox>("filter Docker").isChecked());
    QTest::mouseClick(&part<QCheckBox>("filter Docker"), Qt::LeftButton, {}, QPoint(8, 10));
    EXPECT_EQ(m_state.bloatFilters().at("Docker"), false);
    EXPECT_EQ(m_state.bloatFilters().at("Xcode"), false);
    QStringList names;
    for (const auto* const box : m_window.findChildren<QCheckBox*>()) {
        names << box->text();
    }
    EXPECT_EQ(names, (QStringList{QStringLiteral("Node.js"), QStringLiteral("Xcode"),
                                  QStringLiteral("Build Artifacts"), QStringLiteral("Docker"),
                                  QStringLiteral("Caches")}));
}

} // namespace
} // namespace quorvane
