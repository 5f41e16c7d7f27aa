// SPDX-License-Identifier: MIT
#include "DuplicatesView.h"

#include "Button.h"
#include "DuplicatesFixture.h"
#include "EmptyState.h"
#include "Label.h"
#include "Progress.h"
#include "RowView.h"
#include "TreeText.h"

#include <QPushButton>
#include <QTest>

namespace quorvane {
namespace {

class DuplicatesViewTests : public DuplicatesFixture
{
protected:
    void SetUp() override
    {
        m_window.resize(1000, 600);
        m_view.resize(1000, 600);
        m_window.show();
        QApplication::setActiveWindow(&m_window);
    }

    template<class T>
    T& part(const char* objectName)
    {
        return *m_view.findChild<T*>(QLatin1String(objectName));
    }
    bool isShown(const char* objectName) { return part<QWidget>(objectName).isVisible(); }

    QStringList labels(const char* objectName)
    {
        QStringList texts;
        for (const Label* const label : part<QWidget>(objectName).findChildren<Label*>()) {
            texts.push_back(label->text());
        }
        return texts;
    }

    void showScan()
    {
        m_tree = test::treeFromText("f 10\n");
        m_state.rootNode = m_tree->rootPointer();
        QCoreApplication::processEvents();
    }

    QWidget m_window;
    QPushButton m_elsewhere{&m_window};
    DuplicatesView m_view{m_state, &m_window};
};

TEST_F(DuplicatesViewTests, WithoutAScanItAsksForOne)
{
    EXPECT_EQ(part<Label>("screenTitle").text(), QStringLiteral("Duplicate files"));
    EXPECT_TRUE(isShown("duplicatesNoScan"));
    EXPECT_EQ(part<EmptyState>("duplicatesNoScan").accessibleName(),
              QStringLiteral("Scan a folder to find duplicates."));
    EXPECT_FALSE(isShown("duplicatesStart"));
    EXPECT_FALSE(isShown("duplicatesList"));
    EXPECT_FALSE(isShown("duplicatesSearching"));
    EXPECT_FALSE(isShown("progress"));
}

TEST_F(DuplicatesViewTests, WithAScanAloneItStandsReady)
{
    showScan();
    EXPECT_TRUE(isShown("duplicatesStart"));
    EXPECT_FALSE(isShown("duplicatesNoScan"));
    EXPECT_EQ(labels("duplicatesStart"),
              (QStringList{QStringLiteral("Find identical files across your scan"),
                           QStringLiteral("Byte-for-byte SHA-256 comparison. Only same-size "
                                          "files are ever opened and hashed, so it stays fast. "
                                          "Large copies are found first.")}));
    for (const Label* const label : part<QWidget>("duplicatesStart").findChildren<Label*>()) {
        EXPECT_TRUE(!label->wordWrap() || label->width() <= 420);
    }
    const auto& find = part<Button>("findDuplicatesButton");
    EXPECT_TRUE(find.isVisible());
    EXPECT_EQ(find.text(), QStringLiteral("Find duplicates"));
    EXPECT_EQ(find.symbol(), QStringLiteral("f.cursive.circle"));
    EXPECT_EQ(find.role(), ButtonRole::prominent);
    EXPECT_FALSE(isShown("cancelDuplicatesButton"));
}

TEST_F(DuplicatesViewTests, ASearchShowsHowFarItIs)
{
    showScan();
    m_state.duplicateSearchIsRunning = true;
    m_state.duplicateProgress = 0.347;
    QCoreApplication::processEvents();
    EXPECT_TRUE(isShown("duplicatesSearching"));
    EXPECT_FALSE(isShown("duplicatesStart"));
    EXPECT_EQ(labels("duplicatesSearching"),
              (QStringList{QStringLiteral("Searching for duplicates across your scan…"),
                           QStringLiteral("Hashing same-size files in the background. Results "
                                          "appear here automatically.")}));
    EXPECT_TRUE(isShown("progress"));
    EXPECT_EQ(part<Label>("progressStatus").text(), QStringLiteral("Sampling same-size files…"));
    EXPECT_EQ(part<Label>("progressCount").text(), QStringLiteral("34%"));
    EXPECT_NEAR(part<ProgressBar>("progressBar").fraction(), 0.347, 0.001);
    EXPECT_FALSE(isShown("findDuplicatesButton"));
    EXPECT_TRUE(isShown("cancelDuplicatesButton"));
    EXPECT_EQ(part<Button>("cancelDuplicatesButton").text(), QStringLiteral("Cancel"));
}

TEST_F(DuplicatesViewTests, EachPhaseHasItsText)
{
    const QString walking = QStringLiteral("Reading your scan's folder tree…");
    const QString sampling = QStringLiteral("Sampling same-size files…");
    const QString verifying = QStringLiteral("Verifying identical contents…");
    EXPECT_EQ(DuplicatesView::phaseText(0), walking);
    EXPECT_EQ(DuplicatesView::phaseText(0.06), walking);
    EXPECT_EQ(DuplicatesView::phaseText(0.0601), sampling);
    EXPECT_EQ(DuplicatesView::phaseText(0.3999), sampling);
    EXPECT_EQ(DuplicatesView::phaseText(0.4), verifying);
    EXPECT_EQ(DuplicatesView::phaseText(0.9999), verifying);
    EXPECT_EQ(DuplicatesView::phaseText(1), QStringLiteral("Done."));
    EXPECT_EQ(DuplicatesView::percentText(0), QStringLiteral("0%"));
    EXPECT_EQ(DuplicatesView::percentText(0.999), QStringLiteral("99%"));
    EXPECT_EQ(DuplicatesView::percentText(1), QStringLiteral("100%"));
}

TEST_F(DuplicatesViewTests, ResultsComeWithTheirSums)
{
    showGroups(3, 4);
    m_state.duplicateCount = 9;
    m_state.duplicateReclaimable = 9 * 2048;
    QCoreApplication::processEvents();
    EXPECT_TRUE(isShown("duplicatesList"));
    EXPECT_FALSE(isShown("duplicatesStart"));
    EXPECT_EQ(part<Label>("duplicateSummary").text(),
              QStringLiteral("9 extra copies across 3 groups"));
    QStringList texts;
    for (const Label* const label : m_view.findChildren<Label*>()) {
        texts.push_back(label->text());
    }
    EXPECT_TRUE(texts.contains(QStringLiteral("Reclaimable")));
    EXPECT_EQ(part<Label>("duplicateReclaimable").text(), QStringLiteral("18.0 KB"));
    EXPECT_EQ(part<RowView>("duplicatesList").model()->rowCount(), 3);
    EXPECT_EQ(part<Button>("findDuplicatesButton").role(), ButtonRole::bordered);
    m_state.duplicateGroups = std::make_shared<const DuplicateFinder::Groups>();
    QCoreApplication::processEvents();
    EXPECT_TRUE(isShown("duplicatesStart"));
    EXPECT_EQ(part<Button>("findDuplicatesButton").role(), ButtonRole::prominent);
}

TEST_F(DuplicatesViewTests, TheFocusStaysOnTheScreenWhenTheListGoesAndReturnsWithIt)
{
    showGroups(3);
    QCoreApplication::processEvents();
    auto& list = part<RowView>("duplicatesList");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, QPoint(300, 10));
    ASSERT_TRUE(list.hasFocus());
    const auto groups = m_state.duplicateGroups.value();
    const auto none = std::make_shared<const DuplicateFinder::Groups>();
    m_state.duplicateGroups = none;
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_view.hasFocus());
    m_state.duplicateGroups = groups;
    QCoreApplication::processEvents();
    EXPECT_TRUE(list.hasFocus());
    EXPECT_TRUE(list.isExpanded(list.model()->index(0, 0))) << "what was open is open again";

    // Who has gone on meanwhile is not called back, nor later.
    m_state.duplicateGroups = none;
    QCoreApplication::processEvents();
    m_elsewhere.setFocus();
    m_state.duplicateGroups = groups;
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_elsewhere.hasFocus());
    m_view.setFocus();
    m_state.duplicateGroups = none;
    QCoreApplication::processEvents();
    m_state.duplicateGroups = groups;
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_view.hasFocus()) << "the list had nothing to lose";
}

TEST_F(DuplicatesViewTests, AShortListIsNoHigherThanItsRows)
{
    showGroups(2);
    QCoreApplication::processEvents();
    EXPECT_EQ(part<RowView>("duplicatesList").height(), 2 * 60);
    showGroups(100);
    QCoreApplication::processEvents();
    EXPECT_LT(part<RowView>("duplicatesList").height(), 600);
}

} // namespace
} // namespace quorvane
