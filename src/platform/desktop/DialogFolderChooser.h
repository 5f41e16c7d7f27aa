// SPDX-License-Identifier: MIT
#pragma once

#include "FolderChooser.h"

namespace quorvane {

/// The toolkit's folder dialog (the desktop's own where the toolkit has one), modal to the
/// program's active window.
class DialogFolderChooser final : public FolderChooser
{
public:
    void chooseFolder(const QString& prompt, const QString& message,
                      std::function<void(const FilePath&)> chosen) override;
};

} // namespace quorvane
