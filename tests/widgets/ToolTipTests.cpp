// SPDX-License-Identifier: MIT
#include "ToolTip.h"

#include "WidgetsFixture.h"

#include <QLabel>
#include <QTextDocument>
#include <QToolTip>

namespace quorvane {
namespace {

class ToolTips : public WidgetsTest
{};

/// What a label that guesses the format of its text shows of it.
QString shownOf(const QString& tip)
{
    if (!Qt::mightBeRichText(tip)) {
        return tip;
    }
    QTextDocument document;
    document.setHtml(tip);
    return document.toPlainText();
}

TEST_F(ToolTips, AFileNameIsShownAsItStands)
{
    for (const char* const name : {"plain.txt", "<h1>html & name.txt", "/a/<img src='/dev/zero'>/b",
                                   "a &lt; b", "1 < 2", "<!doctype html>", "?xml"}) {
        const QString text = QString::fromLatin1(name);
        EXPECT_EQ(shownOf(plainToolTip(text)), text);
    }
}

TEST_F(ToolTips, OfATextThatNoScreenHoldsTheEndsAreShown)
{
    const QString start = QString(1500, u'a');
    const QString end = QString(1500, u'<');
    EXPECT_EQ(shownOf(plainToolTip(start % end)), start % end);
    EXPECT_EQ(shownOf(plainToolTip(start % QString(1'000'000, u'b') % end)), start % u'…' % end);
}

TEST_F(ToolTips, TheTipOnScreenIsEscaped)
{
    QWidget window;
    window.show();
    showPlainToolTip(window.mapToGlobal(QPoint(1, 1)), QStringLiteral("<b>bold</b>"), &window);
    EXPECT_EQ(shownOf(QToolTip::text()), QStringLiteral("<b>bold</b>"));
    QToolTip::hideText();
}

} // namespace
} // namespace quorvane
