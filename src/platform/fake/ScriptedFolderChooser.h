// SPDX-License-Identifier: MIT
#pragma once

#include "FolderChooser.h"

#include <utility>
#include <vector>

namespace quorvane {

/// A folder chooser that a test answers: at once with `answer` when it is set, else later through
/// confirm(), else never, as a cancelled one. Main thread.
class ScriptedFolderChooser final : public FolderChooser
{
public:
    struct Request
    {
        QString prompt;
        QString message;
    };

    void chooseFolder(const QString& prompt, const QString& message,
                      std::function<void(const FilePath&)> chosen) override
    {
        requests.push_back({prompt, message});
        if (answer.isEmpty()) {
            m_chosen = std::move(chosen);
        } else {
            chosen(answer);
        }
    }

    /// Confirms the chooser that was shown last; nothing when none is open.
    void confirm(const FilePath& folder)
    {
        if (const auto chosen = std::exchange(m_chosen, nullptr)) {
            chosen(folder);
        }
    }

    /// Empty leaves the chooser open.
    FilePath answer;
    std::vector<Request> requests;

private:
    std::function<void(const FilePath&)> m_chosen;
};

} // namespace quorvane
