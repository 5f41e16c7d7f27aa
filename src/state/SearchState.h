// SPDX-License-Identifier: MIT
#pragma once

#include "FileTree.h"
#include "FolderSearch.h"
#include "JobSlot.h"

#include <QProperty>

#include <memory>
#include <vector>

namespace quorvane {

class AppState;
class FacetHost;

/// What a search inside the scan has found. Keeps the tree that its nodes lie in.
struct FolderSearchResults
{
    NodePointer root;
    FolderSearch::Query query;
    std::vector<FolderSearch::Hit> hits; ///< best first
};

/// The search inside the scan. Main thread.
class SearchState
{
public:
    static SearchState& of(AppState& state);

    explicit SearchState(FacetHost& host);

    /// Of the last search; null before the first one.
    QProperty<std::shared_ptr<const FolderSearchResults>> folderSearchResults;

    /// Searches the scan in the background; the search before is dropped.
    void searchFolder(const FolderSearch::Query& query);
    /// Drops a search that is under way, and what the last one has found.
    void clearFolderSearch();

protected:
    ~SearchState() = default;

    JobSlot& folderSearchSlot() { return m_folderSearchSlot; }

private:
    FacetHost& m_host;
    JobSlot m_folderSearchSlot;
};

} // namespace quorvane
