// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace quorvane {

/// The portal's part that lets a person choose files, as org.freedesktop.portal.FileChooser
/// describes it. The person is the test.
class ChooserPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")
    Q_PROPERTY(uint version READ version)

public:
    uint version() const { return versionOnOffer; }

    /// Answers the request that came last, as org.freedesktop.portal.Request does.
    void respond(uint answer, const QStringList& addresses = {})
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            handle, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        QVariantMap results;
        if (!addresses.isEmpty()) {
            results.insert(QStringLiteral("uris"), addresses);
        }
        signal << answer << results;
        bus.send(signal);
    }

    QDBusConnection bus{QString()};
    uint versionOnOffer = 3;
    bool refuses = false;
    /// Where older portals put a request, instead of the place that its token names.
    QString ownHandle;

    int calls = 0;
    QString handle;
    QString title;
    QVariantMap options;

public Q_SLOTS:
    QDBusObjectPath OpenFile(const QString&, const QString& wantedTitle,
                             const QVariantMap& wantedOptions)
    {
        if (refuses) {
            sendErrorReply(QDBusError::Failed, QStringLiteral("no chooser can be shown"));
            return QDBusObjectPath(QStringLiteral("/"));
        }
        ++calls;
        title = wantedTitle;
        options = wantedOptions;
        QString sender = message().service().mid(1);
        sender.replace(QLatin1Char('.'), QLatin1Char('_'));
        handle = ownHandle.isEmpty()
                     ? QLatin1String("/org/freedesktop/portal/desktop/request/") + sender +
                           QLatin1Char('/') +
                           wantedOptions.value(QStringLiteral("handle_token")).toString()
                     : ownHandle;
        return QDBusObjectPath(handle);
    }
};

} // namespace quorvane
