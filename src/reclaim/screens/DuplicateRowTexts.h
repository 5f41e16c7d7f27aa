// SPDX-License-Identifier: MIT
#pragma once

#include "Button.h"
#include "DuplicateFinder.h"

#include <QString>

#include <cstddef>

namespace quorvane {

class AppState;

/// What pressing a button of a row does to which file.
struct DuplicateAction
{
    enum class Kind { none, trashOthers, unkeep, unstage, reveal };

    Kind kind = Kind::none;
    FileNode* file = nullptr;
};

/// Calls the model's operation.
void perform(AppState& state, const DuplicateAction& action);

/// A button on a row.
struct DuplicateButton
{
    ButtonFace face;
    QString toolTip;
    DuplicateAction action;
    bool isEnabled() const { return action.kind != DuplicateAction::Kind::none; }
};

/// What the row of a group shows. Refers to the group; main thread.
class DuplicateGroupRow
{
public:
    DuplicateGroupRow(const AppState& state, const DuplicateFinder::Group& group, bool expanded)
        : m_state(state)
        , m_group(group)
        , m_expanded(expanded)
    {}

    const QString& sizeText() const { return m_group.formattedSize(); }
    QString countText() const;
    QString reclaimableText() const;
    QString foldersText() const;
    /// Empty when all folders are named.
    QString moreFoldersText() const;
    QString toolTip() const;
    DuplicateButton keepLatest() const;
    /// All words of the row as one sentence.
    QString accessibleName() const;

private:
    const AppState& m_state;
    const DuplicateFinder::Group& m_group;
    bool m_expanded;
};

/// What the row of one copy shows. Refers to the file; main thread.
class DuplicateMemberRow
{
public:
    DuplicateMemberRow(const AppState& state, const DuplicateFinder::Group& group, FileNode& file);

    FileNode& file() const { return m_file; }
    std::size_t otherCopyCount() const { return m_otherCopyCount; }
    /// Whether the row bears the badge, whichever copy is the keeper.
    bool isRecommendedKeep() const { return m_isRecommendedKeep; }
    static QString badgeText();
    static QString badgeToolTip();
    QString pathText() const;
    /// Empty without a date.
    QString dateText() const;
    DuplicateButton reveal() const;
    DuplicateButton keep() const;
    QString accessibleName() const;

private:
    const AppState& m_state;
    FileNode& m_file;
    std::size_t m_otherCopyCount;
    bool m_isRecommendedKeep;
};

/// "Show {k} more groups…"
QString moreGroupsText(std::size_t next);
/// "Show remaining {r}", or the part of it that comes next.
QString moreMembersText(std::size_t remaining);

} // namespace quorvane
