// SPDX-License-Identifier: MIT
#include "ProgramFixture.h"
#include "TreeText.h"

#include <QAccessible>
#include <QLabel>
#include <QProgressBar>
#include <QScrollBar>

#include <set>
#include <string>

namespace quorvane {
namespace {

QString accessibleName(QWidget& widget)
{
    const QAccessibleInterface* const face = QAccessible::queryAccessibleInterface(&widget);
    return face == nullptr ? QString() : face->text(QAccessible::Name);
}

QString described(const QWidget& widget)
{
    return QLatin1String(widget.metaObject()->className()) + QLatin1Char(' ') + widget.objectName();
}

bool isControl(const QWidget& widget)
{
    return (widget.focusPolicy() & Qt::TabFocus) != 0 ||
           qobject_cast<const QProgressBar*>(&widget) != nullptr;
}

class Accessibility : public ProgramFixture
{
protected:
    /// What is on show has controls, and each of them a name.
    void expectNames(const std::string& where, int minInDetail = 1)
    {
        const QWidget& detail = *find("detailArea");
        int inDetail = 0;
        for (QWidget* const widget : window().findChildren<QWidget*>()) {
            if (widget->isVisible() && isControl(*widget)) {
                inDetail += detail.isAncestorOf(widget) ? 1 : 0;
                EXPECT_FALSE(accessibleName(*widget).isEmpty())
                    << where << ": " << described(*widget).toStdString();
            }
        }
        EXPECT_GE(inDetail, minInDetail) << where;
    }

    void expectNamesInSections(const std::string& when)
    {
        for (const AppSection section : sectionKeys()) {
            ASSERT_TRUE(showSection(section)) << rawValue(section);
            // The cleanup without a queue only says that there is nothing.
            const bool isEmpty =
                section == AppSection::cleanup && state().stagedNodes.value().empty();
            expectNames(std::string(rawValue(section)) + when, isEmpty ? 0 : 1);
        }
    }

    /// Where the Tab key leads from control to control, once around.
    QStringList tabWalk()
    {
        QStringList names;
        std::set<const QWidget*> seen;
        for (;;) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            const QWidget* const focused = QApplication::focusWidget();
            if (focused == nullptr || !seen.insert(focused).second) {
                return names;
            }
            names.push_back(focused->objectName());
        }
    }
};

TEST_F(Accessibility, EveryControlOfTheAnalysisHasAName)
{
    start();
    expectNames("welcome");
    state().section = AppSection::duplicates;
    ASSERT_TRUE(waitUntilShown("noScanPrompt"));
    expectNames("prompt");
    m_gate.close();
    state().scanHome();
    ASSERT_TRUE(waitUntilShown("scanProgressView"));
    expectNames("progress");
    m_gate.open();
    ASSERT_TRUE(waitUntilShown("visualizerHost"));
    settle();
    for (const VisualizerType type : allVisualizerTypes) {
        state().visualizer = type;
        settle();
        expectNames(title(type).toStdString());
    }
    state().section = AppSection::analysis;
    state().flashMessage = QStringLiteral("Done");
    ASSERT_TRUE(waitUntilShown("flashBanner"));
    expectNames("result");
    m_program->openFolder(m_disk.path("missing"));
    ASSERT_TRUE(waitUntilShown("scanErrorView"));
    expectNames("error");
}

TEST_F(Accessibility, EveryControlOfEverySectionHasAName)
{
    startWithSections();
    scanHome();
    expectNamesInSections("");
    state().toggleStaged(state().share(&test::nodeAt(*state().rootNode.value(), "Movies")));
    expectNamesInSections(" with a queue");
    ASSERT_TRUE(showSection(AppSection::settings));
    int pages = 0;
    for (const char* const page : {"General", "Appearance", "About"}) {
        const std::string name = "settings" + std::string(page);
        click(("settingsCategory." + std::to_string(pages++)).c_str());
        ASSERT_TRUE(waitUntilShown(name.c_str()));
        expectNames(name);
    }
    EXPECT_FALSE(exists(("settingsCategory." + std::to_string(pages)).c_str()));
    ASSERT_TRUE(showSection(AppSection::cleanup));
    click("moveToTrashButton");
    ASSERT_TRUE(waitUntilShown("confirmTrashDialog"));
    expectNames("question");
}

TEST_F(Accessibility, TabLeadsThroughTheWelcomeScreenInReadingOrder)
{
    start();
    window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window(), patience));
    EXPECT_EQ(QApplication::focusWidget(), &window());
    const QStringList expected{
        QStringLiteral("chooseFolderTile"),         QStringLiteral("scanHomeTile"),
        QStringLiteral("scanFullMacTile"),          QStringLiteral("toolRow.quickWins"),
        QStringLiteral("toolRow.duplicates"),       QStringLiteral("toolRow.uninstaller"),
        QStringLiteral("toolRow.snapshots"),        QStringLiteral("toolRow.cleanup"),
        QStringLiteral("toolRow.devCacheCleaner"),  QStringLiteral("toolRow.search"),
        QStringLiteral("toolRow.monitor"),          QStringLiteral("toolRow.tagging"),
        QStringLiteral("toolRow.screenshotRename"), QStringLiteral("sidebarToggle"),
        QStringLiteral("settingsButton"),           QStringLiteral("welcomeScanHomeButton"),
        QStringLiteral("welcomeChooseFolderButton")};
    const QStringList walked = tabWalk();
    EXPECT_EQ(walked, expected) << walked.join(QLatin1Char(' ')).toStdString();
}

TEST_F(Accessibility, AScanCanBeStartedAndStoppedByKeysAlone)
{
    start();
    window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window(), patience));
    m_gate.close();
    while (QApplication::focusWidget()->objectName() != QLatin1String("welcomeScanHomeButton")) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    ASSERT_TRUE(waitUntilShown("scanProgressView"));
    // The focus follows to the screen that took the button's place.
    ASSERT_NE(QApplication::focusWidget(), nullptr);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("cancelScanButton"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    m_gate.open();
    EXPECT_TRUE(waitUntilShown("welcomeView"));
}

} // namespace
} // namespace quorvane
