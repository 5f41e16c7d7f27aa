// SPDX-License-Identifier: MIT
#include "Symbols.h"

#include "WidgetsFixture.h"

#include <QFile>
#include <QImage>
#include <QPainter>

namespace quorvane {
namespace {

class Symbols : public WidgetsTest
{};

/// The names in the first column of the table's file.
QStringList namesInFile()
{
    QFile file(QStringLiteral(QUORVANE_SYMBOL_TABLE));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QStringList names;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (!line.isEmpty() && !line.startsWith(u'#')) {
            names << line.section(u' ', 0, 0);
        }
    }
    names.sort();
    return names;
}

/// Pixels of the picture that are neither empty nor of the wanted colour.
int strayPixels(const QImage& image, const QColor& wanted)
{
    int stray = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            // Faint pixels lose the last bits of their hue to premultiplication.
            const bool same = std::abs(pixel.red() - wanted.red()) <= 3 &&
                              std::abs(pixel.green() - wanted.green()) <= 3 &&
                              std::abs(pixel.blue() - wanted.blue()) <= 3;
            stray += pixel.alpha() > 127 && !same ? 1 : 0;
        }
    }
    return stray;
}

int coveredPixels(const QImage& image)
{
    int covered = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            covered += image.pixelColor(x, y).alpha() > 127 ? 1 : 0;
        }
    }
    return covered;
}

TEST_F(Symbols, HoldEveryNameOfTheTable)
{
    EXPECT_EQ(symbolNames(), namesInFile());
    EXPECT_GT(symbolNames().size(), 60);
}

TEST_F(Symbols, HaveTheNamesThatTheModelUses)
{
    for (const char* const name : {"chart.pie",
                                   "magnifyingglass",
                                   "tag",
                                   "viewfinder",
                                   "trash",
                                   "trash.fill",
                                   "rectangle.on.rectangle.angled",
                                   "app.dashed",
                                   "bolt",
                                   "clock.arrow.circlepath",
                                   "gauge",
                                   "wrench.and.screwdriver",
                                   "gearshape",
                                   "folder",
                                   "square.grid.3x3",
                                   "list.bullet.rectangle",
                                   "list.number",
                                   "calendar",
                                   "circle.hexagongrid",
                                   "flame",
                                   "bubble.left.and.bubble.right",
                                   "point.3.connected.trianglepath.dotted",
                                   "ellipsis.curlybraces",
                                   "hammer",
                                   "shippingbox",
                                   "shippingbox.fill",
                                   "arrow.triangle.2.circlepath",
                                   "folder.badge.plus",
                                   "house",
                                   "desktopcomputer",
                                   "level.up",
                                   "arrow.clockwise",
                                   "exclamationmark.triangle",
                                   "checkmark.circle.fill",
                                   "xmark",
                                   "xmark.circle",
                                   "hand.raised",
                                   "paintpalette",
                                   "info.circle"}) {
        EXPECT_TRUE(hasSymbol(QString::fromLatin1(name))) << name;
    }
}

TEST_F(Symbols, EachPaintsInTheWantedColour)
{
    const QColor wanted(200, 40, 90);
    const QStringList names = symbolNames();
    for (const QString& name : names) {
        const QImage image = symbolPixmap(name, 32, wanted, 1).toImage();
        EXPECT_GT(coveredPixels(image), 20) << name.toStdString();
        EXPECT_EQ(strayPixels(image, wanted), 0) << name.toStdString();
    }
}

TEST_F(Symbols, TakingOutOfTheTrashIsNotDrawnAsPuttingIn)
{
    const auto drawn = [](const char* name) {
        return symbolPixmap(QLatin1String(name), 32, Qt::black, 1).toImage();
    };
    EXPECT_NE(drawn("trash.slash"), drawn("trash"));
    // The slash leads through the middle, which is open on the can alone.
    const QImage slashed = drawn("trash.slash");
    for (const int place : {6, 10, 16, 22, 26}) {
        EXPECT_GT(slashed.pixelColor(place, place).alpha(), 127) << place;
    }
}

TEST_F(Symbols, AreDrawnAtTheResolutionOfTheScreen)
{
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        const QPixmap pixmap = symbolPixmap(QStringLiteral("folder"), 16, Qt::white, ratio);
        EXPECT_EQ(pixmap.width(), static_cast<int>(16 * ratio));
        EXPECT_EQ(pixmap.devicePixelRatio(), ratio);
    }
}

TEST_F(Symbols, IconsFollowThemeAndMode)
{
    const QIcon icon = symbolIcon(QStringLiteral("folder.fill"), ThemeColor::accentText);
    const auto shown = [&icon](QIcon::Mode mode) {
        const QImage image = icon.pixmap(QSize(32, 32), 1.0, mode).toImage();
        return image.pixelColor(image.width() / 2, image.height() * 2 / 3);
    };
    EXPECT_EQ(shown(QIcon::Normal), themeColor(ThemeColor::accentText));
    EXPECT_EQ(shown(QIcon::Disabled), themeColor(ThemeColor::textDisabled));
    EXPECT_EQ(shown(QIcon::Selected), themeColor(ThemeColor::accentLabel));
    setTheme(AppTheme::light, AccentChoice::blue);
    EXPECT_EQ(shown(QIcon::Normal), QColor(0x00, 0x5C, 0xBF));
}

TEST_F(Symbols, AnUnknownNameIsNothing)
{
    EXPECT_FALSE(hasSymbol(QStringLiteral("no.such.symbol")));
    EXPECT_TRUE(symbolIcon(QStringLiteral("no.such.symbol")).isNull());
    EXPECT_TRUE(symbolPixmap(QStringLiteral("no.such.symbol"), 16, Qt::white, 1).isNull());
}

} // namespace
} // namespace quorvane
