// SPDX-License-Identifier: MIT
#include "SettingsState.h"

#include "FacetHost.h"
#include "NodeColors.h"
#include "Preferences.h"

#include <optional>

namespace quorvane {
namespace {

constexpr std::string_view themeKey = "tessaryl.theme";
constexpr std::string_view accentKey = "tessaryl.accent";
constexpr std::string_view paletteKey = "tessaryl.palette";
constexpr std::string_view sizeModeKey = "tessaryl.sizeMode";
constexpr std::string_view inspectorVisibleKey = "tessaryl.inspectorVisible";
constexpr std::string_view bloatFiltersKey = "tessaryl.bloatFilters";

QString text(std::string_view rawValue)
{
    return QString::fromUtf8(rawValue.data(), static_cast<qsizetype>(rawValue.size()));
}

/// The stored raw value where it parses, else nothing: a value of another type or spelling counts
/// as not there.
template<class Parse>
auto readRawValue(const Preferences& store, std::string_view key, Parse parse)
    -> decltype(parse(std::string_view()))
{
    const std::optional<QString> stored = store.read<QString>(key);
    return stored ? parse(std::string_view(stored->toStdString())) : std::nullopt;
}

} // namespace

SettingsState::SettingsState(FacetHost& host)
    : m_store(host.platform().preferences)
{
    theme = readRawValue(m_store, themeKey, appThemeFromRawValue).value_or(AppTheme::dark);
    accent =
        readRawValue(m_store, accentKey, accentChoiceFromRawValue).value_or(AccentChoice::blue);
    storagePalette =
        readRawValue(m_store, paletteKey, appPaletteFromRawValue).value_or(AppPalette::slate);
    NodeColors::setActivePalette(palette());
    storageSizeMode =
        readRawValue(m_store, sizeModeKey, sizeModeFromRawValue).value_or(SizeMode::disk);
    storageInspectorVisible = m_store.read<bool>(inspectorVisibleKey).value_or(false);
    const auto filters = m_store.read<std::map<std::string, bool>>(bloatFiltersKey);
    storageBloatFilters =
        filters ? BloatFilter::merged(*filters) : BloatFilter::defaultBloatFilters();
}

void SettingsState::setTheme(AppTheme value)
{
    theme = value;
    m_store.setValue(themeKey, text(rawValue(value)));
}

void SettingsState::setAccent(AccentChoice value)
{
    accent = value;
    m_store.setValue(accentKey, text(rawValue(value)));
}

void SettingsState::setPalette(AppPalette value)
{
    NodeColors::setActivePalette(value);
    storagePalette = value;
    m_store.setValue(paletteKey, text(rawValue(value)));
}

void SettingsState::setSizeMode(SizeMode value)
{
    storageSizeMode = value;
    m_store.setValue(sizeModeKey, text(rawValue(value)));
}

void SettingsState::setInspectorVisible(bool value)
{
    storageInspectorVisible = value;
    m_store.setValue(inspectorVisibleKey, value);
}

void SettingsState::setBloatFilters(const std::map<std::string, bool>& value)
{
    storageBloatFilters = value;
    m_store.setValue(bloatFiltersKey, value);
}

BloatKeys SettingsState::disabledBloat() const
{
    BloatKeys keys;
    for (const auto& [key, isShown] : bloatFilters()) {
        if (!isShown) {
            keys.insert(key);
        }
    }
    return keys;
}

} // namespace quorvane
