// SPDX-License-Identifier: MIT
#include "FlashState.h"

namespace quorvane {

FlashState::FlashState()
{
    m_flashTask.setTimerType(Qt::PreciseTimer);
    m_flashTask.setSingleShot(true);
    m_flashTask.setInterval(flashDuration);
    QObject::connect(&m_flashTask, &QTimer::timeout, &m_flashTask,
                     [this] { flashMessage = std::nullopt; });
}

void FlashState::flash(const QString& message)
{
    m_flashTask.stop();
    flashMessage = message;
    m_flashTask.start();
}

void FlashState::dismissFlash()
{
    m_flashTask.stop();
    flashMessage = std::nullopt;
}

} // namespace quorvane
