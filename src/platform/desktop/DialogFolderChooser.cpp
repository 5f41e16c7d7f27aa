// SPDX-License-Identifier: MIT
#include "DialogFolderChooser.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QSettings>

#include <utility>

namespace quorvane {
DialogFolderChooser::DialogFolderChooser()
{
    // No folder can be made below a device, so nothing is read or written. The program's own
    // preferences are no QSettings.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

QWidget* DialogFolderChooser::hostWindow()
{
    if (QWidget* const active = QApplication::activeWindow()) {
        return active;
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* const window : windows) {
        if (window->isVisible() && window->isWindow()) {
            return window;
        }
    }
    return nullptr;
}

void DialogFolderChooser::chooseFolder(const QString& prompt, const QString& message,
                                       std::function<void(const FilePath&)> chosen)
{
    QWidget* const host = hostWindow();
    auto* const dialog = new QFileDialog(host, message, QDir::homePath());
    dialog->setObjectName(QStringLiteral("folderChooser"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, prompt);
    dialog->setWindowModality(host != nullptr ? Qt::WindowModal : Qt::ApplicationModal);
    QObject::connect(dialog, &QFileDialog::fileSelected, dialog,
                     [chosen = std::move(chosen)](const QString& folder) {
                         if (!folder.isEmpty()) {
                             chosen(FilePath(QFile::encodeName(folder).toStdString()));
                         }
                     });
    dialog->open();
}

} // namespace quorvane
