// SPDX-License-Identifier: MIT
#pragma once

#include <QProperty>
#include <QString>
#include <QTimer>

#include <chrono>
#include <optional>

namespace quorvane {

class AppState;

/// The model's flash banner: one line of text that goes away by itself. Main thread.
class FlashState
{
public:
    static FlashState& of(AppState& state);

    FlashState();
    FlashState(const FlashState&) = delete;
    FlashState& operator=(const FlashState&) = delete;

    QProperty<std::optional<QString>> flashMessage; ///< text of the flash banner

    static constexpr std::chrono::milliseconds flashDuration{2600};
    /// Replaces the text on show and starts its time anew.
    void flash(const QString& message);
    void dismissFlash();

private:
    QTimer m_flashTask;
};

} // namespace quorvane
