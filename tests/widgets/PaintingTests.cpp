// SPDX-License-Identifier: MIT
#include "Painting.h"

#include "Tokens.h"
#include "WidgetsFixture.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

namespace quorvane {
namespace {

class Painting : public WidgetsTest
{
protected:
    static constexpr QRect area{0, 0, 400, 20};

    template<class Paint>
    static QImage painted(Paint paint)
    {
        QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        paint(painter);
        return image;
    }
};

TEST_F(Painting, ATextOfAnyLengthIsElidedAsIfAllOfItHadBeenMeasured)
{
    QString text;
    for (int i = 0; text.size() < 20000; ++i) {
        text += QStringLiteral("/folder %1").arg(i);
    }
    for (const Qt::TextElideMode elide : {Qt::ElideLeft, Qt::ElideMiddle, Qt::ElideRight}) {
        const QImage seen = painted([&](QPainter& painter) {
            paintText(painter, area, Qt::AlignLeft, TextStyle::path, Qt::black, text, elide);
        });
        const QImage expected = painted([&](QPainter& painter) {
            painter.setFont(font(TextStyle::path));
            painter.drawText(area, Qt::AlignLeft | Qt::TextSingleLine | Qt::TextDontClip,
                             QFontMetricsF(painter.font()).elidedText(text, elide, area.width()));
        });
        EXPECT_EQ(seen, expected) << elide;
    }
}

} // namespace
} // namespace quorvane
