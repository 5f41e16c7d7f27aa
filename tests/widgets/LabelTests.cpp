// SPDX-License-Identifier: MIT
#include "Label.h"

#include "Painting.h"
#include "WidgetsFixture.h"

#include <QAccessible>

namespace quorvane {
namespace {

class Labels : public WidgetsTest
{};

TEST_F(Labels, OneLineHasTheHeightOfItsStyle)
{
    const Label body(QStringLiteral("Text"), TextStyle::body);
    const Label title(QStringLiteral("Text"), TextStyle::title);
    EXPECT_EQ(body.sizeHint().height(), 18);
    EXPECT_EQ(title.sizeHint().height(), 26);
}

TEST_F(Labels, WrappedLinesStandOneLineHeightApart)
{
    Label label(QStringLiteral("one two three four five six seven eight nine ten"));
    label.setWordWrap(true);
    const int single = textWidth(TextStyle::body, label.text()) + 10;
    EXPECT_EQ(label.heightForWidth(single), 18);
    const int half = label.heightForWidth(single / 2 + 20);
    EXPECT_EQ(half, 36);
    EXPECT_EQ(label.heightForWidth(single / 4) % 18, 0);
    EXPECT_GT(label.heightForWidth(single / 4), half);
}

TEST_F(Labels, LineBreaksCountWithWordWrap)
{
    Label label(QStringLiteral("one\ntwo\nthree"));
    label.setWordWrap(true);
    EXPECT_EQ(label.heightForWidth(400), 3 * 18);
}

TEST_F(Labels, ElisionKeepsWhatFitsAndTellsIt)
{
    ElidedLabel label(QStringLiteral("/home/mara/Documents/Video drafts/glacier-lagoon.mov"),
                      Qt::ElideMiddle);
    label.resize(label.sizeHint());
    EXPECT_FALSE(label.isElided());
    label.resize(label.sizeHint().width() / 2, 18);
    EXPECT_TRUE(label.isElided());
    const QString shown = label.shownText();
    EXPECT_TRUE(shown.startsWith(QStringLiteral("/home")));
    EXPECT_TRUE(shown.endsWith(QStringLiteral(".mov")));
    EXPECT_LE(textWidth(TextStyle::body, shown), label.width());

    label.setElideMode(Qt::ElideRight);
    EXPECT_TRUE(label.shownText().endsWith(u'…'));
}

TEST_F(Labels, ElidedTextStaysWholeForAssistiveTechnology)
{
    ElidedLabel label(QStringLiteral("A name that is much too long for its place"));
    label.resize(40, 18);
    ASSERT_TRUE(label.isElided());
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&label);
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->text(QAccessible::Name), label.text());
}

TEST_F(Labels, NumberCellKeepsItsWidth)
{
    NumberCell cell(QStringLiteral("888.8 GB"));
    const int width = cell.sizeHint().width();
    for (const char* const text : {"1 B", "11.1 KB", "444.4 GB", ""}) {
        cell.setText(QString::fromLatin1(text));
        EXPECT_EQ(cell.sizeHint().width(), width) << text;
        EXPECT_GE(width, textWidth(TextStyle::strong, cell.text())) << text;
    }
}

TEST_F(Labels, ColourFollowsTheRoleAndTheState)
{
    Label label(QStringLiteral("Text"), TextStyle::body, ThemeColor::text3);
    EXPECT_EQ(label.palette().color(QPalette::Active, QPalette::WindowText),
              themeColor(ThemeColor::text3));
    EXPECT_EQ(label.palette().color(QPalette::Disabled, QPalette::WindowText),
              themeColor(ThemeColor::textDisabled));
    label.setTextColor(ThemeColor::redText);
    EXPECT_EQ(label.palette().color(QPalette::Active, QPalette::WindowText),
              themeColor(ThemeColor::redText));
}

} // namespace
} // namespace quorvane
