// SPDX-License-Identifier: MIT
#include "AppState.h"
#include "Button.h"
#include "DiskTree.h"
#include "DuplicatesView.h"
#include "FakePlatform.h"
#include "Gate.h"
#include "GatedContents.h"
#include "RowView.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include <memory>
#include <string>

namespace quorvane {
namespace {

/// The screen over real searches, which a gate can hold up among the files.
class DuplicatesSearchTests : public testing::Test
{
protected:
    void SetUp() override
    {
        m_disk.fileWithContents("one", std::string(3000, 'x'));
        m_disk.fileWithContents("two", std::string(3000, 'x'));
        m_platform.fileContents = &m_contents;
        m_state = std::make_unique<AppState>(m_platform.platform());
        m_window = std::make_unique<QWidget>();
        m_window->resize(1000, 600);
        m_view = new DuplicatesView(*m_state, m_window.get());
        m_view->resize(1000, 600);
        m_window->show();
        QApplication::setActiveWindow(m_window.get());
    }
    void TearDown() override
    {
        m_gate.open();
        m_window.reset();
        m_state.reset();
    }

    template<class T>
    T& part(const char* objectName)
    {
        return *m_view->findChild<T*>(QLatin1String(objectName));
    }
    bool waitUntilShown(const char* objectName)
    {
        return waitFor([&] { return part<QWidget>(objectName).isVisible(); });
    }

    DiskTree m_disk;
    Gate m_gate;
    GatedContents m_contents{m_gate};
    FakePlatform m_platform{m_disk.root()};
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<QWidget> m_window;
    DuplicatesView* m_view = nullptr;
};

TEST_F(DuplicatesSearchTests, TheButtonsStopASearchAndStartItOverAndPassTheFocusOn)
{
    auto& find = part<Button>("findDuplicatesButton");
    auto& cancel = part<Button>("cancelDuplicatesButton");
    m_state->startScan(m_disk.root());
    ASSERT_TRUE(waitUntilShown("cancelDuplicatesButton")) << "the scan is over, the search runs";
    m_gate.awaitVisitor();
    EXPECT_TRUE(part<QWidget>("duplicatesSearching").isVisible());
    EXPECT_FALSE(find.isVisible());
    cancel.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&cancel, Qt::Key_Space);
    ASSERT_TRUE(waitUntilShown("findDuplicatesButton"));
    EXPECT_FALSE(m_state->duplicateSearchIsRunning.value());
    EXPECT_FALSE(cancel.isVisible());
    EXPECT_TRUE(find.hasFocus());
    EXPECT_EQ(find.role(), ButtonRole::prominent);
    EXPECT_TRUE(part<QWidget>("duplicatesStart").isVisible());
    EXPECT_FALSE(part<QWidget>("progress").isVisible());

    QTest::keyClick(&find, Qt::Key_Space);
    ASSERT_TRUE(waitUntilShown("cancelDuplicatesButton"));
    EXPECT_TRUE(cancel.hasFocus());
    EXPECT_TRUE(part<QWidget>("duplicatesSearching").isVisible());
    m_gate.open();
    ASSERT_TRUE(waitUntilShown("duplicatesList"));
    EXPECT_EQ(part<RowView>("duplicatesList").model()->rowCount(), 1);
    EXPECT_TRUE(find.hasFocus());
    EXPECT_EQ(find.role(), ButtonRole::bordered);
    EXPECT_EQ(m_state->flashMessage.value(), std::nullopt);
}

TEST_F(DuplicatesSearchTests, ASearchThatFindsNothingEndsWhereItStarted)
{
    m_disk.fileWithContents("two", std::string(3000, 'y'));
    m_gate.open();
    m_state->startScan(m_disk.root());
    ASSERT_TRUE(waitUntilShown("duplicatesStart"));
    ASSERT_TRUE(waitFor([this] { return m_state->duplicateProgress.value() == 1; }));
    ASSERT_TRUE(waitUntilShown("findDuplicatesButton"));
    EXPECT_TRUE(part<QWidget>("duplicatesStart").isVisible());
    EXPECT_FALSE(part<QWidget>("duplicatesList").isVisible());
    EXPECT_FALSE(part<QWidget>("progress").isVisible());
    EXPECT_EQ(part<Button>("findDuplicatesButton").role(), ButtonRole::prominent);
    EXPECT_EQ(m_state->flashMessage.value(), std::nullopt);
}

TEST_F(DuplicatesSearchTests, FindWithTheMouseKeepsTheListsFocusAndWhatIsOpen)
{
    m_gate.open();
    m_state->startScan(m_disk.root());
    ASSERT_TRUE(waitUntilShown("duplicatesList"));
    auto& list = part<RowView>("duplicatesList");
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, QPoint(300, 10));
    ASSERT_TRUE(list.hasFocus());
    ASSERT_TRUE(list.isExpanded(list.model()->index(0, 0)));
    m_gate.close();
    QTest::mouseClick(&part<Button>("findDuplicatesButton"), Qt::LeftButton);
    ASSERT_TRUE(waitUntilShown("duplicatesSearching"));
    EXPECT_TRUE(m_view->hasFocus());
    m_gate.open();
    ASSERT_TRUE(waitUntilShown("duplicatesList"));
    EXPECT_TRUE(list.hasFocus());
    EXPECT_TRUE(list.isExpanded(list.model()->index(0, 0)));
    EXPECT_EQ(list.model()->rowCount(list.model()->index(0, 0)), 2);
}

} // namespace
} // namespace quorvane
