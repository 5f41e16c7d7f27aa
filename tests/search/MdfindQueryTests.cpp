// SPDX-License-Identifier: MIT
#include "MdfindQuery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvane {
namespace {

using testing::ElementsAre;

constexpr double now = 1'700'000'000'000.0;
constexpr double dayMs = 86'400'000.0;

/// The query expression of a request with a kind or filters.
std::string expression(const SearchRequest& request)
{
    const std::vector<std::string> args = mdfindArgs(request, now);
    EXPECT_EQ(args.size(), 3U);
    return args.back();
}

SearchRequest withKind(SearchFilterKind kind, const char* query = "")
{
    SearchRequest request;
    request.query = QString::fromUtf8(query);
    request.kind = kind;
    return request;
}

TEST(MdfindQuery, WordsAloneAreASearchByNameAsTheyStand)
{
    SearchRequest request;
    request.query = QStringLiteral(" report  \"draft\"");
    request.scope = FilePath("/Users/a");
    EXPECT_THAT(mdfindArgs(request, now),
                ElementsAre("-onlyin", "/Users/a", "-name", " report  \"draft\""));
}

TEST(MdfindQuery, AKindIsAClause)
{
    EXPECT_THAT(mdfindArgs(withKind(SearchFilterKind::image), now),
                ElementsAre("-onlyin", "/", R"((kMDItemContentTypeTree == "public.image"))"));
    EXPECT_EQ(expression(withKind(SearchFilterKind::folder)),
              R"((kMDItemContentTypeTree == "public.folder"))");
    EXPECT_EQ(expression(withKind(SearchFilterKind::video)),
              R"((kMDItemContentTypeTree == "public.movie"))");
    EXPECT_EQ(expression(withKind(SearchFilterKind::audio)),
              R"((kMDItemContentTypeTree == "public.audio"))");
    EXPECT_EQ(expression(withKind(SearchFilterKind::document)),
              "(kMDItemContentTypeTree == \"public.composite-content\" || "
              "kMDItemContentTypeTree == \"public.plain-text\")");
    EXPECT_EQ(expression(withKind(SearchFilterKind::pdf)),
              R"((kMDItemContentTypeTree == "com.adobe.pdf"))");
    EXPECT_EQ(expression(withKind(SearchFilterKind::application)),
              R"((kMDItemContentTypeTree == "com.apple.application-bundle"))");
    EXPECT_EQ(expression(withKind(SearchFilterKind::archive)),
              "(kMDItemContentTypeTree == \"public.archive\" || "
              "kMDItemContentTypeTree == \"public.zip-archive\")");
    EXPECT_EQ(expression(withKind(SearchFilterKind::developer)),
              R"((kMDItemContentTypeTree == "public.source-code"))");
}

TEST(MdfindQuery, ClausesStandInAFixedOrder)
{
    SearchRequest request = withKind(SearchFilterKind::pdf, "Two  words");
    request.filters = {10, 20, now - 7 * dayMs};
    EXPECT_EQ(expression(request),
              "(kMDItemContentTypeTree == \"com.adobe.pdf\") && kMDItemFSSize > 10 && "
              "kMDItemFSSize < 20 && kMDItemFSContentChangeDate >= $time.today(-7) && "
              "kMDItemFSName == \"*Two*\"cd && kMDItemFSName == \"*words*\"cd");
}

TEST(MdfindQuery, DaysAreWholeAndAtLeastOne)
{
    SearchRequest request;
    const auto daysFor = [&](double fromMs) {
        request.filters.fromMs = fromMs;
        return expression(request);
    };
    EXPECT_EQ(daysFor(now - 1.9 * dayMs), "kMDItemFSContentChangeDate >= $time.today(-1)");
    EXPECT_EQ(daysFor(now), "kMDItemFSContentChangeDate >= $time.today(-1)");
    EXPECT_EQ(daysFor(now + 5 * dayMs), "kMDItemFSContentChangeDate >= $time.today(-1)");
    EXPECT_EQ(daysFor(now - 365 * dayMs), "kMDItemFSContentChangeDate >= $time.today(-365)");
}

TEST(MdfindQuery, WhatWouldEndOrEscapeTheStringIsTakenAway)
{
    EXPECT_EQ(expression(withKind(SearchFilterKind::pdf, "don't")),
              R"((kMDItemContentTypeTree == "com.adobe.pdf") && kMDItemFSName == "*dont*"cd)");
    EXPECT_THAT(expression(withKind(SearchFilterKind::pdf, R"(a"'`$\b)")),
                testing::EndsWith(R"(kMDItemFSName == "*ab*"cd)"));
    EXPECT_THAT(expression(withKind(SearchFilterKind::pdf, "\"")),
                testing::EndsWith(R"(kMDItemFSName == "**"cd)"));
}

} // namespace
} // namespace quorvane
