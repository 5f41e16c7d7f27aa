// SPDX-License-Identifier: MIT
#pragma once

namespace quorvane {

/// Makes every warning and every graver message of Qt a failure of the test that is running, but
/// for those of the offscreen window plugin about window-manager calls that it does not have, and
/// for those about a sound server or a graphics card that is not there.
/// Call it before the application object is made.
void failTestsOnQtWarnings();

} // namespace quorvane
