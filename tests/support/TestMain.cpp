// SPDX-License-Identifier: MIT
#include "TestMain.h"

#include <gtest/gtest.h>

#include <QString>
#include <QtGlobal>

#include <cstdio>

namespace quorvane {
namespace {

bool isPluginRemark(const QString& message)
{
    return message.startsWith(QLatin1String("This plugin does not support "));
}

void handle(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    const QByteArray text = message.toLocal8Bit();
    std::fprintf(stderr, "Qt: %s\n", text.constData());
    const bool isGrave = type == QtWarningMsg || type == QtCriticalMsg;
    if (isGrave && !isPluginRemark(message)) {
        ADD_FAILURE() << "Qt warned: " << text.constData();
    }
}

} // namespace

void failTestsOnQtWarnings()
{
    qInstallMessageHandler(handle);
}

} // namespace quorvane
