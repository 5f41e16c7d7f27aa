// SPDX-License-Identifier: MIT
#include "FileTextRecognizer.h"
#include "PreviewPanel.h"
#include "ProgramFixture.h"
#include "RowView.h"

#include <QComboBox>
#include <QLabel>

#include <filesystem>
#include <string>

namespace quorvane {
namespace {

class ScreenshotsJourney : public ProgramFixture
{
protected:
    void SetUp() override
    {
        m_platform.textRecognizer = &m_recognizer;
        m_platform.userFolder = [this](UserFolder folder) -> std::optional<FilePath> {
            return folder == UserFolder::downloads ? std::optional(m_disk.path("home/Downloads"))
                                                   : std::nullopt;
        };
        m_disk.fileWithContents("home/Downloads/Screenshot 2025-11-04 a.png", "storage growth");
        m_disk.fileWithContents("home/Downloads/Screenshot 2025-11-05 b.png", "harbour permit");
        m_disk.fileWithContents("home/Downloads/Screenshot 2025-11-06 c.png", "ferry timetable");
        m_disk.fileWithContents("home/Downloads/Screenshot 2025-11-07 d.png", "Cancel OK Done");
        start();
    }

    RowView& list() { return *find<RowView>("screenshotList"); }
    QModelIndex row(int index) { return list().model()->index(index, 0); }
    bool exists(const std::string& name)
    {
        return std::filesystem::exists(m_disk.path("home/Downloads/" + name).bytes());
    }
    bool awaitRows(int count)
    {
        return waitFor([this, count] {
            return !state().isScreenshotScanning.value() &&
                   !state().isRenamingScreenshots.value() && list().model()->rowCount() == count;
        });
    }
    void key(Qt::Key key, Qt::KeyboardModifiers keys = {})
    {
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        QTest::keyClick(QApplication::focusWidget(), key, keys);
    }

    FileTextRecognizer m_recognizer;
};

TEST_F(ScreenshotsJourney, TheMouseLeadsFromTheSidebarToNewNamesAndBack)
{
    click("toolRow.screenshotRename");
    ASSERT_TRUE(waitUntilShown("screenshotList")) << "no scan of a folder tree is needed";
    ASSERT_TRUE(awaitRows(3));
    EXPECT_EQ(find<QLabel>("screenshotStatus")->text(),
              QStringLiteral("3 screenshots ready to rename."));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, list().visualRect(row(0)).center());
    QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      list().visualRect(row(1)).center());
    click("renameScreenshotsButton");
    ASSERT_TRUE(awaitRows(1));
    EXPECT_TRUE(exists("2025-11-04_Storage_Growth.png"));
    EXPECT_TRUE(exists("2025-11-05_Harbour_Permit.png"));
    EXPECT_TRUE(exists("Screenshot 2025-11-07 d.png"));

    // One of the former names is taken again, and both files come back all the same.
    m_disk.fileWithContents("home/Downloads/Screenshot 2025-11-04 a.png", "OK");
    ASSERT_TRUE(waitUntilShown("undoRenamesButton"));
    click("undoRenamesButton");
    ASSERT_TRUE(awaitRows(3));
    EXPECT_TRUE(exists("Screenshot 2025-11-04 a 2.png"));
    EXPECT_TRUE(exists("Screenshot 2025-11-05 b.png"));
    EXPECT_FALSE(exists("2025-11-04_Storage_Growth.png"));
    EXPECT_FALSE(isShown("undoRenamesButton"));
}

TEST_F(ScreenshotsJourney, KeysAloneDoTheSame)
{
    find("toolRow.screenshotRename")->setFocus(Qt::TabFocusReason);
    key(Qt::Key_Space);
    ASSERT_TRUE(waitUntilShown("screenshotList"));
    ASSERT_TRUE(awaitRows(3));
    for (int i = 0; i < 20 && !list().hasFocus(); ++i) {
        key(Qt::Key_Tab);
    }
    ASSERT_TRUE(list().hasFocus());
    key(Qt::Key_Down);
    key(Qt::Key_Space);
    auto* const preview = window().findChild<PreviewPanel*>();
    ASSERT_NE(preview, nullptr);
    EXPECT_TRUE(preview->isVisible());
    EXPECT_EQ(list().currentIndex(), row(1));
    key(Qt::Key_Down);
    EXPECT_EQ(list().currentIndex(), row(2)) << "the arrow keys lead on behind the preview";
    EXPECT_TRUE(preview->isVisible());
    key(Qt::Key_Space);
    EXPECT_FALSE(preview->isVisible());
    ASSERT_TRUE(list().hasFocus());

    key(Qt::Key_A, Qt::ControlModifier);
    for (int i = 0; i < 30 && QApplication::focusWidget() != find("renameScreenshotsButton"); ++i) {
        key(Qt::Key_Backtab, Qt::ShiftModifier);
    }
    ASSERT_EQ(QApplication::focusWidget(), find("renameScreenshotsButton"));
    key(Qt::Key_Return);
    ASSERT_TRUE(awaitRows(0));
    EXPECT_TRUE(exists("2025-11-06_Ferry_Timetable.png"));
    EXPECT_TRUE(waitUntilShown("screenshotsNone"));
    EXPECT_TRUE(isShown("undoRenamesButton"));
}

TEST_F(ScreenshotsJourney, AnotherSectionKeepsWhatWasFound)
{
    click("toolRow.screenshotRename");
    ASSERT_TRUE(waitUntilShown("screenshotList"));
    ASSERT_TRUE(awaitRows(3));
    click("toolRow.monitor");
    ASSERT_TRUE(waitFor([this] { return !isShown("screenshotList"); }));
    const std::size_t read = m_recognizer.read().size();
    click("toolRow.screenshotRename");
    ASSERT_TRUE(waitUntilShown("screenshotList"));
    EXPECT_EQ(list().model()->rowCount(), 3);
    EXPECT_EQ(m_recognizer.read().size(), read) << "nothing is read again";
}

} // namespace
} // namespace quorvane
