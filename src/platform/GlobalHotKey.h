// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace quorvane {

/// The key that calls the program from any other one: command (or Ctrl) and shift with the space
/// bar. Main thread.
class GlobalHotKey
{
public:
    enum class State {
        none,    ///< the desktop gives out no such keys
        taken,   ///< another program holds it
        askable, ///< the desktop gives it out once the person agrees; see ask()
        inForce
    };
    /// The token lets the window that opens come to the front; see WindowSystem.
    using Pressed = std::function<void(const std::string& activationToken)>;

    virtual ~GlobalHotKey() = default;

    /// Registers the key where that takes nobody's consent; nothing is left behind if it cannot be
    /// had. Both are called until this ends: pressed once for each press, and changed when the
    /// state or the trigger may have changed since this returned.
    virtual void install(Pressed pressed, std::function<void()> changed) = 0;
    virtual State state() const = 0;
    /// The key that the person has chosen instead, in the desktop's words, UTF-8; empty where it is
    /// the program's own.
    virtual std::string trigger() const { return {}; }
    /// Has the desktop ask the person, in a dialog of its own.
    virtual void ask() {}
};

} // namespace quorvane
