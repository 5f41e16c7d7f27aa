// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateFinder.h"
#include "DuplicateIndex.h"
#include "FilePath.h"
#include "FileTree.h"
#include "JobSlot.h"
#include "RunningSearches.h"

#include <QProperty>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace quorvane {

class AppState;
class FacetHost;

/// The search for duplicates, its groups, and which copies are kept. Main thread.
class DuplicatesState
{
public:
    static DuplicatesState& of(AppState& state);

    explicit DuplicatesState(FacetHost& host);

    /// The last search's result in the finder's order; never absent, empty without one.
    QProperty<std::shared_ptr<const DuplicateFinder::Groups>> duplicateGroups;
    QProperty<bool> duplicateSearchIsRunning{false};
    QProperty<double> duplicateProgress{0}; ///< of the search, 0 to 1
    /// Root for which a search was last started without being asked for; never cleared.
    QProperty<std::optional<FilePath>> autoPreparedDuplicateURL;
    QProperty<std::int64_t> duplicateCount{0};       ///< copies beyond the first of each group
    QProperty<std::int64_t> duplicateReclaimable{0}; ///< bytes that these copies take

    /// Starts a search in the background, once for each root that comes up: not when the same root
    /// is scanned again. The end of a scan calls it.
    void maybeAutoFindDuplicates(const NodePointer& root);
    /// Searches the current tree; nothing without one, and while a search runs only a flash. In the
    /// background the search yields to all other work.
    void runDuplicateSearch(bool background = false);
    /// Nothing of the running search is published any more.
    void stopDuplicateSearch();
    /// Stages all copies of the file but itself, and takes it out of the queue if it stands there.
    /// Copies whose reading broke off stay out. Nothing for a file without copies, and for one
    /// whose own reading broke off.
    void trashOthers(const FileNode& keep);
    /// Whether the file is the one copy of its group that is not staged, leaving aside those whose
    /// reading broke off: they are no keepers.
    bool isKeeper(const FileNode& file) const;
    /// Takes the staged copies of the file out of the queue again.
    void unkeep(const FileNode& file);
    /// Files of the largest group; 0 without groups.
    std::size_t mostDuplicateCopies() const { return duplicateIndex().mostCopies(); }

protected:
    /// Clears the results of the old tree. The search itself is not touched.
    void dropDuplicates();
    /// What the last finished search of the tree found, also while the next one runs or when that
    /// was stopped: what no batch takes the last copy of. Never absent.
    std::shared_ptr<const DuplicateFinder::Groups> lastFoundDuplicates() const;

    JobSlot& duplicateSlot() { return m_duplicateSlot; }

private:
    struct FoundDuplicates
    {
        std::shared_ptr<const DuplicateFinder::Groups> groups;
        std::shared_ptr<const DuplicateIndex> index;
    };

    void clearDuplicates();
    void publishDuplicates(FoundDuplicates found);
    const DuplicateIndex& duplicateIndex() const;
    /// The first group that has a file of that id; null for none.
    const DuplicateFinder::Group* duplicateGroupOf(const FileNode& file) const;

    FacetHost& m_host;
    JobSlot m_duplicateSlot;
    std::shared_ptr<const DuplicateFinder::Groups> m_lastFound;
    std::shared_ptr<RunningSearches> m_runningSearches = std::make_shared<RunningSearches>();
    /// Made for the groups in it; made anew when others are on show.
    mutable std::shared_ptr<const DuplicateIndex> m_duplicateIndex;
};

} // namespace quorvane
