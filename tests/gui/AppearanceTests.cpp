// SPDX-License-Identifier: MIT
#include "ContentView.h"
#include "DesktopSettings.h"
#include "NodeColors.h"
#include "Popover.h"
#include "ProgramFixture.h"
#include "ScreenHeader.h"
#include "Theme.h"

#include <QImage>

#include <cstdlib>

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

/// The message is put into the model itself: it stays for as long as the test takes.
class FlashBannerTest : public ProgramFixture
{
protected:
    ~FlashBannerTest() override { DesktopSettings::instance().setReducedMotion(m_before); }

    void showMessage(const QString& text)
    {
        state().flashMessage = text;
        ASSERT_TRUE(waitUntilShown("flashBanner"));
    }

    QRect areaOf(const QWidget& widget)
    {
        return {widget.mapTo(&window(), QPoint()), widget.size()};
    }

    QRect banner() { return find("flashBanner")->geometry(); }

    bool m_before = reducedMotion();
};

TEST_F(FlashBannerTest, HangsBelowTheToolBarAndNamesItsText)
{
    DesktopSettings::instance().setReducedMotion(true);
    start();
    showMessage(QStringLiteral("Kept one copy"));
    const QRect area = areaOf(*find("detailArea"));
    EXPECT_EQ(find("flashBanner")->accessibleName(), QStringLiteral("Kept one copy"));
    EXPECT_EQ(banner().top(), area.top() + 8);
    EXPECT_NEAR(banner().center().x(), area.center().x(), 1);
}

TEST_F(FlashBannerTest, SlidesInAndOut)
{
    DesktopSettings::instance().setReducedMotion(false);
    start();
    const int top = areaOf(*find("detailArea")).top() + 8;
    showMessage(QStringLiteral("Moved"));
    EXPECT_TRUE(waitFor([&] { return banner().y() == top; }));
    state().dismissFlash();
    EXPECT_TRUE(waitFor([this] { return !exists("flashBanner"); }));
}

TEST_F(FlashBannerTest, ItsButtonDismissesIt)
{
    DesktopSettings::instance().setReducedMotion(true);
    start();
    showMessage(QStringLiteral("Done"));
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
    showMessage(QStringLiteral("First"));
    state().flashMessage = QStringLiteral("Second");
    EXPECT_TRUE(waitFor(
        [this] { return find("flashBanner")->accessibleName() == QStringLiteral("Second"); }));
    EXPECT_EQ(window().findChildren<FlashBanner*>().size(), 1);
}

TEST_F(FlashBannerTest, FollowsTheDetailArea)
{
    DesktopSettings::instance().setReducedMotion(true);
    start();
    showMessage(QStringLiteral("Here"));
    const auto isCentred = [this] {
        return std::abs(banner().center().x() - areaOf(*find("detailArea")).center().x()) <= 1;
    };
    const int before = banner().x();
    window().resize(1100, 700);
    EXPECT_TRUE(waitFor([&] { return banner().x() != before && isCentred(); }));
    const int withSidebar = banner().x();
    window().content().setColumnVisibility(false);
    EXPECT_TRUE(waitFor([&] { return banner().x() != withSidebar && isCentred(); }));
}

TEST_F(FlashBannerTest, CoversNoTitleAndNoActionInTheSmallestWindow)
{
    DesktopSettings::instance().setReducedMotion(true);
    start();
    window().resize(window().minimumSize());
    scanHome();
    showMessage(QStringLiteral("Kept \"a-film-of-the-glacier-lagoon.mov\" — staged 12 duplicate "
                               "copys for Trash."));
    state().section = AppSection::duplicates;
    ASSERT_TRUE(waitUntilShown("duplicatesView"));
    const auto* const header = find("duplicatesView")->findChild<ScreenHeader*>();
    ASSERT_NE(header, nullptr);
    const QRect clear = header->clearArea();
    ASSERT_LT(clear.width(), header->width() - 200) << "a title and an action are on show";
    const QRect gap = clear.translated(header->mapTo(&window(), QPoint()));
    EXPECT_TRUE(waitFor([&] { return gap.contains(banner()); }));
    EXPECT_EQ(banner().top(), areaOf(*find("detailArea")).top() + 8);
}

} // namespace
} // namespace quorvane
