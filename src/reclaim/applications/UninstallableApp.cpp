// SPDX-License-Identifier: MIT
#include "UninstallableApp.h"

#include "ByteFormatter.h"
#include "CheckedMath.h"

namespace quorvane {
namespace {

constexpr const char* sumPlace = "UninstallableApp";

} // namespace

QString UninstallComponent::formattedBytes() const
{
    return ByteFormatter::string(bytes);
}

QString displayName(AppKind kind)
{
    switch (kind) {
    case AppKind::bundle:
        return QStringLiteral("Bundle");
    case AppKind::appImage:
        return QStringLiteral("AppImage");
    case AppKind::folder:
        return QStringLiteral("Folder");
    case AppKind::flatpak:
        return QStringLiteral("Flatpak");
    case AppKind::snap:
        return QStringLiteral("Snap");
    case AppKind::package:
        return QStringLiteral("Package");
    }
    return {};
}

std::int64_t UninstallableApp::extraBytes() const
{
    std::int64_t sum = 0;
    for (const UninstallComponent& component : components) {
        sum = checkedAdd(sum, component.bytes, sumPlace);
    }
    return sum;
}

std::int64_t UninstallableApp::totalBytes() const
{
    return checkedAdd(bundleBytes, extraBytes(), sumPlace);
}

QString UninstallableApp::formattedTotal() const
{
    return ByteFormatter::string(totalBytes());
}

std::string UninstallableApp::command() const
{
    switch (kind) {
    case AppKind::snap:
        return "sudo snap remove " + systemName;
    case AppKind::package:
        return "sudo apt remove " + systemName;
    default:
        return {};
    }
}

std::vector<std::string> UninstallableApp::removal() const
{
    if (!goesByOwnTool()) {
        return {};
    }
    const bool isNamed = installation != "user" && installation != "system";
    // Never with its data: that goes to the Trash, from where it can be put back.
    return {"flatpak",
            "uninstall",
            "--noninteractive",
            "--assumeyes",
            (isNamed ? "--installation=" : "--") + installation,
            systemName};
}

} // namespace quorvane
