// SPDX-License-Identifier: MIT
#include "SearchQueryParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

namespace quorvane {
namespace {

using testing::ElementsAre;

const FilePath home("/Users/a");
constexpr double now = 1'700'000'000'000.0;
constexpr double dayMs = 86'400'000.0;

ParsedSearch parsed(const char* raw, const FilePath& folder = home)
{
    return SearchQueryParser::parse(QString::fromUtf8(raw), folder, now);
}

std::string text(const QString& value)
{
    return value.toStdString();
}

std::vector<std::string> termsOf(const char* raw)
{
    std::vector<std::string> terms;
    for (const QString& term : parsed(raw).terms) {
        terms.push_back(text(term));
    }
    return terms;
}

/// Each token as "start-end type".
std::vector<std::string> tokensOf(const char* raw)
{
    std::vector<std::string> tokens;
    for (const SearchToken& token : parsed(raw).tokens) {
        tokens.push_back(std::to_string(token.range.start) + "-" + std::to_string(token.range.end) +
                         " " + std::string(rawValue(token.type)));
    }
    return tokens;
}

std::string replacing(const char* word, const char* raw)
{
    return text(
        SearchQueryParser::replacingFilter(QString::fromUtf8(word), QString::fromUtf8(raw), home));
}

std::string removing(SearchTokenType category, const char* raw)
{
    return text(SearchQueryParser::removing(category, QString::fromUtf8(raw), home));
}

TEST(SearchQueryParser, TextWithoutAWordSaysNothing)
{
    for (const char* raw : {"", "   ", "\t\n", "\xE2\x80\x83"}) {
        EXPECT_TRUE(parsed(raw).tokens.empty()) << raw;
        EXPECT_TRUE(parsed(raw).terms.isEmpty()) << raw;
        EXPECT_FALSE(parsed(raw).searchable()) << raw;
    }
}

TEST(SearchQueryParser, AWordInProgressIsATermAndOffersItsCompletion)
{
    const ParsedSearch query = parsed("ima");
    EXPECT_THAT(tokensOf("ima"), ElementsAre("0-3 pendingKind"));
    EXPECT_THAT(termsOf("ima"), ElementsAre("ima"));
    ASSERT_TRUE(query.pending);
    EXPECT_EQ(text(query.pending->completion), "image");
    EXPECT_EQ(query.pending->range, (SearchRange{0, 3}));
    EXPECT_TRUE(query.searchable());
    EXPECT_FALSE(query.kind);
}

TEST(SearchQueryParser, ABlankBehindTheWordEndsTheOffer)
{
    EXPECT_THAT(tokensOf("ima "), ElementsAre("0-3 term"));
    EXPECT_FALSE(parsed("ima ").pending);
    EXPECT_FALSE(parsed("ima x").pending);
}

TEST(SearchQueryParser, OneCharacterNeverCompletes)
{
    EXPECT_THAT(tokensOf("i"), ElementsAre("0-1 term"));
    EXPECT_THAT(tokensOf("do"), ElementsAre("0-2 pendingKind"));
    EXPECT_FALSE(parsed("i").pending);
}

TEST(SearchQueryParser, ALocationInProgressHasNoFolderYet)
{
    const ParsedSearch query = parsed("down");
    EXPECT_THAT(tokensOf("down"), ElementsAre("0-4 pendingLocation"));
    ASSERT_TRUE(query.pending);
    EXPECT_THAT(text(query.pending->completion), testing::AnyOf("downloads", "download"));
    EXPECT_FALSE(query.locationPath);
    EXPECT_FALSE(query.locationLabel);
}

TEST(SearchQueryParser, PluralOfPictureIsAFolderAndItsSingularAKind)
{
    EXPECT_THAT(tokensOf("pictures"), ElementsAre("0-8 location"));
    EXPECT_EQ(parsed("picture").kind, SearchFilterKind::image);
    ASSERT_TRUE(parsed("pict").pending);
    EXPECT_EQ(text(parsed("pict").pending->completion), "picture");
    EXPECT_THAT(tokensOf("documents"), ElementsAre("0-9 location"));
    EXPECT_EQ(parsed("document").kind, SearchFilterKind::document);
}

TEST(SearchQueryParser, ASetKindLeavesTheCompletionToLocations)
{
    EXPECT_THAT(tokensOf("pdf pict"), ElementsAre("0-3 kind", "4-8 pendingLocation"));
    EXPECT_EQ(text(parsed("pdf pict").pending->completion), "pictures");
    EXPECT_THAT(tokensOf("pdf home pict"), ElementsAre("0-3 kind", "4-8 location", "9-13 term"));
}

TEST(SearchQueryParser, QuotesMakeATermOfAnyWord)
{
    EXPECT_EQ(parsed("pdf").kind, SearchFilterKind::pdf);
    EXPECT_THAT(termsOf("pdf"), ElementsAre());
    for (const char* raw : {"\"pdf\"", "\"pdf", "pdf\"", "\"\"pdf"}) {
        EXPECT_THAT(termsOf(raw), ElementsAre("pdf")) << raw;
        EXPECT_FALSE(parsed(raw).kind) << raw;
        EXPECT_FALSE(parsed(raw).pending) << raw;
    }
}

TEST(SearchQueryParser, AWordOfQuotesAloneIsATokenWithoutATerm)
{
    EXPECT_THAT(tokensOf("\"\" \""), ElementsAre("0-2 term", "3-4 term"));
    EXPECT_FALSE(parsed("\"\" \"").searchable());
}

TEST(SearchQueryParser, QuotesDoNotReachAcrossBlanks)
{
    EXPECT_THAT(tokensOf("\"foo bar\""), ElementsAre("0-4 term", "5-9 term"));
    EXPECT_THAT(termsOf("\"foo bar\""), ElementsAre("foo", "bar"));
}

TEST(SearchQueryParser, ReadsSizesInAnyCase)
{
    for (const char* raw : {">100mb", ">100MB", ">100Mb"}) {
        const std::optional<SearchSize> size = parsed(raw).size;
        ASSERT_TRUE(size) << raw;
        EXPECT_EQ(size->minBytes, 104857600) << raw;
        EXPECT_FALSE(size->maxBytes) << raw;
        EXPECT_EQ(text(size->label), ">100MB") << raw;
    }
    EXPECT_EQ(parsed(">1.5gb").size->minBytes, 1610612736);
    EXPECT_EQ(text(parsed(">1.5gb").size->label), ">1.5GB");
    EXPECT_EQ(parsed("<2tb").size->maxBytes, std::int64_t{2} << 40);
    EXPECT_EQ(parsed("<007kb").size->maxBytes, 7168);
    EXPECT_EQ(text(parsed("<007kb").size->label), "<007KB");
    EXPECT_EQ(parsed(">1.9b").size->minBytes, 1);
}

TEST(SearchQueryParser, WhatIsNoSizeIsATerm)
{
    for (const char* raw : {"=5gb", ">5", ">gb", ">.5gb", ">5.gb", ">1,5gb", ">5gbs", "x>5gb",
                            ">-5gb", ">1e3b", ">5 gb"}) {
        EXPECT_FALSE(parsed(raw).size) << raw;
    }
}

TEST(SearchQueryParser, DigitsThatAreNotReadCountAsZero)
{
    const std::optional<SearchSize> size = parsed(">\xD9\xA5gb").size;
    ASSERT_TRUE(size);
    EXPECT_EQ(size->minBytes, 0);
    EXPECT_EQ(text(size->label), ">\xD9\xA5GB");
}

TEST(SearchQueryParser, ASizeBeyond64BitsEndsTheProgram)
{
    const std::string nines(400, '9');
    for (const std::string& raw :
         {std::string(">99999999999tb"), ">" + nines + "b", std::string(">8388608tb")}) {
        EXPECT_DEATH(parsed(raw.c_str()), "overflows in SearchQueryParser.parse");
    }
    EXPECT_EQ(parsed(">8388607tb").size->minBytes, std::int64_t{8388607} << 40);
    EXPECT_EQ(parsed((">0." + std::string(400, '0') + "1tb").c_str()).size->minBytes, 0);
    // The first word has the slot; the second is a term, whose size nobody computes.
    EXPECT_EQ(parsed(">1b >99999999999tb").size->minBytes, 1);
}

TEST(SearchQueryParser, ASecondWordOfACategoryIsATerm)
{
    const ParsedSearch query = parsed(">1gb <5gb");
    EXPECT_EQ(query.size->minBytes, 1073741824);
    EXPECT_FALSE(query.size->maxBytes);
    EXPECT_THAT(tokensOf(">1gb <5gb"), ElementsAre("0-4 size", "5-9 term"));
    EXPECT_THAT(termsOf("image video"), ElementsAre("video"));
    EXPECT_THAT(termsOf("home desktop "), ElementsAre("desktop"));
    EXPECT_THAT(termsOf("today week "), ElementsAre("week"));
}

TEST(SearchQueryParser, DatesCountBackFromNow)
{
    const struct
    {
        const char* word;
        double days;
        const char* label;
    } rows[] = {{"today", 1, "Today"},       {"Yesterday", 2, "Since yesterday"},
                {"week", 7, "This week"},    {"recent", 7, "This week"},
                {"MONTH", 30, "This month"}, {"year", 365, "This year"}};
    for (const auto& row : rows) {
        const std::optional<SearchDate> date = parsed(row.word).date;
        ASSERT_TRUE(date) << row.word;
        EXPECT_EQ(date->fromMs, now - row.days * dayMs) << row.word;
        EXPECT_EQ(text(date->label), row.label) << row.word;
    }
}

TEST(SearchQueryParser, ALocationIsAFolderOfTheHome)
{
    EXPECT_EQ(parsed("home").locationPath, FilePath("/Users/a"));
    EXPECT_EQ(parsed("desktop").locationPath, FilePath("/Users/a/Desktop"));
    EXPECT_EQ(parsed("dl").locationPath, FilePath("/Users/a/Downloads"));
    EXPECT_EQ(parsed("desktop", FilePath("/")).locationPath, FilePath("/Desktop"));
    const ParsedSearch unknown = parsed("desktop", FilePath());
    EXPECT_EQ(text(*unknown.locationLabel), "Desktop");
    EXPECT_FALSE(unknown.locationPath);
    EXPECT_TRUE(unknown.searchable());
}

TEST(SearchQueryParser, WordsComeInAnyOrder)
{
    const ParsedSearch query = parsed("week Cats >1mb video DOWNLOADS and dogs ");
    EXPECT_EQ(text(query.termQuery()), "Cats and dogs");
    EXPECT_EQ(query.kind, SearchFilterKind::video);
    EXPECT_EQ(query.locationPath, FilePath("/Users/a/Downloads"));
    EXPECT_EQ(query.size->minBytes, 1048576);
    EXPECT_EQ(text(query.date->label), "This week");
    EXPECT_EQ(query.tokens.size(), 7U);
}

TEST(SearchQueryParser, PositionsCountUserPerceivedCharacters)
{
    // A family of three joined faces, two flags, an e with an accent of its own.
    EXPECT_THAT(
        tokensOf("\xF0\x9F\x91\xA8\xE2\x80\x8D\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7 a "
                 "\xF0\x9F\x87\xA9\xF0\x9F\x87\xAA\xF0\x9F\x87\xAB\xF0\x9F\x87\xB7 e\xCC\x81"),
        ElementsAre("0-1 term", "2-3 term", "4-6 term", "7-8 term"));
    EXPECT_THAT(tokensOf("a\r\nb"), ElementsAre("0-1 term", "2-3 term"));
}

TEST(SearchQueryParser, OneCharacterOfSeveralCodePointsNeverCompletes)
{
    EXPECT_FALSE(parsed("i\xCC\x81").pending);
}

TEST(SearchQueryParser, RangesBehindAWideCharacterCutOneUnitEarly)
{
    // The face counts as one character and takes two units: "video" stands at 3 to 8 and is cut
    // as 2 to 7, which leaves its last letter.
    EXPECT_EQ(replacing("image", "\xF0\x9F\x98\x80 video"), "\xF0\x9F\x98\x80o image ");
    // Cutting half of a face leaves the other half.
    const QString face = QStringLiteral("\U0001F600");
    const QString cut = SearchQueryParser::removing(SearchTokenType::kind,
                                                    face + face + QStringLiteral(" pdf"), home);
    EXPECT_EQ(cut, face + face.first(1) + QStringLiteral("df "));
}

TEST(SearchQueryParser, AChipReplacesEveryWordOfItsCategory)
{
    EXPECT_EQ(replacing("image", "video report"), "report image ");
    EXPECT_EQ(replacing("today", "week month cats"), "cats today ");
    EXPECT_EQ(replacing("notes", "  a  "), "a notes ");
    EXPECT_EQ(replacing("notes", "   "), "notes ");
    EXPECT_EQ(replacing("pdf", ""), "pdf ");
    EXPECT_EQ(replacing("pdf", "image"), "pdf ");
    EXPECT_EQ(replacing(">5gb", ">1gb x  <2gb   y"), "x y >5gb ");
    EXPECT_EQ(replacing("home", "a deskt"), "a home ");
    EXPECT_EQ(replacing("image", "a vid"), "a image ");
    EXPECT_EQ(replacing("pdf", "\"image\" video"), "\"image\" pdf ");
}

TEST(SearchQueryParser, ReplacingNormalisesBlanksAndNoOtherWhiteSpace)
{
    EXPECT_EQ(replacing("pdf", " a  b\tc "), "a b\tc pdf ");
    EXPECT_EQ(replacing("pdf", "\ta\n"), "a pdf ");
}

TEST(SearchQueryParser, SwitchingAChipOffTakesTheFirstWordOfItsCategory)
{
    EXPECT_EQ(removing(SearchTokenType::kind, "pdf"), " ");
    EXPECT_EQ(removing(SearchTokenType::kind, ""), " ");
    EXPECT_EQ(removing(SearchTokenType::kind, "a  b"), "a b ");
    EXPECT_EQ(removing(SearchTokenType::date, "week month cats"), "month cats ");
    EXPECT_EQ(removing(SearchTokenType::date, "\"week\" cats month "), "\"week\" cats ");
    EXPECT_EQ(removing(SearchTokenType::kind, "a vid"), "a ");
    EXPECT_EQ(removing(SearchTokenType::location, "a deskt"), "a ");
    EXPECT_EQ(removing(SearchTokenType::size, "x >5gb <1gb"), "x <1gb ");
}

TEST(SearchQueryParser, CategoriesThatNoChipHasLeaveTheTextAlone)
{
    for (const SearchTokenType type :
         {SearchTokenType::term, SearchTokenType::pendingKind, SearchTokenType::pendingLocation}) {
        EXPECT_EQ(removing(type, "  a  vid"), "  a  vid");
    }
}

TEST(SearchQueryParser, AWordsCategoryIgnoresCaseButNotQuotes)
{
    EXPECT_EQ(SearchQueryParser::aliasCategory(QStringLiteral(">5GB")), SearchTokenType::size);
    EXPECT_EQ(SearchQueryParser::aliasCategory(QStringLiteral("Week")), SearchTokenType::date);
    EXPECT_EQ(SearchQueryParser::aliasCategory(QStringLiteral("code")), SearchTokenType::kind);
    EXPECT_EQ(SearchQueryParser::aliasCategory(QStringLiteral("dl")), SearchTokenType::location);
    EXPECT_FALSE(SearchQueryParser::aliasCategory(QStringLiteral("\"week\"")));
    EXPECT_FALSE(SearchQueryParser::aliasCategory(QStringLiteral("\">5gb\"")));
    EXPECT_FALSE(SearchQueryParser::aliasCategory(QString()));
}

TEST(SearchQueryParser, AChipClickedTwiceGivesTheWordsBack)
{
    for (const char* word : {"pdf", "home", ">5gb", "week"}) {
        const QString on = SearchQueryParser::replacingFilter(QString::fromUtf8(word),
                                                              QStringLiteral("my  notes"), home);
        const auto category = SearchQueryParser::aliasCategory(QString::fromUtf8(word));
        EXPECT_EQ(text(SearchQueryParser::removing(*category, on, home)), "my notes ") << word;
    }
}

/// Words are found again by another road: code point by code point over text whose characters are
/// code points.
TEST(SearchQueryParser, AnyTextIsReadWhole)
{
    constexpr unsigned seed = 4711;
    std::mt19937 random(seed);
    const QString pieces[] = {
        QStringLiteral("pdf"),    QStringLiteral(" "),     QStringLiteral("\""),
        QStringLiteral(">1gb"),   QStringLiteral("\n"),    QStringLiteral("week"),
        QStringLiteral("\u00E4"), QStringLiteral("ho"),    QString(QChar(0xD83D)),
        QString(QChar(0xDE00)),   QStringLiteral("\u3000")};
    for (int round = 0; round < 2000; ++round) {
        QString raw;
        for (std::size_t i = random() % 12; i > 0; --i) {
            raw += pieces[random() % std::size(pieces)];
        }
        const ParsedSearch query = SearchQueryParser::parse(raw, home, now);
        QStringList words;
        QString flat = raw;
        for (QChar& c : flat) {
            c = c.isSpace() ? QChar(u' ') : c;
        }
        words = flat.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        ASSERT_EQ(query.tokens.size(), static_cast<std::size_t>(words.size()))
            << seed << " " << text(raw);
        qsizetype last = 0;
        for (const SearchToken& token : query.tokens) {
            ASSERT_LE(last, token.range.start);
            ASSERT_LT(token.range.start, token.range.end);
            ASSERT_LE(token.range.end, raw.size());
            last = token.range.end;
        }
        for (const SearchTokenType type : allSearchTokenTypes) {
            SearchQueryParser::removing(type, raw, home);
        }
        EXPECT_TRUE(SearchQueryParser::replacingFilter(QStringLiteral("pdf"), raw, home)
                        .endsWith(QStringLiteral("pdf ")));
    }
}

} // namespace
} // namespace quorvane
