// SPDX-License-Identifier: MIT
#include "AppVersion.h"
#include "Button.h"
#include "Dialog.h"
#include "GlobalSearch.h"
#include "ProgramFixture.h"
#include "ScriptedHotKey.h"
#include "TerminationSignals.h"
#include "TreeText.h"

#include <QAction>
#include <QFileOpenEvent>
#include <QLineEdit>
#include <QMetaObject>
#include <QTimer>

#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <utility>

namespace quorvane {
namespace {

using namespace std::chrono_literals;

class LifeCycle : public ProgramFixture
{};

TEST_F(LifeCycle, TheWindowHasItsSizesAndItsName)
{
    start();
    EXPECT_EQ(window().minimumSize(), QSize(1000, 620));
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

TEST_F(LifeCycle, AKeyInForceKeepsTheProcessAndCallsItBack)
{
    ScriptedHotKey key(GlobalHotKey::State::inForce);
    m_platform.hotKey = &key;
    m_program = std::make_unique<QuorvaneApp>(*qApp, m_platform.platform(), AppScreens::standard());
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
    m_program->showWindow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window(), patience));
    find<QAction>("closeWindowAction")->trigger();
    EXPECT_FALSE(window().isVisible());
    key.press();
    EXPECT_TRUE(GlobalSearch::shared().isVisible());
    key.press();
    EXPECT_FALSE(GlobalSearch::shared().isVisible());
    key.become(GlobalHotKey::State::taken);
    EXPECT_TRUE(QApplication::quitOnLastWindowClosed());
    m_program->setReachable();
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
    m_program.reset();
}

TEST_F(LifeCycle, ALaterStartIsServedByTheFirst)
{
    start();
    m_program->setReachable();
    window().close();
    m_program->serve({{}, true, {}});
    EXPECT_TRUE(GlobalSearch::shared().isVisible());
    EXPECT_FALSE(window().isVisible());
    m_program->serve({});
    EXPECT_TRUE(window().isVisible());
    window().close();
    GlobalSearch::shared().close();
    m_program->serve({m_disk.path("other"), true, {}});
    EXPECT_TRUE(GlobalSearch::shared().isVisible());
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    EXPECT_EQ(state().rootNode.value()->path(), m_disk.path("other"));
}

TEST_F(LifeCycle, AnUnreachableProgramThatIsToSearchShowsItsWindowToo)
{
    start();
    window().close();
    m_program->serve({{}, true, {}});
    EXPECT_TRUE(GlobalSearch::shared().isVisible());
    EXPECT_TRUE(window().isVisible());
}

TEST_F(LifeCycle, TheToolBarsFieldHandsOverToTheOverlay)
{
    start();
    click("searchBar");
    ASSERT_TRUE(waitFor([] { return GlobalSearch::shared().isVisible(); }));
    EXPECT_TRUE(find<QLineEdit>("searchBar")->text().isEmpty());
    GlobalSearch::shared().close();
    find<QAction>("spotlightSearchAction")->trigger();
    EXPECT_TRUE(GlobalSearch::shared().isVisible());
    find<QAction>("spotlightSearchAction")->trigger();
    EXPECT_FALSE(GlobalSearch::shared().isVisible());
}

TEST_F(LifeCycle, WithoutAHotKeyTheProgramEndsWithItsWindow)
{
    start();
    // As the program itself set it, before the fixture's own word.
    QApplication::setQuitOnLastWindowClosed(m_quitsWithItsWindow);
    constexpr int stillRunning = 1;
    QTimer givesUp;
    QObject::connect(&givesUp, &QTimer::timeout, [] { QApplication::exit(stillRunning); });
    givesUp.start(patience);
    QTimer::singleShot(0, qApp, [this] { find<QAction>("closeWindowAction")->trigger(); });
    EXPECT_EQ(QApplication::exec(), 0);
    QApplication::setQuitOnLastWindowClosed(false);
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

/// A batch of one file that waits in front of its move.
class ClosingDuringABatch : public LifeCycle
{
protected:
    void startBatch()
    {
        m_disk.file("home/staged", 10);
        m_platform.trash.answer = [this](const FilePath&) {
            m_trashGate.pass();
            return Trash::Outcome::moved;
        };
        start();
        state().scanHome();
        ASSERT_TRUE(waitUntilShown("visualizerHost"));
        FileNode& root = *state().rootNode.value();
        state().toggleStaged(state().share(&test::nodeAt(root, "staged")));
        for (FileNode& child : root.children()) {
            if (child.name() == "more") {
                for (FileNode& file : child.children()) {
                    state().toggleStaged(state().share(&file));
                }
            }
        }
        state().sendStagedToTrash();
        m_trashGate.awaitVisitor();
    }
    Dialog* farewell() { return window().findChild<Dialog*>(QStringLiteral("waitForTrashDialog")); }

    Gate m_trashGate;
};

TEST_F(ClosingDuringABatch, TheWindowSaysSoAndClosesWhenTheBatchIsDone)
{
    startBatch();
    find<QAction>("closeWindowAction")->trigger();
    EXPECT_TRUE(window().isVisible());
    ASSERT_NE(farewell(), nullptr);
    EXPECT_TRUE(farewell()->isVisible());
    EXPECT_EQ(farewell()->accessibleDescription(), QStringLiteral("Moving 1 item to Trash…"));
    m_trashGate.open();
    EXPECT_TRUE(waitFor([this] { return !window().isVisible(); }));
    EXPECT_EQ(m_platform.trash.asked().size(), 1U);
}

TEST_F(ClosingDuringABatch, ThePersonMayStayAfterAll)
{
    startBatch();
    window().close();
    ASSERT_NE(farewell(), nullptr);
    farewell()->findChild<Button*>()->click();
    m_trashGate.open();
    EXPECT_TRUE(waitFor([this] { return !state().isTrashingStaged.value(); }));
    QCoreApplication::processEvents();
    EXPECT_TRUE(window().isVisible());
}

/// Runs the program until it ends, or to 1 when it does not. meets is asked about once a
/// millisecond until it holds.
int runUntilQuit(const std::function<bool()>& meets)
{
    constexpr int patienceMs = 30'000;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
        if (meets()) {
            poll.stop();
        }
    });
    poll.start(1);
    QTimer deadline;
    deadline.setSingleShot(true);
    QObject::connect(&deadline, &QTimer::timeout, &deadline, [] { QApplication::exit(1); });
    deadline.start(patienceMs);
    return QApplication::exec();
}

TEST_F(ClosingDuringABatch, AQuitThatItHoldsUpIsCarriedOutAfterIt)
{
    startBatch();
    find<QAction>("quitAction")->trigger();
    const int result = runUntilQuit([this] {
        const bool isHeldUp = farewell() != nullptr && farewell()->isVisible();
        if (isHeldUp) {
            m_trashGate.open();
        }
        return isHeldUp;
    });
    EXPECT_EQ(result, 0);
    EXPECT_FALSE(state().isTrashingStaged.value());
}

TEST_F(ClosingDuringABatch, AQuitThatIsTakenBackIsNotCarriedOut)
{
    constexpr int stillRunning = 7;
    startBatch();
    find<QAction>("quitAction")->trigger();
    bool isTakenBack = false;
    const int result = runUntilQuit([&] {
        if (!isTakenBack && farewell() != nullptr && farewell()->isVisible()) {
            farewell()->findChild<Button*>()->click();
            m_trashGate.open();
            isTakenBack = true;
        }
        const bool isOver = isTakenBack && !state().isTrashingStaged.value();
        if (isOver) {
            QMetaObject::invokeMethod(
                qApp, [] { QApplication::exit(stillRunning); }, Qt::QueuedConnection);
        }
        return isOver;
    });
    EXPECT_EQ(result, stillRunning);
    EXPECT_TRUE(window().isVisible());
}

TEST_F(ClosingDuringABatch, TheEndOfTheProgramWaitsForAllOfIt)
{
    for (int i = 0; i < 50; ++i) {
        m_disk.file("home/more/" + std::to_string(i), 10);
    }
    startBatch();
    m_trashGate.open();
    // No patience with anything else.
    m_program->finishJobs(0ms);
    EXPECT_EQ(m_platform.trash.asked().size(), 51U);
}

/// The same in the program's own event loop, which ends with the last window, or outlives it where
/// something can call the program back.
class EndingDuringABatch : public ClosingDuringABatch, public testing::WithParamInterface<bool>
{
protected:
    static constexpr int stillRunning = 99;
    static constexpr int hungUp = 98;

    /// Starts a batch, then runs the loop: ask() asks for the end, onFarewell() follows when the
    /// window says that the batch holds it up. Returns what the loop returns, or stillRunning when
    /// it goes on behind the end of the window.
    int execWith(const std::function<void()>& ask, std::function<void()> onFarewell)
    {
        const TerminationSignals signals;
        startBatch();
        // What an earlier test may have left open is a window, too.
        for (QWidget* const other : QApplication::topLevelWidgets()) {
            if (other != &window()) {
                other->close();
            }
        }
        QApplication::setQuitOnLastWindowClosed(!GetParam());
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            if (onFarewell && farewell() != nullptr && farewell()->isVisible()) {
                std::exchange(onFarewell, {})();
            } else if (!onFarewell && !window().isVisible()) {
                // Long enough for the end of the last window to have ended the loop.
                QTimer::singleShot(500ms, &poll, [] { QApplication::exit(stillRunning); });
            }
        });
        poll.start(1ms);
        QTimer::singleShot(patience, &poll, [] { QApplication::exit(hungUp); });
        QTimer::singleShot(0, &poll, ask);
        const int result = QApplication::exec();
        EXPECT_FALSE(onFarewell) << "the loop ended while the batch was under way";
        QApplication::setQuitOnLastWindowClosed(false);
        m_trashGate.open();
        return result;
    }

    std::function<void()> finishesBatch()
    {
        return [this] { m_trashGate.open(); };
    }
};

TEST_P(EndingDuringABatch, ASignalEndsTheProgramWhenTheBatchIsDone)
{
    EXPECT_EQ(execWith([] { std::raise(SIGTERM); }, finishesBatch()), 0);
    EXPECT_EQ(m_platform.trash.asked().size(), 1U);
}

TEST_P(EndingDuringABatch, AQuitAfterACloseIsAQuit)
{
    const auto ask = [this] {
        window().close();
        QCoreApplication::quit();
        QCoreApplication::quit();
    };
    EXPECT_EQ(execWith(ask, finishesBatch()), 0);
}

TEST_P(EndingDuringABatch, ACloseEndsTheProgramOnlyWhereNothingCallsItBack)
{
    const auto ask = [this] { find<QAction>("closeWindowAction")->trigger(); };
    EXPECT_EQ(execWith(ask, finishesBatch()), GetParam() ? stillRunning : 0);
}

TEST_P(EndingDuringABatch, AQuitThatWasTakenBackMakesNoQuitOfALaterClose)
{
    const auto keepOpenAndClose = [this] {
        farewell()->findChild<Button*>()->click();
        window().close();
        m_trashGate.open();
    };
    EXPECT_EQ(execWith([] { std::raise(SIGTERM); }, keepOpenAndClose),
              GetParam() ? stillRunning : 0);
}

INSTANTIATE_TEST_SUITE_P(WithAndWithoutAHotKey, EndingDuringABatch, testing::Bool());

} // namespace
} // namespace quorvane
