// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>

namespace quorvane {

/// Holds threads up until it is opened; closed at first unless made otherwise. Any thread.
class Gate
{
public:
    enum class State { closed, open };

    explicit Gate(State state = State::closed)
        : m_isOpen(state == State::open)
    {}

    /// Returns once the gate is open.
    void pass()
    {
        std::unique_lock guard(m_lock);
        ++m_waiting;
        m_changed.notify_all();
        m_changed.wait(guard, [this] { return m_isOpen; });
        --m_waiting;
    }

    void open() { set(true); }
    void close() { set(false); }

    /// Returns once a thread waits at the gate.
    void awaitVisitor()
    {
        std::unique_lock guard(m_lock);
        m_changed.wait(guard, [this] { return m_waiting > 0; });
    }

    /// Whether a thread waits at the gate now.
    bool hasVisitor() const
    {
        const std::lock_guard guard(m_lock);
        return m_waiting > 0;
    }

private:
    void set(bool isOpen)
    {
        const std::lock_guard guard(m_lock);
        m_isOpen = isOpen;
        m_changed.notify_all();
    }

    mutable std::mutex m_lock;
    std::condition_variable m_changed;
    int m_waiting = 0;
    bool m_isOpen;
};

} // namespace quorvane
