// SPDX-License-Identifier: MIT
#include "ContentView.h"
#include "FileTypeCategory.h"
#include "Label.h"
#include "ProgramFixture.h"
#include "Progress.h"

#include <QLabel>
#include <QTimer>

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

namespace quorvane {
namespace {

class Sidebar : public ProgramFixture
{};

TEST_F(Sidebar, TheTilesSayWhatTheyScan)
{
    start();
    EXPECT_EQ(find<QAbstractButton>("chooseFolderTile")->text(), QStringLiteral("Choose Folder"));
    EXPECT_EQ(find<QAbstractButton>("scanHomeTile")->text(), QStringLiteral("Scan Home"));
    EXPECT_EQ(find<QAbstractButton>("scanFullMacTile")->text(), QStringLiteral("Scan Full Mac"));
}

TEST_F(Sidebar, ScanFullMacStartsAtTheRoot)
{
    using Call = FaultyFileSystemCalls::Call;
    // This machine's disk is none of the test's business: it gives nothing away.
    std::mutex lock;
    std::set<std::string> asked;
    for (const Call call : {Call::status, Call::openDirectory, Call::readLink, Call::volumeKind}) {
        m_calls.failAlways(call);
        m_calls.before(call, [&](int, std::string_view name) {
            const std::lock_guard guard(lock);
            asked.emplace(name);
        });
    }
    start();
    click("scanFullMacTile");
    ASSERT_TRUE(waitUntilShown("scanErrorView"));
    EXPECT_EQ(state().errorMessage.value(), QStringLiteral("Cannot access /"));
    m_program.reset();
    EXPECT_EQ(asked, std::set<std::string>{"/"});
}

TEST_F(Sidebar, ShowsHowFullTheDriveIs)
{
    start();
    ASSERT_TRUE(waitFor([this] { return state().driveStat.value().totalBytes > 0; }));
    constexpr std::uint64_t gigabyte = 1024 * 1024 * 1024;
    state().driveStat = DriveSample{1000 * gigabyte, 390 * gigabyte};
    settle();
    EXPECT_EQ(find<QLabel>("drivePercent")->text(), QStringLiteral("61%"));
    EXPECT_EQ(find<QLabel>("driveTotal")->text(), QStringLiteral("1000.0 GB"));
    EXPECT_EQ(find<QLabel>("driveAvailable")->text(), QStringLiteral("390.0 GB"));
    EXPECT_NEAR(find<ProgressBar>("driveBar")->fraction(), 0.61, 0.001);
}

TEST_F(Sidebar, ADriveOfNoBytesIsNotFull)
{
    start();
    ASSERT_TRUE(waitFor([this] { return state().driveStat.value().totalBytes > 0; }));
    state().driveStat = DriveSample{};
    settle();
    EXPECT_EQ(find<QLabel>("drivePercent")->text(), QStringLiteral("0%"));
    EXPECT_EQ(find<ProgressBar>("driveBar")->fraction(), 0);
}

TEST_F(Sidebar, AsksForTheDriveEveryMinuteWithoutAScan)
{
    std::atomic<int> asked = 0;
    m_calls.before(FaultyFileSystemCalls::Call::volumeCapacity,
                   [&asked](int, std::string_view) { ++asked; });
    start();
    auto* const timer = find<QTimer>("driveRefreshTimer");
    EXPECT_TRUE(timer->isActive());
    EXPECT_EQ(timer->interval(), 60000);
    ASSERT_TRUE(waitFor([&asked] { return asked >= 1; }));
    timer->setInterval(1);
    EXPECT_TRUE(waitFor([&asked] { return asked >= 3; }));
    timer->stop();
    m_program.reset();
}

TEST_F(Sidebar, HiddenItLeavesTheDriveAlone)
{
    start();
    click("sidebarToggle");
    EXPECT_FALSE(isShown("sidebar"));
    EXPECT_FALSE(window().content().columnVisibility());
    EXPECT_FALSE(find<QTimer>("driveRefreshTimer")->isActive());
    click("sidebarToggle");
    EXPECT_TRUE(isShown("sidebar"));
    EXPECT_TRUE(find<QTimer>("driveRefreshTimer")->isActive());
}

TEST_F(Sidebar, TheDetailAreaTakesTheRoomOfAHiddenSidebar)
{
    start();
    EXPECT_EQ(find("sidebar")->width(), 240);
    click("sidebarToggle");
    settle();
    EXPECT_EQ(window().content().detailArea().left(), 0);
    EXPECT_EQ(window().content().detailArea().width(), window().width());
}

TEST_F(Sidebar, TheLegendNamesTheNineCategories)
{
    start();
    QStringList names;
    for (const QLabel* const label : find("fileTypeLegend")->findChildren<QLabel*>()) {
        names.push_back(label->text());
    }
    const QStringList expected{
        QStringLiteral("Video"),   QStringLiteral("Image"), QStringLiteral("Doc"),
        QStringLiteral("Code"),    QStringLiteral("Dev"),   QStringLiteral("Projects"),
        QStringLiteral("Archive"), QStringLiteral("Audio"), QStringLiteral("System")};
    EXPECT_EQ(names, expected);
}

} // namespace
} // namespace quorvane
