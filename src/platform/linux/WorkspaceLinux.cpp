// SPDX-License-Identifier: MIT
#include "DesktopWorkspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QDesktopServices>
#include <QFutureWatcher>
#include <QObject>
#include <QPromise>
#include <QString>
#include <QStringList>
#include <QThreadPool>
#include <QUrl>
#include <QVariantMap>

#include <fcntl.h>

#include <functional>
#include <memory>
#include <utility>

namespace quorvane {
namespace {

QUrl urlOf(const FilePath& path)
{
    return QUrl::fromEncoded(QByteArray::fromStdString(path.fileUrl()));
}

QDBusMessage showItems(const FilePath& path)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    message << QStringList{QString::fromStdString(path.fileUrl())} << QString();
    return message;
}

QDBusMessage openDirectory(const QDBusUnixFileDescriptor& entry)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.OpenURI"), QStringLiteral("OpenDirectory"));
    message << QString() << QVariant::fromValue(entry) << QVariantMap();
    return message;
}

/// A descriptor that stands for the entry itself without opening it; invalid when there is none.
QDBusUnixFileDescriptor descriptorOf(const FilePath& path)
{
    const int descriptor = ::open(path.bytes().c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    QDBusUnixFileDescriptor owner;
    if (descriptor >= 0) {
        owner.giveFileDescriptor(descriptor);
    }
    return owner;
}

class LinuxWorkspace final : public Workspace
{
public:
    /// The file manager's own interface first (org.freedesktop.FileManager1), then the desktop
    /// portal's (org.freedesktop.portal.OpenURI); where nobody serves either, the parent folder is
    /// opened instead.
    void reveal(const FilePath& path) override
    {
        if (path.isEmpty()) {
            return;
        }
        call(showItems(path), [this, path] { revealThroughPortal(path); });
    }

    void open(const FilePath& path) override { QDesktopServices::openUrl(urlOf(path)); }

private:
    /// The entry is looked up on a thread of Qt's pool: a volume that does not answer holds nothing
    /// else up.
    void revealThroughPortal(const FilePath& path)
    {
        auto lookedUp = std::make_shared<QPromise<QDBusUnixFileDescriptor>>();
        auto* const watcher = new QFutureWatcher<QDBusUnixFileDescriptor>(&m_context);
        QObject::connect(watcher, &QFutureWatcherBase::finished, &m_context, [this, watcher, path] {
            const QDBusUnixFileDescriptor descriptor = watcher->result();
            watcher->deleteLater();
            if (descriptor.isValid()) {
                call(openDirectory(descriptor), [this, path] { open(path.parent()); });
            } else {
                open(path.parent());
            }
        });
        watcher->setFuture(lookedUp->future());
        lookedUp->start();
        QThreadPool::globalInstance()->start([lookedUp, path] {
            lookedUp->addResult(descriptorOf(path));
            lookedUp->finish();
        });
    }

    /// Sends the message and returns; otherwise() is called when there is no bus or nobody serves
    /// it.
    void call(const QDBusMessage& message, std::function<void()> otherwise)
    {
        const QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            otherwise();
            return;
        }
        auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), &m_context);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context,
                         [watcher, otherwise = std::move(otherwise)] {
                             const QDBusPendingReply<> reply = *watcher;
                             watcher->deleteLater();
                             if (reply.isError()) {
                                 otherwise();
                             }
                         });
    }

    QObject m_context;
};

} // namespace

std::unique_ptr<Workspace> makeDesktopWorkspace()
{
    return std::make_unique<LinuxWorkspace>();
}

} // namespace quorvane
