// SPDX-License-Identifier: MIT
#pragma once

#include "GlobalHotKey.h"

#include <string>
#include <utility>

namespace quorvane {

/// A key that a test presses, and a desktop that the test is. Main thread.
class ScriptedHotKey final : public GlobalHotKey
{
public:
    explicit ScriptedHotKey(State first = State::inForce)
        : m_state(first)
    {}

    void install(Pressed whenPressed, std::function<void()> changed) override
    {
        m_pressed = std::move(whenPressed);
        m_changed = std::move(changed);
    }
    State state() const override { return m_state; }
    std::string trigger() const override { return chosen; }
    void ask() override { ++asked; }

    void press() { m_pressed({}); }
    void become(State state)
    {
        m_state = state;
        m_changed();
    }

    int asked = 0;
    std::string chosen;

private:
    State m_state;
    Pressed m_pressed;
    std::function<void()> m_changed;
};

} // namespace quorvane
