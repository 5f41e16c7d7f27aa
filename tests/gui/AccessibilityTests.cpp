// SPDX-License-Identifier: MIT
#include "ProgramFixture.h"

#include <QAccessible>
#include <QLabel>
#include <QProgressBar>
#include <QScrollBar>

#include <set>

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
    void expectNames(const char* where)
    {
        for (QWidget* const widget : window().findChildren<QWidget*>()) {
            if (widget->isVisible() && isControl(*widget)) {
                EXPECT_FALSE(accessibleName(*widget).isEmpty())
                    << where << ": " << described(*widget).toStdString();
            }
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

TEST_F(Accessibility, EveryControlOfEveryScreenHasAName)
{
    AppScreens screens = AppScreens::standard();
    screens.sections.add(AppSection::settings,
                         [](AppState&, QWidget* parent) { return new QWidget(parent); });
    start(std::move(screens));
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
        expectNames(title(type).toUtf8().constData());
    }
    state().section = AppSection::duplicates;
    ASSERT_TRUE(waitUntilShown("duplicatesView"));
    expectNames("duplicates");
    for (const auto& [section, view] :
         {std::pair(AppSection::quickWins, "quickWinsView"),
          std::pair(AppSection::devCacheCleaner, "devCacheCleanerView"),
          std::pair(AppSection::uninstaller, "uninstallerView")}) {
        state().section = section;
        ASSERT_TRUE(waitUntilShown(view));
        expectNames(view);
    }
    state().section = AppSection::analysis;
    state().flashMessage = QStringLiteral("Done");
    ASSERT_TRUE(waitUntilShown("flashBanner"));
    expectNames("result");
    m_program->openFolder(m_disk.path("missing"));
    ASSERT_TRUE(waitUntilShown("scanErrorView"));
    expectNames("error");
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
