// SPDX-License-Identifier: MIT
#include "CleanupView.h"

#include "AppState.h"
#include "Button.h"
#include "CleanupCautions.h"
#include "Dialog.h"
#include "DiskTree.h"
#include "EmptyState.h"
#include "FakePlatform.h"
#include "FileTree.h"
#include "Gate.h"
#include "Label.h"
#include "Progress.h"
#include "RowView.h"
#include "ScreenHeader.h"
#include "Tokens.h"
#include "TreeText.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QTest>

#include <memory>
#include <string>
#include <utility>

namespace quorvane {
namespace {

class CleanupViewTests : public testing::Test
{
protected:
    void SetUp() override
    {
        m_tree = test::treeFromText("Caches/\n  a.bin 1024\n  b.bin 1024\nfilm.mov 512\n");
        m_state.rootNode = m_tree->rootPointer();
        m_window.resize(900, 600);
        m_view.resize(900, 600);
        m_window.show();
        QApplication::setActiveWindow(&m_window);
    }

    NodePointer node(const std::string& path)
    {
        return NodePointer(m_tree->rootPointer(), &test::nodeAt(m_tree->root(), path));
    }

    template<class T>
    T& part(const char* objectName)
    {
        return *m_window.findChild<T*>(QLatin1String(objectName));
    }

    /// Of the size and name of "film.mov", and really there.
    NodePointer filmOnDisk()
    {
        m_disk.file("film.mov", 512);
        return FileTree::stagedItem("film.mov", m_disk.path("film.mov"), 512);
    }

    QStringList cautionLinesOnShow()
    {
        auto* const panel = dialog() ? dialog()->findChild<CautionPanel*>() : nullptr;
        return panel != nullptr && panel->isVisible() ? panel->lines() : QStringList();
    }

    void stage(const std::string& path)
    {
        m_state.toggleStaged(node(path));
        QCoreApplication::processEvents();
    }

    Dialog* dialog() { return m_window.findChild<Dialog*>(); }

    /// Opens the question and waits until it is whole.
    void ask()
    {
        m_view.setConfirmTrash(true);
        ASSERT_NE(dialog(), nullptr);
        Button* const yes = dialogButton(QStringLiteral("Move to Trash"));
        ASSERT_TRUE(waitFor([yes] { return yes->isEnabled(); }));
    }

    Button* dialogButton(const QString& text)
    {
        for (auto* const button : dialog()->findChildren<Button*>()) {
            if (button->text() == text) {
                return button;
            }
        }
        return nullptr;
    }

    DiskTree m_disk;
    FakePlatform m_platform;
    AppState m_state{m_platform.platform()};
    std::shared_ptr<FileTree> m_tree;
    QWidget m_window;
    CleanupView m_view{m_state, &m_window};
};

TEST_F(CleanupViewTests, ShowsTheEmptyStateWithoutAQueue)
{
    EXPECT_TRUE(part<EmptyState>("cleanupEmpty").isVisible());
    EXPECT_FALSE(part<RowView>("stagedList").isVisible());
    EXPECT_FALSE(part<Button>("moveToTrashButton").isVisible());
    EXPECT_FALSE(part<QWidget>("progress").isVisible());
    EXPECT_EQ(part<Label>("screenTitle").text(), QStringLiteral("Staged cleanup"));
    EXPECT_EQ(m_window.findChild<ScreenHeader*>()->symbol(), QStringLiteral("trash"));
    m_view.setConfirmTrash(true);
    EXPECT_FALSE(m_view.confirmTrash());
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(CleanupViewTests, ListsTheQueueInItsOrderWithTheTotalBelow)
{
    stage("film.mov");
    stage("Caches");
    const auto& list = part<RowView>("stagedList");
    ASSERT_TRUE(list.isVisible());
    EXPECT_FALSE(part<EmptyState>("cleanupEmpty").isVisible());
    ASSERT_EQ(list.model()->rowCount(), 2);
    const QModelIndex file = list.model()->index(0, 0);
    const QModelIndex folder = list.model()->index(1, 0);
    EXPECT_EQ(file.data().toString(), QStringLiteral("film.mov"));
    const Row fileRow = list.rowOf(file);
    const Row folderRow = list.rowOf(folder);
    EXPECT_EQ(fileRow.symbol, QStringLiteral("doc.fill"));
    EXPECT_EQ(fileRow.cells[0].text, QString());
    EXPECT_EQ(fileRow.cells[1].text, QStringLiteral("512 B"));
    EXPECT_EQ(folderRow.symbol, QStringLiteral("folder.fill"));
    EXPECT_EQ(folderRow.path, QStringLiteral("/scan/Caches"));
    EXPECT_EQ(folderRow.cells[0].text, QStringLiteral("2 files"));
    EXPECT_EQ(folderRow.cells[1].text, QStringLiteral("2.0 KB"));
    EXPECT_EQ(CleanupView::rowOf(*node("film.mov")).describe(),
              QStringLiteral("film.mov, /scan/film.mov, 512 B"));
    EXPECT_EQ(CleanupView::rowOf(*node("Caches")).describe(),
              QStringLiteral("Caches, /scan/Caches, 2 files, 2.0 KB"));
    // Neither is on the disk, and their rows come to say so.
    EXPECT_TRUE(waitFor([&] { return list.rowOf(file).badges.size() == 1; }));
    EXPECT_TRUE(file.data(Qt::AccessibleTextRole)
                    .toString()
                    .contains(list.rowOf(file).badges.front().text));
    EXPECT_EQ(part<Label>("stagedTotal").text(), QStringLiteral("2.5 KB"));
}

TEST_F(CleanupViewTests, ItsButtonIsRedAndCountsTheQueue)
{
    stage("film.mov");
    const auto& button = part<Button>("moveToTrashButton");
    EXPECT_EQ(button.text(), QStringLiteral("Move 1 to Trash"));
    EXPECT_EQ(button.symbol(), QStringLiteral("trash.fill"));
    EXPECT_EQ(button.role(), ButtonRole::destructive);
    stage("Caches");
    EXPECT_EQ(button.text(), QStringLiteral("Move 2 to Trash"));
}

TEST_F(CleanupViewTests, TheListKeepsClearOfTheCornersOfItsCard)
{
    stage("film.mov");
    stage("Caches");
    auto& list = part<RowView>("stagedList");
    const auto cornerAndEdge = [&] {
        const QImage shown = m_window.grab().toImage();
        const QPoint corner = list.mapTo(&m_window, QPoint());
        return std::pair(shown.pixel(corner), shown.pixel(corner + QPoint(30, 0)));
    };
    const auto atRest = cornerAndEdge();
    QTest::mouseMove(list.viewport(), QPoint(200, 10));
    const auto hovered = cornerAndEdge();
    EXPECT_NE(hovered.second, atRest.second) << "the row is lit";
    EXPECT_EQ(hovered.first, atRest.first);
}

TEST_F(CleanupViewTests, AClickOnTheCrossUnstagesThatRow)
{
    stage("film.mov");
    stage("Caches");
    auto& list = part<RowView>("stagedList");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.placesOf(list.model()->index(0, 0)).actions[0].center());
    QCoreApplication::processEvents();
    EXPECT_FALSE(node("film.mov")->isStagedForTrash());
    ASSERT_EQ(list.model()->rowCount(), 1);
    EXPECT_EQ(list.model()->index(0, 0).data().toString(), QStringLiteral("Caches"));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualRect(list.model()->index(0, 0)).center());
    EXPECT_TRUE(node("Caches")->isStagedForTrash()) << "a click beside the cross does nothing";
}

TEST_F(CleanupViewTests, TheDeleteKeyUnstagesTheCurrentRow)
{
    stage("film.mov");
    stage("Caches");
    auto& list = part<RowView>("stagedList");
    list.setCurrentIndex(list.model()->index(1, 0));
    QTest::keyClick(&list, Qt::Key_Delete);
    QCoreApplication::processEvents();
    EXPECT_FALSE(node("Caches")->isStagedForTrash());
    EXPECT_EQ(list.currentIndex().row(), 0);
}

TEST_F(CleanupViewTests, AsksBeforeAnythingMovesAndCancelsSafely)
{
    stage("film.mov");
    part<Button>("moveToTrashButton").click();
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(m_view.confirmTrash());
    EXPECT_EQ(dialogButton(QStringLiteral("Move to Trash"))->role(), ButtonRole::destructive);
    EXPECT_EQ(dialog()->accessibleName(), QStringLiteral("Move 1 staged item to Trash?"));
    EXPECT_EQ(dialog()->accessibleDescription(),
              QStringLiteral("512 B will be recoverable from the Trash."));
    dialogButton(QStringLiteral("Cancel"))->click();
    EXPECT_FALSE(m_view.confirmTrash());
    EXPECT_TRUE(m_platform.trash.asked().empty());
    EXPECT_EQ(m_state.stagedNodes.value().size(), 1U);
}

TEST_F(CleanupViewTests, TheKeyAsksToo)
{
    stage("film.mov");
    stage("Caches");
    for (const auto key : {Qt::Key_Delete, Qt::Key_Backspace}) {
        QTest::keyClick(&m_view, key, Qt::ControlModifier);
        ASSERT_TRUE(m_view.confirmTrash());
        EXPECT_EQ(dialog()->accessibleName(), QStringLiteral("Move 2 staged items to Trash?"));
        m_view.setConfirmTrash(false);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(dialog(), nullptr);
    }
}

TEST_F(CleanupViewTests, ShowsTheBatchWhileItRuns)
{
    Gate gate;
    m_platform.trash.answer = [&gate](const FilePath&) {
        gate.pass();
        return Trash::Outcome::moved;
    };
    m_state.toggleStaged(filmOnDisk());
    QCoreApplication::processEvents();
    ask();
    dialogButton(QStringLiteral("Move to Trash"))->click();
    QCoreApplication::processEvents();
    EXPECT_TRUE(part<QWidget>("progress").isVisible());
    EXPECT_EQ(part<Label>("progressStatus").text(), QStringLiteral("Moving 1 item to Trash…"));
    EXPECT_DOUBLE_EQ(part<ProgressBar>("progressBar").fraction(), 0);
    EXPECT_FALSE(part<EmptyState>("cleanupEmpty").isVisible());
    EXPECT_FALSE(part<RowView>("stagedList").isVisible());
    gate.open();
    ASSERT_TRUE(waitFor([this] { return !m_state.isTrashingStaged.value(); }));
    ASSERT_TRUE(waitFor([this] { return !part<QWidget>("progress").isVisible(); }));
    EXPECT_TRUE(part<EmptyState>("cleanupEmpty").isVisible());
    EXPECT_EQ(m_platform.trash.asked(), std::vector{m_disk.path("film.mov")});
    ASSERT_TRUE(waitFor([this] { return !m_state.isScanning.value(); }));
}

TEST_F(CleanupViewTests, TheQuestionSendsNothingButWhatItNamed)
{
    stage("film.mov");
    ask();
    Button* const accept = dialogButton(QStringLiteral("Move to Trash"));
    m_state.toggleStaged(node("Caches"));
    accept->click();
    EXPECT_FALSE(m_state.isTrashingStaged.value());
    EXPECT_TRUE(m_platform.trash.asked().empty());
    EXPECT_EQ(m_state.stagedNodes.value().size(), 2U);
}

TEST_F(CleanupViewTests, AQueueThatChangesWithdrawsTheQuestion)
{
    stage("film.mov");
    m_view.setConfirmTrash(true);
    stage("Caches");
    EXPECT_FALSE(m_view.confirmTrash());
    m_view.setConfirmTrash(true);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(dialog()->accessibleName(), QStringLiteral("Move 2 staged items to Trash?"));
}

TEST_F(CleanupViewTests, ASecondBatchWaitsForTheFirst)
{
    Gate gate;
    m_platform.trash.answer = [&gate](const FilePath&) {
        gate.pass();
        return Trash::Outcome::moved;
    };
    m_state.toggleStaged(filmOnDisk());
    m_state.sendStagedToTrash();
    stage("Caches");
    EXPECT_TRUE(part<RowView>("stagedList").isVisible());
    EXPECT_FALSE(part<Button>("moveToTrashButton").isEnabled());
    QTest::keyClick(&m_view, Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_FALSE(m_view.confirmTrash());
    gate.open();
    ASSERT_TRUE(waitFor(
        [this] { return !m_state.isTrashingStaged.value() && !m_state.isScanning.value(); }));
    EXPECT_EQ(m_platform.trash.asked(), std::vector{m_disk.path("film.mov")});
}

TEST_F(CleanupViewTests, SaysWhatToDoWithoutAQueue)
{
    const auto& empty = part<EmptyState>("cleanupEmpty");
    EXPECT_EQ(empty.symbol(), QStringLiteral("checkmark.circle"));
    EXPECT_EQ(measure::iconEmpty, 46);
    QStringList texts;
    for (const Label* const label : empty.findChildren<Label*>()) {
        texts.push_back(label->text());
    }
    EXPECT_TRUE(texts.contains(QStringLiteral("Nothing staged yet")));
    EXPECT_TRUE(texts.contains(
        QStringLiteral("Right-click any folder or file in Analysis and choose “Stage for Cleanup”. "
                       "Review the list, then trash it in one move — nothing is ever deleted in "
                       "the background.")));
    int wrapped = 0;
    for (const Label* const label : empty.findChildren<Label*>()) {
        if (label->wordWrap()) {
            ++wrapped;
            EXPECT_EQ(label->width(), 420) << "the window has room for more";
        }
    }
    EXPECT_EQ(wrapped, 1);
    stage("film.mov");
    QStringList footer;
    for (const Label* const label : part<QWidget>("totalStagedSpace").findChildren<Label*>()) {
        footer.push_back(label->text());
    }
    EXPECT_TRUE(footer.contains(QStringLiteral("Total staged space")));
}

TEST_F(CleanupViewTests, AQueueThatGoesTakesItsQuestionAlong)
{
    stage("film.mov");
    m_view.setConfirmTrash(true);
    m_state.stagedNodes = std::vector<NodePointer>{};
    QCoreApplication::processEvents();
    EXPECT_FALSE(m_view.confirmTrash());
}

TEST_F(CleanupViewTests, TheQuestionSaysWhatWillStay)
{
    m_state.toggleStaged(filmOnDisk());
    QCoreApplication::processEvents();
    m_view.setConfirmTrash(true);
    ASSERT_TRUE(waitFor([this] { return m_state.queueCautions.value()->queue.size() == 1; }));
    QCoreApplication::processEvents();
    EXPECT_TRUE(cautionLinesOnShow().isEmpty()) << "nothing stands in the way";
    m_view.setConfirmTrash(false);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    m_disk.remove("film.mov");
    m_view.setConfirmTrash(true);
    ASSERT_TRUE(waitFor([this] { return !cautionLinesOnShow().isEmpty(); }));
    EXPECT_EQ(cautionLinesOnShow(),
              QStringList{QStringLiteral("“film.mov” will stay: it is not there any more. Unstage "
                                         "it, or scan again.")});
    EXPECT_EQ(dialog()->accessibleDescription(),
              QStringLiteral("512 B will be recoverable from the Trash."));
}

/// A scanned folder with two copies of a film, both staged.
class LastCopyQuestion : public CleanupViewTests
{
protected:
    void SetUp() override
    {
        CleanupViewTests::SetUp();
        m_disk.file("a/glacier.mov", 2048);
        m_disk.file("b/glacier.mov", 2048);
        m_state.startScan(m_disk.root());
        ASSERT_TRUE(waitFor([this] { return !m_state.duplicateGroups.value()->empty(); }));
        for (FileNode* const copy : m_state.duplicateGroups.value()->front().files()) {
            m_state.toggleStaged(m_state.share(copy));
        }
        QCoreApplication::processEvents();
        m_platform.trash.answer = [](const FilePath&) { return Trash::Outcome::moved; };
    }

    void confirm()
    {
        dialogButton(QStringLiteral("Move to Trash"))->click();
        ASSERT_TRUE(waitFor(
            [this] { return !m_state.isTrashingStaged.value() && !m_state.isScanning.value(); }));
    }
};

TEST_F(LastCopyQuestion, NamesTheFileAndAYesSendsIt)
{
    m_view.setConfirmTrash(true);
    ASSERT_TRUE(waitFor([this] { return !cautionLinesOnShow().isEmpty(); }));
    EXPECT_EQ(cautionLinesOnShow(),
              QStringList{QStringLiteral("This takes the last copy of “glacier.mov”. Unstage one "
                                         "of its 2 copies to keep it.")});
    confirm();
    EXPECT_EQ(m_platform.trash.asked().size(), 2u);
}

TEST_F(LastCopyQuestion, NobodySaysYesBeforeItIsWhole)
{
    m_view.setConfirmTrash(true);
    // Before the look at the disk has been told: no event has been processed since.
    Button* const yes = dialogButton(QStringLiteral("Move to Trash"));
    EXPECT_FALSE(yes->isEnabled());
    yes->click();
    EXPECT_TRUE(m_view.confirmTrash());
    EXPECT_FALSE(m_state.isTrashingStaged.value());
    ASSERT_TRUE(waitFor([yes] { return yes->isEnabled(); }));
    EXPECT_FALSE(cautionLinesOnShow().isEmpty());
}

TEST_F(LastCopyQuestion, ComesUpWhenASearchEndsWhileItIsOpen)
{
    const auto found = m_state.duplicateGroups.value();
    m_state.duplicateGroups = std::make_shared<const DuplicateFinder::Groups>();
    m_state.runDuplicateSearch();
    m_view.setConfirmTrash(true);
    EXPECT_TRUE(waitFor([this] { return !cautionLinesOnShow().isEmpty(); }));
    EXPECT_TRUE(waitFor([this] { return !m_state.duplicateGroups.value()->empty(); }));
    EXPECT_TRUE(waitFor([this] {
        return m_state.queueCautions.value()->losses.groups == m_state.duplicateGroups.value();
    })) << "the look that counts is one at the groups on show";
}

TEST(CleanupCautionTests, MarksSayInShortWhatTheTooltipExplains)
{
    QueueCaution caution;
    EXPECT_FALSE(cautionBadge(caution).has_value());
    caution.kind = QueueCaution::Kind::willStay;
    caution.obstacle = TrashOutcome::holdsMount;
    EXPECT_EQ(cautionBadge(caution)->text, QStringLiteral("Will stay: holds a mounted volume"));
    EXPECT_TRUE(cautionBadge(caution)->toolTip.contains(QStringLiteral("Unmount the volume")));
    EXPECT_EQ(cautionBadge(caution)->tint, Tint::orange);
    EXPECT_EQ(cautionBadge(caution)->symbol, QStringLiteral("exclamationmark.triangle.fill"));
    caution.kind = QueueCaution::Kind::takesLastCopy;
    caution.lostGroups = 1;
    caution.copies = 2;
    EXPECT_EQ(cautionBadge(caution)->text, QStringLiteral("Takes the last copy"));
    EXPECT_EQ(cautionBadge(caution)->toolTip,
              QStringLiteral("Both copies of this file are staged\nAfter the move none would be "
                             "left outside the Trash. Unstage one of them to keep it."));
}

TEST(CleanupCautionTests, ALongListOfCautionsEndsWithACount)
{
    QueueCautions cautions;
    for (int i = 0; i < 9; ++i) {
        cautions.queue.push_back(FileTree::stagedItem("x" + std::to_string(i), FilePath("/x"), 1));
        QueueCaution caution;
        caution.kind = QueueCaution::Kind::willStay;
        caution.obstacle = TrashOutcome::changed;
        cautions.cautions.push_back(caution);
    }
    const QStringList lines = cautionLines(cautions);
    ASSERT_EQ(lines.size(), 6);
    EXPECT_EQ(lines.front(), QStringLiteral("“x0” will stay: it has changed since the scan. Scan "
                                            "again, then stage it if it is still to go."));
    EXPECT_EQ(lines.back(), QStringLiteral("4 more will stay. Their rows tell why."));
}

} // namespace
} // namespace quorvane
