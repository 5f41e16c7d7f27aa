// SPDX-License-Identifier: MIT
#include "TagRule.h"

#include <gtest/gtest.h>

#include <set>

namespace quorvane {
namespace {

constexpr std::string_view ruleId = "0F8FAD5B-D9CB-469F-A165-70867728950E";
constexpr std::string_view conditionId = "7C9E6679-7425-40DE-944B-E07FC1F90AE7";

QUuid uuid(std::string_view text)
{
    return QUuid::fromString(QLatin1String(text.data(), static_cast<qsizetype>(text.size())));
}

TagRule invoices()
{
    TagRule rule;
    rule.id = uuid(ruleId);
    rule.name = QStringLiteral("Invoices \"new\"");
    rule.tagName = QStringLiteral("Büro/2025");
    rule.tagColor = TagColor::orange;
    rule.isEnabled = false;
    rule.conditions = {{uuid(conditionId), TagConditionType::sizeGT, QStringLiteral(" 20 KB\t")}};
    rule.matchAny = true;
    return rule;
}

/// Written by hand after the description of the form.
const std::string invoicesJson =
    R"([{"id":"0F8FAD5B-D9CB-469F-A165-70867728950E","name":"Invoices \"new\"",)"
    R"("tagName":"Büro\/2025","tagColor":"orange","isEnabled":false,"conditions":)"
    R"([{"id":"7C9E6679-7425-40DE-944B-E07FC1F90AE7","type":"sizeGT","value":" 20 KB\t"}],)"
    R"("matchAny":true}])";

std::string replaced(std::string text, std::string_view from, std::string_view to)
{
    const std::size_t place = text.find(from);
    EXPECT_NE(place, text.npos) << from;
    return text.replace(place, from.size(), to);
}

TEST(TagRule, IsStoredToTheLetter)
{
    const TagRule rule = invoices();
    EXPECT_EQ(encodeTagRules(std::span(&rule, 1)).toStdString(), invoicesJson);
    EXPECT_EQ(encodeTagRules({}).toStdString(), "[]");
}

TEST(TagRule, IsReadAsItWasStored)
{
    EXPECT_EQ(decodeTagRules(invoicesJson), std::vector{invoices()});
    EXPECT_EQ(decodeTagRules("[]"), std::vector<TagRule>());
}

TEST(TagRule, KeysMayStandInAnyOrderAndBlanksBetweenTokens)
{
    const std::string other =
        R"( [ { "matchAny" : true, "conditions": [ { "value":" 20 KB\t", "type":"sizeGT",)"
        R"("id":"7C9E6679-7425-40DE-944B-E07FC1F90AE7" } ], "isEnabled":false,)"
        R"("tagColor":"orange", "tagName":"B\u00fcro/2025", "name":"Invoices \"new\"",)"
        R"( "id":"0F8FAD5B-D9CB-469F-A165-70867728950E" } ] )";
    EXPECT_EQ(decodeTagRules(other), std::vector{invoices()});
}

TEST(TagRule, EveryKeyIsRequired)
{
    for (const char* const member :
         {R"("name":"Invoices \"new\"",)", R"("tagName":"Büro\/2025",)", R"("tagColor":"orange",)",
          R"("isEnabled":false,)", R"(,"matchAny":true)", R"("type":"sizeGT",)",
          R"(,"value":" 20 KB\t")", R"("id":"0F8FAD5B-D9CB-469F-A165-70867728950E",)",
          R"("id":"7C9E6679-7425-40DE-944B-E07FC1F90AE7",)"}) {
        EXPECT_FALSE(decodeTagRules(replaced(invoicesJson, member, ""))) << member;
    }
}

TEST(TagRule, NothingButTheFormIsRead)
{
    const std::pair<const char*, const char*> changes[] = {
        {R"("matchAny":true)", R"("matchAny":1)"},
        {R"("isEnabled":false)", R"("isEnabled":"false")"},
        {R"("isEnabled":false)", R"("isEnabled":null)"},
        {"orange", "Orange"},
        {"orange", "mauve"},
        {"sizeGT", "size"},
        {R"(" 20 KB\t")", "20"},
        {"0F8FAD5B", "0f8fad5b"},
        {"0F8FAD5B-D9CB-469F-A165-70867728950E", "{0F8FAD5B-D9CB-469F-A165-70867728950E}"},
        {"0F8FAD5B-D9CB-469F-A165-70867728950E", "0F8FAD5BD9CB469FA16570867728950E"},
        {"0F8FAD5B-D9CB-469F-A165-70867728950E", "none"},
        {R"("matchAny":true)", R"("matchAny":true,"more":0)"},
        {R"("matchAny":true)", R"("matchAny":true,"matchAny":true)"},
        {R"("conditions":[)", R"("conditions":[null,)"},
        {"}]", "}],"},
        {"[{", "{"},
        {"[{", "\uFEFF[{"},
    };
    for (const auto& [from, to] : changes) {
        EXPECT_FALSE(decodeTagRules(replaced(invoicesJson, from, to))) << from << " to " << to;
    }
    EXPECT_FALSE(decodeTagRules(""));
    EXPECT_FALSE(decodeTagRules("null"));
    EXPECT_FALSE(decodeTagRules(invoicesJson + "x"));
}

TEST(TagRule, ASummaryQuotesTheValueAsItWasTyped)
{
    EXPECT_EQ(TagCondition::make(TagConditionType::extensionIs).summary(),
              QStringLiteral("Extension is “pdf”"));
    EXPECT_EQ(TagCondition::make(TagConditionType::sizeLT, QStringLiteral(" 5")).summary(),
              QStringLiteral("Size smaller than “ 5”"));
}

TEST(TagRule, TheConditionsAreSummedUpByHowTheyAreJoined)
{
    TagRule rule;
    EXPECT_EQ(rule.conditionSummary(), QStringLiteral("No conditions (matches every file)"));
    rule.conditions = {TagCondition::make(TagConditionType::extensionIs),
                       TagCondition::make(TagConditionType::folderContains, QStringLiteral("a"))};
    EXPECT_EQ(rule.conditionSummary(),
              QStringLiteral("All of Extension is “pdf”; Path contains folder “a”"));
    rule.matchAny = true;
    EXPECT_EQ(rule.conditionSummary(),
              QStringLiteral("Any of Extension is “pdf”; Path contains folder “a”"));
}

TEST(TagRule, ANewConditionHasTheDefaultOfItsTypeAndItsOwnId)
{
    std::set<QUuid> ids;
    for (const TagConditionType type : allTagConditionTypes) {
        const TagCondition condition = TagCondition::make(type);
        EXPECT_EQ(condition.value, defaultValue(type));
        EXPECT_TRUE(ids.insert(condition.id).second);
        EXPECT_EQ(tagConditionTypeFromRawValue(rawValue(type)), type);
    }
    EXPECT_EQ(TagCondition::make(TagConditionType::sizeGT).value, QStringLiteral("100 MB"));
    EXPECT_EQ(TagCondition::make(TagConditionType::contentContains).value,
              QStringLiteral("invoice"));
    EXPECT_EQ(TagCondition::make(TagConditionType::sizeGT, QString()).value, QString());
    for (const TagColor color : allTagColors) {
        EXPECT_EQ(tagColorFromRawValue(rawValue(color)), color);
    }
}

} // namespace
} // namespace quorvane
