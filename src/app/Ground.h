// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QPixmap>
#include <QSizeF>
#include <QWidget>

namespace quorvane {

/// A part of the window that lays a colour of the theme over the window's ground, with a hairline
/// along one edge.
class Ground : public QWidget
{
    Q_OBJECT

public:
    enum class Edge { none, right, bottom };

    Ground(ThemeColor color, Edge edge, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ThemeColor m_color;
    Edge m_edge;
};

/// A screen with a soft glow of the accent behind its middle.
class GlowView : public QWidget
{
    Q_OBJECT

protected:
    struct Glow
    {
        QSizeF radii;   ///< points
        double height;  ///< of the centre, as a fraction of the screen's height from the top
        double opacity; ///< at the centre, 0 to 1
    };

    GlowView(const Glow& glow, QWidget* parent);
    void paintEvent(QPaintEvent* event) override;

private:
    const QPixmap& picture();

    Glow m_glow;
    QPixmap m_picture;
    QRgb m_pictureColor = 0;
};

} // namespace quorvane
