// SPDX-License-Identifier: MIT
#include "BrandMark.h"
#include "Button.h"
#include "Chip.h"
#include "FocusRing.h"
#include "ItemViews.h"
#include "Menu.h"
#include "NavigationRow.h"
#include "Switch.h"
#include "TextField.h"
#include "Tile.h"
#include "WidgetsFixture.h"

#include <QAccessible>
#include <QImage>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace quorvane {
namespace {

class Controls : public WidgetsTest
{};

TEST_F(Controls, HaveTheHeightsOfTheDesign)
{
    const QString text = QStringLiteral("Text");
    EXPECT_EQ(Button(text).sizeHint().height(), 30);
    EXPECT_EQ(Button(text, ButtonRole::bordered, ControlSize::large).sizeHint().height(), 36);
    EXPECT_EQ(Button(text, ButtonRole::bordered, ControlSize::small).sizeHint().height(), 26);
    EXPECT_EQ(ToolButton(QStringLiteral("trash"), text).sizeHint(), QSize(30, 30));
    EXPECT_EQ(TextField().sizeHint().height(), 30);
    EXPECT_EQ(Switch(text).sizeHint(), QSize(36, 20));
    EXPECT_EQ(Chip(text).sizeHint().height(), 24);
    EXPECT_EQ(Badge(text).sizeHint().height(), 18);
    EXPECT_EQ(KeyCap(text).sizeHint().height(), 18);
    EXPECT_EQ(ActionTile(QStringLiteral("eye"), text).sizeHint().height(), 62);
    EXPECT_EQ(ScanTile(QStringLiteral("house"), text).sizeHint().height(), 68);
    EXPECT_EQ(NavigationRow(QStringLiteral("bolt"), text).sizeHint().height(), 32);
}

TEST_F(Controls, ReturnAndSpacePressEveryButton)
{
    Button button(QStringLiteral("Go"));
    ToolButton tool(QStringLiteral("trash"), QStringLiteral("Delete"));
    Chip chip(QStringLiteral("video"));
    ActionTile tile(QStringLiteral("eye"), QStringLiteral("Quick Look"));
    NavigationRow row(QStringLiteral("bolt"), QStringLiteral("Quick Wins"));
    for (QAbstractButton* control :
         std::initializer_list<QAbstractButton*>{&button, &tool, &chip, &tile, &row}) {
        QSignalSpy clicked(control, &QAbstractButton::clicked);
        QTest::keyClick(control, Qt::Key_Return);
        EXPECT_EQ(clicked.count(), 1) << control->metaObject()->className();
        QTest::keyClick(control, Qt::Key_Space);
        EXPECT_EQ(clicked.count(), 2) << control->metaObject()->className();
    }
}

TEST_F(Controls, ARemovableChipGoesWithDelete)
{
    Chip chip(QStringLiteral("video"), Chip::Kind::removable, Tint::purple);
    QSignalSpy clicked(&chip, &QAbstractButton::clicked);
    QTest::keyClick(&chip, Qt::Key_Delete);
    EXPECT_EQ(clicked.count(), 1);
    EXPECT_EQ(Chip(QStringLiteral("x"), Chip::Kind::fixed).focusPolicy(), Qt::NoFocus);
}

TEST_F(Controls, AChipKeepsItsWidthBelowThePointer)
{
    Chip chip(QStringLiteral("pdf"));
    const int width = chip.sizeHint().width();
    chip.setAttribute(Qt::WA_UnderMouse);
    EXPECT_EQ(chip.sizeHint().width(), width);
}

TEST_F(Controls, ANavigationRowIsMarkedByItsOwnerOnly)
{
    NavigationRow row(QStringLiteral("bolt"), QStringLiteral("Quick Wins"));
    row.click();
    EXPECT_FALSE(row.isCurrent());
    row.setCurrent(true);
    row.click();
    EXPECT_TRUE(row.isCurrent());
    EXPECT_EQ(FocusRing::target(&row), nullptr);
}

TEST_F(Controls, ASwitchTogglesAnywhereOnItsTrack)
{
    Switch toggle(QStringLiteral("Enabled"));
    toggle.resize(toggle.sizeHint());
    QTest::mouseClick(&toggle, Qt::LeftButton, {}, QPoint(34, 10));
    EXPECT_TRUE(toggle.isChecked());
    const QImage image = toggle.grab().toImage();
    EXPECT_EQ(image.pixelColor(8, 10), themeColor(ThemeColor::accentFill));
    EXPECT_EQ(image.pixelColor(26, 10), QColor(Qt::white));
}

TEST_F(Controls, TheClearButtonShowsWithTextAndEmptiesTheField)
{
    TextField field(QStringLiteral("Search your Mac…"));
    field.setClearable(true, QStringLiteral("Clear query (Esc)"));
    field.show();
    auto* clear = field.findChild<QToolButton*>();
    ASSERT_NE(clear, nullptr);
    EXPECT_FALSE(clear->isVisible());
    QTest::keyClicks(&field, QStringLiteral("drone"));
    EXPECT_TRUE(clear->isVisible());
    QSignalSpy cleared(&field, &TextField::cleared);
    QTest::mouseClick(clear, Qt::LeftButton);
    EXPECT_TRUE(field.text().isEmpty());
    EXPECT_EQ(cleared.count(), 1);
    EXPECT_FALSE(clear->isVisible());
}

TEST_F(Controls, RingRadiusFollowsTheControl)
{
    Button button(QStringLiteral("Go"));
    QWidget plain;
    EXPECT_EQ(FocusRing::target(&button), &button);
    EXPECT_EQ(FocusRing::target(&plain), nullptr);
    setFocusRadius(plain, 10);
    EXPECT_EQ(FocusRing::target(&plain), &plain);
}

TEST_F(Controls, TheRingIsPaintedOutsideTheControl)
{
    QWidget window;
    window.resize(200, 100);
    Button button(QStringLiteral("Go"), ButtonRole::bordered, ControlSize::regular, &window);
    button.setGeometry(50, 30, 80, 30);
    window.show();
    auto* ring = new FocusRing(&window);
    const QColor before = window.grab().toImage().pixelColor(48, 45);
    ring->setWidget(&button);
    EXPECT_EQ(ring->geometry(), QRect(47, 27, 86, 36));
    const QColor after = window.grab().toImage().pixelColor(48, 45);
    const QColor expected = blended(themeColor(ThemeColor::focusRing), before);
    EXPECT_NEAR(after.red(), expected.red(), 2);
    EXPECT_NEAR(after.green(), expected.green(), 2);
    EXPECT_NEAR(after.blue(), expected.blue(), 2);
}

TEST_F(Controls, MenusHaveRowsOfTheDesign)
{
    Menu menu;
    QAction* stage = menu.addItem(QStringLiteral("trash"), QStringLiteral("Stage for Cleanup"));
    QAction* open = menu.addItem({}, QStringLiteral("Open"));
    EXPECT_EQ(menu.actionGeometry(stage).height(), 28);
    EXPECT_EQ(menu.actionGeometry(open).top(), menu.actionGeometry(stage).bottom() + 1);
    EXPECT_FALSE(stage->icon().isNull());
    EXPECT_TRUE(open->icon().isNull());
}

TEST_F(Controls, TheMarkIsDrawnAtAnySize)
{
    EXPECT_TRUE(BrandMark::image(0).isNull());
    for (const int size : {16, 32, 84, 1024}) {
        const QImage image = BrandMark::image(size);
        EXPECT_EQ(image.size(), QSize(size, size));
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
        // Inside the largest tile of the disc, at (30, 30) of 84.
        EXPECT_EQ(image.pixelColor(size * 30 / 84, size * 30 / 84), QColor(0x4B, 0xA0, 0xFF));
    }
}

TEST_F(Controls, ScrollBarsKeepTheSliderInsideTheGroove)
{
    QScrollBar bar(Qt::Vertical);
    bar.setRange(0, 1'000'000);
    bar.setPageStep(10);
    bar.resize(14, 200);
    QStyleOptionSlider option;
    option.initFrom(&bar);
    option.orientation = Qt::Vertical;
    option.maximum = 1'000'000;
    option.pageStep = 10;
    for (const int value : {0, 500'000, 1'000'000}) {
        option.sliderPosition = value;
        const QRect slider = bar.style()->subControlRect(QStyle::CC_ScrollBar, &option,
                                                         QStyle::SC_ScrollBarSlider, &bar);
        EXPECT_TRUE(bar.rect().contains(slider)) << value;
        EXPECT_EQ(slider.height(), 32);
        EXPECT_NEAR(slider.top(), (200 - 32) * (value / 1e6), 1);
    }
}

} // namespace
} // namespace quorvane
