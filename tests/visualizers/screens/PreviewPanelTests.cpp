// SPDX-License-Identifier: MIT
#include "PreviewPanel.h"

#include "CanvasFixture.h"
#include "DiskTree.h"
#include "DocumentView.h"
#include "InspectorView.h"
#include "MediaPlayer.h"
#include "MediaView.h"
#include "PreviewSamples.h"
#include "QuickLookPreview.h"

#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScrollBar>

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

    /// Opens the panel on the first file and waits until it is read.
    bool opens()
    {
        QTest::keyClick(&m_window, Qt::Key_Space);
        return waitFor([this] { return panel() != nullptr && !panel()->isReading(); });
    }

    QString detail()
    {
        return panel()->findChild<QLabel*>(QStringLiteral("previewDetail"))->text();
    }

    bool tells(const QString& text)
    {
        for (const QLabel* const label : panel()->findChildren<QLabel*>()) {
            if (label->isVisible() && label->text() == text) {
                return true;
            }
        }
        return false;
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
    EXPECT_EQ(QuickLookPreview::shared().previewItemAt(0), m_disk.path("one.txt"));
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
    EXPECT_EQ(detail(), QStringLiteral("2000 × 1500"));
}

TEST_F(PreviewPanelTests, GoesWithTheSelection)
{
    QTest::keyClick(&m_window, Qt::Key_Space);
    ASSERT_TRUE(showsText("first"));
    m_state.select(nullptr);
    EXPECT_TRUE(waitFor([this] { return !panel()->isVisible(); }));
}

TEST_F(PreviewPanelTests, TheKeysOfAPageTurnThePages)
{
    m_disk.fileWithContents("one.txt", test::documentOfPages(3).toStdString());
    ASSERT_TRUE(opens());
    ASSERT_EQ(panel()->shownKind(), PreviewContent::Kind::document);
    EXPECT_EQ(detail(), QStringLiteral("1 of 3"));
    QTest::keyClick(panel(), Qt::Key_End);
    EXPECT_EQ(detail(), QStringLiteral("3 of 3"));
    QTest::keyClick(panel(), Qt::Key_Home);
    EXPECT_EQ(detail(), QStringLiteral("1 of 3"));
    const QScrollBar& bar = *panel()->findChild<DocumentView*>()->verticalScrollBar();
    QTest::keyClick(panel(), Qt::Key_PageDown);
    EXPECT_EQ(bar.value(), bar.pageStep());
    QTest::keyClick(panel(), Qt::Key_PageUp);
    EXPECT_EQ(bar.value(), 0);
}

TEST_F(PreviewPanelTests, AFilmPlaysUntilThePanelCloses)
{
    m_disk.fileWithContents("one.txt", test::contentsOf("film.mp4"));
    ASSERT_TRUE(opens());
    ASSERT_EQ(panel()->shownKind(), PreviewContent::Kind::media);
    const MediaPlayer& player = panel()->findChild<MediaView*>()->player();
    ASSERT_TRUE(waitFor([&player] { return player.status().isPlaying; }));
    QTest::keyClick(panel(), Qt::Key_Space);
    EXPECT_FALSE(panel()->isVisible());
    EXPECT_EQ(player.status(), MediaStatus{});
}

TEST_F(PreviewPanelTests, AFilmEndsWithItsSelection)
{
    m_disk.fileWithContents("one.txt", test::contentsOf("film.mp4"));
    ASSERT_TRUE(opens());
    const MediaPlayer& player = panel()->findChild<MediaView*>()->player();
    QTest::keyClick(panel(), Qt::Key_Down);
    ASSERT_TRUE(showsText("second"));
    EXPECT_EQ(player.status(), MediaStatus{});
    QTest::keyClick(panel(), Qt::Key_Up);
    EXPECT_TRUE(waitFor([this] { return panel()->shownKind() == PreviewContent::Kind::media; }));
}

TEST_F(PreviewPanelTests, EachKindOfBrokenFileShowsItsCard)
{
    const std::string broken[] = {
        "\x89PNG\r\n\x1a\n\xff\xff\xff\xff",
        std::string("\0\0\0\x18"
                    "ftypheic\0\0\0\0mif1heic",
                    24),
        "%PDF-1.7\n%%EOF\n",
        test::lockedDocument(),
        test::contentsOf("film.mp4").substr(0, 200),
        test::waveSound(100).substr(0, 20) + std::string(8, '\0'),
        std::string("text\0and more", 13),
    };
    for (const std::string& contents : broken) {
        m_disk.fileWithContents("one.txt", contents);
        ASSERT_TRUE(opens());
        EXPECT_EQ(panel()->shownKind(), PreviewContent::Kind::summary) << contents.substr(0, 12);
        EXPECT_TRUE(tells(QStringLiteral("File · 20 B")));
        QTest::keyClick(panel(), Qt::Key_Space);
    }
}

TEST_F(PreviewPanelTests, AFolderShowsWhatIsInside)
{
    m_state.select(m_tree->rootPointer());
    ASSERT_TRUE(opens());
    EXPECT_EQ(panel()->shownKind(), PreviewContent::Kind::summary);
    EXPECT_TRUE(tells(QStringLiteral("Folder · 30 B · 2 files")));
}

TEST_F(PreviewPanelTests, WithoutAPanelTheSourceKeepsThePathAlone)
{
    ASSERT_EQ(panel(), nullptr) << "none before the first preview";
    QuickLookPreview::shared().show(m_disk.path("two.txt"));
    EXPECT_EQ(QuickLookPreview::shared().url(), m_disk.path("two.txt"));
    EXPECT_EQ(panel(), nullptr);
}

TEST_F(PreviewPanelTests, SaysThatATextGoesOn)
{
    m_disk.fileWithContents("one.txt", std::string(300 * 1024, 'x'));
    ASSERT_TRUE(opens());
    EXPECT_EQ(detail(), QStringLiteral("First 256.0 KB"));
    m_disk.fileWithContents("one.txt", std::string(6000, '\n'));
    QTest::keyClick(panel(), Qt::Key_Space);
    ASSERT_TRUE(opens());
    EXPECT_EQ(detail(), QStringLiteral("First 5000 lines"));
    QTest::keyClick(panel(), Qt::Key_Down);
    ASSERT_TRUE(showsText("second"));
    EXPECT_EQ(detail(), QString());
}

TEST_F(PreviewPanelTests, ArrowsLeadOnInTheListThatHadTheFocus)
{
    QListWidget list(&m_window);
    list.addItems({QStringLiteral("one.txt"), QStringLiteral("two.txt")});
    QObject::connect(&list, &QListWidget::currentTextChanged, &list,
                     [this](const QString& name) { m_state.select(node(name.toStdString())); });
    list.show();
    list.setFocus();
    list.setCurrentRow(1);
    QTest::keyClick(&list, Qt::Key_Space);
    ASSERT_TRUE(showsText("second"));
    QTest::keyClick(panel(), Qt::Key_Up);
    EXPECT_EQ(list.currentRow(), 0);
    ASSERT_TRUE(showsText("first"));
    QTest::keyClick(panel(), Qt::Key_Escape);
    EXPECT_TRUE(list.hasFocus()) << "the focus comes back";
}

TEST_F(PreviewPanelTests, AQuickFileShowsWithNoCardInBetween)
{
    ASSERT_TRUE(opens());
    ASSERT_EQ(panel()->shownKind(), PreviewContent::Kind::text);
    QTest::keyClick(panel(), Qt::Key_Down);
    bool wasCard = false;
    ASSERT_TRUE(waitFor([&] {
        wasCard = wasCard || panel()->shownKind() == PreviewContent::Kind::summary;
        return panel()->findChild<QPlainTextEdit*>()->toPlainText() == QLatin1String("second");
    }));
    EXPECT_FALSE(wasCard);
}

} // namespace
} // namespace quorvane
