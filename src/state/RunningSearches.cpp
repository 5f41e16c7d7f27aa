// SPDX-License-Identifier: MIT
#include "RunningSearches.h"

#include <algorithm>
#include <chrono>

namespace quorvane {
namespace {

constexpr std::chrono::milliseconds cancelPollInterval{20};

} // namespace

bool RunningSearches::enter(const Flag& search, const std::function<bool()>& isCancelled)
{
    std::unique_lock guard(m_lock);
    while (hasStoppedOnes()) {
        if (isCancelled()) {
            return false;
        }
        m_left.wait_for(guard, cancelPollInterval);
    }
    m_inside.push_back(search);
    return true;
}

void RunningSearches::leave(const LockedFlag* search)
{
    {
        const std::lock_guard guard(m_lock);
        std::erase_if(m_inside, [search](const Flag& inside) { return inside.get() == search; });
    }
    m_left.notify_all();
}

bool RunningSearches::hasStoppedOnes() const
{
    return std::any_of(m_inside.begin(), m_inside.end(),
                       [](const Flag& inside) { return inside->get(); });
}

} // namespace quorvane
