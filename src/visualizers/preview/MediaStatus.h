// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>

namespace quorvane {

/// Where the playing of a sound or a film stands. A plain value.
struct MediaStatus
{
    enum class Phase {
        opening,
        ready, ///< plays, or could
        failed ///< broken, or of an unknown kind
    };

    Phase phase = Phase::opening;
    bool hasFilm = false;
    bool hasSound = false; ///< and something to hear it with
    bool isSilent = false; ///< a sound with nothing to hear it with, and no film: it stands still
    bool isPlaying = false;
    qint64 position = 0; ///< milliseconds
    qint64 duration = 0; ///< milliseconds; 0 while it is unknown

    friend bool operator==(const MediaStatus&, const MediaStatus&) = default;
};

} // namespace quorvane
