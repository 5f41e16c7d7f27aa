// SPDX-License-Identifier: MIT
#include "AppVersion.h"
#include "ProgramFixture.h"

#include <QAction>
#include <QFileOpenEvent>

#include <chrono>

namespace quorvane {
namespace {

using namespace std::chrono_literals;

class LifeCycle : public ProgramFixture
{};

TEST_F(LifeCycle, TheWindowHasItsSizesAndItsName)
{
    start();
    EXPECT_EQ(window().minimumSize(), QSize(1000, 620));
    EXPECT_EQ(MainWindow::defaultSize, QSize(1560, 980));
    EXPECT_EQ(window().windowTitle(), QStringLiteral("Analysis"));
    EXPECT_EQ(QApplication::applicationDisplayName(), QStringLiteral("Quorvane"));
    EXPECT_EQ(QApplication::desktopFileName(), QStringLiteral("io.github.quorvane.Quorvane"));
    EXPECT_EQ(QApplication::applicationVersion(), QLatin1String(AppVersion::string));
    EXPECT_FALSE(QApplication::windowIcon().isNull());
}

TEST_F(LifeCycle, AFolderHandedOverIsScannedAsIfChosen)
{
    start();
    state().section = AppSection::monitor;
    m_program->openFolder(m_disk.path("other"));
    EXPECT_EQ(state().section.value(), AppSection::analysis);
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    EXPECT_EQ(state().rootNode.value()->path(), m_disk.path("other"));
}

TEST_F(LifeCycle, TheDesktopCanHandAFolderToTheRunningProgram)
{
    start();
    QFileOpenEvent event(
        QUrl::fromEncoded(QByteArray::fromStdString(m_disk.path("other").fileUrl())));
    QApplication::sendEvent(qApp, &event);
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    EXPECT_EQ(state().rootNode.value()->path(), m_disk.path("other"));
}

TEST_F(LifeCycle, TheProcessOutlivesItsWindowOnlyWithAHotKey)
{
    start();
    EXPECT_TRUE(m_program->appDelegate().applicationShouldTerminateAfterLastWindowClosed(false));
    EXPECT_FALSE(m_program->appDelegate().applicationShouldTerminateAfterLastWindowClosed(true));
}

TEST_F(LifeCycle, ClosingTheWindowLeavesTheScanRunning)
{
    start();
    m_gate.close();
    state().scanHome();
    find<QAction>("closeWindowAction")->trigger();
    EXPECT_FALSE(window().isVisible());
    EXPECT_TRUE(state().isScanning.value());
    m_gate.open();
    EXPECT_TRUE(waitFor([this] { return state().hasScan(); }));
    m_program->showWindow();
    EXPECT_TRUE(waitUntilShown("visualizerHost"));
}

TEST_F(LifeCycle, ARunningScanEndsSoonWhenTheProgramDoes)
{
    for (int i = 0; i < 200; ++i) {
        m_disk.folder("home/many/" + std::to_string(i));
    }
    start();
    state().scanHome();
    EXPECT_TRUE(m_program->finishJobs(10s));
}

TEST_F(LifeCycle, AJobThatHangsInTheSystemDoesNotHoldUpTheEnd)
{
    start();
    ASSERT_TRUE(waitFor([this] { return state().driveStat.value().totalBytes > 0; }));
    m_gate.close();
    state().scanHome();
    ASSERT_TRUE(
        waitFor([this] { return m_calls.count(FaultyFileSystemCalls::Call::openDirectory) > 0; }));
    EXPECT_FALSE(m_program->finishJobs(20ms));
    m_gate.open();
    EXPECT_TRUE(m_program->finishJobs(10s));
}

} // namespace
} // namespace quorvane
