// SPDX-License-Identifier: MIT
#pragma once

#include "PortalHotKey.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QList>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace quorvane {

/// The portal's part that gives out keys, as org.freedesktop.portal.GlobalShortcuts describes it,
/// on a connection of its own. The person is the test.
class ShortcutsPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")
    Q_PROPERTY(uint version READ version)

public:
    ~ShortcutsPortal() override
    {
        m_bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(name());
    }

    uint version() const { return 1; }

    bool serve()
    {
        qDBusRegisterMetaType<PortalShortcut>();
        qDBusRegisterMetaType<QList<PortalShortcut>>();
        m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name());
        return m_bus.registerObject(path(), this,
                                    QDBusConnection::ExportAllSlots |
                                        QDBusConnection::ExportAllProperties) &&
               m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    void press(const char* token)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            path(), QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
            QStringLiteral("Activated"));
        signal << QVariant::fromValue(QDBusObjectPath(m_session)) << QStringLiteral("search")
               << qulonglong{1}
               << QVariantMap{{QStringLiteral("activation_token"), QLatin1String(token)}};
        m_bus.send(signal);
    }

    void endSession()
    {
        m_bus.send(QDBusMessage::createSignal(
            m_session, QStringLiteral("org.freedesktop.portal.Session"), QStringLiteral("Closed")));
    }

    bool isBoundAlready = false;
    bool declines = false;
    int listed = 0;
    int bound = 0;
    PortalShortcut wanted;

public Q_SLOTS:
    QDBusObjectPath CreateSession(const QVariantMap& options)
    {
        m_session = QLatin1String("/org/freedesktop/portal/desktop/session/") + sender() +
                    QLatin1Char('/') +
                    options.value(QStringLiteral("session_handle_token")).toString();
        return answer(options, 0, {{QStringLiteral("session_handle"), m_session}});
    }

    QDBusObjectPath ListShortcuts(const QDBusObjectPath& session, const QVariantMap& options)
    {
        ++listed;
        isBoundAlready = isBoundAlready && session.path() == m_session;
        return answer(options, 0, shortcuts(isBoundAlready));
    }

    QDBusObjectPath BindShortcuts(const QDBusObjectPath&,
                                  const QList<quorvane::PortalShortcut>& asked, const QString&,
                                  const QVariantMap& options)
    {
        ++bound;
        wanted = asked.value(0);
        return answer(options, declines ? 1 : 0, shortcuts(!declines));
    }

private:
    static QString name() { return QStringLiteral("portal"); }
    static QString path() { return QStringLiteral("/org/freedesktop/portal/desktop"); }

    QString sender() const
    {
        QString caller = message().service().mid(1);
        return caller.replace(QLatin1Char('.'), QLatin1Char('_'));
    }

    static QVariantMap shortcuts(bool isBound)
    {
        QList<PortalShortcut> list;
        if (isBound) {
            list.push_back(
                {QStringLiteral("search"),
                 {{QStringLiteral("trigger_description"), QStringLiteral("Meta+Space")}}});
        }
        return {{QStringLiteral("shortcuts"), QVariant::fromValue(list)}};
    }

    /// Sends the answer ahead of the handle, which is allowed.
    QDBusObjectPath answer(const QVariantMap& options, uint code, const QVariantMap& results)
    {
        const QString handle = path() + QLatin1String("/request/") + sender() + QLatin1Char('/') +
                               options.value(QStringLiteral("handle_token")).toString();
        QDBusMessage signal = QDBusMessage::createSignal(
            handle, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        signal << code << results;
        m_bus.send(signal);
        return QDBusObjectPath(handle);
    }

    QDBusConnection m_bus{QString()};
    QString m_session;
};

} // namespace quorvane
