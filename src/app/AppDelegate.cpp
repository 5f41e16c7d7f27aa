// SPDX-License-Identifier: MIT
#include "AppDelegate.h"

#include "AppVersion.h"
#include "BrandMark.h"
#include "QuorvaneStyle.h"

#include <QApplication>
#include <QFileOpenEvent>
#include <QIcon>
#include <QPixmap>

namespace quorvane {
namespace {

/// The sizes that desktops ask for; a picture for each stays sharp.
constexpr int iconSides[] = {16, 22, 24, 32, 48, 64, 128, 256, 512};

QIcon applicationIcon()
{
    QIcon icon;
    for (const int side : iconSides) {
        const QImage image = BrandMark::image(side);
        if (!image.isNull()) {
            icon.addPixmap(QPixmap::fromImage(image));
        }
    }
    return icon;
}

} // namespace

void AppDelegate::applicationDidFinishLaunching(QApplication& application)
{
    QApplication::setApplicationName(QStringLiteral("Quorvane"));
    QApplication::setApplicationDisplayName(QStringLiteral("Quorvane"));
    QApplication::setApplicationVersion(QLatin1String(AppVersion::string));
    QApplication::setDesktopFileName(QStringLiteral("io.github.quorvane.Quorvane"));
    QuorvaneStyle::install(application);
    QApplication::setWindowIcon(applicationIcon());
    application.installEventFilter(this);
}

bool AppDelegate::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == QCoreApplication::instance() && event->type() == QEvent::Quit) {
        Q_EMIT quitRequested();
    }
    if (event->type() != QEvent::FileOpen) {
        return QObject::eventFilter(watched, event);
    }
    const QUrl url = static_cast<QFileOpenEvent*>(event)->url();
    const FilePath folder = FilePath::fromFileUrl(url.toEncoded().toStdString());
    if (!folder.isEmpty()) {
        Q_EMIT folderHandedOver(folder);
    }
    return true;
}

} // namespace quorvane
