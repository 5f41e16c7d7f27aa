// SPDX-License-Identifier: MIT
#include "Gate.h"
#include "GatedContents.h"
#include "StateFixture.h"

#include <gmock/gmock.h>

namespace quorvane {
namespace {

using ::testing::ElementsAre;

constexpr std::string_view key = "tessaryl.tagRules";

TagRule ruleOf(TagConditionType type, const char* value, const char* tag = "Important")
{
    TagRule rule;
    rule.id = QUuid::createUuid();
    rule.name = QStringLiteral("New rule");
    rule.tagName = QString::fromUtf8(tag);
    rule.conditions = {TagCondition::make(type, QString::fromUtf8(value))};
    return rule;
}

class TaggingModel : public StateFixture
{
protected:
    void awaitTagScan()
    {
        ASSERT_TRUE(waitFor([this] { return !state().isTagScanRunning.value(); }));
    }

    QByteArray stored() const { return platform.preferences.read<QByteArray>(key).value(); }
};

TEST_F(TaggingModel, EachChangeOfTheListIsStored)
{
    TagRule first = ruleOf(TagConditionType::extensionIs, "pdf");
    const TagRule second = ruleOf(TagConditionType::extensionIs, "txt");
    state().addTagRule(first);
    state().addTagRule(second);
    EXPECT_EQ(stored(), encodeTagRules(std::vector{first, second}));
    first.isEnabled = false;
    state().updateTagRule(first);
    EXPECT_THAT(state().tagRules.value(), ElementsAre(first, second));
    EXPECT_EQ(stored(), encodeTagRules(std::vector{first, second}));
    state().deleteTagRule(first);
    EXPECT_THAT(state().tagRules.value(), ElementsAre(second));
    EXPECT_EQ(stored(), encodeTagRules(std::vector{second}));
}

TEST_F(TaggingModel, AnUpdateOfARuleThatIsNotThereWritesNothing)
{
    state().updateTagRule(ruleOf(TagConditionType::extensionIs, "pdf"));
    EXPECT_TRUE(state().tagRules.value().empty());
    EXPECT_FALSE(platform.preferences.value(key));
}

TEST_F(TaggingModel, EveryStartBeginsWithoutRulesAndCanBringTheLastOnesBack)
{
    const TagRule rule = ruleOf(TagConditionType::extensionIs, "pdf");
    state().addTagRule(rule);
    end();
    EXPECT_TRUE(state().tagRules.value().empty());
    EXPECT_EQ(state().storedTagRuleCount(), 1U);
    state().bringBackTagRules();
    EXPECT_THAT(state().tagRules.value(), ElementsAre(rule));
    // With rules in the list there is nothing to bring back.
    state().bringBackTagRules();
    EXPECT_EQ(state().tagRules.value().size(), 1U);
}

TEST_F(TaggingModel, AStoredValueOfAnotherFormIsNoRules)
{
    platform.preferences.store(key, QByteArray("[{\"id\":1}]"));
    EXPECT_EQ(state().storedTagRuleCount(), 0U);
    platform.preferences.store(key, QStringLiteral("[]"));
    end();
    EXPECT_EQ(state().storedTagRuleCount(), 0U);
}

TEST_F(TaggingModel, AScanTagsTheFilesOfTheTree)
{
    disk.file("a.pdf", 10);
    disk.fileWithContents("b.txt", "an invoice");
    scan(disk.root());
    state().addTagRule(ruleOf(TagConditionType::extensionIs, "pdf", "Docs"));
    state().addTagRule(ruleOf(TagConditionType::contentContains, "INVOICE", "Bills"));
    state().runTagScan();
    EXPECT_TRUE(state().isTagScanRunning);
    EXPECT_EQ(state().tagScanProgress.value(), 0);
    awaitTagScan();
    EXPECT_EQ(state().tagScanSummary.value(), QStringLiteral("Tagged 2 files with 2 tags."));
    EXPECT_EQ(state().tagScanProgress.value(), 1);
    ASSERT_EQ(state().tagResults.value()->size(), 2U);
    const NodePointer node = state().tagResults.value()->nodeAt(0);
    ASSERT_EQ(state().tagsOf(*node).size(), 1U);
    EXPECT_TRUE(state().tagsOf(*state().rootNode.value()).empty());
}

TEST_F(TaggingModel, WithoutRulesAScanEndsAtOnce)
{
    disk.file("a", 1);
    scan(disk.root());
    state().runTagScan();
    awaitTagScan();
    EXPECT_EQ(state().tagScanSummary.value(), QStringLiteral("Tagged 0 files with 0 tags."));
}

TEST_F(TaggingModel, WithoutATreeNothingIsScanned)
{
    state().runTagScan();
    EXPECT_FALSE(state().isTagScanRunning);
}

TEST_F(TaggingModel, DeletingARuleLeavesTheResults)
{
    disk.file("a.pdf", 1);
    scan(disk.root());
    const TagRule rule = ruleOf(TagConditionType::extensionIs, "pdf");
    state().addTagRule(rule);
    state().runTagScan();
    awaitTagScan();
    state().deleteTagRule(rule);
    EXPECT_EQ(state().tagResults.value()->size(), 1U);
}

TEST_F(TaggingModel, ANewScanCutsATagScanOffAndItsFlagStaysSet)
{
    Gate gate;
    GatedContents contents(gate);
    platform.fileContents = &contents;
    disk.fileWithContents("a", "an invoice");
    scan(disk.root());
    state().addTagRule(ruleOf(TagConditionType::contentContains, "invoice"));
    state().runTagScan();
    scan(disk.root());
    gate.open();
    EXPECT_TRUE(state().isTagScanRunning);
    EXPECT_FALSE(state().tagScanSummary.value());
    EXPECT_TRUE(state().tagResults.value()->isEmpty());
    state().runTagScan();
    EXPECT_TRUE(state().isTagScanRunning);
    EXPECT_FALSE(state().tagScanSummary.value());
    // The job that was cut off still reads through the gate.
    end();
}

TEST_F(TaggingModel, TheEndOfTheProgramEndsATagScan)
{
    disk.fileWithContents("a", "an invoice");
    scan(disk.root());
    state().addTagRule(ruleOf(TagConditionType::contentContains, "invoice"));
    state().runTagScan();
    end();
}

} // namespace
} // namespace quorvane
