// SPDX-License-Identifier: MIT
#pragma once

#include "LockedFlag.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace quorvane {

/// The searches that are in the finder just now, each known by the flag that stops it. A stopped
/// search leaves at its next poll, which a slow disk may delay; the next one waits for it, so that
/// stopping and starting over and over, or scanning again, never piles searches up. Any thread.
class RunningSearches
{
public:
    using Flag = std::shared_ptr<const LockedFlag>;

    /// Enters the search as soon as none that is stopped is left. Looks at isCancelled about every
    /// 20 ms meanwhile. Returns false, without having entered, once that holds.
    bool enter(const Flag& search, const std::function<bool()>& isCancelled);
    void leave(const LockedFlag* search);

private:
    bool hasStoppedOnes() const;

    std::mutex m_lock;
    std::condition_variable m_left;
    std::vector<Flag> m_inside;
};

} // namespace quorvane
