// SPDX-License-Identifier: MIT
#pragma once

#include "Label.h"

#include <QImage>
#include <QWidget>

class QPainter;

namespace quorvane {

/// The mark of the program: a disc of tiles with a tail, on a dark plate; the same in both themes.
class BrandMark : public QWidget
{
    Q_OBJECT

public:
    /// A square view, `side` points wide.
    explicit BrandMark(int side, QWidget* parent = nullptr);

    /// The mark as a picture of size x size pixels, transparent outside the plate. Null when
    /// `size` is not positive.
    static QImage image(int size);
    static void paint(QPainter& painter, const QRectF& square);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_side;
};

/// The name of the program in its own setting.
class Wordmark : public Label
{
    Q_OBJECT

public:
    explicit Wordmark(TextStyle style = TextStyle::counter, QWidget* parent = nullptr);
};

} // namespace quorvane
