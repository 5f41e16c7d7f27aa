// SPDX-License-Identifier: MIT
#include "VisualizerHostView.h"

#include "BreadcrumbBar.h"
#include "CanvasFixture.h"
#include "FooterView.h"
#include "VisualizerCanvas.h"

#include <QLabel>

namespace quorvane {
namespace {

class VisualizerHostViewTests : public CanvasFixture
{
protected:
    void SetUp() override
    {
        showTree("a/\n  b/\n    c.txt 100\n    d.txt 50\n  e.txt 10\n");
        m_host.resize(1000, 700);
        m_host.show();
        QApplication::setActiveWindow(&m_host);
    }

    VisualizerHostView m_host{m_state, makeVisualizerScreens()};
};

TEST_F(VisualizerHostViewTests, StacksBreadcrumbCanvasAndFooter)
{
    const auto* const crumbs = m_host.findChild<BreadcrumbBar*>();
    const auto* const canvas = m_host.findChild<VisualizerCanvas*>();
    const auto* const footer = m_host.findChild<FooterView*>();
    ASSERT_TRUE(crumbs && canvas && footer);
    const auto top = [this](const QWidget* widget) {
        return widget->mapTo(&m_host, QPoint(0, 0)).y();
    };
    EXPECT_LT(top(crumbs), top(canvas));
    EXPECT_LT(top(canvas), top(footer));
}

TEST_F(VisualizerHostViewTests, EscapeZoomsOutOneLevelFromAnywhereInside)
{
    m_state.focus(node("a/b"));
    auto* const canvas = m_host.findChild<VisualizerCanvas*>();
    canvas->setFocus();
    ASSERT_TRUE(waitFor([&] { return canvas->hasFocus(); }));
    QTest::keyClick(canvas, Qt::Key_Escape);
    EXPECT_EQ(m_state.focusNode.value(), node("a"));
    EXPECT_EQ(m_state.selectedNode.value(), nullptr);
    QTest::keyClick(canvas, Qt::Key_Escape);
    QTest::keyClick(canvas, Qt::Key_Escape);
    EXPECT_EQ(m_state.focusNode.value(), m_state.rootNode.value());
}

TEST_F(VisualizerHostViewTests, OffersTheVisualizersThatAreBuilt)
{
    for (const VisualizerType type : allVisualizerTypes) {
        EXPECT_TRUE(makeVisualizerScreens().contains(type)) << title(type).toStdString();
    }
}

} // namespace
} // namespace quorvane
