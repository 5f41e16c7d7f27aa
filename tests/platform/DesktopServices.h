// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QByteArray>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>

#include <sys/stat.h>

namespace quorvane {

/// Takes the addresses that are about to be opened in an application.
class Opener : public QObject
{
    Q_OBJECT

public:
    Opener() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take"); }
    ~Opener() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QByteArray> opened;

public Q_SLOTS:
    void take(const QUrl& url) { opened.append(url.toEncoded()); }
};

/// A file manager as the desktop's interface describes it.
class FileManager : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;

public Q_SLOTS:
    void ShowItems(const QStringList& addresses, const QString&) { shown += addresses; }
};

/// The portal's part that opens the folder of an entry.
class Portal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.OpenURI")

public:
    int calls = 0;
    struct stat entry = {};

public Q_SLOTS:
    QDBusObjectPath OpenDirectory(const QString&, const QDBusUnixFileDescriptor& descriptor,
                                  const QVariantMap&)
    {
        ++calls;
        EXPECT_EQ(::fstat(descriptor.fileDescriptor(), &entry), 0);
        return QDBusObjectPath(QStringLiteral("/org/freedesktop/portal/desktop/request/1"));
    }
};

} // namespace quorvane
