// SPDX-License-Identifier: MIT
#include "NodeIcon.h"

#include <QMimeDatabase>
#include <QStringList>

namespace quorvane {
namespace {

QStringList iconNamesOf(const FileNode& node)
{
    if (node.isDirectory()) {
        return {QStringLiteral("folder"), QStringLiteral("inode-directory")};
    }
    if (node.isSymbolicLink()) {
        return {QStringLiteral("inode-symlink"), QStringLiteral("emblem-symbolic-link")};
    }
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(node.displayName(), QMimeDatabase::MatchExtension);
    return {type.iconName(), type.genericIconName(), QStringLiteral("text-x-generic")};
}

} // namespace

QIcon themeIconOf(const FileNode& node)
{
    // The fallback theme holds what applications have installed, not the desktop's own.
    if (QIcon::themeName().isEmpty() || QIcon::themeName() == QLatin1String("hicolor")) {
        return {};
    }
    for (const QString& name : iconNamesOf(node)) {
        if (QIcon::hasThemeIcon(name)) {
            return QIcon::fromTheme(name);
        }
    }
    return {};
}

} // namespace quorvane
