// SPDX-License-Identifier: MIT
#include "DialogFolderChooser.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>

#include <utility>

namespace quorvane {
namespace {

/// The window that the chooser belongs to: the active one, else the first that is on show.
QWidget* hostWindow()
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

} // namespace

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
