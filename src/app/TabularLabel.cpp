// SPDX-License-Identifier: MIT
#include "TabularLabel.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace quorvane {
namespace {

/// Width of the widest figure.
qreal figureWidth(const QFontMetricsF& metrics)
{
    qreal widest = 0;
    for (char figure = '0'; figure <= '9'; ++figure) {
        widest = std::max(widest, metrics.horizontalAdvance(QLatin1Char(figure)));
    }
    return widest;
}

/// Calls visit(piece, width, isFigure) for each figure and each run between figures.
template<class Visit>
void forEachPiece(const QString& text, const QFontMetricsF& metrics, Visit visit)
{
    const qreal figure = figureWidth(metrics);
    qsizetype i = 0;
    while (i < text.size()) {
        const qsizetype start = i;
        if (text[i].isDigit()) {
            ++i;
            visit(text.mid(start, 1), figure, true);
            continue;
        }
        while (i < text.size() && !text[i].isDigit()) {
            ++i;
        }
        const QString run = text.mid(start, i - start);
        visit(run, metrics.horizontalAdvance(run), false);
    }
}

} // namespace

TabularLabel::TabularLabel(TextStyle style, ThemeColor color, QWidget* parent)
    : Label({}, style, color, parent)
{}

qreal TabularLabel::textWidth() const
{
    qreal total = 0;
    forEachPiece(text(), QFontMetricsF(font()),
                 [&total](const QString&, qreal width, bool) { total += width; });
    return total;
}

QSize TabularLabel::sizeHint() const
{
    return {static_cast<int>(std::ceil(textWidth())), typeMeasure(textStyle()).lineHeight};
}

void TabularLabel::paintEvent(QPaintEvent*)
{
    const QFontMetricsF metrics(font());
    const qreal room = width() - textWidth();
    qreal x = 0;
    if (alignment().testFlag(Qt::AlignHCenter)) {
        x = room / 2;
    } else if (alignment().testFlag(Qt::AlignRight)) {
        x = room;
    }
    const qreal baseline = (height() + metrics.ascent() - metrics.descent()) / 2;
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(currentColor());
    forEachPiece(text(), metrics, [&](const QString& piece, qreal width, bool isFigure) {
        const qreal inset = isFigure ? (width - metrics.horizontalAdvance(piece)) / 2 : 0;
        painter.drawText(QPointF(x + inset, baseline), piece);
        x += width;
    });
}

} // namespace quorvane
