// SPDX-License-Identifier: MIT
#pragma once

#include "Button.h"

#include <QCheckBox>
#include <QSize>
#include <QStyle>
#include <QVariantAnimation>

namespace quorvane {

/// Paints a switch into its track. position: 0 (off) to 1 (on). Reads State_Enabled,
/// State_MouseOver and State_Sunken.
void paintSwitch(QPainter& painter, const QRectF& track, qreal position, QStyle::State state);

/// On or off, 36 x 20, or 28 x 16 as a small one. `name` is its accessible name.
class Switch : public QCheckBox
{
    Q_OBJECT

public:
    explicit Switch(const QString& name, QWidget* parent = nullptr,
                    ControlSize size = ControlSize::regular);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool hitButton(const QPoint& position) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    void slide(bool on);

    QSize m_track;
    QVariantAnimation m_slide;
    qreal m_position = 0; ///< of the knob: 0 off, 1 on
};

} // namespace quorvane
