// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>

namespace quorvane {

/// A Bool behind a lock: the stop channel from the main thread to a job. Any thread.
class LockedFlag
{
public:
    bool get() const
    {
        const std::lock_guard guard(m_lock);
        return m_value;
    }

    void set(bool value)
    {
        const std::lock_guard guard(m_lock);
        m_value = value;
    }

private:
    mutable std::mutex m_lock;
    bool m_value = false;
};

} // namespace quorvane
