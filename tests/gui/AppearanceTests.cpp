// SPDX-License-Identifier: MIT
#include "DesktopSettings.h"
#include "NodeColors.h"
#include "Popover.h"
#include "ProgramFixture.h"
#include "Theme.h"

#include <QImage>

namespace quorvane {
namespace {

class AppearanceTest : public ProgramFixture
{
protected:
    QColor groundAt(const QPoint& point) { return window().grab().toImage().pixelColor(point); }
};

TEST_F(AppearanceTest, StartsDarkAndBlue)
{
    start();
    EXPECT_TRUE(theme().isDark());
    EXPECT_EQ(theme().accent(), AccentChoice::blue);
}

TEST_F(AppearanceTest, StartsAsStored)
{
    m_platform.preferences.store("tessaryl.theme", QStringLiteral("light"));
    m_platform.preferences.store("tessaryl.accent", QStringLiteral("green"));
    start();
    EXPECT_FALSE(theme().isDark());
    EXPECT_EQ(theme().accent(), AccentChoice::green);
}

TEST_F(AppearanceTest, ANewThemeTakesEffectAtOnce)
{
    start();
    const QPoint bottomRight(window().width() - 10, window().height() - 10);
    EXPECT_LT(groundAt(bottomRight).lightness(), 40);
    state().setTheme(AppTheme::light);
    EXPECT_FALSE(theme().isDark());
    EXPECT_GT(groundAt(bottomRight).lightness(), 215);
}

TEST_F(AppearanceTest, ANewAccentTakesEffectAtOnce)
{
    start();
    const QColor before = themeColor(ThemeColor::accent);
    state().setAccent(AccentChoice::orange);
    EXPECT_NE(themeColor(ThemeColor::accent), before);
    EXPECT_EQ(QApplication::palette().color(QPalette::Highlight),
              theme().palette().color(QPalette::Highlight));
}

TEST_F(AppearanceTest, TheSystemThemeFollowsTheDesktop)
{
    start();
    state().setTheme(AppTheme::system);
    DesktopSettings::instance().setPrefersDark(false);
    EXPECT_FALSE(theme().isDark());
    DesktopSettings::instance().setPrefersDark(true);
    EXPECT_TRUE(theme().isDark());
}

TEST_F(AppearanceTest, ThePaletteTintsTheWindowAtOnce)
{
    start();
    const auto expectTint = [this](AppPalette palette) {
        const Color tint = NodeColors::shellTint(palette);
        const QColor ground = themeColor(ThemeColor::window);
        const double opacity = 0.3 * tint.a;
        // The side of the tool bar's bottom line, where nothing but the wash lies on the ground.
        const QPoint point(250, 84);
        const double left = 1 - (250.0 + 84) / (window().width() + window().height());
        const QColor seen = groundAt(point);
        const double blue = ground.blueF() + (tint.b - ground.blueF()) * opacity * left;
        const double green = ground.greenF() + (tint.g - ground.greenF()) * opacity * left;
        EXPECT_NEAR(seen.blueF(), blue, 0.012) << static_cast<int>(palette);
        EXPECT_NEAR(seen.greenF(), green, 0.012) << static_cast<int>(palette);
    };
    for (const AppPalette palette : allAppPalettes) {
        state().setPalette(palette);
        expectTint(palette);
    }
}

class FlashBannerTest : public ProgramFixture
{
protected:
    ~FlashBannerTest() override { DesktopSettings::instance().setReducedMotion(m_before); }

    bool m_before = reducedMotion();
};

TEST_F(FlashBannerTest, HangsBelowTheToolBarAndNamesItsText)
{
    DesktopSettings::instance().setReducedMotion(true);
    start();
    state().flash(QStringLiteral("Kept one copy"));
    ASSERT_TRUE(waitUntilShown("flashBanner"));
    const QWidget* const banner = find("flashBanner");
    const QWidget* const detail = find("detailArea");
    const QRect area(detail->mapTo(&window(), QPoint()), detail->size());
    EXPECT_EQ(banner->accessibleName(), QStringLiteral("Kept one copy"));
    EXPECT_EQ(banner->geometry().top(), area.top() + 8);
    EXPECT_NEAR(banner->geometry().center().x(), area.center().x(), 1);
}

TEST_F(FlashBannerTest, SlidesInAndOut)
{
    DesktopSettings::instance().setReducedMotion(false);
    start();
    const int top = find("detailArea")->mapTo(&window(), QPoint()).y() + 8;
    state().flash(QStringLiteral("Moved"));
    ASSERT_TRUE(waitUntilShown("flashBanner"));
    EXPECT_TRUE(waitFor([&] { return find("flashBanner")->y() == top; }));
    state().dismissFlash();
    EXPECT_TRUE(waitFor([this] { return !exists("flashBanner"); }));
}

TEST_F(FlashBannerTest, ItsButtonDismissesIt)
{
    DesktopSettings::instance().setReducedMotion(true);
    start();
    state().flash(QStringLiteral("Done"));
    ASSERT_TRUE(waitUntilShown("flashBanner"));
    auto* const button = find("flashBanner")->findChild<QAbstractButton*>();
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(state().flashMessage.value().has_value());
    EXPECT_TRUE(waitFor([this] { return !exists("flashBanner"); }));
}

TEST_F(FlashBannerTest, ASecondTextReplacesTheFirst)
{
    DesktopSettings::instance().setReducedMotion(true);
    start();
    state().flash(QStringLiteral("First"));
    ASSERT_TRUE(waitUntilShown("flashBanner"));
    state().flash(QStringLiteral("Second"));
    settle();
    EXPECT_EQ(find("flashBanner")->accessibleName(), QStringLiteral("Second"));
    EXPECT_EQ(window().findChildren<FlashBanner*>().size(), 1);
}

TEST_F(FlashBannerTest, StaysInPlaceWhenTheWindowIsResized)
{
    DesktopSettings::instance().setReducedMotion(true);
    start();
    state().flash(QStringLiteral("Here"));
    ASSERT_TRUE(waitUntilShown("flashBanner"));
    window().resize(1100, 700);
    settle();
    const QWidget* const detail = find("detailArea");
    const QRect area(detail->mapTo(&window(), QPoint()), detail->size());
    EXPECT_NEAR(find("flashBanner")->geometry().center().x(), area.center().x(), 1);
}

} // namespace
} // namespace quorvane
