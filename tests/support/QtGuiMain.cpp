// SPDX-License-Identifier: MIT
#include "TestMain.h"

#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    quorvane::failTestsOnQtWarnings();
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
