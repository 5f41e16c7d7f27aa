// SPDX-License-Identifier: MIT
#pragma once

#include "Dither.h"

#include <QColor>
#include <QRect>
#include <QRgb>
#include <QSize>

#include <array>
#include <vector>

class QPainter;

namespace quorvane {

/// The ground of a whole window: its colour, and over it a wash from the top left corner to nothing
/// in the bottom right one. Keeps the rows of the pattern that it repeats, no picture. Main thread.
class WindowGround
{
public:
    /// Paints what of a window of the given size lies in exposed; both in points. The painter
    /// stands at the window's origin.
    void paint(QPainter& painter, const QSize& window, const QRect& exposed, const QColor& ground,
               const QColor& wash);

private:
    /// What the rows depend on.
    struct Key
    {
        int length = 0; ///< pixels of width and height together
        QRgb ground = 0;
        QRgb wash = 0;

        friend bool operator==(const Key&, const Key&) = default;
    };

    void prepare(const Key& key, const QColor& ground, const QColor& wash);

    Key m_key;
    /// For each row of the dither pattern the colours along the sum of x and y, on which alone the
    /// wash depends.
    std::array<std::vector<QRgb>, Dither::side> m_rows;
};

} // namespace quorvane
