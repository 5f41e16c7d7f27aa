// SPDX-License-Identifier: MIT
#include "MediaLog.h"
#include "MediaPlayer.h"

#include <QCoreApplication>
#include <QGuiApplication>

/// Plays the film whose path is given, up to its first picture.
int main(int argc, char** argv)
{
    quorvane::quietMediaLog();
    const QGuiApplication application(argc, argv);
    quorvane::MediaPlayer player;
    QObject::connect(&player, &quorvane::MediaPlayer::frameReady, &application,
                     &QCoreApplication::quit);
    player.open(quorvane::FilePath(argc > 1 ? argv[1] : ""));
    return QGuiApplication::exec();
}
