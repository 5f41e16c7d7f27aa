// SPDX-License-Identifier: MIT
#include "UserFolders.h"

#include "DiskTree.h"

#include <gtest/gtest.h>

#include <QByteArray>

namespace quorvane {
namespace {

/// A home folder for the length of a test.
class UserFolders : public ::testing::Test
{
protected:
    UserFolders()
    {
        qputenv("HOME", m_disk.root().bytes().c_str());
        qputenv("XDG_CONFIG_HOME", m_disk.path("config").bytes().c_str());
    }
    ~UserFolders() override
    {
        qputenv("HOME", m_home);
        qputenv("XDG_CONFIG_HOME", m_config);
    }

    const QByteArray m_home = qgetenv("HOME");
    const QByteArray m_config = qgetenv("XDG_CONFIG_HOME");
    DiskTree m_disk;
};

TEST_F(UserFolders, LieWhereTheDesktopSaysOrInTheHomeFolder)
{
    m_disk.fileWithContents("config/user-dirs.dirs", "XDG_DOWNLOAD_DIR=\"$HOME/Geladen\"\n");
    EXPECT_EQ(userFolder(UserFolder::downloads), m_disk.path("Geladen"));
    EXPECT_EQ(userFolder(UserFolder::desktop), m_disk.path("Desktop"));
    EXPECT_EQ(userFolder(UserFolder::documents), m_disk.path("Documents"));
}

TEST_F(UserFolders, TheOneForScreenshotsIsThereOnlyWhereItExists)
{
    EXPECT_EQ(userFolder(UserFolder::screenshots), std::nullopt);
    m_disk.file("Pictures/Screenshots");
    EXPECT_EQ(userFolder(UserFolder::screenshots), std::nullopt) << "a file is no folder";
    m_disk.folder("Pictures/Bildschirmfotos");
    EXPECT_EQ(userFolder(UserFolder::screenshots), m_disk.path("Pictures/Bildschirmfotos"));
}

} // namespace
} // namespace quorvane
