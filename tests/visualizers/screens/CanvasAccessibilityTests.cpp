// SPDX-License-Identifier: MIT
#include "CanvasFixture.h"
#include "CanvasViews.h"

#include <QAccessible>
#include <QAccessibleActionInterface>

namespace quorvane {
namespace {

class CanvasAccessibilityTests : public CanvasFixture
{
protected:
    void open(const std::string& text)
    {
        showTree(text);
        m_view.resize(800, 600);
        m_view.show();
        ASSERT_TRUE(waitFor([this] { return m_view.scene() && !m_view.isComputingLayout(); }));
    }

    QAccessibleInterface* canvas() { return QAccessible::queryAccessibleInterface(&m_view); }

    TreemapView m_view{m_state};
};

TEST_F(CanvasAccessibilityTests, CanvasIsOneElementWithLabelAndValue)
{
    open("a.txt 1024\n");
    EXPECT_EQ(canvas()->text(QAccessible::Name), QStringLiteral("Treemap of scan, 1.0 KB"));
    EXPECT_EQ(canvas()->text(QAccessible::Value),
              QStringLiteral("1 regions, grow by clicking a folder"));
}

TEST_F(CanvasAccessibilityTests, EveryTileIsReachable)
{
    open("things/\n  a.txt 600\n  b.txt 400\n");
    ASSERT_EQ(canvas()->childCount(), static_cast<int>(m_view.scene()->itemCount()));
    QStringList names;
    for (int i = 0; i < canvas()->childCount(); ++i) {
        QAccessibleInterface* const tile = canvas()->child(i);
        names << tile->text(QAccessible::Name);
        EXPECT_EQ(tile->parent(), canvas());
        EXPECT_EQ(canvas()->indexOfChild(tile), i);
        EXPECT_TRUE(canvas()->rect().contains(tile->rect().center()));
    }
    EXPECT_TRUE(names.contains(QStringLiteral("things, 1000 B · 2 files")));
    EXPECT_TRUE(names.contains(QStringLiteral("a.txt, 600 B")));
}

TEST_F(CanvasAccessibilityTests, TileUnderAPointIsFound)
{
    open("a.txt 600\n");
    const QPoint place = m_view.mapToGlobal(QPoint(100, 100));
    QAccessibleInterface* const tile = canvas()->childAt(place.x(), place.y());
    ASSERT_NE(tile, nullptr);
    EXPECT_EQ(tile->text(QAccessible::Name), QStringLiteral("a.txt, 600 B"));
}

TEST_F(CanvasAccessibilityTests, PressingATileActsAsAClick)
{
    open("things/\n  a.txt 600\n  b.txt 400\n");
    canvas()->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(m_state.focusNode.value(), node("things"));
}

TEST_F(CanvasAccessibilityTests, TileOfAnOldLayoutIsNoLongerValid)
{
    open("things/\n  a.txt 600\n  b.txt 400\nc.txt 5\n");
    QAccessibleInterface* const tile = canvas()->child(0);
    ASSERT_TRUE(tile->isValid());
    const ScenePointer before = m_view.scene();
    m_state.focus(node("things"));
    ASSERT_TRUE(waitFor([&] { return m_view.scene() != before; }));
    EXPECT_FALSE(tile->isValid());
    EXPECT_TRUE(tile->text(QAccessible::Name).isEmpty());
}

} // namespace
} // namespace quorvane
