// SPDX-License-Identifier: MIT
#include "TestMain.h"

#include <gtest/gtest.h>

#include <QString>
#include <QtGlobal>

#include <cstdio>

namespace quorvane {
namespace {

/// What the desktop lacks on which the tests run: a window manager, a sound server, a graphics
/// card for the frames of films.
bool isRemarkOnTheDesktop(const QString& message)
{
    return message.startsWith(QLatin1String("This plugin does not support ")) ||
           message.startsWith(QLatin1String("PulseAudioService: ")) ||
           message.endsWith(QLatin1String("No RHI backend. Using CPU conversion."));
}

void handle(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    const QByteArray text = message.toLocal8Bit();
    std::fprintf(stderr, "Qt: %s\n", text.constData());
    const bool isGrave = type == QtWarningMsg || type == QtCriticalMsg;
    if (isGrave && !isRemarkOnTheDesktop(message)) {
        ADD_FAILURE() << "Qt warned: " << text.constData();
    }
}

} // namespace

void failTestsOnQtWarnings()
{
    qInstallMessageHandler(handle);
}

} // namespace quorvane
