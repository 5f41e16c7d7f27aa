// SPDX-License-Identifier: MIT
#include "QuickWinsState.h"

#include "CheckedTrash.h"
#include "FacetHost.h"
#include "FileContentCalls.h"
#include "FlashState.h"
#include "Text.h"
#include "Workspace.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace quorvane {
namespace {

const NodePointer* entryOf(const std::vector<NodePointer>& queue, const QuickWin& win)
{
    const auto entry = std::find_if(queue.begin(), queue.end(), [&win](const NodePointer& node) {
        return node->path() == win.url;
    });
    return entry == queue.end() ? nullptr : &*entry;
}

/// What the move compares the disk with: what the finder saw of a place of the home, or the folder
/// that the scan saw, with no link between it and the scan's root.
TrashRequest requestFor(const QuickWin& win, const NodePointer& scanRoot)
{
    if (win.seen) {
        return TrashRequest::of(win.url, win.url.parent(), *win.seen);
    }
    TrashRequest request;
    request.path = win.url;
    request.root =
        scanRoot && scanRoot->path().holds(win.url) ? scanRoot->path() : win.url.parent();
    request.kind = EntryStatus::Kind::directory;
    return request;
}

/// Both looks, one after the other; the hits sorted in with the places of the home.
std::vector<QuickWin> winsOf(HomeFolders folders, const NodePointer& root, FolderMeter::Hooks hooks,
                             FileSystemCalls& calls, FileContentCalls& contents)
{
    folders.findPlacesOutside(calls, contents);
    std::vector<QuickWin> wins = QuickWins::detect(folders, std::move(hooks), calls, contents);
    std::vector<QuickWin> hits =
        QuickWins::detect(root, QuickWins::defaultLimit, irreplaceablePaths(folders, calls));
    if (root) {
        QuickWins::addEvidence(hits, *root, ownToolPlaces(folders, calls), calls, contents);
    }
    wins.insert(wins.end(), std::make_move_iterator(hits.begin()),
                std::make_move_iterator(hits.end()));
    QuickWins::sort(wins);
    return wins;
}

} // namespace

QuickWinsState::QuickWinsState(FacetHost& host)
    : m_host(host)
    , m_quickWinsSlot(host.jobs(), {&isQuickWinsLoading, nullptr, nullptr})
{}

void QuickWinsState::refreshQuickWins()
{
    if (isQuickWinsLoading.value()) {
        return;
    }
    quickWins = std::vector<QuickWin>();
    quickWinsMeasured = 0;
    m_quickWinsSlot.restart(
        JobPriority::userInitiated,
        [this, folders = m_host.homeFolders(), root = m_host.scannedRoot(),
         calls = &m_host.platform().fileSystem,
         contents = &m_host.fileContents()](const JobRun& run) {
            FolderMeter::Hooks hooks;
            hooks.isCancelled = [&run] { return run.isUnwanted(); };
            hooks.onMeasured = [this, &run](std::size_t count) {
                run.report([this, count] { quickWinsMeasured = static_cast<int>(count); });
            };
            return winsOf(folders, root, std::move(hooks), *calls, *contents);
        },
        [this](std::vector<QuickWin> found) { quickWins = std::move(found); });
}

void QuickWinsState::stopQuickWins()
{
    m_quickWinsSlot.stop();
}

void QuickWinsState::dropQuickWins()
{
    quickWins = std::vector<QuickWin>();
    m_quickWinsSlot.stop();
}

std::vector<QuickWin> QuickWinsState::filteredQuickWins() const
{
    return QuickWins::filtered(quickWins.value(), m_host.hiddenFamilies());
}

bool QuickWinsState::isQuickWinsFiltered() const
{
    return !m_host.hiddenFamilies().empty();
}

void QuickWinsState::stageQuickWin(const QuickWin& win)
{
    const QString name = displayText(win.name);
    if (const NodePointer* const entry = entryOf(m_host.queue(), win)) {
        m_host.changeQueue({entry->get()}, {});
        m_host.flashBanner().flash(
            QStringLiteral("Removed \"%1\" from the Trash queue.").arg(name));
        return;
    }
    if (!win.isStageable()) {
        return;
    }
    m_host.stageFound(FileTree::stagedItem(win.name, win.url, win.bytes),
                      requestFor(win, m_host.scannedRoot()));
    m_host.flashBanner().flash(
        QStringLiteral("Staged \"%1\" for Trash — review it under Cleanup.").arg(name));
}

void QuickWinsState::revealQuickWin(const QuickWin& win)
{
    m_host.platform().workspace.reveal(win.url);
}

bool QuickWinsState::isStagedQuickWin(const QuickWin& win) const
{
    return entryOf(m_host.queue(), win) != nullptr;
}

std::vector<bool> QuickWinsState::areStaged(const std::vector<QuickWin>& wins) const
{
    std::set<FilePath> paths;
    for (const NodePointer& node : m_host.queue()) {
        paths.insert(node->path());
    }
    std::vector<bool> staged;
    std::transform(wins.begin(), wins.end(), std::back_inserter(staged),
                   [&paths](const QuickWin& win) { return paths.contains(win.url); });
    return staged;
}

} // namespace quorvane
