// SPDX-License-Identifier: MIT
#pragma once

#include "DesktopSettings.h"
#include "DuplicatesFixture.h"
#include "DuplicatesModel.h"
#include "DuplicatesView.h"
#include "RowView.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>

namespace quorvane {

inline constexpr RowPart keepLatestPart{duplicaterows::keepLatest, 0}; ///< of a group
inline constexpr RowPart revealPart{duplicaterows::reveal, 0};         ///< of a copy
inline constexpr RowPart keepPart{duplicaterows::keep, 1};             ///< of a copy

/// The screen in a window above another button.
class DuplicatesListFixture : public DuplicatesFixture
{
protected:
    void SetUp() override
    {
        DesktopSettings::instance().setReducedMotion(true);
        m_window.resize(900, 700);
        m_view.setGeometry(0, 0, 900, 660);
        m_after.setGeometry(0, 670, 100, 20);
        m_window.show();
        QApplication::setActiveWindow(&m_window);
    }
    void TearDown() override { DesktopSettings::instance().setReducedMotion(false); }

    void open(int groups, int copies = 2)
    {
        showGroups(groups, copies);
        QApplication::processEvents();
        QApplication::processEvents();
    }

    RowView& list() { return *m_view.findChild<RowView*>(QStringLiteral("duplicatesList")); }
    const DuplicatesModel& model() { return static_cast<const DuplicatesModel&>(*list().model()); }
    QModelIndex groupRow(int group) { return model().index(group); }
    QModelIndex member(int group, int member) { return model().index(member, 0, groupRow(group)); }
    void click(const QModelIndex& index, const std::optional<RowPart>& part = {})
    {
        const QRect area = list().partRect(index, part);
        const bool isRow = !part && list().rowOf(index).kind == RowKind::item;
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                          isRow ? area.topLeft() + QPoint(300, 10) : area.center());
        // The list grows a little later than its rows.
        QApplication::processEvents();
        QApplication::processEvents();
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&list(), key, modifiers);
    }
    /// By the keyboard, from the button in the header.
    void enter()
    {
        auto* const find = m_view.findChild<QWidget*>(QStringLiteral("findDuplicatesButton"));
        find->setFocus();
        QTest::keyClick(find, Qt::Key_Tab);
        ASSERT_TRUE(list().hasFocus());
    }
    bool isAt(const QModelIndex& index, const std::optional<RowPart>& part = {})
    {
        return list().currentIndex() == index && list().currentPart() == part;
    }
    QString toolTip(const QModelIndex& index, const std::optional<RowPart>& part = {})
    {
        return list().toolTipAt(list().partRect(index, part).center());
    }
    QString wordOf(const QModelIndex& index, std::size_t action)
    {
        return list().rowOf(index).actions[action].text;
    }

    QWidget m_window;
    DuplicatesView m_view{m_state, &m_window};
    QPushButton m_after{&m_window};
};

} // namespace quorvane
