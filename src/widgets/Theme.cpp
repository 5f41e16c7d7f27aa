// SPDX-License-Identifier: MIT
#include "Theme.h"

#include "DesktopSettings.h"

#include <QApplication>
#include <QFontDatabase>
#include <QRawFont>
#include <QToolTip>
#include <QWidget>

#include <optional>

namespace quorvane {
namespace {

struct Shown
{
    AppTheme scheme = AppTheme::dark;
    Theme theme{true, AccentChoice::blue};
};

Shown& shown()
{
    static Shown instance;
    return instance;
}

bool isDark(AppTheme scheme)
{
    const std::optional<ColorScheme> chosen = colorScheme(scheme);
    return chosen ? *chosen == ColorScheme::dark : DesktopSettings::instance().prefersDark();
}

/// Inter where it is installed; else empty, which keeps the system's family.
const QString& family()
{
    static const QString name = [] {
        const QString inter = QStringLiteral("Inter");
        return QFontDatabase::hasFamily(inter) ? inter : QString();
    }();
    return name;
}

constexpr const char* rendererVariable = "FREETYPE_PROPERTIES";
constexpr const char* plainStrokes = "cff:darkening-parameters=500,0,1000,0,1667,0,2333,0";
constexpr double smallText = 24; ///< device pixels; above them the blending hardly shows

/// Qt blends outlines of PostScript flavour in linear light, which thins dark text on light.
bool thinsDarkText()
{
    static const bool thins = [] {
        if (family().isEmpty() || qgetenv(rendererVariable) != plainStrokes) {
            return false;
        }
        return !QRawFont::fromFont(QFont(family())).fontTable("CFF ").isEmpty();
    }();
    return thins;
}

QFont::Weight nextHeavier(QFont::Weight weight)
{
    return weight == QFont::Normal   ? QFont::Medium
           : weight == QFont::Medium ? QFont::DemiBold
                                     : QFont::Bold;
}

void applyFonts()
{
    QApplication::setFont(font(TextStyle::body));
    QApplication::setFont(font(TextStyle::row), "QPushButton");
    QApplication::setFont(font(TextStyle::captionMedium), "QToolButton");
    QApplication::setFont(font(TextStyle::caption), "QLineEdit");
    QApplication::setFont(font(TextStyle::caption), "QComboBox");
    QApplication::setFont(font(TextStyle::section), "QHeaderView");
    QApplication::setFont(font(TextStyle::body), "QMenu");
    QApplication::setFont(font(TextStyle::caption), "QMenuBar");
    QApplication::setFont(font(TextStyle::caption), "QTipLabel");
    QToolTip::setFont(font(TextStyle::caption));
}

void applyTheme()
{
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        return;
    }
    QApplication::setPalette(shown().theme.palette());
    QToolTip::setPalette(shown().theme.palette());
    QPalette menu = shown().theme.palette();
    menu.setColor(QPalette::Window, themeColor(ThemeColor::popover));
    QApplication::setPalette(menu, "QMenu");
    static std::optional<bool> fontsForDark;
    if (fontsForDark != shown().theme.isDark()) {
        fontsForDark = shown().theme.isDark();
        applyFonts();
    }
    Q_EMIT ThemeNotifier::instance().themeChanged();
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        widget->update();
    }
}

void followDesktop()
{
    static bool following = false;
    if (following) {
        return;
    }
    following = true;
    QObject::connect(&DesktopSettings::instance(), &DesktopSettings::prefersDarkChanged,
                     &ThemeNotifier::instance(), [] {
                         if (!colorScheme(shown().scheme)) {
                             setTheme(AppTheme::system, shown().theme.accent());
                         }
                     });
}

} // namespace

TypeMeasure typeMeasure(TextStyle style)
{
    switch (style) {
    case TextStyle::counter:
        return {44, 52, QFont::DemiBold, -1.1};
    case TextStyle::figure:
        return {28, 34, QFont::DemiBold, -0.5};
    case TextStyle::title:
        return {20, 26, QFont::DemiBold, -0.2};
    case TextStyle::heading:
        return {15, 20, QFont::DemiBold, 0};
    case TextStyle::lead:
        return {15, 23, QFont::Normal, 0};
    case TextStyle::body:
        return {13, 18, QFont::Normal, 0};
    case TextStyle::row:
        return {13, 18, QFont::Medium, 0};
    case TextStyle::strong:
        return {13, 18, QFont::DemiBold, 0};
    case TextStyle::caption:
        return {12, 16, QFont::Normal, 0};
    case TextStyle::captionMedium:
        return {12, 16, QFont::Medium, 0};
    case TextStyle::captionStrong:
        return {12, 16, QFont::DemiBold, 0};
    case TextStyle::section:
        return {11, 14, QFont::Medium, 0.3};
    case TextStyle::label:
        return {11, 14, QFont::Medium, 0};
    case TextStyle::path:
        return {11, 14, QFont::Normal, 0};
    }
    return {};
}

QFont font(TextStyle style)
{
    return font(style, shown().theme.isDark());
}

QFont font(TextStyle style, bool lightOnDark)
{
    const TypeMeasure measure = typeMeasure(style);
    QFont font;
    if (!family().isEmpty()) {
        font.setFamily(family());
    }
    font.setPixelSize(measure.size);
    const bool thinned =
        !lightOnDark && measure.size * qApp->devicePixelRatio() < smallText && thinsDarkText();
    font.setWeight(thinned ? nextHeavier(measure.weight) : measure.weight);
    font.setLetterSpacing(QFont::AbsoluteSpacing, measure.tracking);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

void prepareTextRendering()
{
    if (!qEnvironmentVariableIsSet(rendererVariable)) {
        qputenv(rendererVariable, plainStrokes);
    }
}

const Theme& theme()
{
    return shown().theme;
}

QColor themeColor(ThemeColor color)
{
    return shown().theme.color(color);
}

void setTheme(AppTheme scheme, AccentChoice accent)
{
    followDesktop();
    shown().scheme = scheme;
    shown().theme = Theme(isDark(scheme), accent);
    applyTheme();
}

ThemeNotifier& ThemeNotifier::instance()
{
    static ThemeNotifier notifier;
    return notifier;
}

} // namespace quorvane
