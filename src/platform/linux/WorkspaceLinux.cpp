// SPDX-License-Identifier: MIT
#include "DesktopWorkspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFile>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace quorvane {
namespace {

QUrl urlOf(const FilePath& path)
{
    return QUrl::fromEncoded(QByteArray::fromStdString(path.fileUrl()));
}

class LinuxWorkspace final : public Workspace
{
public:
    /// The file manager's own interface first (org.freedesktop.FileManager1); where nobody serves
    /// it, the parent folder is opened instead.
    void reveal(const FilePath& path) override
    {
        const QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected()) {
            open(path.parent());
            return;
        }
        QDBusMessage message = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.FileManager1"),
            QStringLiteral("/org/freedesktop/FileManager1"),
            QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
        message << QStringList{QString::fromStdString(path.fileUrl())} << QString();
        auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), &m_context);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context,
                         [this, watcher, path] {
                             const QDBusPendingReply<> reply = *watcher;
                             watcher->deleteLater();
                             if (reply.isError()) {
                                 open(path.parent());
                             }
                         });
    }

    void open(const FilePath& path) override { QDesktopServices::openUrl(urlOf(path)); }

private:
    QObject m_context;
};

} // namespace

std::unique_ptr<Workspace> makeDesktopWorkspace()
{
    return std::make_unique<LinuxWorkspace>();
}

} // namespace quorvane
