// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace quorvane {

/// What the window system does for windows beyond what the toolkit asks of it. Main thread.
class WindowSystem
{
public:
    virtual ~WindowSystem() = default;

    /// Lets a window that is on show take the keyboard from another program: the token tells that
    /// the person asked for it. One of xdg-activation-v1, or a startup id that ends in "_TIME" and
    /// the X server's time of the key press; empty for none. Followed by the toolkit's own request.
    virtual void activate(std::uintptr_t window, const std::string& token) = 0;
    /// Whether what lies behind a translucent window shows through.
    virtual bool blendsWindows() const = 0;
};

} // namespace quorvane
