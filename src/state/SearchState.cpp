// SPDX-License-Identifier: MIT
#include "SearchState.h"

#include "FacetHost.h"
#include "SearchQueryParser.h"

#include <utility>

namespace quorvane {

SearchState::SearchState(FacetHost& host)
    : m_host(host)
    , m_folderSearchSlot(host.jobs())
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

} // namespace quorvane
