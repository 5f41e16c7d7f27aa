// SPDX-License-Identifier: MIT
#include "Dialog.h"

#include "WidgetsFixture.h"

#include <QAction>
#include <QLineEdit>
#include <QPointer>
#include <QShortcut>
#include <QSignalSpy>
#include <QTest>

namespace quorvane {
namespace {

class Dialogs : public WidgetsTest
{
protected:
    Dialogs()
        : m_field(new QLineEdit(&m_window))
    {
        m_window.resize(800, 600);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window, patience));
        m_field->setFocus();
        m_dialog = new Dialog(&m_window);
        m_dialog->setSymbol(QStringLiteral("trash.fill"), Tint::red);
        m_dialog->setTitle(QStringLiteral("Move 7 staged items to Trash?"));
        m_dialog->setText(QStringLiteral("58.2 GB will be recoverable from the Trash."));
        m_cancel = m_dialog->addButton(QStringLiteral("Cancel"), ButtonRole::bordered, false);
        m_move =
            m_dialog->addButton(QStringLiteral("Move to Trash"), ButtonRole::destructive, true);
    }

    QWidget m_window;
    QLineEdit* m_field;
    QPointer<Dialog> m_dialog;
    Button* m_cancel;
    Button* m_move;
};

TEST_F(Dialogs, TheSafeButtonHasTheFocus)
{
    m_dialog->open();
    EXPECT_EQ(QApplication::focusWidget(), m_cancel);
    EXPECT_EQ(m_dialog->accessibleName(), QStringLiteral("Move 7 staged items to Trash?"));
}

TEST_F(Dialogs, TabStaysInside)
{
    m_dialog->open();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), m_move);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), m_cancel);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), m_move);
}

TEST_F(Dialogs, AKeyOfTheWindowDoesNothingWhileTheQuestionStands)
{
    auto* const shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), &m_window);
    auto* const action = new QAction(&m_window);
    action->setShortcut(Qt::ALT | Qt::Key_Left);
    m_window.addAction(action);
    const QSignalSpy keys(shortcut, &QShortcut::activated);
    const QSignalSpy actions(action, &QAction::triggered);
    const auto press = [] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_S, Qt::ControlModifier);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left, Qt::AltModifier);
    };
    press();
    ASSERT_EQ(keys.count(), 1);
    ASSERT_EQ(actions.count(), 1);
    m_dialog->open();
    press();
    EXPECT_EQ(keys.count(), 1);
    EXPECT_EQ(actions.count(), 1);
    m_dialog->closeDialog();
    press();
    EXPECT_EQ(keys.count(), 2);
    EXPECT_EQ(actions.count(), 2);
}

TEST_F(Dialogs, EscapeRejectsAndGivesTheFocusBack)
{
    QSignalSpy rejected(m_dialog, &Dialog::rejected);
    QSignalSpy accepted(m_dialog, &Dialog::accepted);
    m_dialog->open();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(rejected.count(), 1);
    EXPECT_EQ(accepted.count(), 0);
    EXPECT_EQ(QApplication::focusWidget(), m_field);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(m_dialog.isNull());
}

TEST_F(Dialogs, TheAcceptingButtonAccepts)
{
    QSignalSpy rejected(m_dialog, &Dialog::rejected);
    QSignalSpy accepted(m_dialog, &Dialog::accepted);
    m_dialog->open();
    QTest::mouseClick(m_move, Qt::LeftButton);
    EXPECT_EQ(accepted.count(), 1);
    EXPECT_EQ(rejected.count(), 0);
}

TEST_F(Dialogs, ReturnPressesTheButtonWithTheFocus)
{
    QSignalSpy rejected(m_dialog, &Dialog::rejected);
    m_dialog->open();
    QTest::keyClick(m_cancel, Qt::Key_Return);
    EXPECT_EQ(rejected.count(), 1);
}

TEST_F(Dialogs, TheCardIsCentredAndFollowsTheWindow)
{
    m_dialog->open();
    QWidget* card = m_cancel->parentWidget();
    EXPECT_EQ(card->width(), 400);
    EXPECT_NEAR(card->geometry().center().x(), 400, 1);
    EXPECT_NEAR(card->geometry().center().y(), 300, 1);
    m_window.resize(1000, 700);
    EXPECT_EQ(m_dialog->size(), QSize(1000, 700));
    EXPECT_NEAR(card->geometry().center().x(), 500, 1);
}

TEST_F(Dialogs, TheScrimSwallowsTheMouse)
{
    m_dialog->open();
    EXPECT_EQ(m_window.childAt(5, 5), m_dialog);
}

} // namespace
} // namespace quorvane
