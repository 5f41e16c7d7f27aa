// SPDX-License-Identifier: MIT
#pragma once

#include "GlobalHotKey.h"

#include <QSocketNotifier>

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace quorvane {

/// A grab of the key on the root window of the display, on a connection of its own. Main thread.
class X11HotKey final : public GlobalHotKey
{
public:
    X11HotKey();
    X11HotKey(const X11HotKey&) = delete;
    X11HotKey& operator=(const X11HotKey&) = delete;
    ~X11HotKey() override;

    void install(Pressed pressed, std::function<void()> changed) override;
    State state() const override { return m_state; }

private:
    xcb_window_t rootWindow() const;
    std::vector<xcb_keycode_t> keysWith(xcb_keysym_t symbol) const;
    std::uint16_t numLockModifier() const;
    bool grab();
    void ungrab();
    void grabAgain();
    void readEvents();

    int m_screenNumber = 0;
    xcb_connection_t* m_connection;
    Pressed m_pressed;
    std::function<void()> m_changed;
    State m_state = State::none;
    std::unique_ptr<QSocketNotifier> m_notifier;
    xcb_timestamp_t m_released = XCB_CURRENT_TIME;
};

} // namespace quorvane
