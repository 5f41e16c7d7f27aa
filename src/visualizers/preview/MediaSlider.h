// SPDX-License-Identifier: MIT
#pragma once

#include <QSlider>

namespace quorvane {

/// A rail, filled up to a knob: a place in time, or a loudness. A press anywhere takes the knob
/// there.
class MediaSlider : public QSlider
{
    Q_OBJECT

public:
    explicit MediaSlider(const QString& name, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void moveTo(qreal x);
};

} // namespace quorvane
