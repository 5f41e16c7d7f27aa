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
#include "Theme.h"
#include "WindowPreview.h"

#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>

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
    WindowPreview m_preview{m_state, &m_window};
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
    m_disk.fileWithContents("one.txt", test::contentsOf("long-film.mp4"));
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
    m_disk.fileWithContents("one.txt", test::contentsOf("long-film.mp4"));
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
    // What has been posted, but no timer: the reading has begun.
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(panel()->shownKind(), PreviewContent::Kind::text) << "the card does not come at once";
    EXPECT_TRUE(showsText("second"));
}

TEST_F(PreviewPanelTests, SpaceAndEscapeCloseItWithTheFocusBesideIt)
{
    QWidget beside(&m_window);
    beside.setFocusPolicy(Qt::StrongFocus);
    beside.setGeometry(0, 0, 20, 20);
    beside.show();
    int escapes = 0;
    QShortcut zoomOut(QKeySequence(Qt::Key_Escape), &m_window);
    QObject::connect(&zoomOut, &QShortcut::activated, &zoomOut, [&escapes] { ++escapes; });
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Escape}) {
        ASSERT_TRUE(opens());
        ASSERT_TRUE(panel()->isVisible());
        beside.setFocus();
        QTest::keyClick(&beside, key);
        EXPECT_FALSE(panel()->isVisible()) << key;
        EXPECT_TRUE(beside.hasFocus()) << key;
    }
    EXPECT_EQ(escapes, 0);
    QTest::keyClick(&beside, Qt::Key_Escape);
    EXPECT_EQ(escapes, 1) << "with no panel the key does what it did";
}

TEST_F(PreviewPanelTests, EscapeInAnotherWindowIsNotThePanels)
{
    QWidget other;
    other.show();
    ASSERT_TRUE(opens());
    QTest::keyClick(&other, Qt::Key_Escape);
    EXPECT_TRUE(panel()->isVisible());
}

TEST_F(PreviewPanelTests, WhoGoesOnBesideItKeepsTheKeyboard)
{
    QWidget beside(&m_window);
    beside.setFocusPolicy(Qt::StrongFocus);
    beside.show();
    ASSERT_TRUE(opens());
    EXPECT_TRUE(panel()->hasFocus());
    beside.setFocus();
    m_state.select(node("two.txt"));
    ASSERT_TRUE(showsText("second"));
    EXPECT_TRUE(beside.hasFocus());
    QTest::keyClick(&beside, Qt::Key_Space);
    EXPECT_FALSE(panel()->isVisible());
}

TEST_F(PreviewPanelTests, TheArrowsPassWhatIsHidden)
{
    test::TreeTextOptions options;
    options.rootPath = m_disk.root();
    m_tree = test::treeFromText("one.txt 30\nnode_modules/\n  a 20\ntwo.txt 10\n", options);
    m_state.rootNode = m_tree->rootPointer();
    m_state.select(node("one.txt"));
    ASSERT_TRUE(opens());
    QTest::keyClick(panel(), Qt::Key_Down);
    EXPECT_EQ(m_state.selectedNode.value(), node("node_modules"));
    m_state.setBloatFilters({{"Node.js", false}});
    QTest::keyClick(panel(), Qt::Key_Down);
    EXPECT_EQ(m_state.selectedNode.value(), node("two.txt")) << "from what is hidden to the next";
    QTest::keyClick(panel(), Qt::Key_Up);
    EXPECT_EQ(m_state.selectedNode.value(), node("one.txt"));
    QTest::keyClick(panel(), Qt::Key_Up);
    EXPECT_EQ(m_state.selectedNode.value(), node("one.txt")) << "the first one";
    QTest::keyClick(panel(), Qt::Key_Down);
    EXPECT_EQ(m_state.selectedNode.value(), node("two.txt"));
}

TEST_F(PreviewPanelTests, AFilmEndsWithItsWindow)
{
    m_disk.fileWithContents("one.txt", test::contentsOf("long-film.mp4"));
    ASSERT_TRUE(opens());
    const MediaPlayer& player = panel()->findChild<MediaView*>()->player();
    ASSERT_TRUE(waitFor([&player] { return player.status().isPlaying; }));
    m_window.close();
    EXPECT_EQ(player.status(), MediaStatus{});
    m_window.show();
    EXPECT_FALSE(panel()->isVisible());
    QApplication::setActiveWindow(&m_window);
    EXPECT_TRUE(opens()) << "and opens again";
    EXPECT_TRUE(panel()->isVisible());
}

TEST_F(PreviewPanelTests, ClicksBesideItPassItsShadow)
{
    ASSERT_TRUE(opens());
    const QRect frame = panel()->geometry();
    QPushButton below(&m_window);
    below.setGeometry(0, 0, frame.left() + 20, m_window.height());
    below.lower();
    below.show();
    const int middle = frame.center().y();
    EXPECT_EQ(m_window.childAt(frame.left() - 1, middle), &below);
    EXPECT_EQ(m_window.childAt(frame.left() - 20, middle), &below);
    const QWidget* const inside = m_window.childAt(frame.left() + 1, middle);
    EXPECT_TRUE(inside == panel() || panel()->isAncestorOf(inside));
}

TEST_F(PreviewPanelTests, TheShadowComesAndGoesWithIt)
{
    const auto grey = [this] {
        const QRect frame = panel()->geometry();
        const QImage image = m_window.grab().toImage();
        return image.pixelColor(frame.left() - 4, frame.center().y()).lightness();
    };
    ASSERT_TRUE(opens());
    const int shaded = grey();
    QTest::keyClick(panel(), Qt::Key_Space);
    EXPECT_LT(shaded, grey());
}

TEST_F(PreviewPanelTests, ALongLineIsBrokenAtTheWidthOfThePanel)
{
    m_disk.fileWithContents("one.txt", std::string(400, 'x'));
    ASSERT_TRUE(opens());
    const auto& text = *panel()->findChild<QPlainTextEdit*>();
    EXPECT_GT(text.document()->firstBlock().layout()->lineCount(), 1);
    EXPECT_EQ(text.horizontalScrollBar()->maximum(), 0);
}

TEST_F(PreviewPanelTests, TheTextLiesOnTheGroundOfThePanel)
{
    ASSERT_TRUE(opens());
    const QImage image = panel()->grab().toImage();
    const QColor ground = themeColor(ThemeColor::popover);
    const auto& text = *panel()->findChild<QPlainTextEdit*>();
    const QRect place(text.mapTo(panel(), QPoint()), text.size());
    EXPECT_EQ(image.pixelColor(place.bottomLeft() + QPoint(40, -40)), ground);
    EXPECT_EQ(image.pixelColor(place.bottomLeft() + QPoint(40, 4)), ground) << "below the text";
    EXPECT_EQ(image.pixelColor(40, 4), ground) << "in the header";
}

TEST_F(PreviewPanelTests, ShowsAFileWhoseNameIsNotUtf8)
{
    const std::string name = "caf\xe9 <b>.txt";
    m_disk.fileWithContents(name, "first");
    test::TreeTextOptions options;
    options.rootPath = m_disk.root();
    m_tree = test::treeFromText(name + " 20\n", options);
    m_state.rootNode = m_tree->rootPointer();
    m_state.select(m_tree->rootPointer());
    m_state.select(NodePointer(m_tree->rootPointer(), &m_tree->root().children()[0]));
    QTest::keyClick(&m_window, Qt::Key_Space);
    ASSERT_TRUE(showsText("first"));
    EXPECT_EQ(QuickLookPreview::shared().url(), m_disk.path(name));
    EXPECT_TRUE(tells(QStringLiteral("caf\uFFFD <b>.txt")));
}

TEST_F(PreviewPanelTests, TheCardOfALongNameStaysInThePanel)
{
    const std::string name = "begin" + std::string(200, 'w') + "end";
    m_disk.file(name);
    test::TreeTextOptions options;
    options.rootPath = m_disk.root();
    m_tree = test::treeFromText(name + " 20\n", options);
    m_state.rootNode = m_tree->rootPointer();
    m_state.select(NodePointer(m_tree->rootPointer(), &m_tree->root().children()[0]));
    ASSERT_TRUE(opens());
    ASSERT_EQ(panel()->shownKind(), PreviewContent::Kind::summary);
    int headings = 0;
    for (const QLabel* const label : panel()->findChildren<QLabel*>()) {
        if (label->isVisible() && label->text().startsWith(QStringLiteral("beginw")) &&
            label->text().endsWith(QStringLiteral("wend")) && label->text().contains(u'…')) {
            ++headings;
            EXPECT_LE(label->sizeHint().width(), panel()->width());
        }
    }
    EXPECT_EQ(headings, 1);
}

} // namespace
} // namespace quorvane
