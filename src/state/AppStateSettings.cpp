// SPDX-License-Identifier: MIT
#include "AppState.h"

#include "FolderChooser.h"
#include "NodeColors.h"
#include "Preferences.h"

#include <optional>
#include <utility>

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

void AppState::readSettings()
{
    const Preferences& store = m_platform.preferences;
    theme = readRawValue(store, themeKey, appThemeFromRawValue).value_or(AppTheme::dark);
    accent = readRawValue(store, accentKey, accentChoiceFromRawValue).value_or(AccentChoice::blue);
    storagePalette =
        readRawValue(store, paletteKey, appPaletteFromRawValue).value_or(AppPalette::slate);
    NodeColors::setActivePalette(palette());
    storageSizeMode =
        readRawValue(store, sizeModeKey, sizeModeFromRawValue).value_or(SizeMode::disk);
    storageInspectorVisible = store.read<bool>(inspectorVisibleKey).value_or(false);
    const auto filters = store.read<std::map<std::string, bool>>(bloatFiltersKey);
    storageBloatFilters =
        filters ? BloatFilter::merged(*filters) : BloatFilter::defaultBloatFilters();
}

void AppState::setTheme(AppTheme value)
{
    theme = value;
    m_platform.preferences.setValue(themeKey, text(rawValue(value)));
}

void AppState::setAccent(AccentChoice value)
{
    accent = value;
    m_platform.preferences.setValue(accentKey, text(rawValue(value)));
}

void AppState::setPalette(AppPalette value)
{
    NodeColors::setActivePalette(value);
    storagePalette = value;
    m_platform.preferences.setValue(paletteKey, text(rawValue(value)));
}

void AppState::setSizeMode(SizeMode value)
{
    storageSizeMode = value;
    m_platform.preferences.setValue(sizeModeKey, text(rawValue(value)));
}

void AppState::setInspectorVisible(bool value)
{
    storageInspectorVisible = value;
    m_platform.preferences.setValue(inspectorVisibleKey, value);
}

void AppState::setBloatFilters(const std::map<std::string, bool>& value)
{
    storageBloatFilters = value;
    m_platform.preferences.setValue(bloatFiltersKey, value);
}

BloatKeys AppState::disabledBloat() const
{
    BloatKeys keys;
    for (const auto& [key, isShown] : bloatFilters()) {
        if (!isShown) {
            keys.insert(key);
        }
    }
    return keys;
}

QString AppState::disabledBloatKey() const
{
    QString joined;
    for (const std::string& key : disabledBloat()) {
        if (!joined.isEmpty()) {
            joined += QLatin1Char('|');
        }
        joined += QString::fromStdString(key);
    }
    const auto id = [](const NodePointer& node) { return QString::number(node ? node->id() : 0); };
    return joined + QLatin1Char('-') + id(rootNode.value()) + QLatin1Char('-') +
           id(focusNode.value());
}

void AppState::pickFolder()
{
    m_platform.folderChooser.chooseFolder(QStringLiteral("Scan"),
                                          QStringLiteral("Choose a folder or volume to analyze"),
                                          [this, post = m_jobs.poster()](const FilePath& folder) {
                                              if (folder.isEmpty()) {
                                                  return;
                                              }
                                              post([this, folder] {
                                                  section = AppSection::analysis;
                                                  startScan(folder);
                                              });
                                          });
}

} // namespace quorvane
