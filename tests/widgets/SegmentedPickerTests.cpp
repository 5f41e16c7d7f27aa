// SPDX-License-Identifier: MIT
#include "SegmentedPicker.h"

#include "FocusRing.h"
#include "WidgetsFixture.h"

#include <QAccessible>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

namespace quorvane {
namespace {

class SegmentedPickerTest : public WidgetsTest
{
protected:
    SegmentedPickerTest()
        : m_before(new QLineEdit)
        , m_picker(new SegmentedPicker(QStringLiteral("Visualization")))
        , m_after(new QLineEdit)
    {
        m_picker->addSegment(QStringLiteral("Folders"), QStringLiteral("folder"));
        m_picker->addSegment(QStringLiteral("Treemap"), QStringLiteral("square.grid.3x3"));
        m_picker->addSegment(QStringLiteral("List"), QStringLiteral("list.bullet.rectangle"));
        auto* layout = new QVBoxLayout(&m_window);
        for (QWidget* widget : {static_cast<QWidget*>(m_before), static_cast<QWidget*>(m_picker),
                                static_cast<QWidget*>(m_after)}) {
            layout->addWidget(widget);
        }
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window, patience));
    }

    QWidget m_window;
    QLineEdit* m_before;
    SegmentedPicker* m_picker;
    QLineEdit* m_after;
};

TEST_F(SegmentedPickerTest, StartsWithoutAChoice)
{
    EXPECT_EQ(m_picker->currentIndex(), -1);
    m_picker->setCurrentIndex(7);
    EXPECT_EQ(m_picker->currentIndex(), -1);
}

TEST_F(SegmentedPickerTest, TabEntersAtTheCurrentChoiceAndLeavesBehindIt)
{
    m_picker->setCurrentIndex(1);
    m_before->setFocus();
    QTest::keyClick(m_before, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), m_picker->segment(1));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), m_after);
}

TEST_F(SegmentedPickerTest, ArrowKeysChangeTheChoiceAndTell)
{
    m_picker->setCurrentIndex(1);
    m_picker->segment(1)->setFocus();
    QSignalSpy activated(m_picker, &SegmentedPicker::activated);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_EQ(m_picker->currentIndex(), 2);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    EXPECT_EQ(m_picker->currentIndex(), 0);
    ASSERT_EQ(activated.count(), 3);
    EXPECT_EQ(activated[0][0].toInt(), 2);
    EXPECT_EQ(activated[2][0].toInt(), 0);
}

TEST_F(SegmentedPickerTest, SettingTheChoiceIsNotTheUsersDoing)
{
    QSignalSpy activated(m_picker, &SegmentedPicker::activated);
    QSignalSpy changed(m_picker, &SegmentedPicker::currentIndexChanged);
    m_picker->setCurrentIndex(2);
    EXPECT_EQ(activated.count(), 0);
    ASSERT_EQ(changed.count(), 1);
    QTest::mouseClick(m_picker->segment(0), Qt::LeftButton);
    EXPECT_EQ(activated.count(), 1);
    EXPECT_EQ(m_picker->currentIndex(), 0);
}

TEST_F(SegmentedPickerTest, CollapsedWordsBecomeTooltips)
{
    const int expanded = m_picker->sizeHint().width();
    EXPECT_EQ(m_picker->expandedWidth(), expanded);
    EXPECT_TRUE(m_picker->segment(0)->toolTip().isEmpty());
    m_picker->setCollapsed(true);
    EXPECT_LT(m_picker->sizeHint().width(), expanded);
    EXPECT_EQ(m_picker->expandedWidth(), expanded);
    EXPECT_EQ(m_picker->segment(0)->toolTip(), QStringLiteral("Folders"));
    EXPECT_EQ(m_picker->segment(0)->accessibleName(), QStringLiteral("Folders"));
}

TEST_F(SegmentedPickerTest, TheRingGoesAroundTheWholePicker)
{
    EXPECT_EQ(FocusRing::target(m_picker->segment(0)), m_picker);
    EXPECT_EQ(FocusRing::target(m_before), m_before);
    EXPECT_EQ(FocusRing::target(nullptr), nullptr);
}

TEST_F(SegmentedPickerTest, SegmentsAreRadioButtonsToAssistiveTechnology)
{
    m_picker->setCurrentIndex(1);
    QAccessibleInterface* segment = QAccessible::queryAccessibleInterface(m_picker->segment(1));
    ASSERT_NE(segment, nullptr);
    EXPECT_EQ(segment->role(), QAccessible::RadioButton);
    EXPECT_TRUE(segment->state().checked);
    EXPECT_EQ(segment->text(QAccessible::Name), QStringLiteral("Treemap"));
}

TEST_F(SegmentedPickerTest, SegmentsFillThePickerWithoutGaps)
{
    for (const int width : {200, 301, 407}) {
        m_picker->resize(width, 30);
        int x = 3;
        for (int index = 0; index < m_picker->count(); ++index) {
            EXPECT_EQ(m_picker->segment(index)->x(), x);
            x += m_picker->segment(index)->width();
        }
        EXPECT_EQ(x, width - 3);
    }
}

} // namespace
} // namespace quorvane
