// SPDX-License-Identifier: MIT
#include "DesktopFolderChooser.h"

#include "DialogFolderChooser.h"

namespace quorvane {

std::unique_ptr<FolderChooser> makeDesktopFolderChooser()
{
    // The toolkit shows the system's own panel.
    return std::make_unique<DialogFolderChooser>();
}

} // namespace quorvane
