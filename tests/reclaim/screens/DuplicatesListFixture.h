// SPDX-License-Identifier: MIT
#pragma once

#include "DesktopSettings.h"
#include "DuplicatesFixture.h"
#include "DuplicatesList.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>

namespace quorvane {

/// The list in a window between two buttons.
class DuplicatesListFixture : public DuplicatesFixture
{
protected:
    void SetUp() override
    {
        DesktopSettings::instance().setReducedMotion(true);
        m_window.resize(900, 600);
        m_before.setGeometry(0, 0, 100, 20);
        m_list.setGeometry(0, 20, 900, 560);
        m_after.setGeometry(0, 580, 100, 20);
        m_window.show();
        QApplication::setActiveWindow(&m_window);
    }
    void TearDown() override { DesktopSettings::instance().setReducedMotion(false); }

    void open(int groups, int copies = 2)
    {
        showGroups(groups, copies);
        m_list.setGroups(m_state.duplicateGroups.value());
    }

    void click(const DuplicatePlace& place)
    {
        QTest::mouseClick(m_list.viewport(), Qt::LeftButton, {},
                          place.part == 0 && place.row.kind == DuplicateRow::Kind::group
                              ? m_list.placeRect(place).topLeft() + QPoint(300, 10)
                              : m_list.placeRect(place).center());
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&m_list, key, modifiers);
    }
    void enter()
    {
        m_before.setFocus();
        QTest::keyClick(&m_before, Qt::Key_Tab);
        ASSERT_TRUE(m_list.hasFocus());
    }

    static DuplicateRow groupRow(std::size_t group)
    {
        return {DuplicateRow::Kind::group, group, 0};
    }
    static DuplicateRow member(std::size_t group, std::size_t member)
    {
        return {DuplicateRow::Kind::member, group, member};
    }
    DuplicatePlace current() { return m_list.current().value_or(DuplicatePlace{{}, -1}); }
    QString toolTip(const DuplicatePlace& place)
    {
        return m_list.toolTipAt(m_list.placeRect(place).center());
    }

    QWidget m_window;
    QPushButton m_before{&m_window};
    DuplicatesList m_list{m_state, &m_window};
    QPushButton m_after{&m_window};
};

} // namespace quorvane
