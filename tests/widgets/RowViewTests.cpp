// SPDX-License-Identifier: MIT
#include "RowView.h"

#include "RowAccessibility.h"
#include "WidgetsFixture.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QClipboard>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace quorvane {
namespace {

enum Action { reveal = 3, stage = 7 };

Row sample(int number)
{
    Row row;
    row.symbol = QStringLiteral("folder.fill");
    row.title = QStringLiteral("Row %1").arg(number);
    row.path = QStringLiteral("/home/mara/row %1").arg(number);
    row.cells = {RowCell::number(QStringLiteral("%1 MB").arg(number), 84)};
    RowAction button;
    button.id = stage;
    button.text = QStringLiteral("Stage");
    button.toolTip = QStringLiteral("Stage for Trash");
    row.actions = {
        RowAction::icon(reveal, QStringLiteral("magnifyingglass"), QStringLiteral("Reveal")),
        button};
    return row;
}

constexpr RowPart revealPart{reveal, 0};
constexpr RowPart stagePart{stage, 1};

class RowViewTests : public WidgetsTest
{
protected:
    RowViewTests()
    {
        m_window.resize(700, 400);
        m_before.setGeometry(0, 0, 100, 20);
        m_view.setGeometry(0, 20, 700, 340);
        m_view.setAccessibleName(QStringLiteral("Samples"));
        m_after.setGeometry(0, 370, 100, 20);
        m_window.show();
        QApplication::setActiveWindow(&m_window);
    }

    void show(int count)
    {
        m_model.setRows(count, sample);
        QApplication::processEvents();
    }
    void show(std::vector<Row> rows)
    {
        m_model.setRows(std::move(rows));
        QApplication::processEvents();
    }
    void enter()
    {
        m_before.setFocus();
        QTest::keyClick(&m_before, Qt::Key_Tab);
        ASSERT_TRUE(m_view.hasFocus());
    }
    void key(Qt::Key key) { QTest::keyClick(&m_view, key); }
    void click(const QPoint& place)
    {
        QTest::mouseClick(m_view.viewport(), Qt::LeftButton, {}, place);
    }
    int currentRow() const { return m_view.currentIndex().row(); }
    QModelIndex index(int row) const { return m_model.index(row); }

    QWidget m_window;
    QPushButton m_before{&m_window};
    RowModel m_model;
    RowView m_view{m_model, {}, &m_window};
    QPushButton m_after{&m_window};
    QSignalSpy m_activated{&m_view, &RowView::rowActivated};
    QSignalSpy m_triggered{&m_view, &RowView::actionTriggered};
};

TEST_F(RowViewTests, MakesOnlyTheRowsInSightOfAMillion)
{
    int made = 0;
    m_model.setRows(1'000'000, [&made](int row) {
        ++made;
        return sample(row);
    });
    m_view.grab();
    EXPECT_LT(made, 200);
    made = 0;
    m_view.setCurrent(index(999'999));
    m_view.grab();
    EXPECT_LT(made, 200);
    EXPECT_TRUE(m_view.viewport()->rect().contains(m_view.visualRect(index(999'999)).center()));
    EXPECT_EQ(m_view.visualRect(index(999'999)).height(), 48);
}

TEST_F(RowViewTests, AClickActivatesARowAndAButtonOnlyItself)
{
    show(3);
    click(m_view.visualRect(index(1)).center());
    ASSERT_EQ(m_activated.count(), 1);
    EXPECT_EQ(m_activated[0][0].toModelIndex(), index(1));
    EXPECT_TRUE(m_view.selectionModel()->isSelected(index(1)));
    click(m_view.partRect(index(2), stagePart).center());
    EXPECT_EQ(m_activated.count(), 1);
    ASSERT_EQ(m_triggered.count(), 1);
    EXPECT_EQ(m_triggered[0][0].toModelIndex(), index(2));
    EXPECT_EQ(m_triggered[0][1].toInt(), stage);
    EXPECT_TRUE(m_view.selectionModel()->isSelected(index(1))) << "a button selects nothing";
}

TEST_F(RowViewTests, AButtonThatIsLeftBeforeItIsLetGoDoesNothing)
{
    show(3);
    const QPoint place = m_view.partRect(index(0), stagePart).center();
    QTest::mousePress(m_view.viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(m_view.lookOf(index(0)).pressed, stagePart);
    QTest::mouseRelease(m_view.viewport(), Qt::LeftButton, {}, place + QPoint(0, 60));
    EXPECT_EQ(m_triggered.count(), 0);
    EXPECT_EQ(m_activated.count(), 0);
}

TEST_F(RowViewTests, KeysReachEveryRowAndEveryButton)
{
    show(3);
    enter();
    EXPECT_EQ(currentRow(), 0);
    EXPECT_EQ(m_view.currentPart(), std::nullopt);
    EXPECT_TRUE(m_view.lookOf(index(0)).state & QStyle::State_HasFocus);
    key(Qt::Key_Right);
    EXPECT_EQ(m_view.currentPart(), revealPart);
    key(Qt::Key_Down);
    EXPECT_EQ(currentRow(), 1);
    EXPECT_EQ(m_view.currentPart(), revealPart) << "from button to button of like rows";
    key(Qt::Key_Tab);
    EXPECT_EQ(m_view.currentPart(), stagePart);
    key(Qt::Key_Space);
    ASSERT_EQ(m_triggered.count(), 1);
    EXPECT_EQ(m_triggered[0][1].toInt(), stage);
    key(Qt::Key_Tab);
    EXPECT_TRUE(m_after.hasFocus()) << "after the last button the focus goes on";
    QTest::keyClick(&m_after, Qt::Key_Backtab);
    EXPECT_EQ(m_view.currentPart(), stagePart);
    key(Qt::Key_Left);
    key(Qt::Key_Left);
    EXPECT_EQ(m_view.currentPart(), std::nullopt);
    key(Qt::Key_Return);
    EXPECT_EQ(m_activated.count(), 1);
    key(Qt::Key_End);
    EXPECT_EQ(currentRow(), 2);
}

TEST_F(RowViewTests, SpaceTogglesACheckBox)
{
    Row row = sample(0);
    row.isChecked = false;
    show({row});
    enter();
    key(Qt::Key_Space);
    ASSERT_EQ(m_triggered.count(), 1);
    EXPECT_EQ(m_triggered[0][1].toInt(), RowAction::toggled);
    click(m_view.placesOf(index(0)).control.center());
    EXPECT_EQ(m_triggered.count(), 2);
    EXPECT_EQ(m_activated.count(), 0);
}

TEST_F(RowViewTests, ADisabledButtonRests)
{
    Row row = sample(0);
    row.actions[1].isEnabled = false;
    show({row});
    click(m_view.partRect(index(0), stagePart).center());
    EXPECT_EQ(m_triggered.count(), 0);
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&m_view);
    EXPECT_TRUE(list->child(0)->child(1)->state().disabled);
    EXPECT_FALSE(list->child(0)->child(1)->actionInterface()->actionNames().contains(
        QAccessibleActionInterface::pressAction()));
}

TEST_F(RowViewTests, CopyPutsTheCommandOnTheClipboard)
{
    Row row = sample(0);
    row.command = QStringLiteral("sudo apt remove halyard");
    m_model.setHeights([](int) { return 84; });
    m_view.setHasSeveralHeights(true);
    show({row});
    EXPECT_EQ(m_view.visualRect(index(0)).height(), 84);
    click(m_view.placesOf(index(0)).copy.center());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), row.command);
    EXPECT_EQ(m_triggered.count(), 1);
}

TEST_F(RowViewTests, HeadingsAreSteppedOverAndMoreIsOneButton)
{
    show({Row::section(QStringLiteral("hammer"), QStringLiteral("Xcode"), QStringLiteral("9 GB")),
          sample(1), Row::more(11, QStringLiteral("Show 400 more…"))});
    enter();
    EXPECT_EQ(currentRow(), 1);
    key(Qt::Key_Up);
    EXPECT_EQ(currentRow(), 1);
    key(Qt::Key_Down);
    EXPECT_EQ(currentRow(), 2);
    key(Qt::Key_Return);
    ASSERT_EQ(m_triggered.count(), 1);
    EXPECT_EQ(m_triggered[0][1].toInt(), 11);
    click(m_view.partRect(index(2), {}).center());
    EXPECT_EQ(m_triggered.count(), 2);
    click(m_view.visualRect(index(2)).topLeft() + QPoint(3, 3));
    EXPECT_EQ(m_triggered.count(), 2) << "beside the button";
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&m_view);
    EXPECT_EQ(list->child(0)->role(), QAccessible::Heading);
    EXPECT_EQ(list->child(2)->role(), QAccessible::Button);
    EXPECT_EQ(list->child(2)->text(QAccessible::Name), QStringLiteral("Show 400 more…"));
}

TEST_F(RowViewTests, AssistiveTechnologyHearsAllOfARowAndPressesItsButtons)
{
    Row row = sample(5);
    row.badges = {{QStringLiteral("Takes the last copy"),
                   Tint::orange,
                   {},
                   false,
                   QStringLiteral("Both copies of this file are staged.")}};
    show({sample(4), row});
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&m_view);
    EXPECT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Samples"));
    ASSERT_EQ(list->childCount(), 2);
    QAccessibleInterface* const second = list->child(1);
    EXPECT_EQ(second->text(QAccessible::Name),
              QStringLiteral("Row 5, Takes the last copy, /home/mara/row 5, 5 MB"));
    EXPECT_EQ(second->text(QAccessible::Description),
              QStringLiteral("Both copies of this file are staged."));
    EXPECT_EQ(list->indexOfChild(second), 1);
    ASSERT_EQ(second->childCount(), 2);
    EXPECT_EQ(second->child(0)->text(QAccessible::Name), QStringLiteral("Reveal"));
    QAccessibleInterface* const button = second->child(1);
    EXPECT_EQ(button->text(QAccessible::Description), QStringLiteral("Stage for Trash"));
    EXPECT_EQ(second->indexOfChild(button), 1);
    button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(m_triggered.count(), 1);
    button->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(list->focusChild(), button);
    show(1);
    EXPECT_FALSE(button->isValid()) << "rows have gone";
}

TEST_F(RowViewTests, RowsThatBearOtherWordsSaySoOnce)
{
    QString word = QStringLiteral("one");
    m_model.setRows(2, [&word](int number) {
        Row row = sample(number);
        row.title = word;
        return row;
    });
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&m_view);
    ASSERT_EQ(list->child(0)->child(0)->text(QAccessible::Name), QStringLiteral("Reveal"));
    word = QStringLiteral("two");
    EXPECT_EQ(announceRowNames(m_view), 1);
    EXPECT_EQ(announceRowNames(m_view), 0);
    word = QStringLiteral("three");
    m_model.refreshRows();
    EXPECT_EQ(announceRowNames(m_view), 0) << "it has been told";
}

TEST_F(RowViewTests, WithKeysTheCurrentRowStaysWhereverItMoves)
{
    const auto show = [this](const std::vector<quint64>& keys) {
        m_model.setRows(
            static_cast<int>(keys.size()),
            [keys](int row) {
                return sample(static_cast<int>(keys[static_cast<std::size_t>(row)]));
            },
            keys);
    };
    show({10, 20, 30, 40});
    m_view.select(index(2));
    show({30, 10, 50});
    EXPECT_EQ(currentRow(), 0);
    EXPECT_TRUE(m_view.selectionModel()->isSelected(index(0)));
    show({10, 50});
    EXPECT_EQ(currentRow(), 0) << "what took the place of the row that has gone";
    m_view.select(index(1));
    show({10});
    EXPECT_EQ(currentRow(), 0) << "the last one";
    show({});
    EXPECT_FALSE(m_view.currentIndex().isValid());
}

TEST_F(RowViewTests, TipsTellWhatIsBelowThePointer)
{
    Row row = sample(1);
    row.title = QString(300, u'm');
    row.badges = {{QStringLiteral("Kept"), Tint::green, {}, false, QStringLiteral("It stays.")}};
    row.cells[0].toolTip = QStringLiteral("On disk");
    show({row, sample(2)});
    const RowPlaces places = m_view.placesOf(index(0));
    EXPECT_EQ(m_view.toolTipAt(places.badges[0].center()), QStringLiteral("It stays."));
    EXPECT_EQ(m_view.toolTipAt(places.cells[0].center()), QStringLiteral("On disk"));
    EXPECT_EQ(m_view.toolTipAt(places.title.center()), row.path);
    EXPECT_EQ(m_view.toolTipAt(places.actions[0].center()), QStringLiteral("Reveal"));
    EXPECT_EQ(m_view.toolTipAt(places.actions[1].center()), QStringLiteral("Stage for Trash"));
    EXPECT_LE(places.badges[0].right(), places.cells[0].left()) << "the name is shortened first";
}

TEST_F(RowViewTests, CellsGiveWayBeforeTheNameGetsTooNarrow)
{
    Row row = sample(1);
    row.cells.insert(row.cells.begin(), RowCell::note(QStringLiteral("12 files"), 110));
    row.cells[0].givesWay = true;
    show({row});
    EXPECT_EQ(m_view.placesOf(index(0)).cells[0].width(), 110);
    m_view.resize(420, 340);
    const RowPlaces narrow = m_view.placesOf(index(0));
    EXPECT_TRUE(narrow.cells[0].isEmpty());
    EXPECT_EQ(narrow.cells[1].width(), 84);
}

TEST_F(RowViewTests, TheSizeHintEndsWhereTheRowsDo)
{
    show(3);
    EXPECT_EQ(m_view.sizeHint().height(), 3 * 48);
    EXPECT_EQ(m_view.minimumSizeHint().height(), 2 * 48);
    m_view.setTitles(sample(0));
    EXPECT_EQ(m_view.sizeHint().height(), 3 * 48 + 28);
    show(1'000'000);
    EXPECT_LE(m_view.sizeHint().height(), 200'000);
}

TEST_F(RowViewTests, TheMenuKeyOpensTheMenuOfTheCurrentRow)
{
    show(2);
    QSignalSpy menus(&m_view, &RowView::contextMenuRequested);
    m_view.select(index(1));
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(&m_view, &byKey);
    ASSERT_EQ(menus.count(), 1);
    EXPECT_EQ(menus[0][0].toModelIndex(), index(1));
}

TEST_F(RowViewTests, OnlyWhatTheUserDoesReportsASelection)
{
    show(3);
    QSignalSpy moved(&m_view, &RowView::selectionMoved);
    m_view.select(index(1));
    EXPECT_EQ(moved.count(), 0);
    m_view.setFocus();
    key(Qt::Key_Down);
    ASSERT_EQ(moved.count(), 1);
    EXPECT_EQ(moved[0][0].toModelIndex(), index(2));
    m_view.select({});
    EXPECT_FALSE(m_view.currentIndex().isValid());
    EXPECT_TRUE(m_view.selectionModel()->selectedIndexes().isEmpty());
}

} // namespace
} // namespace quorvane
