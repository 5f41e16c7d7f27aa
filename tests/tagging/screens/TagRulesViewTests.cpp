// SPDX-License-Identifier: MIT
#include "TagRulesView.h"

#include "AppState.h"
#include "Button.h"
#include "DiskTree.h"
#include "EmptyState.h"
#include "FakePlatform.h"
#include "Gate.h"
#include "GatedContents.h"
#include "Label.h"
#include "Progress.h"
#include "RowView.h"
#include "TagDots.h"
#include "TagRuleEditor.h"
#include "TextField.h"
#include "Theme.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QTest>

#include <memory>

namespace quorvane {
namespace {

class TagRulesViewTests : public testing::Test
{
protected:
    void SetUp() override
    {
        m_window.resize(1100, 800);
        m_window.show();
        QApplication::setActiveWindow(&m_window);
        show();
    }

    void show()
    {
        m_view = std::make_unique<TagRulesView>(*m_state, &m_window);
        m_view->resize(1100, 800);
        m_view->show();
        settle();
    }

    static void settle() { QCoreApplication::processEvents(); }

    template<class T>
    T& part(const char* objectName)
    {
        return *m_window.findChild<T*>(QLatin1String(objectName));
    }

    template<class T>
    QList<T*> parts(const char* objectName)
    {
        return m_window.findChildren<T*>(QLatin1String(objectName));
    }

    TagRuleEditor* editor()
    {
        return m_view->isEditorPresented() ? m_window.findChild<TagRuleEditor*>() : nullptr;
    }

    void press(const char* objectName)
    {
        QTest::mouseClick(&part<QWidget>(objectName), Qt::LeftButton);
        settle();
    }

    void pressInRow(RowView& list, int row, const RowPart& part)
    {
        const QModelIndex index = list.model()->index(row, 0);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.partRect(index, part).center());
        settle();
    }

    TagRule addRule(TagConditionType type, const char* value, const char* tag = "Important")
    {
        TagRule rule;
        rule.id = QUuid::createUuid();
        rule.name = QStringLiteral("New rule");
        rule.tagName = QString::fromUtf8(tag);
        rule.tagColor = TagColor::orange;
        rule.conditions = {TagCondition::make(type, QString::fromUtf8(value))};
        m_state->addTagRule(rule);
        settle();
        return rule;
    }

    void scan()
    {
        m_state->startScan(m_disk.root());
        ASSERT_TRUE(waitFor([this] { return !m_state->isScanning.value(); }));
        settle();
    }

    void tag()
    {
        press("runTagScanButton");
        ASSERT_TRUE(waitFor([this] { return !m_state->isTagScanRunning.value(); }));
        settle();
    }

    QString textAt(RowView& list, int row)
    {
        return list.rowOf(list.model()->index(row, 0)).describe();
    }

    DiskTree m_disk;
    FakePlatform m_platform;
    std::unique_ptr<AppState> m_state = std::make_unique<AppState>(m_platform.platform());
    QWidget m_window;
    std::unique_ptr<TagRulesView> m_view;
};

TEST_F(TagRulesViewTests, WithoutRulesItTellsWhatRulesAreFor)
{
    EXPECT_TRUE(part<EmptyState>("noTagRules").isVisible());
    EXPECT_FALSE(part<RowView>("tagRulesList").isVisible());
    EXPECT_FALSE(part<Button>("bringBackRulesButton").isVisible());
    EXPECT_FALSE(part<Button>("runTagScanButton").isEnabled());
    EXPECT_FALSE(part<QWidget>("tagScanSummary").isVisible());
    EXPECT_EQ(part<Label>("screenTitle").text(), QStringLiteral("Tag Rules"));
}

TEST_F(TagRulesViewTests, TheRulesOfLastTimeCanBeBroughtBack)
{
    addRule(TagConditionType::extensionIs, "pdf");
    addRule(TagConditionType::extensionIs, "txt");
    m_view.reset();
    m_state = std::make_unique<AppState>(m_platform.platform());
    show();
    EXPECT_TRUE(part<EmptyState>("noTagRules").isVisible());
    EXPECT_EQ(part<Button>("bringBackRulesButton").text(),
              QStringLiteral("Bring back 2 rules of last time"));
    press("bringBackRulesButton");
    EXPECT_FALSE(part<EmptyState>("noTagRules").isVisible());
    EXPECT_EQ(part<RowView>("tagRulesList").model()->rowCount(), 2);
}

TEST_F(TagRulesViewTests, ARowTellsTheRuleAndItsSwitchTurnsItOff)
{
    const TagRule rule = addRule(TagConditionType::extensionIs, "pdf", "Docs");
    auto& list = part<RowView>("tagRulesList");
    const Row row = list.rowOf(list.model()->index(0, 0));
    EXPECT_EQ(row.title, QStringLiteral("New rule"));
    EXPECT_EQ(row.isOn, true);
    EXPECT_TRUE(textAt(list, 0).contains(QStringLiteral("Docs")));
    EXPECT_TRUE(textAt(list, 0).contains(QStringLiteral("All of Extension is “pdf”")));
    pressInRow(list, 0, {RowAction::toggled, 0});
    EXPECT_FALSE(m_state->tagRules.value().at(0).isEnabled);
    EXPECT_TRUE(list.rowOf(list.model()->index(0, 0)).isDimmed);
    EXPECT_EQ(m_state->tagRules.value().at(0).id, rule.id);
}

TEST_F(TagRulesViewTests, DeletingAsksNothingAndLeavesTheResults)
{
    m_disk.file("a.pdf", 100);
    scan();
    addRule(TagConditionType::extensionIs, "pdf");
    tag();
    auto& list = part<RowView>("tagRulesList");
    pressInRow(list, 0, {1, 1});
    EXPECT_TRUE(m_state->tagRules.value().empty());
    EXPECT_TRUE(part<EmptyState>("noTagRules").isVisible());
    EXPECT_EQ(part<RowView>("matchedFilesList").model()->rowCount(), 1);
    EXPECT_TRUE(part<RowView>("matchedFilesList").isVisible());
}

TEST_F(TagRulesViewTests, ANewRuleThatIsCancelledIsNotAdded)
{
    press("newRuleButton");
    ASSERT_NE(editor(), nullptr);
    EXPECT_EQ(part<TextField>("ruleNameField").text(), QStringLiteral("New rule"));
    EXPECT_EQ(part<TextField>("tagNameField").text(), QStringLiteral("Important"));
    EXPECT_EQ(parts<QComboBox>("conditionType").size(), 1);
    press("cancelRuleButton");
    EXPECT_EQ(editor(), nullptr);
    EXPECT_TRUE(m_state->tagRules.value().empty());
}

TEST_F(TagRulesViewTests, ANewRuleEntersTheListWhenItIsSaved)
{
    press("newRuleButton");
    part<TextField>("ruleNameField").setText(QStringLiteral(" \tInvoices "));
    press("saveRuleButton");
    ASSERT_EQ(m_state->tagRules.value().size(), 1U);
    const TagRule& rule = m_state->tagRules.value().front();
    EXPECT_EQ(rule.name, QStringLiteral("Invoices"));
    EXPECT_EQ(rule.tagName, QStringLiteral("Important"));
    EXPECT_TRUE(rule.isEnabled);
    EXPECT_FALSE(rule.matchAny);
    ASSERT_EQ(rule.conditions.size(), 1U);
    EXPECT_EQ(rule.conditions.front().type, TagConditionType::filenameContains);
    EXPECT_EQ(rule.conditions.front().value, QString());
}

TEST_F(TagRulesViewTests, EditingKeepsIdAndSwitchWhateverTheListHasChangedMeanwhile)
{
    TagRule rule = addRule(TagConditionType::extensionIs, "pdf");
    pressInRow(part<RowView>("tagRulesList"), 0, {0, 0});
    ASSERT_NE(editor(), nullptr);
    rule.isEnabled = false;
    m_state->updateTagRule(rule);
    part<TextField>("tagNameField").setText(QStringLiteral("Papers"));
    press("saveRuleButton");
    ASSERT_EQ(m_state->tagRules.value().size(), 1U);
    EXPECT_EQ(m_state->tagRules.value().front().id, rule.id);
    EXPECT_EQ(m_state->tagRules.value().front().tagName, QStringLiteral("Papers"));
    EXPECT_TRUE(m_state->tagRules.value().front().isEnabled);
}

TEST_F(TagRulesViewTests, ARuleDeletedWhileItIsEditedIsAddedAgain)
{
    const TagRule rule = addRule(TagConditionType::extensionIs, "pdf");
    pressInRow(part<RowView>("tagRulesList"), 0, {0, 0});
    m_state->deleteTagRule(rule);
    press("saveRuleButton");
    ASSERT_EQ(m_state->tagRules.value().size(), 1U);
    EXPECT_EQ(m_state->tagRules.value().front().id, rule.id);
}

TEST_F(TagRulesViewTests, ARuleWithABlankNameOrTagCannotBeSaved)
{
    press("newRuleButton");
    part<TextField>("tagNameField").setText(QStringLiteral(" \t "));
    EXPECT_FALSE(part<Button>("saveRuleButton").isEnabled());
    part<TextField>("tagNameField").setText(QStringLiteral("x"));
    EXPECT_TRUE(part<Button>("saveRuleButton").isEnabled());
    part<TextField>("ruleNameField").setText({});
    EXPECT_FALSE(part<Button>("saveRuleButton").isEnabled());
}

TEST_F(TagRulesViewTests, TheEditorChangesConditionsColourAndMatching)
{
    addRule(TagConditionType::extensionIs, "pdf");
    pressInRow(part<RowView>("tagRulesList"), 0, {0, 0});
    press("addConditionButton");
    ASSERT_EQ(parts<QComboBox>("conditionType").size(), 2);
    parts<TextField>("conditionValue").at(1)->setText(QStringLiteral("tax"));
    EXPECT_EQ(part<Label>("sampleRow").text(),
              QStringLiteral("Sample row: Extension is “pdf” AND Filename contains “tax”"));
    // The value stays as it was.
    parts<QComboBox>("conditionType")
        .at(0)
        ->setCurrentIndex(static_cast<int>(TagConditionType::folderContains));
    part<QComboBox>("matchingPicker").setCurrentIndex(1);
    EXPECT_EQ(part<Label>("sampleRow").text(),
              QStringLiteral("Sample row: Path contains folder “pdf” OR Filename contains “tax”"));
    part<QAbstractButton>("tagColor.green").click();
    press("saveRuleButton");
    const TagRule& rule = m_state->tagRules.value().front();
    EXPECT_TRUE(rule.matchAny);
    EXPECT_EQ(rule.tagColor, TagColor::green);
    ASSERT_EQ(rule.conditions.size(), 2U);
    EXPECT_EQ(rule.conditions[0].type, TagConditionType::folderContains);
    EXPECT_EQ(rule.conditions[0].value, QStringLiteral("pdf"));
    EXPECT_EQ(rule.conditions[1].value, QStringLiteral("tax"));
}

TEST_F(TagRulesViewTests, WithoutConditionsTheEditorSaysThatEveryFileMatches)
{
    press("newRuleButton");
    EXPECT_FALSE(part<QWidget>("noConditions").isVisible());
    press("removeConditionButton");
    EXPECT_TRUE(part<QWidget>("noConditions").isVisible());
    EXPECT_EQ(part<Label>("noConditions").text(),
              QStringLiteral("No conditions — this rule matches every file."));
    EXPECT_EQ(part<Label>("sampleRow").text(), QStringLiteral("Sample row: "));
    press("saveRuleButton");
    EXPECT_TRUE(m_state->tagRules.value().front().conditions.empty());
}

TEST_F(TagRulesViewTests, ASizeThatCannotBeReadShowsWhileItIsTyped)
{
    addRule(TagConditionType::sizeGT, "100 MB");
    pressInRow(part<RowView>("tagRulesList"), 0, {0, 0});
    auto& fault = part<Label>("conditionFault");
    auto& value = part<TextField>("conditionValue");
    EXPECT_FALSE(fault.isVisible());
    value.setText(QStringLiteral("2O KB"));
    EXPECT_TRUE(fault.isVisible());
    EXPECT_EQ(fault.text(),
              QStringLiteral("Not a size, so nothing matches. Write it like 100 MB."));
    value.setText(QStringLiteral("99999999999 TB"));
    EXPECT_TRUE(fault.isVisible());
    EXPECT_TRUE(part<Button>("saveRuleButton").isEnabled());
    value.setText(QStringLiteral("20 KB"));
    EXPECT_FALSE(fault.isVisible());
    value.setText(QStringLiteral("2O KB"));
    part<QComboBox>("conditionType").setCurrentIndex(0);
    EXPECT_FALSE(fault.isVisible());
}

TEST_F(TagRulesViewTests, ManyConditionsScrollAndTheButtonsStayInTheWindow)
{
    press("newRuleButton");
    for (int i = 0; i < 30; ++i) {
        press("addConditionButton");
    }
    EXPECT_EQ(parts<QComboBox>("conditionType").size(), 31);
    const QWidget& save = part<QWidget>("saveRuleButton");
    EXPECT_TRUE(m_window.rect().contains(QRect(save.mapTo(&m_window, QPoint()), save.size())));
}

TEST_F(TagRulesViewTests, MatchesAreListedLargestFirstWithTheirSummary)
{
    m_disk.file("small.pdf", 2048);
    m_disk.file("large.pdf", 4096);
    m_disk.file("other.txt", 9000);
    scan();
    addRule(TagConditionType::extensionIs, "pdf", "Docs");
    EXPECT_TRUE(part<Button>("runTagScanButton").isEnabled());
    tag();
    EXPECT_EQ(part<Label>("tagScanSummary").text(), QStringLiteral("Tagged 2 files with 1 tag."));
    EXPECT_EQ(part<Label>("matchedFilesHeading").text(), QStringLiteral("Matched files (2)"));
    auto& list = part<RowView>("matchedFilesList");
    ASSERT_EQ(list.model()->rowCount(), 2);
    const Row first = list.rowOf(list.model()->index(0, 0));
    EXPECT_EQ(first.title, QStringLiteral("large.pdf"));
    EXPECT_EQ(first.dot, tagColor("orange"));
    EXPECT_TRUE(first.describe().contains(QStringLiteral("Docs")));
    EXPECT_TRUE(first.describe().contains(QStringLiteral("4.0 KB")))
        << first.describe().toStdString();
}

TEST_F(TagRulesViewTests, AMatchLeadsToItsFile)
{
    m_disk.file("sub/a.pdf", 100);
    scan();
    addRule(TagConditionType::extensionIs, "pdf");
    tag();
    auto& list = part<RowView>("matchedFilesList");
    list.setFocus();
    list.setCurrentIndex(list.model()->index(0, 0));
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(m_state->section.value(), AppSection::analysis);
    ASSERT_TRUE(m_state->selectedNode.value());
    EXPECT_EQ(m_state->selectedNode.value()->name(), "a.pdf");
    EXPECT_EQ(m_state->focusNode.value()->name(), "sub");
    EXPECT_TRUE(m_state->inspectorVisible());
}

TEST_F(TagRulesViewTests, WhileAScanRunsItsButtonIsOffAndTheProgressShows)
{
    Gate gate;
    GatedContents contents(gate);
    m_platform.fileContents = &contents;
    m_view.reset();
    m_state = std::make_unique<AppState>(m_platform.platform());
    show();
    m_disk.fileWithContents("a", "an invoice");
    scan();
    addRule(TagConditionType::contentContains, "invoice");
    press("runTagScanButton");
    EXPECT_FALSE(part<Button>("runTagScanButton").isEnabled());
    EXPECT_TRUE(part<QWidget>("progress").isVisible());
    gate.open();
    ASSERT_TRUE(waitFor([this] { return !m_state->isTagScanRunning.value(); }));
    settle();
    EXPECT_TRUE(part<Button>("runTagScanButton").isEnabled());
    EXPECT_FALSE(part<QWidget>("progress").isVisible());
    m_view.reset();
    m_state.reset();
}

TEST_F(TagRulesViewTests, AnUnknownColourIsGray)
{
    EXPECT_EQ(tagColor("mauve"), tagColor("gray"));
    EXPECT_EQ(tagColor(""), tagColor("gray"));
    EXPECT_EQ(tagColor("blue"), themeColor(ThemeColor::accent));
}

} // namespace
} // namespace quorvane
