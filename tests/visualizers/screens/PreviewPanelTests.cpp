// SPDX-License-Identifier: MIT
#include "PreviewPanel.h"

#include "CanvasFixture.h"
#include "DiskTree.h"
#include "InspectorView.h"
#include "QuickLookPreview.h"

#include <QImage>
#include <QLabel>
#include <QPlainTextEdit>

namespace quorvane {
namespace {

class PreviewPanelTests : public CanvasFixture
{
protected:
    void SetUp() override
    {
        m_disk.fileWithContents("one.txt", "first");
        m_disk.fileWithContents("two.txt", "second");
        test::TreeTextOptions options;
        options.rootPath = m_disk.root();
        m_tree = test::treeFromText("one.txt 20\ntwo.txt 10\n", options);
        m_state.rootNode = m_tree->rootPointer();
        m_state.select(node("one.txt"));
        m_state.setInspectorVisible(true);
        m_window.resize(900, 700);
        m_view.setGeometry(600, 0, 300, 700);
        m_window.show();
        QApplication::setActiveWindow(&m_window);
        QCoreApplication::processEvents();
    }

    PreviewPanel* panel() { return m_window.findChild<PreviewPanel*>(); }

    bool showsText(const char* text)
    {
        return waitFor([&] {
            return panel() != nullptr && panel()->isVisible() && !panel()->isReading() &&
                   panel()->findChild<QPlainTextEdit*>()->toPlainText() == QLatin1String(text);
        });
    }

    DiskTree m_disk;
    QWidget m_window;
    InspectorView m_view{m_state, &m_window};
};

TEST_F(PreviewPanelTests, SpaceOpensAndClosesIt)
{
    QTest::keyClick(&m_window, Qt::Key_Space);
    ASSERT_TRUE(showsText("first"));
    EXPECT_EQ(panel()->shownKind(), PreviewContent::Kind::text);
    EXPECT_EQ(QuickLookPreview::shared().url(), m_disk.path("one.txt"));
    EXPECT_EQ(QuickLookPreview::shared().numberOfPreviewItems(), 1);
    QTest::keyClick(panel(), Qt::Key_Space);
    EXPECT_FALSE(panel()->isVisible());
}

TEST_F(PreviewPanelTests, EscapeClosesItAndTheArrowsFollowTheSelection)
{
    QTest::keyClick(&m_window, Qt::Key_Space);
    ASSERT_TRUE(showsText("first"));
    QTest::keyClick(panel(), Qt::Key_Down);
    EXPECT_EQ(m_state.selectedNode.value(), node("two.txt"));
    ASSERT_TRUE(showsText("second"));
    QTest::keyClick(panel(), Qt::Key_Down);
    EXPECT_EQ(m_state.selectedNode.value(), node("two.txt")) << "the last one";
    m_state.select(node("one.txt"));
    ASSERT_TRUE(showsText("first"));
    QTest::keyClick(panel(), Qt::Key_Escape);
    EXPECT_FALSE(panel()->isVisible());
}

TEST_F(PreviewPanelTests, AFileThatIsGoneShowsItsCard)
{
    m_disk.remove("one.txt");
    QTest::keyClick(&m_window, Qt::Key_Space);
    ASSERT_TRUE(waitFor([this] { return panel() != nullptr && !panel()->isReading(); }));
    EXPECT_EQ(panel()->shownKind(), PreviewContent::Kind::summary);
    QStringList texts;
    for (const QLabel* const label : panel()->findChildren<QLabel*>()) {
        texts.append(label->text());
    }
    EXPECT_TRUE(texts.contains(QStringLiteral("File · 20 B")));
}

TEST_F(PreviewPanelTests, ShowsAPictureThatIsLargerThanThePanel)
{
    QImage picture(2000, 1500, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(m_disk.path("one.txt").displayText(), "PNG"));
    QTest::keyClick(&m_window, Qt::Key_Space);
    ASSERT_TRUE(waitFor([this] { return panel() != nullptr && !panel()->isReading(); }));
    EXPECT_EQ(panel()->shownKind(), PreviewContent::Kind::picture);
    EXPECT_EQ(panel()->grab().toImage().pixelColor(panel()->rect().center()), QColor(Qt::red));
}

TEST_F(PreviewPanelTests, GoesWithTheSelection)
{
    QTest::keyClick(&m_window, Qt::Key_Space);
    ASSERT_TRUE(showsText("first"));
    m_state.select(nullptr);
    EXPECT_TRUE(waitFor([this] { return !panel()->isVisible(); }));
}

} // namespace
} // namespace quorvane
