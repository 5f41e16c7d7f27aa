// SPDX-License-Identifier: MIT
#include "PortalHotKey.h"
#include "SessionBus.h"
#include "ShortcutsPortal.h"
#include "WaitFor.h"
#include "X11HotKey.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>

#include <memory>
#include <string>
#include <vector>

namespace quorvane {
namespace {

/// Presses real keys on a real display; see on-a-display.
class X11Key : public testing::Test
{
protected:
    void SetUp() override
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb") ||
            QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty()) {
            GTEST_SKIP() << "no X11 display and xdotool here";
        }
    }

    static void press(const char* key)
    {
        QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), QLatin1String(key)});
    }

    void install(GlobalHotKey& key)
    {
        key.install([this](const std::string& token) { m_tokens.push_back(token); }, [] {});
    }

    std::vector<std::string> m_tokens;
};

TEST_F(X11Key, CallsOnceForEachPressAndTellsItsTime)
{
    X11HotKey key;
    install(key);
    ASSERT_EQ(key.state(), GlobalHotKey::State::inForce);
    press("ctrl+shift+space");
    ASSERT_TRUE(waitFor([this] { return !m_tokens.empty(); }));
    press("ctrl+space");
    press("shift+space");
    press("ctrl+shift+space");
    ASSERT_TRUE(waitFor([this] { return m_tokens.size() == 2; }));
    EXPECT_EQ(m_tokens[0].rfind("quorvane_TIME", 0), 0U);
    EXPECT_NE(m_tokens[0], m_tokens[1]);
}

TEST_F(X11Key, CallsWhateverTheLockKeysAre)
{
    X11HotKey key;
    install(key);
    for (const char* const lock : {"Num_Lock", "Caps_Lock", "Num_Lock", "Caps_Lock"}) {
        press(lock);
        m_tokens.clear();
        press("ctrl+shift+space");
        EXPECT_TRUE(waitFor([this] { return m_tokens.size() == 1; })) << lock;
    }
}

TEST_F(X11Key, ThatAnotherProgramHoldsIsRefusedAndHarmsNothing)
{
    auto first = std::make_unique<X11HotKey>();
    install(*first);
    int pressedSecond = 0;
    {
        X11HotKey second;
        second.install([&](const std::string&) { ++pressedSecond; }, [] {});
        EXPECT_EQ(second.state(), GlobalHotKey::State::taken);
        press("ctrl+shift+space");
        ASSERT_TRUE(waitFor([this] { return m_tokens.size() == 1; }));
    }
    press("ctrl+shift+space");
    ASSERT_TRUE(waitFor([this] { return m_tokens.size() == 2; }));
    EXPECT_EQ(pressedSecond, 0);
    first.reset();
    X11HotKey third;
    install(third);
    EXPECT_EQ(third.state(), GlobalHotKey::State::inForce);
}

TEST_F(X11Key, IsNotThereWithoutADisplay)
{
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":9999");
    X11HotKey key;
    qputenv("DISPLAY", display);
    install(key);
    EXPECT_EQ(key.state(), GlobalHotKey::State::none);
}

/// A desktop whose portal gives out keys.
class PortalKey : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!standsOnABus(QDBusConnection::sessionBus().isConnected())) {
            GTEST_SKIP() << "no session bus here";
        }
    }

    void install()
    {
        m_key.install([this](const std::string& token) { m_tokens.push_back(token); },
                      [this] { ++m_changes; });
    }
    bool becomes(GlobalHotKey::State state)
    {
        return waitFor([this, state] { return m_key.state() == state; });
    }

    ShortcutsPortal m_portal;
    PortalHotKey m_key;
    std::vector<std::string> m_tokens;
    int m_changes = 0;
};

TEST_F(PortalKey, IsAskedForAndThenInForce)
{
    ASSERT_TRUE(m_portal.serve());
    install();
    ASSERT_TRUE(becomes(GlobalHotKey::State::askable));
    ASSERT_TRUE(waitFor([this] { return m_portal.listed == 1; }));
    EXPECT_EQ(m_portal.bound, 0);
    m_key.ask();
    ASSERT_TRUE(becomes(GlobalHotKey::State::inForce));
    EXPECT_EQ(m_portal.wanted.id, QStringLiteral("search"));
    EXPECT_EQ(m_portal.wanted.properties.value(QStringLiteral("preferred_trigger")).toString(),
              QStringLiteral("CTRL+SHIFT+space"));
    EXPECT_EQ(m_key.trigger(), "Meta+Space");
    EXPECT_GE(m_changes, 2);
    m_portal.press("a token");
    ASSERT_TRUE(waitFor([this] { return !m_tokens.empty(); }));
    EXPECT_EQ(m_tokens, std::vector<std::string>{"a token"});
}

TEST_F(PortalKey, BoundBeforeIsInForceAtOnce)
{
    m_portal.isBoundAlready = true;
    ASSERT_TRUE(m_portal.serve());
    install();
    ASSERT_TRUE(becomes(GlobalHotKey::State::inForce));
    EXPECT_EQ(m_portal.bound, 0);
}

TEST_F(PortalKey, APersonWhoDeclinesMayBeAskedAgain)
{
    m_portal.declines = true;
    ASSERT_TRUE(m_portal.serve());
    install();
    ASSERT_TRUE(waitFor([this] { return m_portal.listed == 1; }));
    m_key.ask();
    ASSERT_TRUE(waitFor([this] { return m_portal.bound == 1; }));
    m_portal.declines = false;
    m_key.ask();
    ASSERT_TRUE(becomes(GlobalHotKey::State::inForce));
}

TEST_F(PortalKey, EndsWithItsSession)
{
    m_portal.isBoundAlready = true;
    ASSERT_TRUE(m_portal.serve());
    install();
    ASSERT_TRUE(becomes(GlobalHotKey::State::inForce));
    m_portal.endSession();
    EXPECT_TRUE(becomes(GlobalHotKey::State::none));
    m_key.ask();
    EXPECT_EQ(m_portal.bound, 0);
}

TEST_F(PortalKey, IsNotThereWithoutAPortal)
{
    install();
    m_key.ask();
    EXPECT_EQ(m_key.state(), GlobalHotKey::State::none);
    EXPECT_EQ(m_changes, 0);
}

} // namespace
} // namespace quorvane
