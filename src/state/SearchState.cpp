// SPDX-License-Identifier: MIT
#include "SearchState.h"

#include "FacetHost.h"
#include "SearchQueryParser.h"

#include <utility>

namespace quorvane {
namespace {

/// An index older than this is made anew when it is opened.
constexpr std::int64_t maxIndexAgeMs = std::int64_t{5} * 60 * 1000;

std::int64_t nowMs()
{
    return static_cast<std::int64_t>(SearchQueryParser::currentMs());
}

} // namespace

SearchState::SearchState(FacetHost& host)
    : m_host(host)
    , m_machine(
          std::make_shared<Machine>(MappedFileIndex::standardFile(), host.platform().fileSystem))
    , m_folderSearchSlot(host.jobs())
    , m_openIndexSlot(host.jobs())
    , m_makeIndexSlot(host.jobs(), {&isIndexing, /*progress*/ nullptr, /*status*/ nullptr})
    , m_machineSearchSlot(host.jobs())
{}

void SearchState::searchFolder(const FolderSearch::Query& query)
{
    m_folderSearchSlot.restart(
        JobPriority::userInitiated,
        [root = m_host.scannedRoot(), nodes = m_host.scannedNodes(), query](const JobRun& run) {
            auto results = std::make_shared<FolderSearchResults>();
            results->root = root;
            results->query = query;
            results->hits = FolderSearch::ranked(
                *nodes, query, SearchQueryParser::currentMs() / 1000.0, run.cancelFlag());
            return results;
        },
        [this](std::shared_ptr<FolderSearchResults> results) {
            folderSearchResults = std::move(results);
        });
}

void SearchState::clearFolderSearch()
{
    m_folderSearchSlot.stop();
    folderSearchResults = nullptr;
}

void SearchState::dropFolderSearch()
{
    folderSearchResults = nullptr;
    m_scanBegunMs = nowMs();
}

void SearchState::openIndex()
{
    m_isIndexWanted = true;
    m_mayMakeIndex = true;
    loadIndex();
}

void SearchState::loadIndex()
{
    m_openIndexSlot.restart(
        JobPriority::userInitiated,
        [machine = m_machine](const JobRun&) { return machine->index.load(); },
        [this](std::shared_ptr<const MappedFileIndex::Image> image) {
            m_machine->index.use(std::move(image));
            publishIndex();
        });
}

void SearchState::publishIndex()
{
    indexMadeMs = m_machine->index.madeMs();
    const FilePath& whole = m_host.platform().searchedRoot;
    const std::optional<std::int64_t> made = indexMadeMs.value();
    const bool isOld =
        !made || m_machine->index.rootPath() != whole || nowMs() - *made > maxIndexAgeMs;
    // A disk that takes longer than that to walk would be walked without end.
    if (isOld && m_mayMakeIndex && !m_makeIndexSlot.isRunning()) {
        m_mayMakeIndex = false;
        makeIndex(
            [whole](MappedFileIndex& index, const LockedFlag& stop) { index.make(whole, stop); });
    }
    if (m_waitingSearch && !isIndexAwaited()) {
        std::exchange(m_waitingSearch, nullptr)();
    }
}

bool SearchState::isIndexAwaited() const
{
    return m_openIndexSlot.isRunning() || (!indexMadeMs.value() && m_makeIndexSlot.isRunning());
}

void SearchState::closeIndex()
{
    m_isIndexWanted = false;
    stopMachineSearch();
    m_openIndexSlot.stop();
    m_machine->index.close();
    indexMadeMs = std::nullopt;
}

void SearchState::indexScan(const NodePointer& root)
{
    const FilePath path = root->path();
    if (path != m_host.platform().home && path != m_host.platform().searchedRoot) {
        return;
    }
    // A walk of the whole machine that is cut off here is due again.
    m_mayMakeIndex = m_isIndexWanted && (m_mayMakeIndex || m_makeIndexSlot.isRunning());
    makeIndex([root, begunMs = m_scanBegunMs](MappedFileIndex& index, const LockedFlag& stop) {
        index.makeFrom(*root, begunMs, stop);
    });
}

void SearchState::makeIndex(MakeIndex make)
{
    m_makeIndexSlot.restart(
        JobPriority::utility,
        [machine = m_machine, make = std::move(make)](const JobRun& run) {
            make(machine->index, run.cancelFlag());
            return true;
        },
        [this](bool) { indexMade(); }, [this] { indexMade(); });
}

void SearchState::indexMade()
{
    if (!m_isIndexWanted) {
        return;
    }
    // An index that was in use has been replaced; the first one has yet to be opened.
    if (m_machine->index.madeMs()) {
        publishIndex();
    } else {
        loadIndex();
    }
}

void SearchState::searchMachine(const SearchRequest& request,
                                std::function<void(std::vector<SearchResult>)> found)
{
    stopMachineSearch();
    auto start = [this, request, found = std::move(found)] {
        m_machineSearchSlot.restart(
            JobPriority::userInitiated,
            [machine = m_machine, request](const JobRun& run) {
                return machine->searcher.search(request, SearchQueryParser::currentMs(),
                                                run.cancelFlag());
            },
            found);
    };
    if (SpotlightSearcher::needsIndex(request) && isIndexAwaited()) {
        m_waitingSearch = std::move(start);
    } else {
        start();
    }
}

void SearchState::installHotKey(GlobalHotKey::Pressed pressed)
{
    if (GlobalHotKey* const key = m_host.platform().hotKey) {
        key->install(std::move(pressed), [this] { publishHotKey(); });
        publishHotKey();
    }
}

void SearchState::publishHotKey()
{
    const GlobalHotKey& key = *m_host.platform().hotKey;
    hotKeyTrigger = QString::fromStdString(key.trigger());
    hotKeyState = key.state();
}

void SearchState::askForHotKey()
{
    if (GlobalHotKey* const key = m_host.platform().hotKey) {
        key->ask();
    }
}

bool SearchState::isCallable() const
{
    return isInstanceReachable.value() || hotKeyState.value() == GlobalHotKey::State::inForce;
}

void SearchState::stopMachineSearch()
{
    m_waitingSearch = nullptr;
    m_machineSearchSlot.stop();
}

} // namespace quorvane
