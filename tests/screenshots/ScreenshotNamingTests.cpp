// SPDX-License-Identifier: MIT
#include "ScreenshotNaming.h"

#include "Text.h"

#include <gtest/gtest.h>

#include <QTimeZone>

#include <string>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

const QTimeZone utc = QTimeZone::utc();

int score(const char* line)
{
    return ScreenshotNaming::lineScore(QString::fromUtf8(line));
}

std::string nameFor(std::string_view file, const std::vector<QString>& lines,
                    std::optional<std::int64_t> created = std::nullopt)
{
    return ScreenshotNaming::proposeName(file, lines, created, utc);
}

TEST(ScreenshotNames, AreKnownInSeveralLanguages)
{
    for (const char* const name :
         {"Screenshot 1.png", "my SCREEN SHOT.png", "Bildschirmfoto 2024.png",
          "Captura de Tela 3.png", "screencapture-x.png", "Screen Recording 1.gif",
          "Capture d’écran.png", "A screenshot.png"}) {
        EXPECT_TRUE(ScreenshotNaming::matchesScreenshotName(name)) << name;
    }
    for (const char* const name : {"capture.png", "my capture 1.png", "a screen recording.gif",
                                   "holiday.screenshot", "photo.png", ""}) {
        EXPECT_FALSE(ScreenshotNaming::matchesScreenshotName(name)) << name;
    }
}

TEST(ScreenshotNames, AnEnDashBetweenBlanksMarksWhatHasAName)
{
    EXPECT_TRUE(ScreenshotNaming::alreadyRenamed("Screenshot – Budget.png"));
    EXPECT_FALSE(ScreenshotNaming::alreadyRenamed("Screenshot - Budget.png"));
    EXPECT_FALSE(ScreenshotNaming::alreadyRenamed("Screenshot–Budget.png"));
}

TEST(ScreenshotNames, PicturesOfSevenKindsAreLookedAt)
{
    for (const char* const name :
         {"a.png", "a.JPG", "a.jpeg", "a.HeiC", "a.heif", "a.tiff", "a.gif"}) {
        EXPECT_TRUE(ScreenshotNaming::isImageName(name)) << name;
    }
    for (const char* const name : {"a.tif", "a.webp", "png", ".png", "a.png.", "a"}) {
        EXPECT_FALSE(ScreenshotNaming::isImageName(name)) << name;
    }
}

TEST(LineScore, RefusesWhatIsNoTitle)
{
    EXPECT_EQ(score("abc"), -50);
    EXPECT_EQ(score("  ab \n"), -50);
    EXPECT_EQ(score("1234567"), -90);
    EXPECT_EQ(score("--- ---"), -90);
    EXPECT_EQ(score("ⅠⅡ ⅢⅣ"), -95);
    EXPECT_EQ(score("see https://example.org/page now"), -80);
    EXPECT_EQ(score("www.example.org or more words"), -80);
    EXPECT_EQ(score("12:45 Meeting notes today"), -75);
    EXPECT_GT(score("Meeting at 12:45 today"), 0);
}

TEST(LineScore, CountsRealWordsAndChromeWords)
{
    EXPECT_EQ(score("Cancel OK Done"), -85);
    EXPECT_EQ(score("Quarterly"), -30);
    EXPECT_EQ(score("Open report"), -30);
    EXPECT_EQ(score("Quarterly report"), 41);
    EXPECT_EQ(score("Open quarterly report"), 31);
    EXPECT_EQ(score("(Quarterly) report!"), 41);
    EXPECT_EQ(score("quarterly 2024 report"), 41);
    // Thirteen characters are a long word, twelve are none.
    EXPECT_EQ(score("abcdefghijklm report"), 43);
    EXPECT_EQ(score("abcdefghijkl report"), 41);
}

TEST(LineScore, LikesTwoToFiveWordsAndRefusesProse)
{
    EXPECT_EQ(score("one two three four five"), 5 * 8 + 25);
    EXPECT_EQ(score("one two three four five six"), 6 * 8);
    EXPECT_EQ(score("a b c d e f g h i j"), 10 * 8);
    EXPECT_EQ(score("a b c d e f g h i j k"), 11 * 8 - 40);
    EXPECT_EQ(score("a b c d e f g h i j k l m n o p"), 16 * 8 - 40);
    EXPECT_EQ(score("a b c d e f g h i j k l m n o p q"), 17 * 8 - 40 - 15);
    // Words that do not count are words all the same.
    EXPECT_EQ(score("a b c d e f g h i j k 1 2 3 4 5 6"), 11 * 8 - 40 - 15);
}

TEST(BestSlug, TheFirstOfEqualLinesWins)
{
    EXPECT_EQ(ScreenshotNaming::bestSlug(
                  {QStringLiteral("quarterly report"), QStringLiteral("monthly budget")}),
              QStringLiteral("Quarterly Report"));
    EXPECT_EQ(ScreenshotNaming::bestSlug(
                  {QStringLiteral("quarterly report"), QStringLiteral("monthly budget plan")}),
              QStringLiteral("Monthly Budget Plan"));
    EXPECT_EQ(ScreenshotNaming::bestSlug({QStringLiteral("Quarterly")}), std::nullopt);
    EXPECT_EQ(ScreenshotNaming::bestSlug({}), std::nullopt);
}

TEST(TitleCase, RaisesTheFirstLetterAlone)
{
    const auto titled = [](const char* text) {
        return ScreenshotNaming::titleCase(QString::fromUtf8(text)).toStdString();
    };
    EXPECT_EQ(titled("  the  iPhone, and:\nme "), "The IPhone And Me");
    EXPECT_EQ(titled("(hello) 3d ... !"), "(hello) 3d ... !");
    EXPECT_EQ(titled("élan straße"), "Élan Straße");
}

TEST(Sanitize, ReplacesWhatFileSystemsRefuseAndCutsAtCharacters)
{
    const auto clean = [](const char* text, int max) {
        return ScreenshotNaming::sanitize(QString::fromUtf8(text), max).toStdString();
    };
    EXPECT_EQ(clean("a/b\\c:d*e?f\"g<h>i|j", 60), "a-b-c-d-e-f-g-h-i-j");
    EXPECT_EQ(clean("  two \t\n blanks  ", 60), "two blanks");
    EXPECT_EQ(clean("..- name -..", 60), "name");
    EXPECT_EQ(clean("abc def", 4), "abc");
    EXPECT_EQ(clean("???", 60), "");
    // A family of four and e with an accent of its own are one character each.
    EXPECT_EQ(clean("👨‍👩‍👧‍👦x", 1), "👨‍👩‍👧‍👦");
    EXPECT_EQ(clean("e\u0301tude", 2), "e\u0301t");
}

TEST(CaptureDay, StandsInTheNameOrIsTheDayOfCreation)
{
    const auto day = [](std::string_view name, std::optional<std::int64_t> created,
                        const QTimeZone& zone) {
        return ScreenshotNaming::captureDay(name, created, zone).value_or(QString()).toStdString();
    };
    constexpr std::int64_t lateOnNewYearsEve = 1704064500; // 2023-12-31 23:15 UTC
    EXPECT_EQ(day("Screenshot 2024-03-05 at 10.11.12.png", lateOnNewYearsEve, utc), "2024-03-05");
    EXPECT_EQ(day("Screenshot 2024-13-45.png", lateOnNewYearsEve, utc), "2023-12-31");
    EXPECT_EQ(day("Screenshot 2023-02-29.png", lateOnNewYearsEve, utc), "2023-12-31");
    EXPECT_EQ(day("Screenshot.png", lateOnNewYearsEve, QTimeZone(3600)), "2024-01-01");
    EXPECT_EQ(day("Screenshot.png", std::nullopt, utc), "");
    EXPECT_EQ(day("Screenshot 12024-03-055.png", std::nullopt, utc), "2024-03-05");
}

TEST(ProposedName, IsDayTitleAndExtension)
{
    EXPECT_EQ(nameFor("Screenshot 2024-03-05 at 10.11.12.png",
                      {QStringLiteral("quarterly sales report")}),
              "2024-03-05_Quarterly_Sales_Report.png");
    EXPECT_EQ(nameFor("Screenshot.PNG", {QStringLiteral("quarterly report")}, 0),
              "1970-01-01_Quarterly_Report.PNG");
    EXPECT_EQ(nameFor("screenshot", {QStringLiteral("quarterly report")}), "Quarterly_Report");
}

TEST(ProposedName, IsThePresentOneWithoutATitle)
{
    EXPECT_EQ(nameFor("Screenshot 1.png", {QStringLiteral("Cancel OK Done")}), "Screenshot 1.png");
    EXPECT_EQ(nameFor("Screenshot 1.png", {}), "Screenshot 1.png");
}

TEST(ProposedName, IsNeverEmptyOfATitle)
{
    // Two words of letters, of which the first sixty characters hold none.
    const QString line = QString(60, QLatin1Char('-')) + QStringLiteral("a bb");
    ASSERT_GE(ScreenshotNaming::lineScore(line), ScreenshotNaming::minScore);
    EXPECT_EQ(nameFor("Screenshot 1.png", {line}, 0), "Screenshot 1.png");
}

TEST(ProposedName, CutsTheTitleAtSixtyCharactersOutsideDayAndExtension)
{
    const QString line = QString(58, QLatin1Char('a')) + QStringLiteral(" bcd");
    EXPECT_EQ(nameFor("Screenshot 2024-03-05.png", {line}),
              "2024-03-05_A" + std::string(57, 'a') + "_B.png");
    const QString atBlank = QString(59, QLatin1Char('a')) + QStringLiteral(" bcd");
    EXPECT_EQ(nameFor("Screenshot 2024-03-05.png", {atBlank}),
              "2024-03-05_A" + std::string(58, 'a') + ".png");
}

TEST(ProposedName, OfOneNumberedAlreadyIsThePresentOne)
{
    const std::vector<QString> lines{QStringLiteral("screenshot gallery")};
    EXPECT_EQ(nameFor("2024-03-05_Screenshot_Gallery 2.png", lines),
              "2024-03-05_Screenshot_Gallery 2.png");
    EXPECT_EQ(nameFor("2024-03-05_Screenshot_Gallery x.png", lines),
              "2024-03-05_Screenshot_Gallery.png");
}

TEST(ProposedName, KeepsExtensionsThatAreNotUtf8)
{
    EXPECT_EQ(nameFor("Screenshot.p\xffg", {QStringLiteral("quarterly report")}),
              "Quarterly_Report.p\xffg");
}

TEST(ProposedName, FitsAFileSystemWholeCharacterByCharacter)
{
    // Sixty characters of 25 bytes each.
    QString line;
    for (int i = 0; i < 60; ++i) {
        line += (i % 10 == 5) ? QStringLiteral(" ") : QString();
        line += QStringLiteral("a👨‍👩‍👧‍👦");
    }
    const std::string name = nameFor("Screenshot 2024-03-05.png", {line.left(400)});
    EXPECT_LE(name.size(), 255U);
    EXPECT_GT(name.size(), 200U);
    EXPECT_TRUE(isUtf8(name));
    EXPECT_TRUE(name.ends_with(".png"));
}

TEST(NumberedName, PutsTheNumberBeforeTheExtension)
{
    EXPECT_EQ(ScreenshotNaming::numbered("a.png", 2), "a 2.png");
    EXPECT_EQ(ScreenshotNaming::numbered("a", 13), "a 13");
    EXPECT_EQ(ScreenshotNaming::numbered(".hidden", 2), ".hidden 2");
}

TEST(NumberedName, LetsTheStemGiveWay)
{
    const std::string tight = std::string(251, 'a') + ".png";
    EXPECT_EQ(ScreenshotNaming::numbered(tight, 2), std::string(249, 'a') + " 2.png");
    const std::string accents = "x" + QString(125, QChar(0xe9)).toStdString() + ".png";
    const std::string cut = ScreenshotNaming::numbered(accents, 10);
    EXPECT_LE(cut.size(), 255U);
    EXPECT_TRUE(isUtf8(cut));
}

} // namespace
} // namespace quorvane
