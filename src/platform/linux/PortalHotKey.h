// SPDX-License-Identifier: MIT
#pragma once

#include "GlobalHotKey.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>

namespace quorvane {

/// A key as the portal has it: (sa{sv}).
struct PortalShortcut
{
    QString id;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut);

/// The key as the desktop's portal gives it out (org.freedesktop.portal.GlobalShortcuts): in force
/// at once where the person has bound it before, else after ask(). Main thread.
class PortalHotKey final : public QObject, public GlobalHotKey
{
    Q_OBJECT

public:
    void install(Pressed pressed, std::function<void()> changed) override;
    State state() const override { return m_state; }
    std::string trigger() const override { return m_trigger.toStdString(); }
    void ask() override;

private Q_SLOTS:
    void respond(uint answer, const QVariantMap& results);
    void activate(const QDBusObjectPath& session, const QString& shortcut, qulonglong timestamp,
                  const QVariantMap& options);
    void endSession();

private:
    /// Calls a method that answers by a request, with its token among the options.
    void request(const char* method, const QVariantList& arguments, const QVariantMap& options,
                 std::function<void(const QVariantMap&)> answered);
    void listen(const QString& handle);
    void watch(const QDBusPendingCall& call, std::function<void(const QDBusPendingCall&)> answered);
    void createSession();
    void listShortcuts();
    void takeShortcuts(const QVariantMap& results);
    void setState(State state);

    Pressed m_pressed;
    std::function<void()> m_changed;
    State m_state = State::none;
    QString m_trigger;
    QString m_session;
    QString m_handle; ///< of the request that is under way
    std::function<void(const QVariantMap&)> m_answered;
};

} // namespace quorvane

Q_DECLARE_METATYPE(quorvane::PortalShortcut)
