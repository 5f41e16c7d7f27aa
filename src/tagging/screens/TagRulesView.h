// SPDX-License-Identifier: MIT
#pragma once

#include "TagRule.h"
#include "ToolFrame.h"

#include <QPointer>

#include <optional>

namespace quorvane {

class AppState;
class NavigationState;
class Refresher;
class RowModel;
class ScanState;
class SettingsState;
class TaggingState;
class TagRuleEditor;

/// The section of tag rules: the list of them, the scan that applies them, and the files that they
/// matched. Main thread.
class TagRulesView : public ToolFrame
{
    Q_OBJECT

public:
    explicit TagRulesView(AppState& state, QWidget* parent = nullptr);

    /// Whether the sheet is up.
    bool isEditorPresented() const { return !m_editor.isNull(); }

private:
    QWidget* makeRules();
    QWidget* makeMatches();
    void addRule();
    void edit(const TagRule& rule);
    void save(const std::optional<TagRule>& rule);
    void openMatch(int row);
    void refreshRules();
    void refreshScan();
    void refreshMatches();

    AppState& m_state;
    TaggingState& m_tagging;
    ScanState& m_scan;
    Button* m_run;
    Button* m_bringBack = nullptr;
    EmptyState* m_noRules = nullptr;
    QWidget* m_rulesCard = nullptr;
    RowModel* m_rules;
    RowView* m_rulesList = nullptr;
    QWidget* m_outcome = nullptr;
    Label* m_summaryText = nullptr;
    Label* m_matchesHeading = nullptr;
    QWidget* m_matchesCard = nullptr;
    RowModel* m_matches;
    RowView* m_matchesList = nullptr;
    QPointer<TagRuleEditor> m_editor;
};

} // namespace quorvane
