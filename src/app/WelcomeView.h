// SPDX-License-Identifier: MIT
#pragma once

#include "Ground.h"

namespace quorvane {

class AppState;

/// What the program shows before the first scan. Main thread.
class WelcomeView : public GlowView
{
    Q_OBJECT

public:
    explicit WelcomeView(AppState& state, QWidget* parent = nullptr);
};

} // namespace quorvane
