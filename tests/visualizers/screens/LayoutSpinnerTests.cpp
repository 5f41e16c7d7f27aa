// SPDX-License-Identifier: MIT
#include "LayoutSpinner.h"

#include "CanvasFixture.h"
#include "FlameScene.h"
#include "Gate.h"
#include "Progress.h"
#include "VisualizerCanvas.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QEvent>

namespace quorvane {
namespace {

/// Long enough that a spinner which is to come has come.
constexpr int wellAfterTheDelay = 2 * LayoutSpinner::delayOverContent;
/// What timers of the event loop may come early.
constexpr double earliness = 0.9;

/// Counts how often a widget appears.
class Appearances : public QObject
{
public:
    explicit Appearances(QObject& watched) { watched.installEventFilter(this); }
    int count() const { return m_count; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        m_count += event->type() == QEvent::Show ? 1 : 0;
        return false;
    }

private:
    int m_count = 0;
};

void letTimePass(int milliseconds)
{
    const QDeadlineTimer end(milliseconds);
    EXPECT_TRUE(waitFor([&] { return end.hasExpired(); }));
}

class LayoutSpinnerTests : public ::testing::Test
{
protected:
    LayoutSpinnerTests()
    {
        m_screen.resize(600, 400);
        m_screen.show();
    }

    QWidget m_screen;
    LayoutSpinner m_spinner{&m_screen};
};

TEST_F(LayoutSpinnerTests, SaysWhatIsGoingOnInTheMiddle)
{
    m_spinner.centerIn(m_screen.rect());
    m_spinner.start(false);
    EXPECT_TRUE(m_spinner.isVisible());
    EXPECT_EQ(m_spinner.findChild<Spinner*>()->text(), QStringLiteral("Computing layout…"));
    EXPECT_EQ(m_spinner.geometry().center(), m_screen.rect().center());
}

TEST_F(LayoutSpinnerTests, AppearsOverContentOnlyAfterTheDelay)
{
    QElapsedTimer clock;
    clock.start();
    m_spinner.start(true);
    EXPECT_FALSE(m_spinner.isVisible());
    ASSERT_TRUE(waitFor([this] { return m_spinner.isVisible(); }));
    EXPECT_GE(static_cast<double>(clock.elapsed()), 150 * earliness);
}

TEST_F(LayoutSpinnerTests, NeverAppearsForALayoutThatEndsBefore)
{
    const Appearances appearances(m_spinner);
    m_spinner.start(true);
    m_spinner.stop();
    letTimePass(wellAfterTheDelay);
    EXPECT_EQ(appearances.count(), 0);
}

TEST_F(LayoutSpinnerTests, NextLayoutDoesNotBeginTheDelayAnew)
{
    const Appearances appearances(m_spinner);
    m_spinner.start(true);
    // As while a window is dragged larger: each layout overtakes the one before.
    const QDeadlineTimer end(wellAfterTheDelay);
    EXPECT_TRUE(waitFor([&] {
        m_spinner.start(true);
        return end.hasExpired();
    }));
    EXPECT_EQ(appearances.count(), 1);
}

Gate& layoutGate()
{
    static Gate gate(Gate::State::open);
    return gate;
}

/// A layout that takes until the test lets it go on.
ScenePointer heldScene(const SceneRequest& request, const LockedFlag& stop)
{
    layoutGate().pass();
    return FlameScene::make(request, stop);
}

class CanvasSpinnerTests : public CanvasFixture
{
protected:
    CanvasSpinnerTests()
    {
        showTree("box/\n  a.mp4 600\n  b.mp4 400\n");
        m_canvas.resize(600, 400);
    }
    ~CanvasSpinnerTests() override { layoutGate().open(); }

    bool isSettled() const { return m_canvas.scene() && !m_canvas.isComputingLayout(); }

    CanvasTraits m_traits{&heldScene, "held", "%1, %2", "%1"};
    VisualizerCanvas m_canvas{m_state, m_traits};
    LayoutSpinner& m_spinner = *m_canvas.findChild<LayoutSpinner*>();
};

TEST_F(CanvasSpinnerTests, FirstLayoutHasItAtOnce)
{
    layoutGate().close();
    m_canvas.show();
    ASSERT_TRUE(waitFor([this] { return m_canvas.isComputingLayout(); }));
    EXPECT_TRUE(m_spinner.isVisible());
    layoutGate().open();
    ASSERT_TRUE(waitFor([this] { return isSettled(); }));
    EXPECT_FALSE(m_spinner.isVisible());
}

TEST_F(CanvasSpinnerTests, LongLayoutHasItOverTheOldPicture)
{
    m_canvas.show();
    ASSERT_TRUE(waitFor([this] { return isSettled(); }));
    const ScenePointer before = m_canvas.scene();
    layoutGate().close();
    QElapsedTimer clock;
    clock.start();
    m_state.focus(node("box"));
    ASSERT_TRUE(waitFor([this] { return m_spinner.isVisible(); }));
    EXPECT_GE(static_cast<double>(clock.elapsed()), 150 * earliness);
    EXPECT_EQ(m_canvas.scene(), before);
    layoutGate().open();
    ASSERT_TRUE(waitFor([&] { return isSettled() && m_canvas.scene() != before; }));
    EXPECT_FALSE(m_spinner.isVisible());
}

TEST_F(CanvasSpinnerTests, GoesWithTheTree)
{
    layoutGate().close();
    m_canvas.show();
    ASSERT_TRUE(waitFor([this] { return m_spinner.isVisible(); }));
    m_state.rootNode = nullptr;
    m_state.focusNode = nullptr;
    EXPECT_TRUE(waitFor([this] { return !m_spinner.isVisible(); }));
}

} // namespace
} // namespace quorvane
