// SPDX-License-Identifier: MIT
#pragma once

class QIODevice;

namespace quorvane {

/// How far a film in an MP4 or QuickTime file is to be turned clockwise to stand upright: 0, 90,
/// 180 or 270 degrees. 0 for every other file and for a broken one. Reads a few boxes of the file,
/// wherever they stand, and moves the device. Waits for the disk: any thread but the main one.
int filmRotation(QIODevice& device);

} // namespace quorvane
