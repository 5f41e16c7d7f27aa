// SPDX-License-Identifier: MIT
#include "TreemapLabels.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>
#include <vector>

namespace quorvane {
namespace {

constexpr QChar ellipsis(0x2026);

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

QString TreemapLabels::fit(const QString& text, double width)
{
    const auto most = static_cast<std::size_t>(std::max(std::trunc((width - 8) / 5), 2.0));
    const std::vector<qsizetype> ends = characterEnds(text);
    return ends.size() <= most ? text : cutAt(text, ends[most - 2]);
}

QString TreemapLabels::truncateFit(const QString& text, double width, const QFontMetricsF& metrics)
{
    if (width <= 0 || metrics.horizontalAdvance(text) <= width) {
        return text;
    }
    const std::vector<qsizetype> ends = characterEnds(text);
    std::size_t low = 1;
    std::size_t high = ends.size();
    QString best(ellipsis);
    while (low <= high) {
        const std::size_t middle = (low + high) / 2;
        const QString candidate = cutAt(text, ends[middle - 1]);
        if (metrics.horizontalAdvance(candidate) <= width) {
            best = candidate;
            low = middle + 1;
        } else {
            high = middle - 1;
        }
    }
    return best;
}

} // namespace quorvane
