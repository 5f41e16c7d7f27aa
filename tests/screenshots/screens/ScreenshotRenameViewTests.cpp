// SPDX-License-Identifier: MIT
#include "ScreenshotRenameView.h"

#include "AppState.h"
#include "DiskTree.h"
#include "EmptyState.h"
#include "FakePlatform.h"
#include "FileTextRecognizer.h"
#include "Gate.h"
#include "Label.h"
#include "Progress.h"
#include "QuickLookPreview.h"
#include "RowView.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <filesystem>
#include <memory>
#include <string>

namespace quorvane {
namespace {

/// Counts what the preview is asked for.
class CountingPanel final : public QuickLookPanel
{
public:
    CountingPanel() { QuickLookPreview::shared().setPanel(*this); }
    ~CountingPanel() override { QuickLookPreview::shared().forgetPanel(*this); }
    void bringToFront() override { isShown = true; }
    void closePanel() override { isShown = false; }
    bool isOnShow() const override { return isShown; }

    bool isShown = false;
};

class RenameScreen : public ::testing::Test
{
protected:
    RenameScreen()
    {
        m_platform.textRecognizer = &m_recognizer;
        m_platform.userFolder = [this](UserFolder folder) -> std::optional<FilePath> {
            switch (folder) {
            case UserFolder::downloads:
                return m_disk.path("Downloads");
            case UserFolder::screenshots:
                return m_desktopHasFolder ? std::optional(m_disk.path("shots")) : std::nullopt;
            default:
                return std::nullopt;
            }
        };
        m_recognizer.beforeReading = [this](const FilePath&) { m_gate.pass(); };
        m_disk.folder("Downloads");
    }
    ~RenameScreen() override { m_gate.open(); }

    void picture(const std::string& path, const std::string& text)
    {
        m_disk.fileWithContents(path, text);
    }
    void threePictures()
    {
        picture("Downloads/Screenshot 2024-03-05 a.png", "quarterly report");
        picture("Downloads/Screenshot 2024-03-05 b.png", "travel plans");
        picture("Downloads/Screenshot 2024-03-05 c.png", "harbour permit");
    }
    void make()
    {
        m_state = std::make_unique<AppState>(m_platform.platform());
        m_view = std::make_unique<ScreenshotRenameView>(*m_state);
        m_view->resize(1100, 800);
    }
    void show()
    {
        make();
        m_view->show();
        m_view->activateWindow();
    }
    void awaitIdle()
    {
        ASSERT_TRUE(waitFor([this] {
            return !m_state->isScreenshotScanning.value() &&
                   !m_state->isRenamingScreenshots.value() &&
                   !part<ProgressBar>("screenshotProgressBar").isVisible();
        }));
    }
    void showScanned()
    {
        show();
        awaitIdle();
    }
    template<class T = QWidget>
    T& part(const char* name)
    {
        T* const found = m_view->findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    QString text(const char* name) { return part<QLabel>(name).text(); }
    RowView& list() { return part<RowView>("screenshotList"); }
    QModelIndex row(int index) { return list().model()->index(index, 0); }
    Button& scanButton() { return part<Button>("scanScreenshotsButton"); }
    Button& renameButton() { return part<Button>("renameScreenshotsButton"); }
    QComboBox& picker() { return part<QComboBox>("screenshotFolderPicker"); }
    QStringList choices()
    {
        QStringList texts;
        for (int i = 0; i < picker().count(); ++i) {
            texts.append(picker().itemText(i));
        }
        return texts;
    }
    /// As the user does it.
    void choose(const QString& text)
    {
        const int index = picker().findText(text);
        ASSERT_GE(index, 0);
        picker().setCurrentIndex(index);
        Q_EMIT picker().activated(index);
    }
    void click(int index, Qt::KeyboardModifiers keys = {})
    {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, keys,
                          list().visualRect(row(index)).center());
    }
    bool exists(const std::string& path) const
    {
        return std::filesystem::exists(m_disk.path(path).bytes());
    }

    DiskTree m_disk;
    Gate m_gate{Gate::State::open};
    FileTextRecognizer m_recognizer;
    bool m_desktopHasFolder = false;
    FakePlatform m_platform{m_disk.path("home")};
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<ScreenshotRenameView> m_view;
};

TEST_F(RenameScreen, ScansDownloadsByItselfWhenItAppears)
{
    threePictures();
    make();
    EXPECT_EQ(m_state->screenshotStatus.value(), std::nullopt);
    m_view->show();
    awaitIdle();
    EXPECT_EQ(m_state->screenshotScanFolder(), m_disk.path("Downloads"));
    ASSERT_EQ(list().model()->rowCount(), 3);
    EXPECT_EQ(text("screenshotStatus"), QStringLiteral("3 screenshots ready to rename."));
    const Row first = list().rowOf(row(0));
    EXPECT_EQ(first.title, QStringLiteral("Screenshot 2024-03-05 a.png"));
    EXPECT_EQ(first.cells[0].text, QStringLiteral("2024-03-05_Quarterly_Report.png"));
    EXPECT_EQ(first.cells[0].color, ThemeColor::accentText);
    EXPECT_EQ(first.cells[1].text, QStringLiteral("16 B"));
    EXPECT_EQ(first.cells[1].width, 90);
    EXPECT_EQ(list().titles()->title, QStringLiteral("Current name"));
    EXPECT_EQ(list().titles()->cells[0].text, QStringLiteral("Proposed name"));
    EXPECT_EQ(list().titles()->cells[1].text, QStringLiteral("Size"));

    m_view->hide();
    m_view->show();
    EXPECT_FALSE(m_state->isScreenshotScanning.value()) << "there are candidates already";
}

TEST_F(RenameScreen, WhileItReadsItClaimsNothingAndTellsHowFarItIs)
{
    threePictures();
    m_gate.close();
    show();
    m_gate.awaitVisitor();
    ASSERT_TRUE(
        waitFor([this] { return text("screenshotProgressCount") == QLatin1String("0 of 3"); }));
    EXPECT_EQ(text("screenshotProgressStatus"), QStringLiteral("Running OCR…"));
    EXPECT_EQ(m_view->shownEmpty(), QStringLiteral("screenshotsReading"));
    for (const auto* const label : m_view->findChildren<QLabel*>()) {
        EXPECT_FALSE(label->isVisible() && label->text().contains(QLatin1String("No screenshots")))
            << label->text().toStdString();
    }
    EXPECT_TRUE(scanButton().text().isEmpty()) << "a spinner stands in its place";
    EXPECT_EQ(scanButton().accessibleName(), QStringLiteral("Scan Folder"));
    EXPECT_TRUE(scanButton().findChild<Spinner*>()->isVisible());
    EXPECT_FALSE(renameButton().isEnabled());
    m_gate.open();
    awaitIdle();
    EXPECT_EQ(scanButton().text(), QStringLiteral("Rescan"));
    EXPECT_FALSE(scanButton().findChild<Spinner*>()->isVisible());
    EXPECT_EQ(m_view->shownEmpty(), QString());
}

TEST_F(RenameScreen, TellsThatThereIsNothing)
{
    showScanned();
    EXPECT_EQ(m_view->shownEmpty(), QStringLiteral("screenshotsNone"));
    EXPECT_EQ(text("screenshotStatus"),
              QStringLiteral("No screenshots found to rename in this folder."));
    EXPECT_EQ(scanButton().text(), QStringLiteral("Scan Folder"));
    QStringList texts;
    for (const auto* const label : part("screenshotsNone").findChildren<QLabel*>()) {
        texts.append(label->text());
    }
    EXPECT_TRUE(texts.contains(QStringLiteral("No screenshots found")));
    EXPECT_TRUE(texts.contains(
        QStringLiteral("Scans the folder root for images named like screenshots\n(Screen Shot, "
                       "Screenshot, Bildschirmfoto…) and uses on-device OCR\nto rename them after "
                       "what's on screen.")));
}

TEST_F(RenameScreen, NamesThePackageThatIsMissing)
{
    const auto texts = [this](const char* name) {
        QString all;
        for (const auto* const label : part(name).findChildren<QLabel*>()) {
            all += label->text() + QLatin1Char('\n');
        }
        return all;
    };
    threePictures();
    m_recognizer.setMissing("tesseract-ocr-eng");
    showScanned();
    EXPECT_EQ(m_view->shownEmpty(), QStringLiteral("screenshotsNoEngine"));
    EXPECT_TRUE(texts("screenshotsNoEngine").contains(QLatin1String("tesseract-ocr-eng")));
    m_recognizer.setMissing({});
    m_recognizer.setFurther("tesseract-ocr-fin");
    std::filesystem::remove_all(m_disk.path("Downloads").bytes());
    QTest::mouseClick(&scanButton(), Qt::LeftButton);
    awaitIdle();
    EXPECT_EQ(m_view->shownEmpty(), QStringLiteral("screenshotsNone"));
    EXPECT_TRUE(texts("screenshotsNone").contains(QLatin1String("tesseract-ocr-fin")));
}

TEST_F(RenameScreen, RenamesWhatIsSelectedAndOffersToUndoIt)
{
    threePictures();
    showScanned();
    EXPECT_FALSE(renameButton().isEnabled());
    EXPECT_FALSE(part("undoRenamesButton").isVisible());
    click(0);
    click(2, Qt::ControlModifier);
    ASSERT_TRUE(renameButton().isEnabled());
    QTest::mouseClick(&renameButton(), Qt::LeftButton);
    EXPECT_FALSE(renameButton().isEnabled());
    EXPECT_FALSE(list().selectionModel()->hasSelection());
    awaitIdle();
    EXPECT_TRUE(exists("Downloads/2024-03-05_Quarterly_Report.png"));
    EXPECT_TRUE(exists("Downloads/2024-03-05_Harbour_Permit.png"));
    ASSERT_EQ(list().model()->rowCount(), 1);
    EXPECT_EQ(list().rowOf(row(0)).title, QStringLiteral("Screenshot 2024-03-05 b.png"));
    EXPECT_EQ(text("renamedText"), QStringLiteral("Renamed 2 files."));

    QTest::mouseClick(&part("undoRenamesButton"), Qt::LeftButton);
    awaitIdle();
    EXPECT_EQ(list().model()->rowCount(), 3);
    EXPECT_FALSE(part("undoRenamesButton").isVisible());
}

TEST_F(RenameScreen, ARescanEmptiesTheSelectionAndEndsTheUndo)
{
    threePictures();
    showScanned();
    click(0);
    QTest::mouseClick(&renameButton(), Qt::LeftButton);
    awaitIdle();
    ASSERT_TRUE(part("undoRenamesButton").isVisible());
    click(0);
    QTest::mouseClick(&scanButton(), Qt::LeftButton);
    EXPECT_FALSE(list().selectionModel()->hasSelection());
    awaitIdle();
    EXPECT_FALSE(part("undoRenamesButton").isVisible());
    EXPECT_EQ(list().model()->rowCount(), 2);
}

TEST_F(RenameScreen, AnotherChoiceOfFolderOnlyEmptiesTheSelection)
{
    threePictures();
    picture("home/Screenshot 2024-03-05.png", "packing list");
    showScanned();
    EXPECT_EQ(choices(), (QStringList{QStringLiteral("Downloads"), QStringLiteral("Desktop"),
                                      QStringLiteral("Documents"), QStringLiteral("Home"),
                                      QStringLiteral("Other folder…")}));
    EXPECT_EQ(picker().width(), 140);
    click(0);
    choose(QStringLiteral("Home"));
    EXPECT_FALSE(list().selectionModel()->hasSelection());
    EXPECT_FALSE(m_state->isScreenshotScanning.value());
    EXPECT_EQ(list().model()->rowCount(), 3);
    QTest::mouseClick(&scanButton(), Qt::LeftButton);
    EXPECT_EQ(m_state->screenshotScanFolder(), m_disk.path("home"));
    awaitIdle();
    EXPECT_EQ(list().model()->rowCount(), 1);
}

TEST_F(RenameScreen, OffersTheDesktopsOwnFolderWhereThereIsOne)
{
    m_desktopHasFolder = true;
    picture("shots/Screenshot 2024-03-05.png", "packing list");
    showScanned();
    ASSERT_TRUE(waitFor([this] { return choices().contains(QStringLiteral("Screenshots")); }));
    EXPECT_EQ(picker().currentText(), QStringLiteral("Downloads"));
    choose(QStringLiteral("Screenshots"));
    QTest::mouseClick(&scanButton(), Qt::LeftButton);
    awaitIdle();
    EXPECT_EQ(list().model()->rowCount(), 1);
}

TEST_F(RenameScreen, AnotherFolderComesFromTheChooser)
{
    picture("elsewhere/Screenshot 2024-03-05.png", "packing list");
    showScanned();
    choose(QStringLiteral("Other folder…"));
    ASSERT_EQ(m_platform.folderChooser.requests.size(), 1U);
    EXPECT_EQ(picker().currentText(), QStringLiteral("Downloads")) << "not answered so far";
    m_platform.folderChooser.confirm(m_disk.path("elsewhere"));
    ASSERT_TRUE(waitFor([this] { return picker().currentText() == QLatin1String("elsewhere"); }));
    EXPECT_FALSE(m_state->isScreenshotScanning.value());
    QTest::mouseClick(&scanButton(), Qt::LeftButton);
    awaitIdle();
    EXPECT_EQ(list().model()->rowCount(), 1);
}

TEST_F(RenameScreen, KeysSelectPreviewAndRename)
{
    const CountingPanel panel;
    threePictures();
    showScanned();
    list().setFocus(Qt::TabFocusReason);
    QTest::keyClick(&list(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Up);
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_TRUE(panel.isShown);
    EXPECT_EQ(QuickLookPreview::shared().url(),
              m_disk.path("Downloads/Screenshot 2024-03-05 a.png"));
    QTest::keyClick(&list(), Qt::Key_Down);
    EXPECT_EQ(QuickLookPreview::shared().url(),
              m_disk.path("Downloads/Screenshot 2024-03-05 b.png"))
        << "the panel follows the rows";
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_FALSE(panel.isShown);

    QTest::keyClick(&list(), Qt::Key_Up);
    QTest::keyClick(&list(), Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(list().selectionModel()->selectedRows().size(), 2);
    QTest::keyClick(&list(), Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(list().selectionModel()->selectedRows().size(), 1);
    QTest::keyClick(&list(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(list().selectionModel()->selectedRows().size(), 3);
    renameButton().setFocus();
    QTest::keyClick(&renameButton(), Qt::Key_Space);
    awaitIdle();
    EXPECT_EQ(list().model()->rowCount(), 0);
    EXPECT_EQ(text("renamedText"), QStringLiteral("Renamed 3 files."));
}

TEST_F(RenameScreen, RowsShowWhatIsOnThePicture)
{
    QImage image(320, 200, QImage::Format_RGB32);
    image.fill(QColor(10, 200, 30));
    ASSERT_TRUE(
        image.save(QString::fromStdString(m_disk.path("Downloads/Screenshot green.png").bytes())));
    m_recognizer.beforeReading = {};
    make();
    // The bytes of a picture are no title.
    m_state->screenshotCandidates = std::vector{ScreenshotCandidate{
        m_disk.path("Downloads/Screenshot green.png"), "Green_Field.png", 5, {}}};
    m_view->show();
    const auto colourOfRow = [this] {
        const QImage shot = list().viewport()->grab().toImage();
        const QPoint middle = list().placesOf(row(0)).symbol.center();
        return shot.pixelColor(middle * shot.devicePixelRatio());
    };
    ASSERT_TRUE(waitFor([this] { return list().model()->rowCount() == 1; }));
    EXPECT_EQ(list().placesOf(row(0)).symbol.size(), QSize(64, 40));
    EXPECT_TRUE(waitFor([&] {
        const QColor colour = colourOfRow();
        return colour.green() > 180 && colour.red() < 30;
    }));
}

TEST_F(RenameScreen, TheMenuOfARowLeadsToTheFileManager)
{
    threePictures();
    showScanned();
    const QPoint place = list().visualRect(row(1)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, list().viewport()->mapToGlobal(place));
    QApplication::sendEvent(list().viewport(), &event);
    auto* const menu = m_view->findChild<QMenu*>(QStringLiteral("screenshotMenu"));
    ASSERT_NE(menu, nullptr);
    for (QAction* const action : menu->actions()) {
        if (action->text() == QLatin1String("Reveal in Finder")) {
            action->trigger();
        }
    }
    menu->close();
    EXPECT_EQ(m_platform.workspace.revealed,
              std::vector{m_disk.path("Downloads/Screenshot 2024-03-05 b.png")});
}

} // namespace
} // namespace quorvane
