// SPDX-License-Identifier: MIT
#include "UserFolders.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QString>

#include <array>
#include <string>

namespace quorvane {
namespace {

/// GNOME puts screenshots into a folder of Pictures, named in the language that the desktop had
/// then (gnome-shell, js/ui/screenshot.js).
constexpr std::array<const char*, 9> screenshotFolderNames{
    "Screenshots",          "Bildschirmfotos",  "Captures d’écran",
    "Capturas de pantalla", "Capturas de tela", "Schermate",
    "Schermafdrukken",      "Skärmbilder",      "Zrzuty ekranu"};

std::optional<FilePath> standardFolder(QStandardPaths::StandardLocation location)
{
    const QByteArray path = QFile::encodeName(QStandardPaths::writableLocation(location));
    return path.isEmpty() ? std::nullopt : std::optional(FilePath(path.toStdString()));
}

std::optional<FilePath> screenshotFolder()
{
    const std::optional<FilePath> pictures = standardFolder(QStandardPaths::PicturesLocation);
    for (const char* const name : screenshotFolderNames) {
        const FilePath folder = pictures ? pictures->appending(name) : FilePath();
        if (QFileInfo(QFile::decodeName(folder.bytes().c_str())).isDir()) {
            return folder;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<FilePath> userFolder(UserFolder folder)
{
    switch (folder) {
    case UserFolder::downloads:
        return standardFolder(QStandardPaths::DownloadLocation);
    case UserFolder::desktop:
        return standardFolder(QStandardPaths::DesktopLocation);
    case UserFolder::documents:
        return standardFolder(QStandardPaths::DocumentsLocation);
    case UserFolder::screenshots:
        break;
    }
    return screenshotFolder();
}

} // namespace quorvane
