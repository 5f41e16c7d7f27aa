// SPDX-License-Identifier: MIT
#include "GrowthColors.h"
#include "HoverTooltip.h"
#include "Label.h"
#include "MovePointer.h"
#include "ProgramFixture.h"
#include "RowView.h"
#include "SnapshotChart.h"
#include "TextField.h"
#include "VisualizerCanvas.h"

#include <QComboBox>

#include <cstdlib>
#include <filesystem>

namespace quorvane {
namespace {

class TagJourney : public ProgramFixture
{
protected:
    TagJourney()
    {
        m_disk.fileWithContents("home/Bills/2015.txt", "Your Invoice for May");
        m_disk.fileWithContents("home/Bills/2016.txt", "Nothing to pay");
        m_disk.file("home/Bills/invoice.pdf", 5000);
    }

    void openSection(AppSection section)
    {
        state().section = section;
        settle();
    }

    /// Writes a rule with one condition in the sheet and saves it.
    void makeRule(const QString& name, const QString& tag, TagConditionType type,
                  const QString& value)
    {
        click("newRuleButton");
        ASSERT_TRUE(waitUntilShown("tagRuleEditor"));
        const auto write = [this](const char* field, const QString& text) {
            auto* const edit = find<TextField>(field);
            edit->setFocus();
            edit->selectAll();
            QTest::keyClicks(edit, text);
        };
        write("ruleNameField", name);
        write("tagNameField", tag);
        find<QComboBox>("conditionType")->setCurrentIndex(static_cast<int>(type));
        write("conditionValue", value);
        click("saveRuleButton");
        ASSERT_TRUE(waitFor([this] { return !exists("tagRuleEditor"); }));
    }
};

TEST_F(TagJourney, ThreeRulesFindTheInvoicesAndARowLeadsToItsFile)
{
    start();
    scanHome();
    openSection(AppSection::tagging);
    ASSERT_TRUE(waitUntilShown("noTagRules"));
    makeRule(QStringLiteral("Scans"), QStringLiteral("Invoices"),
             TagConditionType::filenameContains, QStringLiteral("invoice"));
    makeRule(QStringLiteral("Texts"), QStringLiteral("Invoices"), TagConditionType::contentContains,
             QStringLiteral("invoice"));
    makeRule(QStringLiteral("Films"), QStringLiteral("Big"), TagConditionType::sizeGT,
             QStringLiteral("80 KB"));
    EXPECT_EQ(find<RowView>("tagRulesList")->model()->rowCount(), 3);
    click("runTagScanButton");
    ASSERT_TRUE(waitUntilShown("matchedFilesList"));
    EXPECT_EQ(find<Label>("tagScanSummary")->text(), QStringLiteral("Tagged 3 files with 2 tags."));
    auto* const matches = find<RowView>("matchedFilesList");
    EXPECT_EQ(matches->rowOf(matches->model()->index(0, 0)).title, QStringLiteral("film.mov"));
    EXPECT_EQ(matches->rowOf(matches->model()->index(1, 0)).title, QStringLiteral("invoice.pdf"));
    EXPECT_EQ(matches->rowOf(matches->model()->index(2, 0)).title, QStringLiteral("2015.txt"));

    matches->setFocus();
    matches->setCurrentIndex(matches->model()->index(1, 0));
    QTest::keyClick(matches, Qt::Key_Return);
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    EXPECT_EQ(state().selectedNode.value()->name(), "invoice.pdf");
    EXPECT_EQ(state().focusNode.value()->name(), "Bills");
    EXPECT_TRUE(isShown("inspectorView"));
}

TEST_F(TagJourney, TheNextStartOffersTheRulesOfLastTime)
{
    start();
    scanHome();
    openSection(AppSection::tagging);
    makeRule(QStringLiteral("Papers"), QStringLiteral("Docs"), TagConditionType::extensionIs,
             QStringLiteral("pdf"));
    m_program.reset();
    start();
    scanHome();
    openSection(AppSection::tagging);
    ASSERT_TRUE(waitUntilShown("bringBackRulesButton"));
    EXPECT_EQ(find<QAbstractButton>("bringBackRulesButton")->text(),
              QStringLiteral("Bring back 1 rule of last time"));
    click("bringBackRulesButton");
    ASSERT_TRUE(waitUntilShown("tagRulesList"));
    EXPECT_EQ(state().tagRules.value().at(0).name, QStringLiteral("Papers"));
}

class SnapshotJourney : public ProgramFixture
{
protected:
    SnapshotJourney()
    {
        forgetAll();
        m_disk.file("home/Movies/trip.mov", 800000);
    }
    ~SnapshotJourney() override { forgetAll(); }

    static void forgetAll()
    {
        std::filesystem::remove_all(SnapshotStore::snapshotsDirectory().bytes());
    }

    VisualizerCanvas& treemap() { return *find<VisualizerCanvas>("treemapView"); }

    /// But for the last bit, which the painter rounds.
    static bool isAlmost(const QColor& color, const QColor& wanted)
    {
        return std::abs(color.red() - wanted.red()) <= 1 &&
               std::abs(color.green() - wanted.green()) <= 1 &&
               std::abs(color.blue() - wanted.blue()) <= 1;
    }

    bool isMapShown(bool isColored)
    {
        const ScenePointer scene = treemap().scene();
        return scene && !treemap().isComputingLayout() &&
               (scene->request().growth != nullptr) == isColored;
    }
};

TEST_F(SnapshotJourney, WhatGrewSinceASnapshotIsSeenInTheTableAndOnTheMap)
{
    start();
    scanHome();
    state().section = AppSection::snapshots;
    ASSERT_TRUE(waitUntilShown("saveSnapshotButton"));
    ASSERT_TRUE(waitFor([this] { return !state().isSnapshotBusy.value(); }));
    settle();
    click("saveSnapshotButton");
    ASSERT_TRUE(waitUntilShown("savedSnapshotsList"));

    m_disk.file("home/Movies/trip.mov", 2000000);
    scanHome();
    state().section = AppSection::snapshots;
    ASSERT_TRUE(waitUntilShown("savedSnapshotsList"));
    settle();
    auto* const chart = find<SnapshotChart>("snapshotChart");
    const QUuid saved = state().snapshots.value().at(0).id;
    QTest::mouseClick(chart, Qt::LeftButton, {}, chart->pointOf(saved)->toPoint());
    ASSERT_TRUE(waitUntilShown("snapshotDiffTable"));
    EXPECT_EQ(find<Label>("netChange")->text(), QStringLiteral("Net growth +1.1 MB"));
    auto* const table = find<RowView>("snapshotDiffTable");
    EXPECT_EQ(table->rowOf(table->model()->index(0, 0)).title, QStringLiteral("/Movies/trip.mov"));

    state().section = AppSection::analysis;
    ASSERT_TRUE(waitUntilShown("changesSwitch"));
    ASSERT_TRUE(waitFor([this] { return isMapShown(false); }));
    click("changesSwitch");
    ASSERT_TRUE(waitFor([this] { return isMapShown(true); }));
    const ScenePointer scene = treemap().scene();
    const NodePointer root = state().rootNode.value();
    const FileNode* trip = nullptr;
    std::size_t item = 0;
    for (std::size_t i = 0; i < scene->itemCount(); ++i) {
        if (scene->nodeOf(i)->name() == "trip.mov") {
            trip = scene->nodeOf(i);
            item = i;
        }
    }
    ASSERT_NE(trip, nullptr);
    const QPoint place = scene->boundsOf(item).center().toPoint();
    movePointer(treemap(), place);
    EXPECT_EQ(treemap().hoveredItem(), item);
    EXPECT_TRUE(
        find<HoverTooltip>("hoverTooltip")->accessibleName().contains(QStringLiteral(": +1.1 MB")));
    const QColor orange(0xFF, 0x9F, 0x0A);
    EXPECT_TRUE(isAlmost(treemap().grab().toImage().pixelColor(place), orange));

    click("changesSwitch");
    ASSERT_TRUE(waitFor([this] { return isMapShown(false); }));
    EXPECT_FALSE(isAlmost(treemap().grab().toImage().pixelColor(place), orange));
}

} // namespace
} // namespace quorvane
