// SPDX-License-Identifier: MIT
#include "DesktopIntegration.h"

#include <Carbon/Carbon.h>

#include <utility>

namespace quorvane {
namespace {

constexpr UInt32 spaceKey = 49;
constexpr UInt32 keyModifiers = cmdKey | shiftKey;
constexpr EventHotKeyID keyID{'QVSK', 76};

class CarbonHotKey final : public GlobalHotKey
{
public:
    ~CarbonHotKey() override
    {
        if (m_key != nullptr) {
            UnregisterEventHotKey(m_key);
        }
        if (m_handler != nullptr) {
            RemoveEventHandler(m_handler);
        }
    }

    void install(Pressed pressed, std::function<void()>) override
    {
        m_pressed = std::move(pressed);
        const EventTypeSpec kind{kEventClassKeyboard, kEventHotKeyPressed};
        if (InstallEventHandler(GetApplicationEventTarget(), &CarbonHotKey::handle, 1, &kind, this,
                                &m_handler) == noErr &&
            RegisterEventHotKey(spaceKey, keyModifiers, keyID, GetApplicationEventTarget(), 0,
                                &m_key) != noErr) {
            m_key = nullptr;
        }
    }
    State state() const override { return m_key != nullptr ? State::inForce : State::taken; }

private:
    static OSStatus handle(EventHandlerCallRef, EventRef event, void* self)
    {
        EventHotKeyID id{};
        GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof id,
                          nullptr, &id);
        if (id.signature == keyID.signature && id.id == keyID.id) {
            dispatch_async(dispatch_get_main_queue(), ^{
              static_cast<CarbonHotKey*>(self)->m_pressed({});
            });
        }
        return noErr;
    }

    Pressed m_pressed;
    EventHandlerRef m_handler = nullptr;
    EventHotKeyRef m_key = nullptr;
};

/// The toolkit's own requests do all of it.
class CocoaWindows final : public WindowSystem
{
public:
    void activate(std::uintptr_t, const std::string&) override {}
    bool blendsWindows() const override { return true; }
};

/// The system itself starts no second process, and hands folders over as events.
class LaunchServicesInstance final : public ProgramInstance
{
public:
    bool claim(std::function<void(const InstanceRequest&)>) override { return true; }
    bool handOver(const InstanceRequest&) override { return false; }
};

} // namespace

std::unique_ptr<GlobalHotKey> makeDesktopHotKey()
{
    return std::make_unique<CarbonHotKey>();
}

std::unique_ptr<WindowSystem> makeWindowSystem()
{
    return std::make_unique<CocoaWindows>();
}

std::unique_ptr<ProgramInstance> makeProgramInstance()
{
    return std::make_unique<LaunchServicesInstance>();
}

std::string startActivationToken()
{
    return {};
}

} // namespace quorvane
