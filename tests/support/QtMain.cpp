// SPDX-License-Identifier: MIT
#include "TestMain.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    quorvane::failTestsOnQtWarnings();
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
