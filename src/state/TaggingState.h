// SPDX-License-Identifier: MIT
#pragma once

#include "JobSlot.h"
#include "TagMatch.h"
#include "TagRule.h"

#include <QProperty>
#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace quorvane {

class AppState;
class FacetHost;

/// The tag rules, the scan that applies them, and what it found. Main thread.
class TaggingState
{
public:
    static TaggingState& of(AppState& state);

    explicit TaggingState(FacetHost& host);

    QProperty<std::vector<TagRule>> tagRules; ///< empty at each start
    /// A scan is under way. Stays true for good once a new scan of the disk cut a tag scan off.
    QProperty<bool> isTagScanRunning{false};
    /// What the last finished scan found; never absent.
    QProperty<std::shared_ptr<const TagMatches>> tagResults;
    QProperty<std::optional<QString>> tagScanSummary; ///< of the last finished scan
    QProperty<double> tagScanProgress{0};             ///< share of the enabled rules, 0 to 1

    /// The list is stored at each change.
    void addTagRule(const TagRule& rule);
    /// Replaces the first rule of the same id; without one nothing happens.
    void updateTagRule(const TagRule& rule);
    void deleteTagRule(const TagRule& rule);
    /// Rules that were stored when the program started.
    std::size_t storedTagRuleCount() const { return m_storedRules.size(); }
    /// Puts the stored rules into the list, which is empty.
    void bringBackTagRules();

    /// Applies the rules to the current tree; nothing without one and while a scan runs.
    void runTagScan();

    /// The rules that matched a node of the current tree.
    std::vector<const TagRule*> tagsOf(const FileNode& node) const
    {
        return tagResults.value()->rulesOf(node);
    }

protected:
    void dropTagResults();
    JobSlot& tagScanSlot() { return m_tagScanSlot; }

private:
    void persistTagRules();

    FacetHost& m_host;
    JobSlot m_tagScanSlot;
    std::vector<TagRule> m_storedRules;
};

} // namespace quorvane
