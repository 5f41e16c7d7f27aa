// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>

namespace quorvane {

/// Holds threads up until it is opened. Any thread.
class Gate
{
public:
    /// Returns once the gate is open.
    void pass()
    {
        std::unique_lock guard(m_lock);
        ++m_waiting;
        m_changed.notify_all();
        m_changed.wait(guard, [this] { return m_isOpen; });
        --m_waiting;
    }

    void open()
    {
        const std::lock_guard guard(m_lock);
        m_isOpen = true;
        m_changed.notify_all();
    }

    /// Who comes from now on has to wait again.
    void close()
    {
        const std::lock_guard guard(m_lock);
        m_isOpen = false;
    }

    /// Returns once a thread waits at the gate.
    void awaitVisitor()
    {
        std::unique_lock guard(m_lock);
        m_changed.wait(guard, [this] { return m_waiting > 0; });
    }

    bool hasVisitor() const
    {
        const std::lock_guard guard(m_lock);
        return m_waiting > 0;
    }

private:
    mutable std::mutex m_lock;
    std::condition_variable m_changed;
    int m_waiting = 0;
    bool m_isOpen = false;
};

} // namespace quorvane
