// SPDX-License-Identifier: MIT
#include "TabularLabel.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

int widthOf(const char* text)
{
    TabularLabel label(TextStyle::counter);
    label.setText(QString::fromUtf8(text));
    return label.sizeHint().width();
}

TEST(TabularLabel, FiguresAreAllAsWide)
{
    EXPECT_EQ(widthOf("111.1 GB"), widthOf("888.8 GB"));
    EXPECT_EQ(widthOf("41,208"), widthOf("11,111"));
}

TEST(TabularLabel, AFurtherFigureNeedsMoreRoom)
{
    EXPECT_GT(widthOf("1000"), widthOf("999"));
}

TEST(TabularLabel, TellsItsTextAsAnyLabel)
{
    TabularLabel label(TextStyle::figure);
    label.setText(QStringLiteral("7"));
    EXPECT_EQ(label.text(), QStringLiteral("7"));
    EXPECT_EQ(label.sizeHint().height(), typeMeasure(TextStyle::figure).lineHeight);
}

} // namespace
} // namespace quorvane
