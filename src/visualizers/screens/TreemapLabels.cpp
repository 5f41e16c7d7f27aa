// SPDX-License-Identifier: MIT
#include "TreemapLabels.h"

#include "ByteFormatter.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>
#include <vector>

namespace quorvane {
namespace {

constexpr QChar ellipsis(0x2026);
/// By how much kerning can change the width of a text, as a share of it.
constexpr double kerningShare = 0.12;

/// Ends of the text's characters, in code units.
std::vector<qsizetype> characterEnds(const QString& text)
{
    std::vector<qsizetype> ends;
    ends.reserve(static_cast<std::size_t>(text.size()));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    while (finder.toNextBoundary() > 0) {
        ends.push_back(finder.position());
    }
    return ends;
}

QString cutAt(const QString& text, qsizetype end)
{
    while (end > 0 && text[end - 1] == QLatin1Char(' ')) {
        --end;
    }
    return text.left(end) + ellipsis;
}

} // namespace

int TreemapLabels::fontSize(double width)
{
    struct Step
    {
        double from;
        int size;
    };
    constexpr Step steps[] = {{260, 13}, {160, 12}, {100, 11}, {64, 10}};
    for (const Step& step : steps) {
        if (width >= step.from) {
            return step.size;
        }
    }
    return 9;
}

QString TreemapLabels::aggregate(std::int64_t bytes)
{
    return QLatin1Char('[') + ByteFormatter::string(bytes, 1) + QStringLiteral(" Cache Files]");
}

QString TreemapLabels::fit(const QString& text, double width)
{
    const auto most = static_cast<std::size_t>(std::max(std::trunc((width - 8) / 5), 2.0));
    const std::vector<qsizetype> ends = characterEnds(text);
    return ends.size() <= most ? text : cutAt(text, ends[most - 2]);
}

QString TreemapLabels::truncateFit(const QString& text, double width, const LabelFont& font)
{
    if (width <= 0) {
        return text;
    }
    // A collapsed chain can have a name of megabytes. No character is so narrow that more than this
    // could fit.
    const auto most = static_cast<qsizetype>(4 * width) + 64;
    if (text.size() > most) {
        const QString front = text.left(most);
        return truncateFit(front, width, font);
    }
    // Shaping is most of the cost of a picture: a text that is clearly short or clearly long is
    // told by its advances alone.
    const double estimate = font.estimatedWidth(text);
    const bool isClear = estimate >= 0 && std::abs(estimate - width) > kerningShare * width;
    if (isClear ? estimate < width : font.width(text) <= width) {
        return text;
    }
    const std::vector<qsizetype> ends = characterEnds(text);
    const auto fits = [&](std::size_t count) {
        return font.width(cutAt(text, ends[count - 1])) <= width;
    };
    std::size_t low = 1;
    std::size_t high = ends.size();
    if (estimate > 0) {
        // The wanted prefix lies near the one that the average advance promises.
        const double share = width / estimate * static_cast<double>(ends.size());
        const auto guess =
            static_cast<std::size_t>(std::clamp(share - 2, 1.0, static_cast<double>(ends.size())));
        const std::size_t reach = 3;
        if (guess > reach && fits(guess - reach)) {
            low = guess - reach + 1;
        }
        if (guess + reach < high && !fits(guess + reach)) {
            high = guess + reach - 1;
        }
    }
    std::size_t best = low - 1;
    while (low <= high) {
        const std::size_t middle = (low + high) / 2;
        if (fits(middle)) {
            best = middle;
            low = middle + 1;
        } else {
            high = middle - 1;
        }
    }
    return best == 0 ? QString(ellipsis) : cutAt(text, ends[best - 1]);
}

LabelFont::LabelFont(const QFont& family, int pixelSize, bool bold, QPaintDevice* device)
    : m_font([&] {
        QFont font = family;
        font.setPixelSize(pixelSize);
        font.setWeight(bold ? QFont::Bold : QFont::Normal);
        return font;
    }())
    , m_metrics(m_font, device)
    , m_advances{}
{
    for (std::size_t i = 0; i < knownCharacters; ++i) {
        m_advances[i] = m_metrics.horizontalAdvance(QChar(static_cast<char16_t>(i)));
    }
}

double LabelFont::estimatedWidth(const QString& text) const
{
    double sum = 0;
    for (const QChar character : text) {
        if (character.unicode() >= knownCharacters) {
            return -1;
        }
        sum += m_advances[character.unicode()];
    }
    return sum;
}

double LabelFont::baselineBelowMiddle() const
{
    return (m_metrics.ascent() - m_metrics.descent()) / 2;
}

} // namespace quorvane
