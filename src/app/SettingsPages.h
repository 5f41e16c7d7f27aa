// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QWidget;

namespace quorvane {

class SearchState;
class SettingsState;

/// The pages of the settings. Each scrolls by itself where the window is low; the caller owns it.
QWidget* makeGeneralPage(SearchState& search);
QWidget* makeAppearancePage(SettingsState& state);
QWidget* makeAboutPage();

/// What the about page calls the version: the bundle's own, unless that is missing or an unfilled
/// template.
QString shownVersion(const QString& bundleVersion);

} // namespace quorvane
