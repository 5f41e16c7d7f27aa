// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>

#include <mutex>

namespace quorvane {

/// The newest picture of a film on its way to the screen: a newer one takes the place of one that
/// nobody has fetched. Any thread.
class LatestFrame
{
public:
    /// True when none was waiting: the receiver has to be notified.
    bool put(const QImage& frame);
    /// Null when there is none.
    QImage take();

    /// Device pixels that a frame may have.
    void setRoom(const QSize& room);
    QSize room() const;

private:
    mutable std::mutex m_lock;
    QImage m_frame;
    QSize m_room;
};

} // namespace quorvane
