// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenRegistry.h"

namespace quorvane {

/// Every screen that the program has.
struct AppScreens
{
    SectionScreens sections;
    VisualizerScreens visualizers;

    /// The screens of the finished program.
    static AppScreens standard();
};

} // namespace quorvane
