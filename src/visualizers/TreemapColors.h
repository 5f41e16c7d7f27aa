// SPDX-License-Identifier: MIT
#pragma once

#include "Color.h"

namespace quorvane {

/// Colours of the treemap's folders that no palette changes.
struct TreemapColors
{
    /// A body whose category is not known.
    static constexpr Color folderBodyColor{0.086, 0.094, 0.11};
    static constexpr Color folderHeaderColor{0.169, 0.18, 0.212};
    /// The size on a header.
    static constexpr Color folderSizeColor{0.627, 0.647, 0.71};
};

} // namespace quorvane
