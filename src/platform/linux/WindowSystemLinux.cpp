// SPDX-License-Identifier: MIT
#include "DesktopIntegration.h"
#include "PortalHotKey.h"
#include "X11HotKey.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>

namespace quorvane {
namespace {

/// Of EWMH: who asks is a direct tool of the person, like a pager.
constexpr std::uint32_t sourceIsPerson = 2;
constexpr std::uint8_t longFormat = 32;

bool isX11()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

/// The server's time of the press that a startup id tells of.
std::optional<xcb_timestamp_t> timeOf(const std::string& token)
{
    constexpr std::string_view mark = "_TIME";
    const std::size_t at = token.rfind(mark);
    if (at == std::string::npos) {
        return std::nullopt;
    }
    return static_cast<xcb_timestamp_t>(
        std::strtoul(token.c_str() + at + mark.size(), nullptr, 10));
}

/// X11 by the window manager's protocol (EWMH), on the toolkit's connection so that requests keep
/// their order.
class X11Windows final : public WindowSystem
{
public:
    void activate(std::uintptr_t window, const std::string& token) override
    {
        const std::optional<xcb_timestamp_t> time = timeOf(token);
        if (!time) {
            return;
        }
        xcb_client_message_event_t event;
        std::memset(&event, 0, sizeof event);
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = longFormat;
        event.window = static_cast<xcb_window_t>(window);
        event.type = atom("_NET_ACTIVE_WINDOW");
        event.data.data32[0] = sourceIsPerson;
        event.data.data32[1] = *time;
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, event.window,
                            atom("_NET_WM_USER_TIME"), XCB_ATOM_CARDINAL, longFormat, 1,
                            &event.data.data32[1]);
        xcb_send_event(connection(), 0, root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&event));
        xcb_flush(connection());
    }

    bool blendsWindows() const override
    {
        const xcb_atom_t manager = atom("_NET_WM_CM_S0");
        xcb_get_selection_owner_reply_t* const reply = xcb_get_selection_owner_reply(
            connection(), xcb_get_selection_owner(connection(), manager), nullptr);
        const bool hasManager = reply != nullptr && reply->owner != XCB_WINDOW_NONE;
        std::free(reply);
        return hasManager;
    }

private:
    static xcb_connection_t* connection()
    {
        return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    }

    static xcb_window_t root()
    {
        return xcb_setup_roots_iterator(xcb_get_setup(connection())).data->root;
    }

    static xcb_atom_t atom(std::string_view name)
    {
        xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(
            connection(),
            xcb_intern_atom(connection(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
            nullptr);
        const xcb_atom_t atom = reply == nullptr ? xcb_atom_t{XCB_ATOM_NONE} : reply->atom;
        std::free(reply);
        return atom;
    }
};

/// Compositors blend all windows. The toolkit passes the token on with its next request.
class WaylandWindows final : public WindowSystem
{
public:
    void activate(std::uintptr_t, const std::string& token) override
    {
        if (!token.empty()) {
            qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
        }
    }
    bool blendsWindows() const override { return true; }
};

/// A display that gives out no keys.
class NoHotKey final : public GlobalHotKey
{
public:
    void install(Pressed, std::function<void()>) override {}
    State state() const override { return State::none; }
};

} // namespace

std::unique_ptr<GlobalHotKey> makeDesktopHotKey()
{
    if (isX11()) {
        return std::make_unique<X11HotKey>();
    }
    // A grab would hear the keys of other X11 windows alone.
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        return std::make_unique<PortalHotKey>();
    }
    return std::make_unique<NoHotKey>();
}

std::unique_ptr<WindowSystem> makeWindowSystem()
{
    if (isX11()) {
        return std::make_unique<X11Windows>();
    }
    return std::make_unique<WaylandWindows>();
}

std::string startActivationToken()
{
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return (token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token).toStdString();
}

} // namespace quorvane
