// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QWidget>

#include <vector>

namespace quorvane {

class ActionTile;
class AppState;
class NavigationState;
class ScanState;
class SettingsState;
class SnapshotsState;
class StagingState;
class TaggingState;
class Card;
class FactRow;
class Label;
class PathText;
class Refresher;
class ShortenedName;
class SymbolPlate;

/// The details panel beside the visualisers, 300 wide: what is selected, what can be done with it
/// and what is largest inside. On show while the model says so. Main thread.
class InspectorView : public QWidget
{
    Q_OBJECT

public:
    /// The state outlives the view.
    explicit InspectorView(AppState& state, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeNothingSelected();
    QWidget* makeDetails();
    QWidget* makeHeader();
    QWidget* makeActions();
    void addQuickLookKey(ActionTile& tile);
    void refresh();
    void refreshStage();
    void refreshFacts();
    void showHeader(const FileNode& node);
    void showActions(const FileNode& node);
    void showFacts(const FileNode& node);
    void showLargestInside(const FileNode& node);

    ScanState& m_scan;
    NavigationState& m_navigation;
    StagingState& m_staging;
    SettingsState& m_settings;
    SnapshotsState& m_snapshots;
    TaggingState& m_tagging;
    QWidget* m_nothing = nullptr;
    QWidget* m_details = nullptr;
    SymbolPlate* m_symbol = nullptr;
    ShortenedName* m_name = nullptr;
    Label* m_kind = nullptr;
    PathText* m_path = nullptr;
    ActionTile* m_stage = nullptr;
    std::vector<FactRow*> m_facts;
    QWidget* m_largest = nullptr;
    std::vector<FactRow*> m_children;
    Refresher* m_refresher;
};

} // namespace quorvane
