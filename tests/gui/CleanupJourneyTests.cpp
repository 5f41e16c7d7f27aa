// SPDX-License-Identifier: MIT
#include "ProgramFixture.h"
#include "StagedRow.h"
#include "TreeText.h"

#include <QAction>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace quorvane {
namespace {

class CleanupJourney : public ProgramFixture
{
protected:
    void SetUp() override
    {
        const char* const data = std::getenv("XDG_DATA_HOME");
        ASSERT_TRUE(data != nullptr &&
                    std::string(data).find("quorvane-test.") != std::string::npos)
            << "run through cmake/run-isolated: the user's own Trash is not for tests";
        m_homeTrash = std::filesystem::path(data) / "Trash";
        m_platform.trash.answer = [](const FilePath& path) {
            return Trash::system().moveToTrash(path);
        };
        start();
        scanHome();
    }

    void select(const char* path)
    {
        FileNode& root = *state().rootNode.value();
        state().select(state().share(&test::nodeAt(root, path)));
    }

    std::filesystem::path m_homeTrash;
};

TEST_F(CleanupJourney, LeadsFromStagingToTheTrashAndTheScanBehind)
{
    EXPECT_FALSE(isShown("stagedRow"));
    select("Movies");
    find<QAction>("stageSelectionAction")->trigger();
    ASSERT_TRUE(waitUntilShown("stagedRow"));
    EXPECT_EQ(find<StagedRow>("stagedRow")->detail(), QStringLiteral("1 items · 87.9 KB"));
    EXPECT_EQ(find("stagedRow")->toolTip(), QStringLiteral("View the items staged for cleanup"));

    click("stagedRow");
    ASSERT_TRUE(waitUntilShown("stagedList"));
    EXPECT_EQ(state().section.value(), AppSection::cleanup);
    click("moveToTrashButton");
    ASSERT_TRUE(waitUntilShown("confirmTrashDialog"));
    EXPECT_TRUE(std::filesystem::exists(m_disk.path("home/Movies/film.mov").bytes()));
    for (auto* const button : find("confirmTrashDialog")->findChildren<QAbstractButton*>()) {
        if (button->text() == QLatin1String("Move to Trash")) {
            ASSERT_TRUE(waitFor([button] { return button->isEnabled(); }));
            QTest::mouseClick(button, Qt::LeftButton);
        }
    }

    ASSERT_TRUE(waitFor(
        [this] { return !state().isTrashingStaged.value() && !state().isScanning.value(); }));
    EXPECT_EQ(state().trashStatus.value(), QStringLiteral("Moved 1 item to Trash."));
    EXPECT_FALSE(std::filesystem::exists(m_disk.path("home/Movies").bytes()));
    EXPECT_TRUE(std::filesystem::exists(m_homeTrash / "files" / "Movies" / "film.mov"));
    EXPECT_TRUE(std::filesystem::exists(m_homeTrash / "info" / "Movies.trashinfo"));
    ASSERT_TRUE(state().hasScan());
    EXPECT_EQ(state().rootNode.value()->scannedBytes(), 3000);
    EXPECT_TRUE(waitUntilShown("cleanupEmpty"));
    EXPECT_FALSE(isShown("stagedRow"));
}

TEST_F(CleanupJourney, TheStagingKeyTogglesTheSelection)
{
    select("Documents/letter.txt");
    QTest::keyClick(&window(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(state().stagedNodes.value().size(), 1U);
    QTest::keyClick(&window(), Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(state().stagedNodes.value().empty());
}

TEST_F(CleanupJourney, TheFocusDoesNotFallOnTheRedButton)
{
    select("Documents");
    state().stageSelection();
    window().findChild<QWidget*>(QStringLiteral("treemapView"))->setFocus();
    state().section = AppSection::cleanup;
    ASSERT_TRUE(waitUntilShown("moveToTrashButton"));
    EXPECT_EQ(window().focusWidget(), find("cleanupView"));
    find("moveToTrashButton")->setFocus();
    state().unstage(*state().stagedNodes.value().front());
    ASSERT_TRUE(waitUntilShown("cleanupEmpty"));
    EXPECT_EQ(window().focusWidget(), find("cleanupView"));
}

TEST_F(CleanupJourney, TheDetailsButtonShowsAndHidesThePanel)
{
    EXPECT_FALSE(isShown("inspectorView"));
    click("detailsButton");
    ASSERT_TRUE(waitUntilShown("inspectorView"));
    EXPECT_TRUE(find<QAbstractButton>("detailsButton")->isChecked());
    click("detailsButton");
    ASSERT_TRUE(waitFor([this] { return !isShown("inspectorView"); }));
    EXPECT_EQ(m_platform.preferences.read<bool>("tessaryl.inspectorVisible"), false);
}

} // namespace
} // namespace quorvane
