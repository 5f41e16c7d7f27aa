// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

#include <array>

class QStackedWidget;

namespace quorvane {

class AppState;
class NavigationState;
class NavigationRow;

/// The groups of the settings, in the order of their rows.
enum class SettingsCategory { general, appearance, about };

inline constexpr std::array allSettingsCategories{
    SettingsCategory::general, SettingsCategory::appearance, SettingsCategory::about};

QString title(SettingsCategory category);
/// A name of the symbol table.
QString systemImage(SettingsCategory category);

/// The settings: categories on the left, the page of the selected one beside them. Esc closes them.
/// Main thread.
class SettingsView : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsView(AppState& state, QWidget* parent = nullptr);

    SettingsCategory selectedCategory() const { return m_selectedCategory; }
    void setSelectedCategory(SettingsCategory category);

private:
    QWidget* makeHeader();
    QWidget* makeCategories();

    NavigationState& m_navigation;
    SettingsCategory m_selectedCategory = SettingsCategory::general;
    std::array<NavigationRow*, allSettingsCategories.size()> m_rows{};
    QStackedWidget* m_pages;
};

} // namespace quorvane
