// SPDX-License-Identifier: MIT
#include "Label.h"
#include "ProgramFixture.h"
#include "SegmentedPicker.h"

#include <QAction>
#include <QLabel>

namespace quorvane {
namespace {

class ScanJourney : public ProgramFixture
{};

QStringList textsBelow(const QWidget& widget)
{
    QStringList texts;
    for (const QLabel* const label : widget.findChildren<QLabel*>()) {
        if (label->isVisible()) {
            texts.push_back(label->text());
        }
    }
    return texts;
}

TEST_F(ScanJourney, OpensOnTheWelcomeScreenAndScansNothing)
{
    start();
    ASSERT_TRUE(isShown("welcomeView"));
    EXPECT_FALSE(state().isScanning.value());
    EXPECT_FALSE(state().hasScan());
    const QStringList texts = textsBelow(*find("welcomeView"));
    EXPECT_TRUE(texts.contains(QStringLiteral("Quorvane")));
    EXPECT_TRUE(texts.contains(QStringLiteral("See what is taking up space on your Mac.\n"
                                              "Privacy-first: everything stays on this machine.")));
    EXPECT_EQ(find<QAbstractButton>("welcomeScanHomeButton")->text(),
              QStringLiteral("Scan Home Folder"));
    EXPECT_EQ(find<QAbstractButton>("welcomeChooseFolderButton")->text(),
              QStringLiteral("Choose Folder…"));
    EXPECT_FALSE(isShown("rescanButton"));
    EXPECT_FALSE(isShown("zoomOutButton"));
    EXPECT_FALSE(find<QAction>("cancelScanAction")->isEnabled());
}

TEST_F(ScanJourney, ScansTheHomeFolderFromWelcomeToResult)
{
    start();
    m_gate.close();
    click("welcomeScanHomeButton");
    ASSERT_TRUE(waitUntilShown("scanProgressView"));
    EXPECT_FALSE(isShown("welcomeView"));
    for (const char* const tile : {"chooseFolderTile", "scanHomeTile", "scanFullMacTile"}) {
        EXPECT_FALSE(find(tile)->isEnabled()) << tile;
    }
    EXPECT_TRUE(find<QAction>("cancelScanAction")->isEnabled());

    m_gate.open();
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    EXPECT_EQ(state().rootNode.value()->path(), m_disk.path("home"));
    EXPECT_TRUE(waitUntilShown("rescanButton"));
    EXPECT_TRUE(isShown("zoomOutButton"));
    EXPECT_TRUE(isShown("footerView"));
    EXPECT_FALSE(isShown("scanProgressView"));
    EXPECT_TRUE(find("scanHomeTile")->isEnabled());
    EXPECT_FALSE(find<QAction>("cancelScanAction")->isEnabled());
}

TEST_F(ScanJourney, ScansTheFolderThatTheChooserConfirms)
{
    start();
    state().section = AppSection::monitor;
    click("chooseFolderTile");
    ASSERT_EQ(m_platform.folderChooser.requests.size(), 1U);
    EXPECT_EQ(m_platform.folderChooser.requests[0].prompt, QStringLiteral("Scan"));
    EXPECT_EQ(m_platform.folderChooser.requests[0].message,
              QStringLiteral("Choose a folder or volume to analyze"));
    m_platform.folderChooser.confirm(m_disk.path("other"));
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    EXPECT_EQ(state().section.value(), AppSection::analysis);
    EXPECT_EQ(state().rootNode.value()->path(), m_disk.path("other"));
}

TEST_F(ScanJourney, ACancelledChooserChangesNothing)
{
    start();
    click("welcomeChooseFolderButton");
    ASSERT_EQ(m_platform.folderChooser.requests.size(), 1U);
    settle();
    EXPECT_TRUE(isShown("welcomeView"));
    EXPECT_FALSE(state().isScanning.value());
}

TEST_F(ScanJourney, ACancelledScanLeadsBackToWelcome)
{
    start();
    m_gate.close();
    click("scanHomeTile");
    ASSERT_TRUE(waitUntilShown("scanProgressView"));
    click("cancelScanButton");
    EXPECT_TRUE(state().isScanning.value());
    m_gate.open();
    ASSERT_TRUE(waitUntilShown("welcomeView"));
    EXPECT_FALSE(state().isScanning.value());
    EXPECT_FALSE(state().errorMessage.value().has_value());
}

TEST_F(ScanJourney, AFailureIsToldAndTryingAgainLeadsBackToWelcome)
{
    start();
    m_program->openFolder(m_disk.path("other/notes.md"));
    ASSERT_TRUE(waitUntilShown("scanErrorView"));
    const QStringList texts = textsBelow(*find("scanErrorView"));
    EXPECT_TRUE(texts.contains(QStringLiteral("Scan failed")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Not a directory: ") +
                               m_disk.path("other/notes.md").displayText()));
    click("tryAgainButton");
    ASSERT_TRUE(waitUntilShown("welcomeView"));
    EXPECT_FALSE(state().errorMessage.value().has_value());
}

TEST_F(ScanJourney, AFailureInAnotherSectionIsToldThereWithAWayBack)
{
    start();
    for (const AppSection section : {AppSection::duplicates, AppSection::settings}) {
        m_program->openFolder(m_disk.path("missing"));
        state().section = section;
        ASSERT_TRUE(waitUntilShown("scanFailureNotice"));
        EXPECT_EQ(state().section.value(), section);
        EXPECT_TRUE(textsBelow(*find("scanFailureNotice"))
                        .contains(QStringLiteral("Scan failed: Cannot access ") +
                                  m_disk.path("missing").displayText()));
        click("showScanFailureButton");
        ASSERT_TRUE(waitUntilShown("scanErrorView"));
        EXPECT_FALSE(isShown("scanFailureNotice"));
        click("tryAgainButton");
        ASSERT_TRUE(waitUntilShown("welcomeView"));
    }
    state().section = AppSection::settings;
    settle();
    EXPECT_FALSE(isShown("scanFailureNotice"));
}

TEST_F(ScanJourney, ALaterFailureShowsItsOwnText)
{
    start();
    m_program->openFolder(m_disk.path("missing"));
    ASSERT_TRUE(waitUntilShown("scanErrorView"));
    m_program->openFolder(m_disk.path("other/notes.md"));
    ASSERT_TRUE(waitFor([this] {
        return isShown("scanErrorView") && state().errorMessage.value() &&
               state().errorMessage.value()->startsWith(QLatin1String("Not a directory"));
    }));
    settle();
    EXPECT_TRUE(textsBelow(*find("scanErrorView")).contains(*state().errorMessage.value()));
}

TEST_F(ScanJourney, RescanReadsTheSameFolderAgainAndKeepsTheSection)
{
    AppScreens screens = AppScreens::standard();
    screens.sections.add(AppSection::monitor,
                         [](AppState&, QWidget* parent) { return new QWidget(parent); });
    start(std::move(screens));
    scanHome();
    state().section = AppSection::monitor;
    settle();
    m_disk.file("home/Movies/second.mov", 50000);
    click("rescanButton");
    EXPECT_TRUE(waitFor(
        [this] { return state().hasScan() && state().rootNode.value()->fileCount() == 3; }));
    EXPECT_EQ(state().section.value(), AppSection::monitor);
    EXPECT_TRUE(waitUntilShown("rescanButton"));
    EXPECT_FALSE(isShown("zoomOutButton"));
}

TEST_F(ScanJourney, ZoomOutLeadsToTheParent)
{
    start();
    scanHome();
    FileNode* const child = state().rootNode.value()->largestChild();
    state().focus(state().share(child));
    settle();
    click("zoomOutButton");
    EXPECT_EQ(state().focusNode.value(), state().rootNode.value());
}

TEST_F(ScanJourney, TheFooterSwitchesTheSizeBasis)
{
    start();
    scanHome();
    auto* const picker = find<SegmentedPicker>("sizeBasisPicker");
    ASSERT_EQ(picker->count(), 2);
    EXPECT_EQ(picker->width(), 240);
    EXPECT_EQ(picker->segment(0)->text(), QStringLiteral("Logical size"));
    EXPECT_EQ(picker->segment(1)->text(), QStringLiteral("Size on disk"));
    EXPECT_EQ(picker->currentIndex(), 1);
    QTest::mouseClick(picker->segment(0), Qt::LeftButton);
    EXPECT_EQ(state().sizeMode(), SizeMode::logical);
    EXPECT_EQ(m_platform.preferences.read<QString>("tessaryl.sizeMode"), QStringLiteral("logical"));
    state().setSizeMode(SizeMode::disk);
    EXPECT_EQ(picker->currentIndex(), 1);
    EXPECT_EQ(find<QLabel>("footerHint")->text(),
              QStringLiteral("Hover to inspect · Click a folder to zoom · Right-click for actions "
                             "· Esc zooms out"));
}

} // namespace
} // namespace quorvane
