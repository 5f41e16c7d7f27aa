// SPDX-License-Identifier: MIT
#pragma once

#include "FileIndex.h"
#include "FileTree.h"
#include "FolderSearch.h"
#include "GlobalHotKey.h"
#include "JobSlot.h"
#include "SpotlightSearcher.h"

#include <QProperty>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
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

/// The search inside the scan, and that of the whole machine with the index that it is answered
/// from. Main thread.
class SearchState
{
public:
    static SearchState& of(AppState& state);

    explicit SearchState(FacetHost& host);

    /// What the last search inside the scan found; null before the first one.
    QProperty<std::shared_ptr<const FolderSearchResults>> folderSearchResults;
    /// When the oldest part of the open index was begun, milliseconds since 1970; absent while none
    /// is open.
    QProperty<std::optional<std::int64_t>> indexMadeMs;
    QProperty<bool> isIndexing{false}; ///< an index is being made
    QProperty<GlobalHotKey::State> hotKeyState{GlobalHotKey::State::none};
    /// The key that the person has chosen instead of the program's own; empty for none.
    QProperty<QString> hotKeyTrigger;
    /// Whether a second start of the program reaches this process.
    QProperty<bool> isInstanceReachable{false};

    /// Searches the scan in the background; a search before is discarded.
    void searchFolder(const FolderSearch::Query& query);
    /// Discards a search that is under way, and what the last one has found.
    void clearFolderSearch();

    /// Opens the index in the background, and makes a new one when there is none of the whole
    /// machine or when it is older than five minutes.
    void openIndex();
    /// Lets the index go and discards a search that is under way.
    void closeIndex();
    /// Searches the machine in the background, once there is an index to answer; a search before is
    /// discarded. found is called on the main thread unless this search is discarded.
    void searchMachine(const SearchRequest& request,
                       std::function<void(std::vector<SearchResult>)> found);
    void stopMachineSearch();

    /// Registers the global hot key, where the platform has one.
    void installHotKey(GlobalHotKey::Pressed pressed);
    /// Has the desktop ask the person for the key.
    void askForHotKey();
    /// Whether the program can be called while it has no window.
    bool isCallable() const;

protected:
    ~SearchState() = default;

    /// A scan begins; what was found in the tree before goes.
    void dropFolderSearch();
    JobSlot& folderSearchSlot() { return m_folderSearchSlot; }
    /// A scan has ended: brings the index up to date if it was of the home folder or of all.
    void indexScan(const NodePointer& root);

private:
    /// What jobs use; it lives as long as they do.
    struct Machine
    {
        Machine(FilePath file, FileSystemCalls& calls)
            : index(std::move(file), calls)
            , searcher(index, calls)
        {}

        MappedFileIndex index;
        SpotlightSearcher searcher;
    };
    using MakeIndex = std::function<void(MappedFileIndex&, const LockedFlag&)>;

    void publishHotKey();
    void loadIndex();
    void publishIndex();
    void makeIndex(MakeIndex make);
    void indexMade();
    bool isIndexAwaited() const;

    FacetHost& m_host;
    std::shared_ptr<Machine> m_machine;
    bool m_isIndexWanted = false;
    bool m_mayMakeIndex = false; ///< once for each opening
    std::int64_t m_scanBegunMs = 0;
    std::function<void()> m_waitingSearch; ///< until there is an index
    JobSlot m_folderSearchSlot;
    JobSlot m_openIndexSlot;
    JobSlot m_makeIndexSlot;
    JobSlot m_machineSearchSlot;
};

} // namespace quorvane
