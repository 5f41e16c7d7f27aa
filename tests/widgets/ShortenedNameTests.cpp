// SPDX-License-Identifier: MIT
#include "ShortenedName.h"

#include "Painting.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHelpEvent>
#include <QTextDocument>
#include <QToolTip>

namespace quorvane {
namespace {

class ShortenedNameTests : public testing::Test
{
protected:
    void showName(const QString& text, int width = 200)
    {
        m_name.setText(text);
        m_name.resize(width, m_name.heightForWidth(width));
        m_name.show();
    }

    int lines(int width = 200) { return m_name.heightForWidth(width) / m_lineHeight; }

    ShortenedName m_name{3, TextStyle::heading};
    int m_lineHeight = typeMeasure(TextStyle::heading).lineHeight;
};

TEST_F(ShortenedNameTests, AShortNameStandsAsItIs)
{
    showName(QStringLiteral("film.mov"));
    EXPECT_EQ(m_name.shownText(), QStringLiteral("film.mov"));
    EXPECT_EQ(lines(), 1);
    const QString words = QStringLiteral("a name of several words that takes two");
    const int width = textWidth(TextStyle::heading, words) * 7 / 10;
    showName(words, width);
    EXPECT_EQ(m_name.shownText(), words);
    EXPECT_EQ(lines(width), 2);
}

TEST_F(ShortenedNameTests, ALongNameLosesItsMiddle)
{
    const QString text =
        QStringLiteral("begin-") + QString(200, QLatin1Char('w')) + QStringLiteral("-end.mov");
    showName(text);
    EXPECT_EQ(lines(), 3);
    const QString shown = m_name.shownText();
    EXPECT_LT(shown.size(), text.size());
    EXPECT_TRUE(shown.startsWith(QStringLiteral("begin-w")));
    EXPECT_TRUE(shown.endsWith(QStringLiteral("w-end.mov")));
    EXPECT_EQ(shown.count(QChar(u'…')), 1);
    EXPECT_EQ(m_name.text(), text) << "which is read aloud";
    // As much as there is room for: of a wider one more shows.
    showName(text, 260);
    EXPECT_GT(m_name.shownText().size(), shown.size());
}

TEST_F(ShortenedNameTests, NoCharacterIsCutInTwo)
{
    QString faces;
    for (int i = 0; i < 100; ++i) {
        faces += QStringLiteral("\U0001F600");
    }
    for (int width = 150; width < 200; ++width) {
        showName(faces, width);
        const QStringList halves = m_name.shownText().split(QChar(u'…'));
        ASSERT_EQ(halves.size(), 2);
        EXPECT_EQ(halves[0].size() % 2, 0);
        EXPECT_EQ(halves[1].size() % 2, 0);
        EXPECT_TRUE(halves[0].startsWith(QStringLiteral("\U0001F600")));
    }
}

TEST_F(ShortenedNameTests, LineBreaksInANameTakeNoLines)
{
    showName(QStringLiteral("a\nb\nc\nd\ne"));
    EXPECT_EQ(lines(), 1);
    EXPECT_EQ(m_name.shownText(), QStringLiteral("a b c d e"));
}

TEST_F(ShortenedNameTests, TheTipTellsTheWholeNameAsItStands)
{
    const auto askForTip = [this] {
        QHelpEvent help(QEvent::ToolTip, QPoint(5, 5), m_name.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&m_name, &help);
    };
    const QString text = QStringLiteral("<b>") + QString(200, QLatin1Char('w'));
    showName(text);
    askForTip();
    QTextDocument shown;
    shown.setHtml(QToolTip::text());
    EXPECT_EQ(shown.toPlainText(), text);
    showName(QStringLiteral("short"));
    askForTip();
    EXPECT_TRUE(waitFor([] { return QToolTip::text().isEmpty() || !QToolTip::isVisible(); }));
}

} // namespace
} // namespace quorvane
