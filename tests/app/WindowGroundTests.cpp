// SPDX-License-Identifier: MIT
#include "WindowGround.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include <cstdlib>

namespace quorvane {
namespace {

constexpr QSize windowSize(300, 200);

QImage painted(const QRect& exposed, const QColor& wash, qreal ratio = 1)
{
    QImage picture(windowSize * ratio, QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::magenta);
    QPainter painter(&picture);
    WindowGround().paint(painter, windowSize, exposed, QColor(10, 20, 30), wash);
    return picture;
}

TEST(WindowGround, TheWashIsFullInTheFirstCornerAndGoneInTheLast)
{
    const QColor wash = QColor::fromRgbF(1, 1, 1, 0.5F);
    const QImage picture = painted({{}, windowSize}, wash);
    // Half white over 10, 20, 30 is 132.5, 137.5, 142.5.
    const QColor first = picture.pixelColor(0, 0);
    EXPECT_NEAR(first.red(), 132.5, 1);
    EXPECT_NEAR(first.green(), 137.5, 1);
    EXPECT_NEAR(first.blue(), 142.5, 1);
    const QColor last = picture.pixelColor(299, 199);
    EXPECT_NEAR(last.red(), 10, 1);
    EXPECT_NEAR(last.blue(), 30, 1);
}

TEST(WindowGround, AClearWashLeavesTheGround)
{
    const QImage picture = painted({{}, windowSize}, Qt::transparent);
    EXPECT_EQ(picture.pixelColor(0, 0), QColor(10, 20, 30));
    EXPECT_EQ(picture.pixelColor(150, 100), QColor(10, 20, 30));
}

TEST(WindowGround, APartLooksAsItDoesInTheWhole)
{
    const QColor wash = QColor::fromRgbF(0.2F, 0.4F, 0.9F, 0.3F);
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        const QImage whole = painted({{}, windowSize}, wash, ratio);
        const QRect part(20, 30, 100, 60);
        const QImage alone = painted(part, wash, ratio);
        const QRect pixels =
            QRectF(part.x() * ratio, part.y() * ratio, part.width() * ratio, part.height() * ratio)
                .toRect();
        EXPECT_EQ(alone.copy(pixels), whole.copy(pixels)) << ratio;
        EXPECT_EQ(alone.pixelColor(0, 0), QColor(Qt::magenta)) << ratio;
    }
}

TEST(WindowGround, NeighboursDifferByOneLevelAtMost)
{
    const QImage picture = painted({{}, windowSize}, QColor::fromRgbF(0.2F, 0.3F, 0.4F, 0.3F));
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 1; x < picture.width(); ++x) {
            const int step = picture.pixelColor(x, y).blue() - picture.pixelColor(x - 1, y).blue();
            ASSERT_LE(std::abs(step), 1) << x << "," << y;
        }
    }
}

} // namespace
} // namespace quorvane
