// SPDX-License-Identifier: MIT
#include "PortalHotKey.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QList>
#include <QUuid>

#include <utility>

namespace quorvane {

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");
const QString searchShortcut = QStringLiteral("search");
/// In the notation that freedesktop.org has for shortcuts.
const QString preferredTrigger = QStringLiteral("CTRL+SHIFT+space");

/// What a portal that is there takes to answer, its start included.
constexpr int answerMilliseconds = 3000;
constexpr uint confirmed = 0;

QString freshToken()
{
    return QLatin1String("quorvane_") + QUuid::createUuid().toString(QUuid::Id128);
}

QDBusMessage method(const QString& interface, const char* name)
{
    return QDBusMessage::createMethodCall(portalService, portalPath, interface,
                                          QLatin1String(name));
}

} // namespace

void PortalHotKey::install(Pressed pressed, std::function<void()> changed)
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    m_pressed = std::move(pressed);
    m_changed = std::move(changed);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    QDBusMessage version = method(QStringLiteral("org.freedesktop.DBus.Properties"), "Get");
    version << shortcutsInterface << QStringLiteral("version");
    watch(bus.asyncCall(version, answerMilliseconds), [this](const QDBusPendingCall& answer) {
        if (!answer.isError()) {
            createSession();
        }
    });
}

void PortalHotKey::createSession()
{
    request("CreateSession", {}, {{QStringLiteral("session_handle_token"), freshToken()}},
            [this](const QVariantMap& results) {
                m_session = results.value(QStringLiteral("session_handle")).toString();
                if (m_session.isEmpty()) {
                    return;
                }
                QDBusConnection bus = QDBusConnection::sessionBus();
                bus.connect(portalService, portalPath, shortcutsInterface,
                            QStringLiteral("Activated"), this,
                            SLOT(activate(QDBusObjectPath, QString, qulonglong, QVariantMap)));
                bus.connect(portalService, m_session, sessionInterface, QStringLiteral("Closed"),
                            this, SLOT(endSession()));
                setState(State::askable);
                listShortcuts();
            });
}

void PortalHotKey::listShortcuts()
{
    request("ListShortcuts", {QVariant::fromValue(QDBusObjectPath(m_session))}, {},
            [this](const QVariantMap& results) { takeShortcuts(results); });
}

void PortalHotKey::ask()
{
    if (m_session.isEmpty()) {
        return;
    }
    const PortalShortcut shortcut{
        searchShortcut,
        {{QStringLiteral("description"),
          QCoreApplication::translate("PortalHotKey", "Open the floating search")},
         {QStringLiteral("preferred_trigger"), preferredTrigger}}};
    request("BindShortcuts",
            {QVariant::fromValue(QDBusObjectPath(m_session)),
             QVariant::fromValue(QList<PortalShortcut>{shortcut}), QString()},
            {}, [this](const QVariantMap& results) { takeShortcuts(results); });
}

void PortalHotKey::takeShortcuts(const QVariantMap& results)
{
    const auto shortcuts = qdbus_cast<QList<PortalShortcut>>(
        results.value(QStringLiteral("shortcuts")).value<QDBusArgument>());
    for (const PortalShortcut& shortcut : shortcuts) {
        if (shortcut.id == searchShortcut) {
            m_trigger = shortcut.properties.value(QStringLiteral("trigger_description")).toString();
            setState(State::inForce);
        }
    }
}

void PortalHotKey::activate(const QDBusObjectPath& session, const QString& shortcut, qulonglong,
                            const QVariantMap& options)
{
    if (session.path() == m_session && shortcut == searchShortcut) {
        m_pressed(options.value(QStringLiteral("activation_token")).toString().toStdString());
    }
}

void PortalHotKey::endSession()
{
    m_session.clear();
    setState(State::none);
}

void PortalHotKey::setState(State state)
{
    m_state = state;
    m_changed();
}

void PortalHotKey::request(const char* name, const QVariantList& arguments,
                           const QVariantMap& options,
                           std::function<void(const QVariantMap&)> answered)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString token = freshToken();
    QVariantMap all = options;
    all.insert(QStringLiteral("handle_token"), token);
    m_answered = std::move(answered);
    // The answer may come before the handle does: its path is known beforehand.
    QString sender = bus.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString expected =
        portalPath + QLatin1String("/request/") + sender + QLatin1Char('/') + token;
    listen(expected);
    QDBusMessage message = method(shortcutsInterface, name);
    message.setArguments(arguments + QVariantList{all});
    watch(bus.asyncCall(message), [this, expected](const QDBusPendingCall& answer) {
        const QDBusPendingReply<QDBusObjectPath> handle = answer;
        // Unless it was answered already: older portals put requests elsewhere.
        if (!handle.isError() && m_handle == expected && handle.value().path() != expected) {
            listen(handle.value().path());
        }
    });
}

void PortalHotKey::listen(const QString& handle)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString signal = QStringLiteral("Response");
    if (!m_handle.isEmpty()) {
        bus.disconnect(portalService, m_handle, requestInterface, signal, this,
                       SLOT(respond(uint, QVariantMap)));
    }
    m_handle = handle;
    bus.connect(portalService, handle, requestInterface, signal, this,
                SLOT(respond(uint, QVariantMap)));
}

void PortalHotKey::respond(uint answer, const QVariantMap& results)
{
    m_handle.clear();
    const auto answered = std::exchange(m_answered, nullptr);
    if (answer == confirmed && answered) {
        answered(results);
    }
}

void PortalHotKey::watch(const QDBusPendingCall& call,
                         std::function<void(const QDBusPendingCall&)> answered)
{
    auto* const watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [watcher, answered = std::move(answered)] {
                watcher->deleteLater();
                answered(*watcher);
            });
}

} // namespace quorvane
