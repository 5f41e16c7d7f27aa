// SPDX-License-Identifier: MIT
#include "X11HotKey.h"

#include <QObject>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <utility>

namespace quorvane {
namespace {

// Of X11's keysymdef.h.
constexpr xcb_keysym_t spaceSymbol = 0x20;
constexpr xcb_keysym_t numLockSymbol = 0xff7f;

constexpr std::uint16_t keyModifiers = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_SHIFT;
constexpr std::size_t modifierCount = 8;
/// The bit that marks events which a client has sent.
constexpr std::uint8_t eventTypeMask = 0x7F;

template<class Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template<class Reply>
Owned<Reply> owned(Reply* reply)
{
    return {reply, &std::free};
}

} // namespace

X11HotKey::X11HotKey()
    : m_connection(xcb_connect(nullptr, &m_screenNumber))
{}

X11HotKey::~X11HotKey()
{
    m_notifier.reset();
    // Ends the grabs, too.
    xcb_disconnect(m_connection);
}

void X11HotKey::install(Pressed pressed, std::function<void()> changed)
{
    if (xcb_connection_has_error(m_connection) != 0) {
        return;
    }
    m_pressed = std::move(pressed);
    m_changed = std::move(changed);
    m_state = grab() ? State::inForce : State::taken;
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection),
                                                   QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { readEvents(); });
    // What came with the answers has been read from the socket already.
    readEvents();
}

xcb_window_t X11HotKey::rootWindow() const
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection));
    for (int i = 0; i < m_screenNumber && screens.rem > 1; ++i) {
        xcb_screen_next(&screens);
    }
    return screens.data->root;
}

/// The keys on whose cap the symbol stands first.
std::vector<xcb_keycode_t> X11HotKey::keysWith(xcb_keysym_t symbol) const
{
    const xcb_setup_t* const setup = xcb_get_setup(m_connection);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto reply = owned(xcb_get_keyboard_mapping_reply(
        m_connection, xcb_get_keyboard_mapping(m_connection, setup->min_keycode, count), nullptr));
    std::vector<xcb_keycode_t> keys;
    if (!reply) {
        return keys;
    }
    const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(reply.get());
    for (int i = 0; i < count; ++i) {
        if (symbols[i * reply->keysyms_per_keycode] == symbol) {
            keys.push_back(static_cast<xcb_keycode_t>(setup->min_keycode + i));
        }
    }
    return keys;
}

/// The modifier that the Num Lock key stands for.
std::uint16_t X11HotKey::numLockModifier() const
{
    const std::vector<xcb_keycode_t> keys = keysWith(numLockSymbol);
    const auto reply = owned(xcb_get_modifier_mapping_reply(
        m_connection, xcb_get_modifier_mapping(m_connection), nullptr));
    if (!reply || keys.empty()) {
        return XCB_MOD_MASK_2;
    }
    const xcb_keycode_t* const codes = xcb_get_modifier_mapping_keycodes(reply.get());
    const std::size_t each = reply->keycodes_per_modifier;
    for (std::size_t i = 0; i < modifierCount * each; ++i) {
        if (codes[i] == keys.front()) {
            return static_cast<std::uint16_t>(1U << (i / each));
        }
    }
    return XCB_MOD_MASK_2;
}

/// A grab takes the state of the lock keys literally, so that there is one for each.
bool X11HotKey::grab()
{
    const std::uint16_t numLock = numLockModifier();
    const std::array<std::uint16_t, 4> locks{
        0, XCB_MOD_MASK_LOCK, numLock, static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | numLock)};
    const std::vector<xcb_keycode_t> keys = keysWith(spaceSymbol);
    for (const xcb_keycode_t key : keys) {
        for (const std::uint16_t lock : locks) {
            const auto modifiers = static_cast<std::uint16_t>(keyModifiers | lock);
            const auto fault = owned(xcb_request_check(
                m_connection, xcb_grab_key_checked(m_connection, 1, rootWindow(), modifiers, key,
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
            if (fault) {
                ungrab();
                return false;
            }
        }
    }
    return !keys.empty();
}

void X11HotKey::ungrab()
{
    xcb_ungrab_key(m_connection, XCB_GRAB_ANY, rootWindow(), XCB_MOD_MASK_ANY);
    xcb_flush(m_connection);
}

/// The keyboard has another layout.
void X11HotKey::grabAgain()
{
    ungrab();
    const State state = grab() ? State::inForce : State::taken;
    if (std::exchange(m_state, state) != state) {
        m_changed();
    }
}

void X11HotKey::readEvents()
{
    std::vector<xcb_timestamp_t> presses;
    bool hasNewLayout = false;
    while (const auto event = owned(xcb_poll_for_event(m_connection))) {
        switch (event->response_type & eventTypeMask) {
        case XCB_KEY_PRESS: {
            const auto time = reinterpret_cast<const xcb_key_press_event_t&>(*event).time;
            // A key that is held down repeats as releases and presses of the same instant.
            if (time != m_released) {
                presses.push_back(time);
            }
            break;
        }
        case XCB_KEY_RELEASE:
            m_released = reinterpret_cast<const xcb_key_release_event_t&>(*event).time;
            break;
        case XCB_MAPPING_NOTIFY:
            hasNewLayout = true;
            break;
        default:
            break;
        }
    }
    if (xcb_connection_has_error(m_connection) != 0) {
        m_notifier->setEnabled(false);
    } else if (hasNewLayout) {
        grabAgain();
    }
    for (const xcb_timestamp_t time : presses) {
        m_pressed("quorvane_TIME" + std::to_string(time));
    }
}

} // namespace quorvane
