// SPDX-License-Identifier: MIT
#pragma once

#include "FolderChooser.h"

class QWidget;

namespace quorvane {

/// The toolkit's folder dialog (the desktop's own where the toolkit has one), modal to the
/// program's active window.
class DialogFolderChooser final : public FolderChooser
{
public:
    /// From here on the process keeps no settings file of the toolkit's for the user: its dialog
    /// would write visited folders there.
    DialogFolderChooser();

    void chooseFolder(const QString& prompt, const QString& message,
                      std::function<void(const FilePath&)> chosen) override;

    /// The window that a chooser belongs to: the active one, else the first that is on show; null
    /// for none.
    static QWidget* hostWindow();
};

} // namespace quorvane
