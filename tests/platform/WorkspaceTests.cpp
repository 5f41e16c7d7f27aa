// SPDX-License-Identifier: MIT
#include "DesktopWorkspace.h"

#include "DesktopServices.h"
#include "DiskTree.h"
#include "SessionBus.h"
#include "TerminationSignals.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QStringList>
#include <QTimer>

#include <sys/stat.h>

#include <csignal>
#include <memory>

namespace quorvane {
namespace {

/// An own connection to the session bus, on which services of the desktop are played.
class WorkspaceTests : public testing::Test
{
protected:
    void SetUp() override { m_disk.file("folder/a%41 \xff.txt", 1); }

    void TearDown() override
    {
        m_bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(m_busName);
    }

    /// False without a session bus.
    bool serve(const char* service, const char* path, QObject& object)
    {
        m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_busName);
        return standsOnABus(
            m_bus.isConnected() && m_bus.registerService(QLatin1String(service)) &&
            m_bus.registerObject(QLatin1String(path), &object, QDBusConnection::ExportAllSlots));
    }

    bool serve(FileManager& manager)
    {
        return serve("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1", manager);
    }

    bool serve(Portal& portal)
    {
        return serve("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", portal);
    }

    FilePath entry() const { return m_disk.path("folder/a%41 \xff.txt"); }
    QByteArray addressOf(const char* escaped) const
    {
        return QByteArray::fromStdString(m_disk.path("folder").fileUrl()) + escaped;
    }

    DiskTree m_disk;
    Opener m_opener;
    QString m_busName = QStringLiteral("quorvane-test");
    QDBusConnection m_bus{QString()};
    std::unique_ptr<Workspace> m_workspace = makeDesktopWorkspace();
};

TEST_F(WorkspaceTests, OpensAnEntryByItsBytes)
{
    m_workspace->open(entry());
    ASSERT_EQ(m_opener.opened.size(), 1);
    EXPECT_EQ(m_opener.opened.front(), addressOf("/a%2541%20%FF.txt"));
}

TEST_F(WorkspaceTests, RevealsInTheFileManager)
{
    FileManager manager;
    if (!serve(manager)) {
        GTEST_SKIP() << "no session bus";
    }
    m_workspace->reveal(entry());
    ASSERT_TRUE(waitFor([&] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown, QStringList{QString::fromLatin1(addressOf("/a%2541%20%FF.txt"))});
    EXPECT_TRUE(m_opener.opened.isEmpty());
}

TEST_F(WorkspaceTests, RevealsThroughThePortalWhereNoFileManagerAnswers)
{
    Portal portal;
    if (!serve(portal)) {
        GTEST_SKIP() << "no session bus";
    }
    m_workspace->reveal(entry());
    ASSERT_TRUE(waitFor([&] { return portal.calls > 0; }));
    struct stat expected = {};
    ASSERT_EQ(::lstat(entry().bytes().c_str(), &expected), 0);
    EXPECT_EQ(portal.entry.st_ino, expected.st_ino);
    EXPECT_EQ(portal.entry.st_dev, expected.st_dev);
    EXPECT_TRUE(m_opener.opened.isEmpty());
}

/// With a bus and without one.
TEST_F(WorkspaceTests, OpensTheFolderWhereNobodyAnswers)
{
    m_workspace->reveal(entry());
    ASSERT_TRUE(waitFor([&] { return !m_opener.opened.isEmpty(); }));
    EXPECT_EQ(m_opener.opened, QList<QByteArray>{addressOf("")});
}

TEST_F(WorkspaceTests, WhatIsGoneIsLookedForInItsFolder)
{
    m_workspace->reveal(m_disk.path("folder/gone"));
    ASSERT_TRUE(waitFor([&] { return !m_opener.opened.isEmpty(); }));
    EXPECT_EQ(m_opener.opened, QList<QByteArray>{addressOf("")});
}

TEST_F(WorkspaceTests, AnEmptyPathRevealsNothing)
{
    m_workspace->reveal(FilePath());
    EXPECT_TRUE(m_opener.opened.isEmpty());
}

TEST_F(WorkspaceTests, MayGoWhileItWaitsForAnAnswer)
{
    if (!standsOnABus(QDBusConnection::sessionBus().isConnected())) {
        GTEST_SKIP() << "no session bus";
    }
    m_disk.file("later/b", 1);
    m_workspace->reveal(entry());
    m_workspace.reset();
    // The answers to a later question come after those to the first, on the same connection.
    m_workspace = makeDesktopWorkspace();
    m_workspace->reveal(m_disk.path("later/b"));
    ASSERT_TRUE(waitFor([&] { return !m_opener.opened.isEmpty(); }));
    EXPECT_EQ(m_opener.opened,
              QList<QByteArray>{QByteArray::fromStdString(m_disk.path("later").fileUrl())});
}

TEST(TerminationSignalsTests, ASignalEndsTheEventLoopAsAQuitDoes)
{
    const TerminationSignals signals;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        QTimer::singleShot(0, qApp, [signal] { std::raise(signal); });
        EXPECT_EQ(QCoreApplication::exec(), 0) << signal;
    }
}

} // namespace
} // namespace quorvane
