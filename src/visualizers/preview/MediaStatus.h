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
    bool hasSound = false; ///< and an audio output
    bool isSilent = false; ///< audio without an output, and no video: it does not play
    bool isPlaying = false;
    qint64 position = 0; ///< milliseconds
    qint64 duration = 0; ///< milliseconds; 0 while it is unknown

    friend bool operator==(const MediaStatus&, const MediaStatus&) = default;
};

} // namespace quorvane
