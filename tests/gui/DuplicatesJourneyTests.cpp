// SPDX-License-Identifier: MIT
#include "DuplicateRows.h"
#include "DuplicatesModel.h"
#include "PreviewPanel.h"
#include "ProgramFixture.h"
#include "RowView.h"

#include <QLabel>

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <system_error>

namespace quorvane {
namespace {

constexpr RowPart keepLatestPart{duplicaterows::keepLatest, 0};
constexpr RowPart keepPart{duplicaterows::keep, 1};

class DuplicatesJourney : public ProgramFixture
{
protected:
    void SetUp() override
    {
        for (const char* const path :
             {"home/Movies/trip.mov", "home/Desktop/trip copy.mov", "home/Downloads/trip.mov"}) {
            m_disk.fileWithContents(path, std::string(700000, 'q'));
        }
        m_disk.fileWithContents("home/Documents/like a trip.mov", std::string(700000, 'p'));
        m_disk.modified("home/Downloads/trip.mov", 2000);
        m_disk.modified("home/Desktop/trip copy.mov", 1000);
        m_disk.modified("home/Movies/trip.mov", 1000);
        m_platform.trash.answer = [](const FilePath& path) {
            std::error_code error;
            return std::filesystem::remove(path.bytes(), error) ? Trash::Outcome::moved
                                                                : Trash::Outcome::failed;
        };
        start();
    }

    RowView& list() { return *find<RowView>("duplicatesList"); }
    const DuplicatesModel& model() { return static_cast<const DuplicatesModel&>(*list().model()); }
    QModelIndex group() { return model().index(0); }
    QModelIndex member(int place) { return model().index(place, 0, group()); }
    QString wordOf(const QModelIndex& row, std::size_t action)
    {
        return list().rowOf(row).actions[action].text;
    }
    QPoint pointOf(const QModelIndex& row, const std::optional<RowPart>& part)
    {
        const QRect area = list().partRect(row, part);
        return part ? area.center() : area.topLeft() + QPoint(200, 10);
    }
    void press(const QModelIndex& row, const std::optional<RowPart>& part = {})
    {
        // The list grows a little later than its rows.
        ASSERT_TRUE(
            waitFor([&] { return list().viewport()->rect().contains(pointOf(row, part)); }));
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, pointOf(row, part));
    }
};

TEST_F(DuplicatesJourney, LeadsFromAScanToTheCopiesOnTheCleanupScreen)
{
    scanHome();
    click("toolRow.duplicates");
    ASSERT_TRUE(waitUntilShown("duplicatesList")) << "the search behind the scan ends by itself";
    EXPECT_EQ(find<QLabel>("duplicateSummary")->text(),
              QStringLiteral("2 extra copies across 1 groups"));
    EXPECT_EQ(find<QLabel>("duplicateReclaimable")->text(), QStringLiteral("1.3 MB"));

    press(group());
    ASSERT_TRUE(list().isExpanded(group()));
    ASSERT_EQ(model().rowCount(group()), 3);
    int kept = 0;
    while (model().fileOf(member(kept))->name() != "trip copy.mov") {
        ++kept;
    }
    press(member(kept), keepPart);
    const std::optional<QString> message = state().flashMessage.value();
    EXPECT_EQ(message,
              QStringLiteral("Kept \"trip copy.mov\" — staged 2 duplicate copys for Trash."));
    // Put up again without its time, so that a slow machine sees it, too.
    state().dismissFlash();
    state().flashMessage = message;
    ASSERT_TRUE(waitUntilShown("flashBanner"));
    EXPECT_EQ(wordOf(member(kept), 1), QStringLiteral("Kept ✓"));
    EXPECT_EQ(wordOf(group(), 0), QStringLiteral("Keep latest"))
        << "another copy than the latest was kept";

    ASSERT_TRUE(waitUntilShown("stagedRow"));
    click("stagedRow");
    ASSERT_TRUE(waitUntilShown("stagedList"));
    std::set<std::string> staged;
    for (const NodePointer& node : state().stagedNodes.value()) {
        staged.insert(node->path().bytes());
    }
    EXPECT_EQ(staged, (std::set{m_disk.path("home/Movies/trip.mov").bytes(),
                                m_disk.path("home/Downloads/trip.mov").bytes()}));
    auto* const queue = find<RowView>("stagedList");
    ASSERT_EQ(queue->model()->rowCount(), 2);
    // One of them taken out there, and nothing is kept any more.
    QTest::mouseClick(queue->viewport(), Qt::LeftButton, {},
                      queue->placesOf(queue->model()->index(0, 0)).actions[0].center());
    EXPECT_EQ(wordOf(member(kept), 1), QStringLiteral("Keep this"));

    // The other one goes to the Trash.
    click("moveToTrashButton");
    ASSERT_TRUE(waitUntilShown("confirmTrashDialog"));
    for (auto* const button : find("confirmTrashDialog")->findChildren<QAbstractButton*>()) {
        if (button->text() == QLatin1String("Move to Trash")) {
            ASSERT_TRUE(waitFor([button] { return button->isEnabled(); }));
            QTest::mouseClick(button, Qt::LeftButton);
        }
    }
    ASSERT_TRUE(waitFor(
        [this] { return !state().isTrashingStaged.value() && !state().isScanning.value(); }));
    EXPECT_EQ(m_platform.trash.asked().size(), 1U);
    EXPECT_TRUE(state().duplicateGroups.value()->empty());
    EXPECT_FALSE(state().duplicateSearchIsRunning.value()) << "the root was searched before";
    click("toolRow.duplicates");
    ASSERT_TRUE(waitUntilShown("duplicatesStart"));
    EXPECT_FALSE(isShown("duplicatesList"));
    click("findDuplicatesButton");
    ASSERT_TRUE(waitUntilShown("duplicatesList"));
    EXPECT_EQ(find<QLabel>("duplicateSummary")->text(),
              QStringLiteral("1 extra copies across 1 groups"));
}

TEST_F(DuplicatesJourney, ACopyUnstagedOnTheCleanupScreenEndsTheKeeping)
{
    scanHome();
    click("toolRow.duplicates");
    ASSERT_TRUE(waitUntilShown("duplicatesList"));
    press(group(), keepLatestPart);
    EXPECT_EQ(wordOf(group(), 0), QStringLiteral("Kept"));
    ASSERT_TRUE(waitUntilShown("stagedRow"));
    click("stagedRow");
    ASSERT_TRUE(waitUntilShown("stagedList"));
    auto* const queue = find<RowView>("stagedList");
    ASSERT_EQ(queue->model()->rowCount(), 2);
    queue->setFocus();
    queue->setCurrentIndex(queue->model()->index(1, 0));
    QTest::keyClick(queue, Qt::Key_Delete);
    click("toolRow.duplicates");
    ASSERT_TRUE(waitUntilShown("duplicatesList"));
    EXPECT_EQ(wordOf(group(), 0), QStringLiteral("Keep latest"));
    EXPECT_EQ(state().stagedNodes.value().size(), 1U);
}

TEST_F(DuplicatesJourney, KeysAloneChooseWhatToKeep)
{
    const auto key = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    scanHome();
    find("toolRow.duplicates")->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntilShown("duplicatesList"));
    for (int i = 0; i < 20 && !list().hasFocus(); ++i) {
        key(Qt::Key_Tab);
    }
    ASSERT_TRUE(list().hasFocus());
    ASSERT_EQ(list().currentIndex(), group());
    key(Qt::Key_Right);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    ASSERT_EQ(list().currentIndex(), member(1));
    ASSERT_EQ(list().currentPart(), keepPart);
    key(Qt::Key_Space);
    EXPECT_TRUE(state().isKeeper(*model().fileOf(member(1))));
    EXPECT_EQ(state().stagedNodes.value().size(), 2U);
    // Another copy takes its place: it leaves the queue, and the first one joins it.
    key(Qt::Key_Up);
    EXPECT_EQ(wordOf(list().currentIndex(), 1), QStringLiteral("Unstage"));
    key(Qt::Key_Return);
    EXPECT_EQ(wordOf(list().currentIndex(), 1), QStringLiteral("Keep this"));
    key(Qt::Key_Return);
    EXPECT_EQ(wordOf(list().currentIndex(), 1), QStringLiteral("Kept ✓"));
    EXPECT_TRUE(model().fileOf(member(1))->isStagedForTrash());
    // And nothing is kept in the end.
    key(Qt::Key_Return);
    EXPECT_TRUE(state().stagedNodes.value().empty());
    const auto* const preview = window().findChild<PreviewPanel*>();
    EXPECT_TRUE(preview == nullptr || !preview->isVisible()) << "Space pressed what had the focus";
}

TEST_F(DuplicatesJourney, ARescanLeavesTheSearchToTheUser)
{
    scanHome();
    click("toolRow.duplicates");
    ASSERT_TRUE(waitUntilShown("duplicatesList"));
    click("rescanButton");
    ASSERT_TRUE(waitUntilShown("duplicatesStart"));
    EXPECT_FALSE(isShown("duplicatesList"));
    click("findDuplicatesButton");
    ASSERT_TRUE(waitUntilShown("duplicatesList"));
}

} // namespace
} // namespace quorvane
