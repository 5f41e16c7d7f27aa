// SPDX-License-Identifier: MIT
#include "FlowLayout.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace quorvane {
namespace {

class Flow : public testing::Test
{
protected:
    QWidget* add(int width, int height)
    {
        auto* item = new QWidget(&m_parent);
        item->setFixedSize(width, height);
        m_layout->addWidget(item);
        return item;
    }

    QWidget m_parent;
    FlowLayout* m_layout = new FlowLayout(8, &m_parent);
};

TEST_F(Flow, KeepsInARowWhatFitsExactly)
{
    QWidget* first = add(50, 20);
    QWidget* second = add(42, 20);
    QWidget* third = add(10, 20);
    m_layout->setGeometry(QRect(0, 0, 100, 200));
    EXPECT_EQ(first->pos(), QPoint(0, 0));
    EXPECT_EQ(second->pos(), QPoint(58, 0));
    EXPECT_EQ(third->pos(), QPoint(0, 28));
    EXPECT_EQ(m_layout->heightForWidth(100), 48);
}

TEST_F(Flow, AnItemWiderThanTheRowStandsAlone)
{
    add(30, 20);
    QWidget* wide = add(300, 20);
    QWidget* last = add(30, 20);
    m_layout->setGeometry(QRect(0, 0, 100, 200));
    EXPECT_EQ(wide->pos(), QPoint(0, 28));
    EXPECT_EQ(wide->width(), 300);
    EXPECT_EQ(last->pos(), QPoint(0, 56));
}

TEST_F(Flow, ARowIsAsHighAsItsTallestItem)
{
    QWidget* low = add(20, 10);
    add(20, 30);
    QWidget* next = add(90, 10);
    m_layout->setGeometry(QRect(0, 0, 100, 200));
    EXPECT_EQ(low->y(), 10);
    EXPECT_EQ(next->y(), 38);
    EXPECT_EQ(m_layout->heightForWidth(100), 48);
}

TEST_F(Flow, WithoutAWidthAllStandInOneRow)
{
    add(50, 20);
    add(42, 24);
    EXPECT_EQ(m_layout->sizeHint(), QSize(100, 24));
}

TEST_F(Flow, HiddenItemsTakeNoRoom)
{
    add(50, 20);
    QWidget* hidden = add(50, 20);
    QWidget* last = add(42, 20);
    hidden->hide();
    m_layout->setGeometry(QRect(0, 0, 100, 200));
    EXPECT_EQ(last->pos(), QPoint(58, 0));
}

TEST_F(Flow, GivesItsItemsBack)
{
    add(50, 20);
    EXPECT_EQ(m_layout->count(), 1);
    EXPECT_EQ(m_layout->itemAt(1), nullptr);
    QLayoutItem* item = m_layout->takeAt(0);
    ASSERT_NE(item, nullptr);
    delete item;
    EXPECT_EQ(m_layout->count(), 0);
    EXPECT_EQ(m_layout->heightForWidth(100), 0);
}

} // namespace
} // namespace quorvane
