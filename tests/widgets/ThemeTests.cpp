// SPDX-License-Identifier: MIT
#include "Theme.h"

#include "Button.h"
#include "Card.h"
#include "Label.h"
#include "Tokens.h"
#include "WidgetsFixture.h"

#include <QImage>
#include <QSignalSpy>

#include <string>

namespace quorvane {
namespace {

constexpr double readable = 4.5;

struct Ground
{
    std::string name;
    QColor color;
};

/// Everything that ordinary text can stand on. The wash is tried at its full strength and gone.
std::vector<Ground> grounds(const Theme& theme)
{
    const QColor plain = theme.color(ThemeColor::window);
    const QColor washed = blended(theme.color(ThemeColor::wash), plain);
    std::vector<Ground> all{{"card", theme.color(ThemeColor::card)},
                            {"raised", theme.color(ThemeColor::raised)},
                            {"popover", theme.color(ThemeColor::popover)},
                            {"field", theme.color(ThemeColor::field)},
                            {"button", theme.color(ThemeColor::button)},
                            {"button2", theme.color(ThemeColor::button2)}};
    for (const QColor& window : {plain, washed}) {
        for (const ThemeColor layer : {ThemeColor::side, ThemeColor::veil}) {
            all.push_back({"window and layer", blended(theme.color(layer), window)});
        }
    }
    return all;
}

std::vector<Theme> allThemes()
{
    std::vector<Theme> all;
    for (const bool dark : {true, false}) {
        for (const AccentChoice accent : allAccentChoices) {
            all.emplace_back(dark, accent);
        }
    }
    return all;
}

std::string nameOf(const Theme& theme)
{
    return std::string(theme.isDark() ? "dark " : "light ") + std::string(rawValue(theme.accent()));
}

TEST(ContrastRatio, IsThatOfTheRecommendation)
{
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21.0, 1e-9);
    EXPECT_NEAR(contrastRatio(Qt::red, Qt::red), 1.0, 1e-9);
    // Mid grey 0x80: ((128/255 + 0.055) / 1.055) ^ 2.4 = 0.2159; 1.05 / 0.2659 = 3.949.
    EXPECT_NEAR(contrastRatio(QColor(0x80, 0x80, 0x80), Qt::white), 3.949, 0.001);
}

TEST(Blended, MixesByOpacity)
{
    EXPECT_EQ(blended(QColor(255, 255, 255, 51), Qt::black), QColor(51, 51, 51));
    EXPECT_EQ(blended(QColor(10, 20, 30), Qt::white), QColor(10, 20, 30));
}

TEST(ThemeContrast, TextIsReadableOnEveryGround)
{
    for (const Theme& theme : allThemes()) {
        for (const Ground& ground : grounds(theme)) {
            for (const ThemeColor text : {ThemeColor::text1, ThemeColor::text2, ThemeColor::text3,
                                          ThemeColor::accentText}) {
                EXPECT_GE(contrastRatio(theme.color(text), ground.color), readable)
                    << nameOf(theme) << ", text " << static_cast<int>(text) << " on " << ground.name
                    << " " << ground.color.name().toStdString();
            }
        }
    }
}

TEST(ThemeContrast, CurrentAndSelectedRowsStayReadable)
{
    for (const Theme& theme : allThemes()) {
        const QColor washed =
            blended(theme.color(ThemeColor::wash), theme.color(ThemeColor::window));
        const QColor side = blended(theme.color(ThemeColor::side), washed);
        for (const QColor& below : {theme.color(ThemeColor::card), side}) {
            const QColor row = blended(theme.color(ThemeColor::accentLow), below);
            for (const ThemeColor text :
                 {ThemeColor::text1, ThemeColor::text2, ThemeColor::accentText}) {
                EXPECT_GE(contrastRatio(theme.color(text), row), readable)
                    << nameOf(theme) << ", text " << static_cast<int>(text) << " on "
                    << row.name().toStdString();
            }
        }
    }
}

TEST(ThemeContrast, MeaningfulColoursAreReadableOnCardsFieldsAndTheirOwnTint)
{
    const std::pair<ThemeColor, ThemeColor> pairs[] = {
        {ThemeColor::redText, ThemeColor::redLow},
        {ThemeColor::greenText, ThemeColor::greenLow},
        {ThemeColor::orangeText, ThemeColor::orangeLow},
        {ThemeColor::purpleText, ThemeColor::purpleLow},
        {ThemeColor::cyanText, ThemeColor::cyanLow}};
    for (const bool dark : {true, false}) {
        const Theme theme(dark, AccentChoice::blue);
        const QColor card = theme.color(ThemeColor::card);
        for (const auto& [text, tint] : pairs) {
            EXPECT_GE(contrastRatio(theme.color(text), card), readable);
            EXPECT_GE(contrastRatio(theme.color(text), theme.color(ThemeColor::field)), readable);
            EXPECT_GE(contrastRatio(theme.color(text), blended(theme.color(tint), card)), readable)
                << dark << " " << static_cast<int>(text);
        }
    }
}

TEST(ThemeContrast, LabelsOfFilledButtonsAreReadable)
{
    for (const Theme& theme : allThemes()) {
        const QColor label = theme.color(ThemeColor::accentLabel);
        for (const ThemeColor fill : {ThemeColor::accentFill, ThemeColor::accentFill2}) {
            EXPECT_GE(contrastRatio(label, theme.color(fill)), readable)
                << nameOf(theme) << " " << theme.color(fill).name().toStdString();
        }
        for (const ThemeColor fill : {ThemeColor::destructive, ThemeColor::destructive2}) {
            EXPECT_GE(contrastRatio(theme.color(ThemeColor::destructiveLabel), theme.color(fill)),
                      readable)
                << nameOf(theme);
        }
    }
}

TEST(Theme, GivesEveryColourAValue)
{
    for (const Theme& theme : allThemes()) {
        for (int index = 0; index < static_cast<int>(ThemeColor::count); ++index) {
            EXPECT_TRUE(theme.color(static_cast<ThemeColor>(index)).isValid()) << index;
        }
    }
}

TEST(Theme, TakesTheAccentsOfBothForms)
{
    EXPECT_EQ(Theme(true, AccentChoice::blue).color(ThemeColor::accent), QColor(0x0A, 0x84, 0xFF));
    EXPECT_EQ(Theme(false, AccentChoice::blue).color(ThemeColor::accent), QColor(0x00, 0x7A, 0xFF));
    EXPECT_EQ(Theme(true, AccentChoice::pink).color(ThemeColor::accent), QColor(0xFF, 0x37, 0x5F));
    EXPECT_EQ(Theme(false, AccentChoice::teal).color(ThemeColor::accent), QColor(0x30, 0xB0, 0xC7));
    EXPECT_EQ(Theme(true, AccentChoice::green).color(ThemeColor::accentFill),
              QColor(0x30, 0xD1, 0x58));
    EXPECT_EQ(Theme(true, AccentChoice::green).color(ThemeColor::accentLabel),
              QColor(0x0D, 0x0F, 0x12));
    // 0xBF, 0x5A, 0xF2 at 85 percent: 162.35, 76.5, 205.7.
    EXPECT_EQ(Theme(true, AccentChoice::purple).color(ThemeColor::accentFill),
              QColor(162, 77, 206));
    EXPECT_EQ(Theme(true, AccentChoice::purple).color(ThemeColor::accentLabel), QColor(Qt::white));
}

TEST(Theme, LowAccentAndRingKeepTheirOpacityWithEveryAccent)
{
    for (const Theme& theme : allThemes()) {
        EXPECT_NEAR(theme.color(ThemeColor::accentLow).alphaF(), theme.isDark() ? 0.18 : 0.13,
                    0.005);
        EXPECT_NEAR(theme.color(ThemeColor::focusRing).alphaF(), theme.isDark() ? 0.55 : 0.45,
                    0.005);
    }
}

TEST(TypeMeasure, EveryLineIsHigherThanItsLetters)
{
    for (int index = 0; index <= static_cast<int>(TextStyle::path); ++index) {
        const TypeMeasure measure = typeMeasure(static_cast<TextStyle>(index));
        EXPECT_GT(measure.size, 0) << index;
        EXPECT_GT(measure.lineHeight, measure.size) << index;
    }
    EXPECT_EQ(typeMeasure(TextStyle::counter).size, 44);
    EXPECT_EQ(typeMeasure(TextStyle::section).size, 11);
}

class ThemeSwitch : public WidgetsTest
{};

TEST_F(ThemeSwitch, ChangesPaletteAndTellsOnce)
{
    QSignalSpy changed(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged);
    setTheme(AppTheme::light, AccentChoice::green);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_FALSE(theme().isDark());
    EXPECT_EQ(QApplication::palette().color(QPalette::Window),
              Theme(false, AccentChoice::green).color(ThemeColor::window));
    EXPECT_EQ(themeColor(ThemeColor::accent), QColor(0x34, 0xC7, 0x59));
}

TEST_F(ThemeSwitch, RepaintsWhatIsOnShow)
{
    Card card;
    card.resize(80, 60);
    card.show();
    const auto middle = [&card] { return card.grab().toImage().pixelColor(40, 30); };
    EXPECT_EQ(middle(), QColor(0x15, 0x18, 0x1E));

    class Counter : public QObject
    {
    public:
        int paints = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            paints += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
    } counter;
    QCoreApplication::processEvents();
    card.installEventFilter(&counter);
    setTheme(AppTheme::light, AccentChoice::blue);
    QCoreApplication::processEvents();
    EXPECT_GE(counter.paints, 1);
    EXPECT_EQ(middle(), QColor(0xFF, 0xFF, 0xFF));
}

TEST_F(ThemeSwitch, LabelsAndButtonsFollow)
{
    const Label label(QStringLiteral("Text"), TextStyle::body, ThemeColor::text2);
    Button button(QStringLiteral("Go"), ButtonRole::prominent);
    button.resize(button.sizeHint());
    setTheme(AppTheme::light, AccentChoice::orange);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(0x48, 0x4E, 0x59));
    // Inside the left edge, half way down: between the two ends of the gradient.
    const QColor fill = button.grab().toImage().pixelColor(4, button.height() / 2);
    EXPECT_NEAR(fill.red(), 0xFF, 14);
    EXPECT_NEAR(fill.green(), 0x95, 10);
    EXPECT_NEAR(fill.blue(), 0x00, 4);
}

TEST_F(ThemeSwitch, AnAccentHasTheSystemsColourInEachScheme)
{
    const struct
    {
        AccentChoice accent;
        QRgb light;
        QRgb dark;
    } rows[] = {{AccentChoice::blue, 0xFF007AFF, 0xFF0A84FF},
                {AccentChoice::purple, 0xFFAF52DE, 0xFFBF5AF2},
                {AccentChoice::teal, 0xFF30B0C7, 0xFF40C8E0},
                {AccentChoice::orange, 0xFFFF9500, 0xFFFF9F0A},
                {AccentChoice::pink, 0xFFFF2D55, 0xFFFF375F},
                {AccentChoice::green, 0xFF34C759, 0xFF30D158}};
    for (const auto& row : rows) {
        setTheme(AppTheme::light, AccentChoice::blue);
        EXPECT_EQ(color(row.accent).rgb(), row.light);
        setTheme(AppTheme::dark, AccentChoice::blue);
        EXPECT_EQ(color(row.accent).rgb(), row.dark);
    }
}

TEST_F(ThemeSwitch, SystemFollowsTheDesktop)
{
    DesktopSettings::instance().setPrefersDark(true);
    setTheme(AppTheme::system, AccentChoice::blue);
    EXPECT_TRUE(theme().isDark());
    DesktopSettings::instance().setPrefersDark(false);
    EXPECT_FALSE(theme().isDark());
    setTheme(AppTheme::dark, AccentChoice::blue);
    DesktopSettings::instance().setPrefersDark(true);
    DesktopSettings::instance().setPrefersDark(false);
    EXPECT_TRUE(theme().isDark());
}

TEST_F(ThemeSwitch, ReducedMotionTakesNoTime)
{
    DesktopSettings::instance().setReducedMotion(true);
    EXPECT_EQ(animationDuration(duration::panel), 0);
    DesktopSettings::instance().setReducedMotion(false);
    EXPECT_EQ(animationDuration(duration::panel), 200);
}

} // namespace
} // namespace quorvane
