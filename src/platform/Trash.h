// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <cstdint>
#include <optional>

namespace quorvane {

/// The desktop's Trash, from where the desktop can put an entry back. Any thread.
class Trash
{
public:
    enum class Outcome : std::uint8_t {
        moved,          ///< in the Trash now
        missing,        ///< nothing has been there any more
        notPermitted,   ///< the user may not take the entry out of its folder
        readOnly,       ///< the volume takes no changes
        notOfferedHere, ///< the volume has no Trash and none can be made on it
        failed          ///< anything else
    };

    virtual ~Trash() = default;

    /// Moves the entry itself, bytes as they are, links not followed, and returns when that is
    /// done. Whatever the outcome, nothing is deleted: what is not moved stays where it was.
    virtual Outcome moveToTrash(const FilePath& path) = 0;

    /// Why a move would fail, as far as that can be told beforehand; absent for no known reason.
    /// Moves and makes nothing. Takes as long as the disk.
    virtual std::optional<Outcome> obstacleTo(const FilePath& /*path*/) { return std::nullopt; }

    /// The desktop's own; lives as long as the process.
    static Trash& system();
};

} // namespace quorvane
