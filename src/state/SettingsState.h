// SPDX-License-Identifier: MIT
#pragma once

#include "AppPalette.h"
#include "Appearance.h"
#include "BloatFilter.h"
#include "SizeMode.h"

#include <QProperty>

#include <map>
#include <string>

namespace quorvane {

class AppState;
class FacetHost;
class Preferences;

/// The stored settings. Main thread.
class SettingsState
{
public:
    static SettingsState& of(AppState& state);

    /// Reads the stored values.
    explicit SettingsState(FacetHost& host);

    QProperty<AppTheme> theme{AppTheme::dark};
    QProperty<AccentChoice> accent{AccentChoice::blue};
    QProperty<AppPalette> storagePalette{AppPalette::slate};
    QProperty<SizeMode> storageSizeMode{SizeMode::disk};
    QProperty<bool> storageInspectorVisible{false};
    QProperty<std::map<std::string, bool>> storageBloatFilters;

    // Each setter stores the value at once.
    void setTheme(AppTheme value);
    void setAccent(AccentChoice value);
    AppPalette palette() const { return storagePalette.value(); }
    /// Also publishes the value to NodeColors.
    void setPalette(AppPalette value);
    SizeMode sizeMode() const { return storageSizeMode.value(); }
    void setSizeMode(SizeMode value);
    bool inspectorVisible() const { return storageInspectorVisible.value(); }
    void setInspectorVisible(bool value);
    const std::map<std::string, bool>& bloatFilters() const { return storageBloatFilters.value(); }
    void setBloatFilters(const std::map<std::string, bool>& value);
    /// Keys of the families that are hidden.
    BloatKeys disabledBloat() const;

private:
    Preferences& m_store;
};

} // namespace quorvane
