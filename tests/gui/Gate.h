// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>

namespace quorvane {

/// Holds up threads until it is opened; open at first. Any thread.
class Gate
{
public:
    void close() { set(false); }
    void open() { set(true); }

    void pass()
    {
        std::unique_lock guard(m_lock);
        ++m_waiting;
        m_changed.wait(guard, [this] { return m_isOpen; });
        --m_waiting;
    }

    /// Whether a thread stands before it now.
    bool holdsSomebody()
    {
        const std::lock_guard guard(m_lock);
        return !m_isOpen && m_waiting > 0;
    }

private:
    void set(bool isOpen)
    {
        {
            const std::lock_guard guard(m_lock);
            m_isOpen = isOpen;
        }
        m_changed.notify_all();
    }

    std::mutex m_lock;
    std::condition_variable m_changed;
    int m_waiting = 0;
    bool m_isOpen = true;
};

} // namespace quorvane
