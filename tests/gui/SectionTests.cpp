// SPDX-License-Identifier: MIT
#include "NavigationRow.h"
#include "ProgramFixture.h"
#include "SegmentedPicker.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>

namespace quorvane {
namespace {

ScreenFactory dummy(const char* name)
{
    return [name](AppState&, QWidget* parent) {
        auto* const screen = new QWidget(parent);
        screen->setObjectName(QLatin1String(name));
        return screen;
    };
}

/// One visualiser of all.
VisualizerScreens treemapAlone(const VisualizerScreens& all)
{
    VisualizerScreens screens;
    screens.add(VisualizerType::treemap, [all](AppState& state, QWidget* parent) {
        return all.make(VisualizerType::treemap, state, parent);
    });
    return screens;
}

/// The program without any section but the analysis, and with one visualiser.
AppScreens analysisAlone()
{
    const AppScreens all = AppScreens::standard();
    AppScreens screens;
    screens.visualizers = treemapAlone(all.visualizers);
    screens.sections.add(AppSection::analysis,
                         [sections = all.sections](AppState& state, QWidget* parent) {
                             return sections.make(AppSection::analysis, state, parent);
                         });
    return screens;
}

class Sections : public ProgramFixture
{
protected:
    void startWith(std::initializer_list<AppSection> sections)
    {
        AppScreens screens = analysisAlone();
        for (const AppSection section : sections) {
            screens.sections.add(section, dummy("dummyScreen"));
        }
        start(std::move(screens));
    }

    QStringList menuTitles()
    {
        QStringList titles;
        for (const QAction* const action : find<QMenuBar>("menuBar")->actions()) {
            titles.push_back(action->text());
        }
        return titles;
    }

    QStringList labels(const char* name)
    {
        QStringList texts;
        for (const QLabel* const label : find(name)->findChildren<QLabel*>()) {
            texts.push_back(label->text());
        }
        return texts;
    }
};

TEST_F(Sections, WhatIsNotThereIsNotOffered)
{
    startWith({});
    EXPECT_FALSE(exists("sidebarTools"));
    EXPECT_FALSE(exists("stagedRow"));
    EXPECT_FALSE(exists("settingsButton"));
    EXPECT_FALSE(exists("settingsAction"));
    EXPECT_EQ(menuTitles(), (QStringList{QStringLiteral("Quorvane"), QStringLiteral("Scan"),
                                         QStringLiteral("Search")}));
    scanHome();
    EXPECT_FALSE(isShown("visualizerPicker"));
}

TEST_F(Sections, TheScanMenuHasItsKeys)
{
    start();
    const auto expectAction = [this](const char* name, const char* text, const char* key) {
        const auto* const action = find<QAction>(name);
        EXPECT_EQ(action->text(), QString::fromUtf8(text));
        EXPECT_EQ(action->shortcut(), QKeySequence(QLatin1String(key)));
    };
    expectAction("scanFolderAction", "Scan Folder…", "Ctrl+O");
    expectAction("scanHomeAction", "Scan Home Folder", "Ctrl+Shift+H");
    expectAction("cancelScanAction", "Cancel Scan", "Ctrl+.");
    expectAction("quitAction", "Quit Quorvane", "Ctrl+Q");
}

TEST_F(Sections, KeysOfTheMenuScanAndCancel)
{
    start();
    m_gate.close();
    QTest::keyClick(&window(), Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_TRUE(waitUntilShown("scanProgressView"));
    QTest::keyClick(&window(), Qt::Key_Period, Qt::ControlModifier);
    m_gate.open();
    ASSERT_TRUE(waitUntilShown("welcomeView"));
    QTest::keyClick(&window(), Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(m_platform.folderChooser.requests.size(), 1U);
}

TEST_F(Sections, RegisteredToolsGetRowsInTheirOwnOrder)
{
    startWith({AppSection::tagging, AppSection::monitor, AppSection::quickWins});
    QStringList titles;
    for (const NavigationRow* const row : find("sidebarTools")->findChildren<NavigationRow*>()) {
        titles.push_back(row->text());
    }
    EXPECT_EQ(titles, (QStringList{QStringLiteral("Quick Wins"), QStringLiteral("Monitor"),
                                   QStringLiteral("Tagging")}));
    click("toolRow.monitor");
    EXPECT_EQ(state().section.value(), AppSection::monitor);
    ASSERT_TRUE(waitUntilShown("dummyScreen"));
    EXPECT_TRUE(find<NavigationRow>("toolRow.monitor")->isCurrent());
    EXPECT_FALSE(find<NavigationRow>("toolRow.tagging")->isCurrent());
    EXPECT_EQ(find<QLabel>("sectionTitle")->text(), QStringLiteral("Monitor"));
}

TEST_F(Sections, ASectionThatNeedsAScanAsksForOne)
{
    startWith({AppSection::duplicates});
    click("toolRow.duplicates");
    ASSERT_TRUE(waitUntilShown("noScanPrompt"));
    const QStringList texts = labels("noScanPrompt");
    EXPECT_TRUE(texts.contains(QStringLiteral("Scan a folder to get Duplicates data")));
    EXPECT_TRUE(texts.contains(
        QStringLiteral("Duplicates looks at the files on your disk. Run a scan first and your "
                       "results will show up here automatically.")));
    EXPECT_EQ(find<QAbstractButton>("promptScanHomeButton")->text(),
              QStringLiteral("Scan Home Folder"));
    EXPECT_EQ(find<QAbstractButton>("promptChooseFolderButton")->text(),
              QStringLiteral("Choose Folder…"));
    EXPECT_FALSE(exists("dummyScreen"));

    click("promptScanHomeButton");
    EXPECT_EQ(state().section.value(), AppSection::analysis);
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    click("toolRow.duplicates");
    EXPECT_TRUE(waitUntilShown("dummyScreen"));
    EXPECT_FALSE(isShown("noScanPrompt"));
}

TEST_F(Sections, ThePromptReturnsWhileTheFolderIsScannedAgain)
{
    startWith({AppSection::quickWins});
    scanHome();
    state().section = AppSection::quickWins;
    ASSERT_TRUE(waitUntilShown("dummyScreen"));
    m_gate.close();
    click("rescanButton");
    ASSERT_TRUE(waitUntilShown("noScanPrompt"));
    EXPECT_TRUE(
        labels("noScanPrompt").contains(QStringLiteral("Scan a folder to get Quick Wins data")));
    m_gate.open();
    EXPECT_TRUE(waitUntilShown("dummyScreen"));
}

TEST_F(Sections, CommandsOfASectionComeWithItsScreen)
{
    startWith({AppSection::search, AppSection::cleanup});
    EXPECT_EQ(menuTitles(), (QStringList{QStringLiteral("Quorvane"), QStringLiteral("Scan"),
                                         QStringLiteral("Search"), QStringLiteral("Cleanup")}));
    find<QAction>("folderSearchAction")->trigger();
    EXPECT_EQ(state().section.value(), AppSection::search);
    find<QAction>("showStagedItemsAction")->trigger();
    EXPECT_EQ(state().section.value(), AppSection::cleanup);
}

TEST_F(Sections, TheBackButtonLeadsFromAToolToTheScanWithoutLosingIt)
{
    start();
    EXPECT_FALSE(isShown("backButton"));
    scanHome();
    EXPECT_FALSE(isShown("backButton"));
    const NodePointer root = state().rootNode.value();
    state().toggleStaged(state().share(root->largestChild()));
    state().section = AppSection::cleanup;
    ASSERT_TRUE(waitUntilShown("backButton"));
    EXPECT_EQ(find("backButton")->toolTip(), QStringLiteral("Back to Analysis (Alt+Left)"));
    QTest::keyClick(&window(), Qt::Key_Left, Qt::AltModifier);
    ASSERT_TRUE(waitFor([this] { return state().section.value() == AppSection::analysis; }));
    EXPECT_EQ(state().rootNode.value(), root);
    EXPECT_EQ(state().stagedNodes.value().size(), 1U);
    state().section = AppSection::cleanup;
    ASSERT_TRUE(waitUntilShown("backButton"));
    click("backButton");
    EXPECT_EQ(state().section.value(), AppSection::analysis);
    EXPECT_EQ(state().rootNode.value(), root);
}

TEST_F(Sections, TheSettingsButtonOpensAndClosesThem)
{
    startWith({AppSection::settings, AppSection::monitor});
    state().section = AppSection::monitor;
    settle();
    auto* const button = find<QAbstractButton>("settingsButton");
    EXPECT_EQ(button->text(), QStringLiteral("Settings"));
    EXPECT_FALSE(button->isChecked());
    click("settingsButton");
    EXPECT_EQ(state().section.value(), AppSection::settings);
    ASSERT_TRUE(waitFor([&] { return button->text() == QLatin1String("Close Settings"); }));
    EXPECT_TRUE(button->isChecked());
    click("settingsButton");
    EXPECT_EQ(state().section.value(), AppSection::monitor);
    find<QAction>("settingsAction")->trigger();
    find<QAction>("settingsAction")->trigger();
    EXPECT_EQ(state().section.value(), AppSection::monitor);
}

TEST_F(Sections, SettingsHideZoomOutAndThePicker)
{
    AppScreens screens = AppScreens::standard();
    screens.sections.add(AppSection::settings, dummy("settings"));
    start(std::move(screens));
    scanHome();
    ASSERT_TRUE(waitUntilShown("visualizerPicker"));
    EXPECT_TRUE(isShown("zoomOutButton"));
    click("settingsButton");
    ASSERT_TRUE(waitFor([this] { return !isShown("visualizerPicker"); }));
    EXPECT_FALSE(isShown("zoomOutButton"));
    EXPECT_TRUE(isShown("rescanButton"));
}

TEST_F(Sections, ASecondVisualizerBringsThePicker)
{
    AppScreens screens = AppScreens::standard();
    screens.visualizers = treemapAlone(screens.visualizers);
    screens.visualizers.add(VisualizerType::sunburst, dummy("sunburst"));
    start(std::move(screens));
    EXPECT_FALSE(isShown("visualizerPicker"));
    scanHome();
    ASSERT_TRUE(waitUntilShown("visualizerPicker"));
    auto* const picker = find<SegmentedPicker>("visualizerPicker");
    ASSERT_EQ(picker->count(), 2);
    EXPECT_EQ(picker->segment(0)->text(), QStringLiteral("Treemap"));
    EXPECT_EQ(picker->currentIndex(), 0);
    QTest::mouseClick(picker->segment(1), Qt::LeftButton);
    EXPECT_EQ(state().visualizer.value(), VisualizerType::sunburst);
    m_gate.close();
    state().rescan();
    EXPECT_TRUE(waitFor([this] { return !isShown("visualizerPicker"); }));
}

} // namespace
} // namespace quorvane
