// SPDX-License-Identifier: MIT
#pragma once

#include "VisualizerCanvas.h"

namespace quorvane {

/// The flame graph of a folder on screen, with a caption in the corner that tells how to read it.
class FlameView final : public VisualizerCanvas
{
    Q_OBJECT

public:
    explicit FlameView(AppState& state, QWidget* parent = nullptr);

    static QString caption();

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
