// SPDX-License-Identifier: MIT
#include "UninstallerView.h"

#include "CleanupCautions.h"
#include "Progress.h"
#include "ToolViewFixture.h"

#include <string>

namespace quorvane {
namespace {

/// Over a home with an AppImage, a bundle, a Flatpak, and a package of a machine below it.
class UninstallerViewTests : public ToolViewFixture<UninstallerView>
{
protected:
    static constexpr RowPart reveal{0, 0};
    static constexpr RowPart uninstall{1, 1};

    UninstallerViewTests()
    {
        m_disk.fileWithContents("Applications/Halyard-4.2.AppImage",
                                std::string("\x7F"
                                            "ELF\x02\x01\x01\x00"
                                            "AI\x02",
                                            11));
        m_disk.mode("Applications/Halyard-4.2.AppImage", 0755);
        m_disk.file("Applications/Cinder.app/Contents/program", 50000);
        m_disk.file("Library/Logs/Cinder/log", 4096);
        m_disk.file(".var/app/org.sketch.S/data/drawing", 4096);
        m_disk.file("snap/plover/common/file", 4096);
        m_platform.programs.answers["flatpak"] = {0, "org.sketch.S\tSketchpad\t2.4 GB\tuser\n"};
        m_platform.programs.answers["snap"] = {0, "Name Version Rev Tracking Publisher Notes\n"
                                                  "plover 1 42 latest/stable x -\n"};
    }

    void openWithApps()
    {
        open();
        ASSERT_TRUE(waitForText("appCount", QStringLiteral("4 apps")));
    }

    void runQueue()
    {
        click("runUninstallQueue");
        answer(QStringLiteral("Move to Trash"));
        ASSERT_TRUE(waitFor([this] { return !m_state.isUninstalling.value(); }));
        QCoreApplication::processEvents();
    }
};

TEST_F(UninstallerViewTests, ListsApplicationsWhenItComesIntoView)
{
    EXPECT_EQ(m_view.shownEmpty(), QStringLiteral("nothing"));
    m_window.show();
    EXPECT_TRUE(m_state.isUninstallerLoading.value());
    QCoreApplication::processEvents();
    openWithApps();
    EXPECT_EQ(part<Label>("screenTitle").text(), QStringLiteral("App Uninstaller"));
    EXPECT_EQ(list().model()->rowCount(), 4);
    EXPECT_TRUE(part<Button>("refreshApps").isVisible());
    EXPECT_FALSE(part<Button>("runUninstallQueue").isVisible());
}

TEST_F(UninstallerViewTests, ARowTellsKindSizeAndExtras)
{
    openWithApps();
    const Row cinder = row(QStringLiteral("Cinder"));
    EXPECT_EQ(cinder.symbol, QStringLiteral("app.fill"));
    EXPECT_EQ(cinder.badges.front().text, QStringLiteral("Bundle"));
    EXPECT_EQ(cinder.path, m_disk.path("Applications/Cinder.app").displayText());
    EXPECT_EQ(cinder.cells[0].text, QStringLiteral("+ 4.0 KB extras"));
    EXPECT_EQ(cinder.actions[0].name, QStringLiteral("Reveal app in Finder"));
    EXPECT_EQ(cinder.actions[1].text, QStringLiteral("Uninstall"));
    EXPECT_EQ(cinder.actions[1].symbol, QStringLiteral("trash"));
    EXPECT_EQ(row(QStringLiteral("Halyard")).cells[0].text, QString());
    press(QStringLiteral("Cinder"), reveal);
    EXPECT_EQ(m_platform.workspace.revealed, std::vector{m_disk.path("Applications/Cinder.app")});
}

TEST_F(UninstallerViewTests, WhatAnAdministratorRemovesShowsTheCommand)
{
    openWithApps();
    const Row plover = row(QStringLiteral("plover"));
    EXPECT_EQ(plover.badges.front().text, QStringLiteral("Snap"));
    EXPECT_EQ(plover.command, QStringLiteral("sudo snap remove plover"));
    EXPECT_EQ(plover.actions[1].text, QStringLiteral("Queue extras"));
    EXPECT_TRUE(plover.actions[1].isEnabled);
}

TEST_F(UninstallerViewTests, TheQueueShowsAtTheRowAboveAndBelow)
{
    openWithApps();
    press(QStringLiteral("Cinder"), uninstall);
    const Row queued = row(QStringLiteral("Cinder"));
    EXPECT_EQ(queued.actions[1].text, QStringLiteral("Queued"));
    EXPECT_EQ(queued.actions[1].symbol, QStringLiteral("checkmark.circle.fill"));
    EXPECT_EQ(queued.actions[1].role, ButtonRole::queued);
    EXPECT_TRUE(waitForText("queuedApps", QStringLiteral("1 queued")));
    EXPECT_EQ(part<Button>("runUninstallQueue").text(), QStringLiteral("Uninstall 1 app to Trash"));
    press(QStringLiteral("Halyard"), uninstall);
    EXPECT_EQ(part<Button>("runUninstallQueue").text(),
              QStringLiteral("Uninstall 2 apps to Trash"));
    click("clearUninstallQueue");
    EXPECT_TRUE(m_state.uninstallQueue.value().empty());
    EXPECT_FALSE(part<Button>("runUninstallQueue").isVisible());
}

TEST_F(UninstallerViewTests, TheQuestionSaysWhatDoesNotGoToTheTrashWhole)
{
    openWithApps();
    press(QStringLiteral("Sketchpad"), uninstall);
    press(QStringLiteral("plover"), uninstall);
    click("runUninstallQueue");
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialogTexts().contains(QStringLiteral("Move 2 apps and their data to Trash?")));
    const auto* const panel = dialog()->findChild<CautionPanel*>();
    ASSERT_EQ(panel->lines().size(), 2);
    EXPECT_TRUE(panel->lines()[0].startsWith(QStringLiteral("Sketchpad ")));
    EXPECT_TRUE(panel->lines()[1].contains(QStringLiteral("plover")));
    answer(QStringLiteral("Cancel"));
    EXPECT_EQ(m_state.uninstallQueue.value().size(), 2U);
    click("clearUninstallQueue");
    press(QStringLiteral("Cinder"), uninstall);
    click("runUninstallQueue");
    EXPECT_TRUE(dialogTexts().contains(QStringLiteral("Move 1 app and their data to Trash?")));
    EXPECT_TRUE(dialog()->findChild<CautionPanel*>()->lines().isEmpty());
    answer(QStringLiteral("Cancel"));
}

TEST_F(UninstallerViewTests, AYesWorksTheQueueOff)
{
    openWithApps();
    press(QStringLiteral("Cinder"), uninstall);
    runQueue();
    EXPECT_FALSE(isThere("Applications/Cinder.app"));
    EXPECT_FALSE(isThere("Library/Logs/Cinder"));
    EXPECT_TRUE(isThere("Applications/Halyard-4.2.AppImage"));
    EXPECT_EQ(m_state.uninstallStatus.value(), QStringLiteral("Uninstalled 1 app."));
}

TEST_F(UninstallerViewTests, AQuestionClosesWhenTheQueueChanges)
{
    openWithApps();
    press(QStringLiteral("Cinder"), uninstall);
    click("runUninstallQueue");
    ASSERT_NE(dialog(), nullptr);
    m_state.clearUninstallQueue();
    EXPECT_TRUE(waitFor([this] { return dialog() == nullptr; }));
    EXPECT_TRUE(isThere("Applications/Cinder.app"));
}

TEST_F(UninstallerViewTests, WhatStaysTellsWhyAfterTheRefresh)
{
    openWithApps();
    const auto takeAway = m_platform.trash.answer;
    m_platform.trash.answer = [this, takeAway](const FilePath& path) {
        return path == m_disk.path("Applications/Cinder.app") ? Trash::Outcome::notPermitted
                                                              : takeAway(path);
    };
    press(QStringLiteral("Cinder"), uninstall);
    runQueue();
    click("refreshApps");
    ASSERT_TRUE(waitFor([this] { return !m_state.isUninstallerLoading.value(); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(row(QStringLiteral("Cinder")).badges.back().text,
              QStringLiteral("Not moved: no permission for %1")
                  .arg(m_disk.path("Applications").displayText()));
}

TEST_F(UninstallerViewTests, AFlatpakThatItsToolRefusesTellsSo)
{
    openWithApps();
    press(QStringLiteral("Sketchpad"), uninstall);
    m_platform.programs.answers["flatpak"].exitCode = 1;
    runQueue();
    EXPECT_EQ(row(QStringLiteral("Sketchpad")).badges.back().text,
              QStringLiteral("Not moved: Flatpak could not remove it"));
}

} // namespace
} // namespace quorvane
