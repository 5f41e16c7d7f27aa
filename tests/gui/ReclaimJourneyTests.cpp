// SPDX-License-Identifier: MIT
#include "ProgramFixture.h"
#include "RowLayout.h"
#include "RowView.h"

#include <cstdlib>
#include <filesystem>
#include <string>

namespace quorvane {
namespace {

/// The three tools that find what can go, from the sidebar to the Trash.
class ReclaimJourney : public ProgramFixture
{
protected:
    void SetUp() override
    {
        const char* const data = std::getenv("XDG_DATA_HOME");
        ASSERT_TRUE(data != nullptr &&
                    std::string(data).find("quorvane-test.") != std::string::npos)
            << "run through cmake/run-isolated: the user's own Trash is not for tests";
        m_homeTrash = std::filesystem::path(data) / "Trash" / "files";
        m_platform.trash.answer = [](const FilePath& path) {
            return Trash::system().moveToTrash(path);
        };
        m_disk.file("home/shop/package.json", 2);
        m_disk.file("home/shop/node_modules/left/index.js", 40000);
        m_disk.file("home/.npm/_cacache/a", 30000);
        m_disk.file("home/Applications/Cinder.app/Contents/program", 20000);
        m_disk.file("home/Library/Logs/Cinder/log", 1000);
        start();
    }

    void show(AppSection section, const char* list)
    {
        state().section = section;
        ASSERT_TRUE(waitUntilShown(list));
    }

    QModelIndex indexOf(const char* list, const QString& title)
    {
        auto* const view = find<RowView>(list);
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            const QModelIndex index = view->model()->index(row, 0);
            if (view->rowOf(index).title == title) {
                return index;
            }
        }
        return {};
    }

    /// Presses the control with that id in the row of that title, once the row is there.
    void press(const char* list, const QString& title, const RowPart& part)
    {
        ASSERT_TRUE(waitFor([&] { return indexOf(list, title).isValid(); })) << title.toStdString();
        auto* const view = find<RowView>(list);
        const QRect rect = view->partRect(indexOf(list, title), part);
        ASSERT_TRUE(rect.isValid());
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, rect.center());
    }

    void confirm(const char* dialog)
    {
        ASSERT_TRUE(waitUntilShown(dialog));
        for (auto* const button : find(dialog)->findChildren<QAbstractButton*>()) {
            if (button->text() == QLatin1String("Move to Trash")) {
                ASSERT_TRUE(waitFor([button] { return button->isEnabled(); }));
                QTest::mouseClick(button, Qt::LeftButton);
                return;
            }
        }
        FAIL() << "no button to confirm with";
    }

    bool isThere(std::string_view path)
    {
        return std::filesystem::exists(m_disk.path(path).bytes());
    }

    std::filesystem::path m_homeTrash;
};

TEST_F(ReclaimJourney, AQuickWinGoesByTheQueueToTheTrash)
{
    scanHome();
    show(AppSection::quickWins, "quickWinsList");
    press("quickWinsList", QStringLiteral("node_modules"), {1, 1});
    ASSERT_TRUE(waitUntilShown("stagedRow"));
    EXPECT_EQ(state().section.value(), AppSection::quickWins);
    EXPECT_TRUE(waitUntilShown("flashBanner"));
    show(AppSection::cleanup, "stagedList");
    click("moveToTrashButton");
    confirm("confirmTrashDialog");
    ASSERT_TRUE(waitFor(
        [this] { return !state().isTrashingStaged.value() && !state().isScanning.value(); }));
    EXPECT_FALSE(isThere("home/shop/node_modules"));
    EXPECT_TRUE(isThere("home/shop/package.json"));
    EXPECT_TRUE(std::filesystem::exists(m_homeTrash / "node_modules" / "left" / "index.js"));
    ASSERT_TRUE(waitFor([this] { return !state().isQuickWinsLoading.value(); }));
    show(AppSection::quickWins, "quickWinsList");
    EXPECT_FALSE(indexOf("quickWinsList", QStringLiteral("node_modules")).isValid());
    EXPECT_TRUE(indexOf("quickWinsList", QStringLiteral("npm Cache")).isValid());
}

TEST_F(ReclaimJourney, ACacheGoesToTheTrashWithoutAScanOfTheTree)
{
    show(AppSection::devCacheCleaner, "devCacheList");
    press("devCacheList", QStringLiteral("npm Cache"), {RowAction::toggled, 0});
    ASSERT_TRUE(waitUntilShown("trashDevCaches"));
    click("trashDevCaches");
    confirm("trashDevCachesDialog");
    ASSERT_TRUE(waitFor([this] { return !isThere("home/.npm/_cacache"); }));
    EXPECT_TRUE(waitFor(
        [this] { return !indexOf("devCacheList", QStringLiteral("npm Cache")).isValid(); }));
    EXPECT_TRUE(std::filesystem::exists(m_homeTrash / "_cacache" / "a"));
    EXPECT_TRUE(isThere("home/shop/node_modules/left/index.js"));
    EXPECT_FALSE(state().hasScan());
}

TEST_F(ReclaimJourney, AnApplicationGoesWithWhatItLeavesBehind)
{
    show(AppSection::uninstaller, "appList");
    press("appList", QStringLiteral("Cinder"), {1, 1});
    ASSERT_TRUE(waitUntilShown("runUninstallQueue"));
    click("runUninstallQueue");
    confirm("confirmUninstallDialog");
    ASSERT_TRUE(waitFor([this] {
        return !state().isUninstalling.value() &&
               state().uninstallStatus.value() == QStringLiteral("Uninstalled 1 app.");
    }));
    EXPECT_FALSE(isThere("home/Applications/Cinder.app"));
    EXPECT_FALSE(isThere("home/Library/Logs/Cinder"));
    EXPECT_TRUE(isThere("home/Library/Logs"));
    EXPECT_TRUE(std::filesystem::exists(m_homeTrash / "Cinder.app"));
}

} // namespace
} // namespace quorvane
