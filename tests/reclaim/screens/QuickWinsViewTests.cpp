// SPDX-License-Identifier: MIT
#include "QuickWinsView.h"

#include "EmptyState.h"
#include "ScreenHeader.h"
#include "ToolViewFixture.h"

#include <QClipboard>

#include <string>

namespace quorvane {
namespace {

class QuickWinsViewTests : public ToolViewFixture<QuickWinsView>
{
protected:
    static constexpr RowPart reveal{0, 0};
    static constexpr RowPart stage{1, 1};

    void show()
    {
        open();
        settle();
    }

    /// Scans the home with the view open and waits for the list.
    void scan()
    {
        m_state.startScan(m_disk.root());
        settle();
    }

    void settle()
    {
        ASSERT_TRUE(waitFor(
            [this] { return !m_state.isScanning.value() && !m_state.isQuickWinsLoading.value(); }));
        QCoreApplication::processEvents();
    }

    /// The last text of the empty state on show.
    QString shownText()
    {
        QString text;
        for (const auto* const empty : m_window.findChildren<EmptyState*>()) {
            for (const auto* const label : empty->findChildren<Label*>()) {
                text = empty->isVisible() ? label->text() : text;
            }
        }
        return text;
    }
};

TEST_F(QuickWinsViewTests, LooksForJunkWhenItComesIntoView)
{
    m_disk.file(".cache/pip/a", 5000);
    EXPECT_FALSE(m_state.isQuickWinsLoading.value());
    m_window.show();
    EXPECT_TRUE(m_state.isQuickWinsLoading.value());
    EXPECT_EQ(m_window.findChild<ScreenHeader*>()->symbol(), QStringLiteral("bolt"));
    EXPECT_EQ(part<Label>("screenTitle").text(), QStringLiteral("Quick Wins"));
    settle();
    EXPECT_EQ(list().model()->rowCount(), 1);
    EXPECT_TRUE(part<Button>("refreshQuickWins").isVisible());
    EXPECT_EQ(part<Button>("refreshQuickWins").text(), QStringLiteral("Refresh"));
}

TEST_F(QuickWinsViewTests, AListThatIsThereIsNotLookedForAgain)
{
    m_disk.file(".cache/pip/a", 5000);
    show();
    m_window.hide();
    m_window.show();
    EXPECT_FALSE(m_state.isQuickWinsLoading.value());
}

TEST_F(QuickWinsViewTests, GoingAwayEndsTheLook)
{
    m_disk.file(".cache/pip/a", 5000);
    m_window.show();
    m_window.hide();
    EXPECT_FALSE(m_state.isQuickWinsLoading.value());
    EXPECT_TRUE(m_state.quickWins.value().empty());
}

TEST_F(QuickWinsViewTests, ACleanHomeSaysSo)
{
    show();
    EXPECT_EQ(m_view.shownEmpty(), QStringLiteral("nothing"));
}

TEST_F(QuickWinsViewTests, ARowTellsAllThatIsKnown)
{
    m_disk.file("project/node_modules/a", 5000);
    m_disk.modified("project/node_modules/a", 1'700'000'000);
    m_disk.file("project/package.json", 2);
    show();
    scan();
    const Row hit = row(QStringLiteral("node_modules"));
    EXPECT_EQ(hit.symbol, QStringLiteral("folder.fill"));
    EXPECT_EQ(hit.detail,
              QStringLiteral("Found under %1. Common build/junk directory.")
                  .arg(QString::fromStdString(std::string(m_disk.root().lastComponent()))));
    EXPECT_EQ(hit.path, m_disk.path("project/node_modules").displayText());
    ASSERT_EQ(hit.badges.size(), 1U);
    EXPECT_EQ(hit.badges.front().text, QStringLiteral("package.json beside it"));
    ASSERT_EQ(hit.cells.size(), 2U);
    EXPECT_EQ(hit.cells[0].text, QStringLiteral("Changed Nov 14, 2023"));
    EXPECT_EQ(hit.cells[1].text, QStringLiteral("4.9 KB"));
    ASSERT_EQ(hit.actions.size(), 2U);
    EXPECT_EQ(hit.actions[0].symbol, QStringLiteral("magnifyingglass"));
    EXPECT_EQ(hit.actions[0].name, QStringLiteral("Reveal in Finder"));
    EXPECT_EQ(hit.actions[1].text, QStringLiteral("Stage"));
    EXPECT_EQ(hit.actions[1].symbol, QStringLiteral("plus.circle"));
    EXPECT_EQ(hit.actions[1].toolTip,
              QStringLiteral("Stage for Trash — it lands in the Trash queue under Cleanup for "
                             "review; you stay on this page."));
    EXPECT_EQ(text("quickWinsSummary"),
              QStringLiteral("1 candidates — all removable, all regenerable"));
    EXPECT_EQ(text("quickWinsSubset"), QString());
}

TEST_F(QuickWinsViewTests, StagePutsARowIntoTheQueueAndTakesItOut)
{
    m_disk.file(".cache/pip/a", 5000);
    show();
    press(QStringLiteral("pip Cache"), stage);
    EXPECT_EQ(m_state.stagedNodes.value().size(), 1U);
    const Row staged = row(QStringLiteral("pip Cache"));
    EXPECT_EQ(staged.actions[1].text, QStringLiteral("Staged"));
    EXPECT_EQ(staged.actions[1].symbol, QStringLiteral("checkmark.circle.fill"));
    EXPECT_EQ(staged.actions[1].role, ButtonRole::queued);
    press(QStringLiteral("pip Cache"), stage);
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
    EXPECT_EQ(row(QStringLiteral("pip Cache")).actions[1].text, QStringLiteral("Stage"));
    press(QStringLiteral("pip Cache"), reveal);
    EXPECT_EQ(m_platform.workspace.revealed, std::vector{m_disk.path(".cache/pip")});
}

TEST_F(QuickWinsViewTests, ACautionIsAskedAboutOnce)
{
    m_disk.file("project/build/photo.jpg", 5000);
    show();
    scan();
    const QString build = QStringLiteral("build");
    ASSERT_EQ(row(build).badges.size(), 1U);
    EXPECT_EQ(row(build).badges.front().tint, Tint::orange);
    press(build, stage);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
    answer(QStringLiteral("Cancel"));
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
    press(build, stage);
    answer(QStringLiteral("Stage"));
    EXPECT_EQ(m_state.stagedNodes.value().size(), 1U);
    press(build, stage);
    EXPECT_TRUE(m_state.stagedNodes.value().empty());
    press(build, stage);
    EXPECT_EQ(dialog(), nullptr);
    EXPECT_EQ(m_state.stagedNodes.value().size(), 1U);
}

TEST_F(QuickWinsViewTests, AQuestionIsAnsweredForTheRowThatAskedIt)
{
    m_disk.file("project/build/photo.jpg", 5000);
    show();
    scan();
    press(QStringLiteral("build"), stage);
    ASSERT_NE(dialog(), nullptr);
    // Another look comes to an end while the question stands.
    m_disk.file("more/vendor/a", 90000);
    scan();
    answer(QStringLiteral("Stage"));
    ASSERT_EQ(m_state.stagedNodes.value().size(), 1U);
    EXPECT_EQ(m_state.stagedNodes.value().front()->path(), m_disk.path("project/build"));
}

TEST_F(QuickWinsViewTests, WhatGoesByItsOwnToolShowsTheCommandToCopy)
{
    m_disk.file("go/pkg/mod/a", 5000);
    show();
    const QString modules = QStringLiteral("go Module Cache");
    const Row own = row(modules);
    EXPECT_EQ(own.command, QStringLiteral("go clean -modcache"));
    EXPECT_EQ(own.actions.size(), 1U);
    const QRect copy = list().partRect(index(modules), RowPart{RowAction::copied, 0});
    ASSERT_TRUE(copy.isValid());
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, copy.center());
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("go clean -modcache"));
}

TEST_F(QuickWinsViewTests, HiddenFamiliesAreTold)
{
    m_disk.file("Library/Developer/Xcode/DerivedData/a", 5000);
    m_disk.file("Library/WebKit/a", 6000);
    show();
    m_state.setBloatFilters({{"Xcode", false}});
    QCoreApplication::processEvents();
    EXPECT_EQ(list().model()->rowCount(), 1);
    EXPECT_EQ(text("quickWinsSummary"),
              QStringLiteral("1 candidates — all removable, all regenerable"));
    EXPECT_TRUE(waitFor([this] {
        return text("quickWinsSubset") ==
               QStringLiteral("showing subset — disable more Dev Bloat Filters to hide");
    }));
    m_state.setBloatFilters({{"Xcode", false}, {"Caches", false}});
    QCoreApplication::processEvents();
    EXPECT_EQ(m_view.shownEmpty(), QStringLiteral("hidden"));
    EXPECT_EQ(shownText(),
              QStringLiteral("2 candidates are hidden because of the Dev Bloat Filters. Adjust "
                             "them in the Dev Cache Cleaner tool."));
}

TEST_F(QuickWinsViewTests, ARowThatCouldNotBeMovedTellsWhyAfterTheNextLook)
{
    m_disk.file(".cache/pip/a", 5000);
    show();
    scan();
    m_platform.trash.answer = [](const FilePath&) { return Trash::Outcome::notPermitted; };
    press(QStringLiteral("pip Cache"), stage);
    m_state.sendStagedToTrash();
    ASSERT_TRUE(waitFor([this] { return !m_state.isTrashingStaged.value(); }));
    settle();
    const Row stayed = row(QStringLiteral("pip Cache"));
    ASSERT_EQ(stayed.badges.size(), 1U);
    EXPECT_EQ(
        stayed.badges.front().text,
        QStringLiteral("Not moved: no permission for %1").arg(m_disk.path(".cache").displayText()));
    EXPECT_EQ(stayed.actions[1].text, QStringLiteral("Stage"));
}

} // namespace
} // namespace quorvane
