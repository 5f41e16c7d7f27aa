// SPDX-License-Identifier: MIT
#pragma once

#include "DiskTree.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QIcon>
#include <QImage>
#include <QStringList>

#include <string>

namespace quorvane {

/// A theme of the desktop as long as it lives, with plain squares for icons.
class PlainIconTheme
{
public:
    PlainIconTheme()
    {
        m_disk.fileWithContents("icons/plain/index.theme", "[Icon Theme]\nName=plain\n"
                                                           "Directories=all\n\n"
                                                           "[all]\nSize=32\nType=Fixed\n");
        m_disk.folder("icons/plain/all");
    }
    PlainIconTheme(const PlainIconTheme&) = delete;
    PlainIconTheme& operator=(const PlainIconTheme&) = delete;
    ~PlainIconTheme()
    {
        QIcon::setThemeSearchPaths(m_pathsBefore);
        QIcon::setThemeName(m_nameBefore);
    }

    /// To be called before use().
    void add(const std::string& icon, const QColor& color)
    {
        QImage square(32, 32, QImage::Format_RGB32);
        square.fill(color);
        ASSERT_TRUE(
            square.save(m_disk.path("icons/plain/all/" + icon + ".png").displayText(), "PNG"));
    }

    void use()
    {
        QIcon::setThemeSearchPaths({m_disk.path("icons").displayText()});
        QIcon::setThemeName(QStringLiteral("plain"));
    }

private:
    QStringList m_pathsBefore = QIcon::themeSearchPaths();
    QString m_nameBefore = QIcon::themeName();
    DiskTree m_disk;
};

} // namespace quorvane
