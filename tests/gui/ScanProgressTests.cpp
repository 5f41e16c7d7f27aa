// SPDX-License-Identifier: MIT
#include "ProgramFixture.h"
#include "Progress.h"

#include <QLabel>

namespace quorvane {
namespace {

/// A scan that is held up, so that the test can report in its place.
class ScanProgressScreen : public ProgramFixture
{
protected:
    ScanProgressScreen()
    {
        // Held up before its first step, the scanner reports nothing of its own in between.
        m_calls.before(FaultyFileSystemCalls::Call::status,
                       [this](int, std::string_view) { m_gate.pass(); });
    }

    void holdScan(AppScreens screens = AppScreens::standard())
    {
        start(std::move(screens));
        m_gate.close();
        state().scanHome();
        ASSERT_TRUE(waitUntilShown("scanProgressView"));
        ASSERT_TRUE(waitFor([this] { return m_gate.hasVisitor(); }));
        settle();
    }

    void report(std::int64_t folders, std::int64_t files, std::int64_t bytes, const char* path)
    {
        state().progress = ScanProgress{files, folders, bytes, path};
        settle();
    }

    QString text(const char* name) { return find<QLabel>(name)->text(); }
};

TEST_F(ScanProgressScreen, ShowsFoldersAndFilesInGroups)
{
    holdScan();
    report(41208, 386954, 0, "/a/b");
    EXPECT_EQ(text("scanFolderCount"), QStringLiteral("41,208"));
    EXPECT_EQ(text("scanFileCount"), QStringLiteral("386,954"));
}

TEST_F(ScanProgressScreen, TheCounterArrivesAtTheReportedBytes)
{
    holdScan();
    EXPECT_EQ(text("scanByteCounter"), QStringLiteral("0 B"));
    report(1, 1, 1610612736, "/a/b");
    EXPECT_TRUE(waitFor([this] { return text("scanByteCounter") == QLatin1String("1.5 GB"); }));
}

TEST_F(ScanProgressScreen, TheLiveLineFollowsTheScan)
{
    holdScan();
    report(0, 0, 0, "");
    EXPECT_EQ(text("scanLiveName"), QStringLiteral("Preparing to scan…"));
    EXPECT_EQ(text("scanLiveParent"), QString());
    report(0, 0, 0, "/");
    EXPECT_EQ(text("scanLiveName"), QStringLiteral("Preparing to scan…"));
    report(1, 2, 3, "/home/mara/Music");
    EXPECT_EQ(text("scanLiveName"), QStringLiteral("Music"));
    EXPECT_EQ(text("scanLiveParent"), QStringLiteral("  in /home/mara"));
    report(1, 2, 3, "");
    EXPECT_EQ(text("scanLiveName"), QStringLiteral("Finishing up…"));
    EXPECT_EQ(text("scanLiveParent"), QString());
}

TEST_F(ScanProgressScreen, APathThatIsGoneWithinTheSameEventCountsAsReported)
{
    holdScan();
    state().progress = ScanProgress{1, 1, 1, "/home/mara"};
    report(1, 1, 1, "");
    EXPECT_EQ(text("scanLiveName"), QStringLiteral("Finishing up…"));
}

TEST_F(ScanProgressScreen, EachScanPreparesAnew)
{
    holdScan();
    report(1, 2, 3, "/home/mara");
    m_gate.open();
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    m_gate.close();
    state().rescan();
    ASSERT_TRUE(waitUntilShown("scanProgressView"));
    report(0, 0, 0, "");
    EXPECT_EQ(text("scanLiveName"), QStringLiteral("Preparing to scan…"));
}

TEST_F(ScanProgressScreen, TheDigitsDoNotMoveTheColumn)
{
    holdScan();
    report(1, 1, 1, "/home/mara");
    const QRect before = find("scanFolderCount")->parentWidget()->geometry();
    report(41208777, 386954777, 999999999999,
           "/a/folder/with/a/long/name/that/goes/on/and/on/"
           "and/on/and/on/and/on/and/on/and/on/until/the/end");
    settle();
    EXPECT_EQ(find("scanFolderCount")->parentWidget()->geometry(), before);
    const QWidget* const line = find("scanLiveLine");
    EXPECT_LE(find("scanLiveParent")->geometry().right(), line->rect().right());
}

TEST_F(ScanProgressScreen, TheRailSweepsOnlyWhileItIsOnShow)
{
    AppScreens screens = AppScreens::standard();
    screens.sections.add(AppSection::monitor,
                         [](AppState&, QWidget* parent) { return new QWidget(parent); });
    holdScan(std::move(screens));
    auto* const rail = find<SweepRail>("scanRail");
    EXPECT_TRUE(rail->isSweeping());
    EXPECT_FALSE(rail->isTextVisible() && !rail->text().isEmpty());
    state().section = AppSection::monitor;
    ASSERT_TRUE(waitFor([this] { return !isShown("scanProgressView"); }));
    EXPECT_FALSE(rail->isSweeping());
}

TEST_F(ScanProgressScreen, OutOfSightItDoesNoWorkAndCatchesUpLater)
{
    AppScreens screens = AppScreens::standard();
    screens.sections.add(AppSection::monitor,
                         [](AppState&, QWidget* parent) { return new QWidget(parent); });
    holdScan(std::move(screens));
    report(1, 1, 1, "/a/b");
    state().section = AppSection::monitor;
    ASSERT_TRUE(waitFor([this] { return !isShown("scanProgressView"); }));
    report(2, 2, 2, "/a/c");
    EXPECT_EQ(text("scanFolderCount"), QStringLiteral("1"));
    EXPECT_EQ(text("scanLiveName"), QStringLiteral("b"));
    state().section = AppSection::analysis;
    ASSERT_TRUE(waitUntilShown("scanProgressView"));
    EXPECT_EQ(text("scanFolderCount"), QStringLiteral("2"));
    EXPECT_EQ(text("scanLiveName"), QStringLiteral("c"));
}

} // namespace
} // namespace quorvane
