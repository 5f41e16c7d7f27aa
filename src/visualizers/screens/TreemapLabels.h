// SPDX-License-Identifier: MIT
#pragma once

#include <QFontMetricsF>
#include <QString>

namespace quorvane {

/// How the treemap cuts its labels. Characters are grapheme clusters. Any thread.
struct TreemapLabels
{
    /// Font size of a tile's label, points, from the tile's width.
    static int fontSize(double width);
    /// The cheap cut: at most max(trunc((width - 8) / 5), 2) characters, the last one an ellipsis.
    static QString fit(const QString& text, double width);
    /// The exact cut: the longest prefix that measures no more than width together with an
    /// ellipsis. Returned unchanged when it fits or when width is not positive.
    static QString truncateFit(const QString& text, double width, const QFontMetricsF& metrics);
};

} // namespace quorvane
