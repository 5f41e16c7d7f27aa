// SPDX-License-Identifier: MIT
#include "PathText.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

TEST(PathTextTests, ShowsAPathWhole)
{
    PathText text;
    text.setPath(QStringLiteral("/home/mara/Movies"));
    EXPECT_EQ(text.toPlainText(), QStringLiteral("/home/mara/Movies"));
}

TEST(PathTextTests, ShowsBothEndsOfAPathOfMegabytes)
{
    PathText text;
    const QString path =
        QStringLiteral("/first") + QString(4'000'000, QLatin1Char('x')) + QStringLiteral("/last");
    text.setPath(path);
    const QString shown = text.toPlainText();
    EXPECT_EQ(shown.size(), 4097);
    EXPECT_TRUE(shown.startsWith(QStringLiteral("/first")));
    EXPECT_TRUE(shown.endsWith(QStringLiteral("/last")));
    EXPECT_EQ(shown[2048], QChar(0x2026));
}

} // namespace
} // namespace quorvane
