// SPDX-License-Identifier: MIT
#include "DesktopFolderChooser.h"

#include "ChooserPortal.h"
#include "DialogFolderChooser.h"
#include "DiskTree.h"
#include "SessionBus.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDirIterator>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QStandardPaths>
#include <QTimer>

#include <memory>
#include <vector>

namespace quorvane {
namespace {

constexpr uint confirmed = 0;
constexpr uint cancelled = 1;
constexpr uint failed = 2;

QFileDialog* openDialog()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* const window : windows) {
        auto* const dialog = qobject_cast<QFileDialog*>(window);
        if (dialog != nullptr && dialog->isVisible()) {
            return dialog;
        }
    }
    return nullptr;
}

class FolderChooserTests : public testing::Test
{
protected:
    void SetUp() override { m_disk.folder("chosen %41\xff"); }

    void TearDown() override
    {
        m_chooser.reset();
        if (QFileDialog* const dialog = openDialog()) {
            delete dialog;
        }
        m_portal.bus = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(m_busName);
    }

    /// False without a session bus.
    bool servePortal()
    {
        m_portal.bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_busName);
        return standsOnABus(
            m_portal.bus.isConnected() &&
            m_portal.bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")) &&
            m_portal.bus.registerObject(
                QStringLiteral("/org/freedesktop/portal/desktop"), &m_portal,
                QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties));
    }

    void choose()
    {
        m_chooser->chooseFolder(QStringLiteral("Scan"), QStringLiteral("Choose a folder"),
                                [this](const FilePath& folder) { m_chosen.push_back(folder); });
    }

    /// The address of the folder as portals give it.
    QStringList chosenAddress() const
    {
        return {QString::fromStdString(m_disk.path("chosen %41\xff").fileUrl())};
    }

    DiskTree m_disk;
    ChooserPortal m_portal;
    QString m_busName = QStringLiteral("quorvane-chooser-test");
    std::vector<FilePath> m_chosen;
    std::unique_ptr<FolderChooser> m_chooser = makeDesktopFolderChooser();
};

TEST_F(FolderChooserTests, AsksThePortalForOneFolder)
{
    if (!servePortal()) {
        GTEST_SKIP() << "no session bus";
    }
    choose();
    ASSERT_TRUE(waitFor([this] { return m_portal.calls > 0; }));
    EXPECT_EQ(m_portal.title, QStringLiteral("Choose a folder"));
    EXPECT_EQ(m_portal.options.value(QStringLiteral("accept_label")), QStringLiteral("Scan"));
    EXPECT_EQ(m_portal.options.value(QStringLiteral("directory")), true);
    EXPECT_EQ(m_portal.options.value(QStringLiteral("multiple")), false);
    EXPECT_EQ(m_portal.options.value(QStringLiteral("modal")), true);
    m_portal.respond(confirmed, chosenAddress());
    ASSERT_TRUE(waitFor([this] { return !m_chosen.empty(); }));
    EXPECT_EQ(m_chosen, std::vector<FilePath>{m_disk.path("chosen %41\xff")});
    EXPECT_EQ(openDialog(), nullptr);
}

TEST_F(FolderChooserTests, HearsAPortalThatNamesTheRequestItself)
{
    m_portal.ownHandle = QStringLiteral("/org/freedesktop/portal/desktop/request/old");
    if (!servePortal()) {
        GTEST_SKIP() << "no session bus";
    }
    choose();
    ASSERT_TRUE(waitFor([this] { return m_portal.calls > 0; }));
    // Until the chooser has heard of the name, the answer goes past it.
    EXPECT_TRUE(waitFor([this] {
        m_portal.respond(confirmed, chosenAddress());
        return !m_chosen.empty();
    }));
}

TEST_F(FolderChooserTests, ACancelledPortalChoosesNothingAndShowsNothingElse)
{
    if (!servePortal()) {
        GTEST_SKIP() << "no session bus";
    }
    choose();
    ASSERT_TRUE(waitFor([this] { return m_portal.calls == 1; }));
    m_portal.respond(cancelled);
    // The next one comes after it on the same road.
    choose();
    ASSERT_TRUE(waitFor([this] { return m_portal.calls == 2; }));
    m_portal.respond(confirmed, chosenAddress());
    ASSERT_TRUE(waitFor([this] { return !m_chosen.empty(); }));
    EXPECT_EQ(m_chosen.size(), 1U);
    EXPECT_EQ(openDialog(), nullptr);
}

TEST_F(FolderChooserTests, APortalThatFailsLeavesTheChoiceToTheToolkit)
{
    if (!servePortal()) {
        GTEST_SKIP() << "no session bus";
    }
    choose();
    ASSERT_TRUE(waitFor([this] { return m_portal.calls == 1; }));
    m_portal.respond(failed);
    EXPECT_TRUE(waitFor([] { return openDialog() != nullptr; }));
}

TEST_F(FolderChooserTests, APortalThatRefusesLeavesTheChoiceToTheToolkit)
{
    m_portal.refuses = true;
    if (!servePortal()) {
        GTEST_SKIP() << "no session bus";
    }
    choose();
    EXPECT_TRUE(waitFor([] { return openDialog() != nullptr; }));
}

TEST_F(FolderChooserTests, APortalThatKnowsNoFoldersIsNotAsked)
{
    m_portal.versionOnOffer = 2;
    if (!servePortal()) {
        GTEST_SKIP() << "no session bus";
    }
    choose();
    EXPECT_TRUE(waitFor([] { return openDialog() != nullptr; }));
    EXPECT_EQ(m_portal.calls, 0);
}

TEST_F(FolderChooserTests, MayGoWhileThePortalAsks)
{
    if (!servePortal()) {
        GTEST_SKIP() << "no session bus";
    }
    choose();
    ASSERT_TRUE(waitFor([this] { return m_portal.calls == 1; }));
    m_chooser.reset();
    m_portal.respond(confirmed, chosenAddress());
    m_chooser = makeDesktopFolderChooser();
    choose();
    ASSERT_TRUE(waitFor([this] { return m_portal.calls == 2; }));
    EXPECT_TRUE(m_chosen.empty());
}

/// With a bus and without one.
TEST_F(FolderChooserTests, WithoutAPortalTheToolkitAsks)
{
    choose();
    ASSERT_TRUE(waitFor([] { return openDialog() != nullptr; }));
    QFileDialog* const dialog = openDialog();
    EXPECT_EQ(dialog->fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(dialog->testOption(QFileDialog::ShowDirsOnly));
    EXPECT_EQ(dialog->labelText(QFileDialog::Accept), QStringLiteral("Scan"));
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Choose a folder"));
}

TEST_F(FolderChooserTests, WhatTheToolkitsDialogConfirmsIsChosen)
{
    m_disk.folder("plain");
    const QString folder = m_disk.path("plain").displayText();
    choose();
    ASSERT_TRUE(waitFor([] { return openDialog() != nullptr; }));
    QPointer<QFileDialog> dialog = openDialog();
    auto* const name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(name, nullptr);
    name->setText(folder);
    // From the event loop, as a click comes: only then does the dialog go by itself, and that is
    // when the toolkit writes its settings.
    QTimer::singleShot(0, dialog, [&dialog] { static_cast<QDialog*>(dialog.data())->accept(); });
    EXPECT_TRUE(waitFor([&dialog] { return dialog.isNull(); }));
    EXPECT_EQ(m_chosen, std::vector<FilePath>{m_disk.path("plain")});
    QDirIterator files(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
                       QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_FALSE(file.fileName().contains(QLatin1String("QtProject")));
        EXPECT_FALSE(file.readAll().contains(m_disk.root().bytes().c_str()))
            << qPrintable(file.fileName());
    }
}

TEST_F(FolderChooserTests, ACancelledDialogChoosesNothing)
{
    choose();
    ASSERT_TRUE(waitFor([] { return openDialog() != nullptr; }));
    QPointer<QFileDialog> dialog = openDialog();
    QTimer::singleShot(0, dialog, &QDialog::reject);
    EXPECT_TRUE(waitFor([&dialog] { return dialog.isNull(); }));
    EXPECT_TRUE(m_chosen.empty());
}

} // namespace
} // namespace quorvane
