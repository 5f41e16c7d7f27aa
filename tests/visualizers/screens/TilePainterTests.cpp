// SPDX-License-Identifier: MIT
#include "TilePainter.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QPen>

#include <cstdlib>

namespace quorvane {
namespace {

QImage blank(int width, int height, double ratio = 1)
{
    QImage picture(width, height, QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::black);
    return picture;
}

int greatestDifference(const QImage& a, const QImage& b)
{
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            greatest = std::max({greatest, std::abs(qRed(p) - qRed(q)),
                                 std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return greatest;
}

TEST(TilePainterTests, FillsWholePixelsExactly)
{
    QImage picture = blank(10, 10);
    TilePainter(picture).draw({.rect = {2, 3, 4, 5}, .fill = QColor(200, 100, 50)});
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 10; ++x) {
            const bool inside = x >= 2 && x < 6 && y >= 3 && y < 8;
            EXPECT_EQ(picture.pixelColor(x, y), inside ? QColor(200, 100, 50) : QColor(Qt::black))
                << x << "," << y;
        }
    }
}

TEST(TilePainterTests, CoversHalfAPixelHalf)
{
    QImage picture = blank(10, 10);
    TilePainter(picture).draw({.rect = {2.5, 2, 4, 4}, .fill = QColor(Qt::white)});
    EXPECT_NEAR(picture.pixelColor(2, 4).red(), 128, 2);
    EXPECT_EQ(picture.pixelColor(3, 4).red(), 255);
    EXPECT_NEAR(picture.pixelColor(6, 4).red(), 128, 2);
    EXPECT_EQ(picture.pixelColor(7, 4).red(), 0);
}

TEST(TilePainterTests, MatchesAPathPainterOnRoundedTiles)
{
    for (const double ratio : {1.0, 1.5, 2.0}) {
        QImage ours = blank(60, 60, ratio);
        const Rect rect{5, 6, 20, 14};
        TilePainter(ours).draw({.rect = rect,
                                .topRadius = 2.5,
                                .bottomRadius = 2.5,
                                .fill = QColor(120, 200, 90),
                                .stroke = QColor(8, 9, 10)});
        QImage theirs = blank(60, 60, ratio);
        QPainter painter(&theirs);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(QColor(120, 200, 90));
        painter.setPen(QPen(QColor(8, 9, 10), 1));
        painter.drawRoundedRect(QRectF(rect.x, rect.y, rect.width, rect.height), 2.5, 2.5);
        painter.end();
        // Box and distance coverage differ a little in the corners.
        EXPECT_LE(greatestDifference(ours, theirs), 48) << "ratio " << ratio;
    }
}

TEST(TilePainterTests, RoundsTheTopAloneWhereAsked)
{
    QImage picture = blank(30, 30);
    TilePainter(picture).draw({.rect = {0, 0, 30, 30}, .topRadius = 10, .fill = QColor(Qt::white)});
    EXPECT_EQ(picture.pixelColor(0, 0).red(), 0);
    EXPECT_EQ(picture.pixelColor(29, 0).red(), 0);
    EXPECT_EQ(picture.pixelColor(0, 29).red(), 255);
    EXPECT_EQ(picture.pixelColor(29, 29).red(), 255);
}

TEST(TilePainterTests, DrawsOnlyInsideThePicture)
{
    QImage picture = blank(8, 8);
    TilePainter(picture).draw({.rect = {-20, -20, 100, 100},
                               .topRadius = 3,
                               .bottomRadius = 3,
                               .fill = QColor(Qt::white),
                               .stroke = QColor(Qt::red)});
    EXPECT_EQ(picture.pixelColor(0, 0), QColor(Qt::white));
    EXPECT_EQ(picture.pixelColor(7, 7), QColor(Qt::white));
    QImage untouched = blank(8, 8);
    TilePainter(untouched).draw({.rect = {50, 50, 5, 5}, .fill = QColor(Qt::white)});
    EXPECT_EQ(untouched, blank(8, 8));
}

TEST(TilePainterTests, ScrimDarkensTheTopAndFades)
{
    QImage picture = blank(40, 60);
    TilePainter(picture).draw({.rect = {0, 0, 40, 60},
                               .fill = QColor(200, 200, 200),
                               .scrimOpacity = 0.5,
                               .scrimHeight = 30});
    EXPECT_NEAR(picture.pixelColor(20, 2).red(), 100, 1);
    EXPECT_NEAR(picture.pixelColor(20, 15).red(), 100, 1); // 15.5 of 30 lies on the plateau
    EXPECT_GT(picture.pixelColor(20, 25).red(), picture.pixelColor(20, 20).red());
    EXPECT_EQ(picture.pixelColor(20, 31).red(), 200);
}

} // namespace
} // namespace quorvane
