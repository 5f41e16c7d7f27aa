// SPDX-License-Identifier: MIT
#include "DesktopSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace quorvane {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceArea = QStringLiteral("org.freedesktop.appearance");
const QString schemeKey = QStringLiteral("color-scheme");
const QString motionKey = QStringLiteral("reduced-motion");
const QString gnomeArea = QStringLiteral("org.gnome.desktop.interface");
const QString animationsKey = QStringLiteral("enable-animations");

// The third value, 0, is "no preference".
constexpr uint prefersDarkScheme = 1;
constexpr uint prefersLightScheme = 2;

/// The older Read of the service wraps its answer in a second variant.
QVariant unwrapped(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

DesktopSettings& DesktopSettings::instance()
{
    static DesktopSettings settings;
    return settings;
}

DesktopSettings::DesktopSettings()
{
    bool isNumber = false;
    const int forced = qEnvironmentVariableIntValue("QUORVANE_REDUCED_MOTION", &isNumber);
    m_motionForced = isNumber;
    m_reducedMotion = isNumber && forced != 0;
}

void DesktopSettings::setPrefersDark(bool dark)
{
    if (m_prefersDark != dark) {
        m_prefersDark = dark;
        Q_EMIT prefersDarkChanged();
    }
}

void DesktopSettings::setPaletteIsDark(bool dark)
{
    m_paletteIsDark = dark;
    if (!m_hasPreference) {
        setPrefersDark(dark);
    }
}

void DesktopSettings::setReducedMotion(bool reduced)
{
    if (m_reducedMotion != reduced) {
        m_reducedMotion = reduced;
        Q_EMIT reducedMotionChanged();
    }
}

void DesktopSettings::follow()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (m_following || !bus.isConnected()) {
        return;
    }
    m_following = true;
    bus.connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask(appearanceArea, schemeKey);
    ask(appearanceArea, motionKey);
    ask(gnomeArea, animationsKey);
}

void DesktopSettings::ask(const QString& area, const QString& key)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    call << area << key;
    auto* watcher =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, area, key](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                const QDBusPendingReply<QDBusVariant> reply = *finished;
                if (!reply.isError()) {
                    take(area, key, reply.value().variant());
                }
            });
}

void DesktopSettings::settingChanged(const QString& area, const QString& key,
                                     const QDBusVariant& value)
{
    take(area, key, value.variant());
}

void DesktopSettings::take(const QString& area, const QString& key, const QVariant& value)
{
    const QVariant plain = unwrapped(value);
    if (area == appearanceArea && key == schemeKey) {
        const uint scheme = plain.toUInt();
        m_hasPreference = scheme == prefersDarkScheme || scheme == prefersLightScheme;
        setPrefersDark(m_hasPreference ? scheme == prefersDarkScheme : m_paletteIsDark);
    } else if (area == appearanceArea && key == motionKey && !m_motionForced) {
        setReducedMotion(plain.toUInt() != 0);
    } else if (area == gnomeArea && key == animationsKey && !m_motionForced) {
        setReducedMotion(!plain.toBool());
    }
}

bool reducedMotion()
{
    return DesktopSettings::instance().reducedMotion();
}

int animationDuration(int milliseconds)
{
    return reducedMotion() ? 0 : milliseconds;
}

} // namespace quorvane
