// SPDX-License-Identifier: MIT
#pragma once

#include "DesktopSettings.h"
#include "QuorvaneStyle.h"
#include "Theme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QStyle>

namespace quorvane {

/// The style in place, dark with a blue accent, movement off unless a test asks for it.
class WidgetsTest : public testing::Test
{
protected:
    /// For a window to come up, in milliseconds, on a machine that has much else to do.
    static constexpr int patience = 30'000;

    WidgetsTest()
    {
        if (QApplication::style()->objectName() != QStringLiteral("quorvane")) {
            QuorvaneStyle::install(*static_cast<QApplication*>(QCoreApplication::instance()));
        }
        DesktopSettings::instance().setReducedMotion(true);
        setTheme(AppTheme::dark, AccentChoice::blue);
    }
};

} // namespace quorvane
