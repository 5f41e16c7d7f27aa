// SPDX-License-Identifier: MIT
#include "LatestFrame.h"

#include <utility>

namespace quorvane {

bool LatestFrame::put(const QImage& frame)
{
    const std::lock_guard guard(m_lock);
    const bool wasEmpty = m_frame.isNull();
    m_frame = frame;
    return wasEmpty;
}

QImage LatestFrame::take()
{
    const std::lock_guard guard(m_lock);
    return std::exchange(m_frame, QImage());
}

void LatestFrame::setRoom(const QSize& room)
{
    const std::lock_guard guard(m_lock);
    m_room = room;
}

QSize LatestFrame::room() const
{
    const std::lock_guard guard(m_lock);
    return m_room;
}

} // namespace quorvane
