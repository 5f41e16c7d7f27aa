// SPDX-License-Identifier: MIT
#pragma once

#include "Dialog.h"
#include "TagRule.h"

#include <functional>
#include <optional>
#include <vector>

class QButtonGroup;
class QComboBox;

namespace quorvane {

class Label;
class TextField;

/// The sheet that makes or changes one rule: a working copy until it is saved. Main thread.
class TagRuleEditor : public Dialog
{
    Q_OBJECT

public:
    /// The result; absent when the sheet was cancelled. Called once, when it closes.
    using OnSave = std::function<void(const std::optional<TagRule>&)>;

    TagRuleEditor(const TagRule& rule, OnSave onSave, QWidget* window);

    /// The rule as the sheet has it now: names trimmed, id and switch those of the original.
    TagRule rule() const;

private:
    struct ConditionRow
    {
        QUuid id;
        QWidget* row;
        QComboBox* type;
        TextField* value;
        Label* fault;
    };

    QWidget* makeNames(const TagRule& rule);
    QWidget* makeColorAndMatching(const TagRule& rule);
    QWidget* makeConditions(const TagRule& rule);
    QWidget* makePreview();
    void addCondition(const TagCondition& condition);
    void removeCondition(const QUuid& id);
    TagCondition conditionOf(const ConditionRow& row) const;
    void refresh();

    TagRule m_original;
    OnSave m_onSave;
    TextField* m_name = nullptr;
    TextField* m_tagName = nullptr;
    QButtonGroup* m_colors = nullptr;
    Label* m_colorName = nullptr;
    QComboBox* m_matching = nullptr;
    QBoxLayout* m_rows = nullptr;
    QWidget* m_list = nullptr;
    Label* m_noConditions = nullptr;
    Label* m_preview = nullptr;
    Button* m_save = nullptr;
    std::vector<ConditionRow> m_conditions;
};

} // namespace quorvane
