// SPDX-License-Identifier: MIT
#include "DesktopSettings.h"

#include "SessionBus.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QString>

namespace quorvane {
namespace {

const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");

} // namespace

/// The portal's part that tells settings, as org.freedesktop.portal.Settings describes it.
class SettingsPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    void change(const QString& area, const QString& key, const QVariant& value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/portal/desktop"),
            QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << area << key << QVariant::fromValue(QDBusVariant(value));
        bus.send(signal);
    }

    QDBusConnection bus{QString()};
    QMap<QString, QVariant> values;
    int answers = 0;

public Q_SLOTS:
    /// The value in two variants, as the older call wraps it.
    QDBusVariant Read(const QString& area, const QString& key)
    {
        ++answers;
        const QVariant value = values.value(area + QLatin1Char('/') + key);
        if (!value.isValid()) {
            sendErrorReply(QDBusError::UnknownProperty, QStringLiteral("no such setting"));
        }
        return QDBusVariant(QVariant::fromValue(QDBusVariant(value)));
    }
};

namespace {

class DesktopSettingsTests : public testing::Test
{
protected:
    void TearDown() override
    {
        m_portal.bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(m_busName);
    }

    /// False without a session bus.
    bool serve()
    {
        m_portal.bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_busName);
        return standsOnABus(
            m_portal.bus.isConnected() &&
            m_portal.bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")) &&
            m_portal.bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"),
                                        &m_portal, QDBusConnection::ExportAllSlots));
    }

    /// The desktop tells another scheme; returns when the settings have heard of it, by a second
    /// setting that follows on the same road.
    void changeScheme(DesktopSettings& settings, uint scheme)
    {
        m_portal.change(appearance, QStringLiteral("color-scheme"), scheme);
        m_motion = !m_motion;
        m_portal.change(appearance, QStringLiteral("reduced-motion"), m_motion ? 1U : 0U);
        ASSERT_TRUE(waitFor([&] { return settings.reducedMotion() == m_motion; }));
    }

    QString m_busName = QStringLiteral("quorvane-settings-test");
    SettingsPortal m_portal;
    bool m_motion = false;
};

TEST_F(DesktopSettingsTests, WithoutAPreferenceThePaletteDecides)
{
    m_portal.values[appearance + QStringLiteral("/color-scheme")] = 0U;
    m_portal.values[gnome + QStringLiteral("/enable-animations")] = false;
    if (!serve()) {
        GTEST_SKIP() << "no session bus";
    }
    for (const bool isDark : {true, false}) {
        DesktopSettings settings;
        settings.setPaletteIsDark(isDark);
        settings.follow();
        // Asked for last, so that the scheme's answer is there, too.
        ASSERT_TRUE(waitFor([&] { return settings.reducedMotion(); }));
        EXPECT_EQ(settings.prefersDark(), isDark);
    }
}

TEST_F(DesktopSettingsTests, APreferenceOverrulesThePalette)
{
    m_portal.values[appearance + QStringLiteral("/color-scheme")] = 2U;
    if (!serve()) {
        GTEST_SKIP() << "no session bus";
    }
    DesktopSettings settings;
    settings.setPaletteIsDark(true);
    settings.follow();
    ASSERT_TRUE(waitFor([&] { return !settings.prefersDark(); }));
    settings.setPaletteIsDark(true);
    EXPECT_FALSE(settings.prefersDark());
}

TEST_F(DesktopSettingsTests, EveryChangeIsFollowed)
{
    m_portal.values[appearance + QStringLiteral("/color-scheme")] = 1U;
    if (!serve()) {
        GTEST_SKIP() << "no session bus";
    }
    DesktopSettings settings;
    settings.setPaletteIsDark(false);
    settings.follow();
    ASSERT_TRUE(waitFor([&] { return settings.prefersDark(); }));
    changeScheme(settings, 2);
    EXPECT_FALSE(settings.prefersDark());
    changeScheme(settings, 1);
    EXPECT_TRUE(settings.prefersDark());
    // The light palette decides again, and for a number that nobody has given a meaning yet.
    changeScheme(settings, 0);
    EXPECT_FALSE(settings.prefersDark());
    changeScheme(settings, 1);
    changeScheme(settings, 3);
    EXPECT_FALSE(settings.prefersDark());
}

/// With a bus and without one.
TEST_F(DesktopSettingsTests, WhereNobodyTellsThePaletteDecides)
{
    DesktopSettings settings;
    settings.follow();
    settings.setPaletteIsDark(false);
    EXPECT_FALSE(settings.prefersDark());
    settings.setPaletteIsDark(true);
    EXPECT_TRUE(settings.prefersDark());
}

} // namespace
} // namespace quorvane

#include "DesktopSettingsTests.moc"
