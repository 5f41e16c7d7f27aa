// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>

class QPaintDevice;

namespace quorvane {

/// A font with its measures, made once a picture. One thread at a time.
class LabelFont
{
public:
    /// family gives everything but size and weight. The device outlives the font.
    LabelFont(const QFont& family, int pixelSize, bool bold, QPaintDevice* device);

    const QFont& font() const { return m_font; }
    /// Width of the text as it will be drawn, points. Shapes the text.
    double width(const QString& text) const { return m_metrics.horizontalAdvance(text); }
    /// The sum of the advances of ASCII characters, without kerning; negative for any other text.
    double estimatedWidth(const QString& text) const;
    /// From the middle of a line of text down to its baseline, points.
    double baselineBelowMiddle() const;

private:
    static constexpr std::size_t knownCharacters = 128;

    QFont m_font;
    QFontMetricsF m_metrics;
    std::array<double, knownCharacters> m_advances;
};

/// How the treemap cuts its labels. Characters are grapheme clusters. Any thread.
struct TreemapLabels
{
    /// Font size of a tile's label, points, from the tile's width.
    static int fontSize(double width);
    /// What stands on a tile that many small items are folded into: "[1.5 MB Cache Files]",
    /// whatever they are.
    static QString aggregate(std::int64_t bytes);
    /// The cheap cut: at most max(trunc((width - 8) / 5), 2) characters, the last one an ellipsis.
    static QString fit(const QString& text, double width);
    /// The exact cut: the longest prefix that measures no more than width together with an
    /// ellipsis. Returned unchanged when it fits or when width is not positive.
    static QString truncateFit(const QString& text, double width, const LabelFont& font);
};

} // namespace quorvane
