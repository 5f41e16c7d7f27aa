// SPDX-License-Identifier: MIT
#include "KeyedScreen.h"

#include "CanvasFixture.h"
#include "Gate.h"
#include "LayoutSpinner.h"

#include <QStringList>

namespace quorvane {
namespace {

/// Computes the name of the folder on show, and takes until the test lets it go on.
class HeldScreen final : public KeyedScreen
{
public:
    HeldScreen(AppState& state, Gate& gate)
        : KeyedScreen(state)
        , m_gate(gate)
    {}

    const QStringList& published() const { return m_published; }
    int starts() const { return m_starts; }
    bool isCleared() const { return m_isCleared; }

protected:
    QString key() const override { return QString::number(target()->id()); }

    JobHandle startComputing(const NodePointer& target) override
    {
        ++m_starts;
        return state().jobs().start(
            JobPriority::userInitiated,
            [target, gate = &m_gate](const Job&) {
                gate->pass();
                return target->displayName();
            },
            [this](const QString& name) {
                finish();
                m_published += name;
            });
    }

    void clear() override { m_isCleared = true; }

private:
    Gate& m_gate;
    int m_starts = 0;
    bool m_isCleared = false;
    QStringList m_published;
};

class KeyedScreenTests : public CanvasFixture
{
protected:
    KeyedScreenTests() { showTree("first/\n  a 6\nsecond/\n  b 4\n"); }

    ~KeyedScreenTests() override
    {
        m_gate.open();
        // Work that was cancelled still knows the gate.
        m_state.jobs().drain(std::chrono::seconds(30));
    }

    Gate m_gate;
    HeldScreen m_screen{m_state, m_gate};
    LayoutSpinner& m_spinner = *m_screen.findChild<LayoutSpinner*>();
};

TEST_F(KeyedScreenTests, SpinnerStandsThereFromTheFirstStartToTheResult)
{
    EXPECT_FALSE(m_screen.isComputing());
    m_screen.show();
    ASSERT_TRUE(waitFor([this] { return m_screen.isComputing(); }));
    EXPECT_TRUE(m_spinner.isVisible());
    EXPECT_EQ(m_spinner.geometry().center(), m_screen.rect().center());
    m_gate.open();
    ASSERT_TRUE(waitFor([this] { return !m_screen.isComputing(); }));
    EXPECT_FALSE(m_spinner.isVisible());
    EXPECT_EQ(m_screen.published(), QStringList{QStringLiteral("scan")});
}

TEST_F(KeyedScreenTests, ResultForAnOldKeyIsNeverShown)
{
    m_screen.show();
    ASSERT_TRUE(waitFor([this] { return m_screen.isComputing(); }));
    m_state.focus(node("first"));
    ASSERT_TRUE(waitFor([this] { return m_screen.starts() == 2; }));
    m_state.focus(node("second"));
    ASSERT_TRUE(waitFor([this] { return m_screen.starts() == 3; }));
    m_gate.open();
    ASSERT_TRUE(waitFor([this] { return !m_screen.isComputing(); }));
    EXPECT_EQ(m_screen.published(), QStringList{QStringLiteral("second")});
}

TEST_F(KeyedScreenTests, SeveralChangesInOneTurnStartOnce)
{
    m_screen.show();
    m_state.focus(node("first"));
    m_state.focus(node("second"));
    ASSERT_TRUE(waitFor([this] { return m_screen.isComputing(); }));
    EXPECT_EQ(m_screen.starts(), 1);
}

TEST_F(KeyedScreenTests, WorksOnlyWhileItIsOnShow)
{
    m_gate.open();
    m_state.focus(node("first"));
    QApplication::processEvents();
    EXPECT_EQ(m_screen.starts(), 0);
    m_screen.show();
    ASSERT_TRUE(waitFor([this] { return m_screen.published().size() == 1; }));
    m_screen.hide();
    m_screen.show();
    QApplication::processEvents();
    EXPECT_EQ(m_screen.starts(), 1) << "what it shows is still what it should";
}

TEST_F(KeyedScreenTests, WithTheTreeTheWorkGoes)
{
    m_screen.show();
    ASSERT_TRUE(waitFor([this] { return m_screen.isComputing(); }));
    m_state.focusNode = nullptr;
    m_state.rootNode = nullptr;
    ASSERT_TRUE(waitFor([this] { return m_screen.isCleared(); }));
    EXPECT_FALSE(m_screen.isComputing());
    EXPECT_FALSE(m_spinner.isVisible());
}

} // namespace
} // namespace quorvane
