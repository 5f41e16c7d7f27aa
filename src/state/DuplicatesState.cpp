// SPDX-License-Identifier: MIT
#include "DuplicatesState.h"

#include "FacetHost.h"
#include "FlashState.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <utility>

namespace quorvane {
namespace {

using DuplicateFinder::Group;
using DuplicateFinder::Groups;

std::vector<FileNode*> stagedCopies(const Group& group, const FileNode& file)
{
    std::vector<FileNode*> copies;
    for (FileNode* const copy : group.files()) {
        if (copy->id() != file.id() && copy->isStagedForTrash()) {
            copies.push_back(copy);
        }
    }
    return copies;
}

/// The other copies that may go when the file is kept. One whose reading broke off is not known to
/// be alike.
std::vector<FileNode*> copiesToStage(const Group& group, const FileNode& file)
{
    std::vector<FileNode*> copies;
    for (FileNode* const copy : group.files()) {
        if (copy->id() != file.id() && !copy->isStagedForTrash() && !group.isBrokenOff(*copy)) {
            copies.push_back(copy);
        }
    }
    return copies;
}

} // namespace

DuplicatesState::DuplicatesState(FacetHost& host)
    : duplicateGroups(std::make_shared<const Groups>())
    , m_host(host)
    , m_duplicateSlot(host.jobs(), {&duplicateSearchIsRunning, &duplicateProgress})
{}

void DuplicatesState::maybeAutoFindDuplicates(const NodePointer& root)
{
    const FilePath url = root->path();
    if (autoPreparedDuplicateURL.value() == url) {
        return;
    }
    if (duplicateSearchIsRunning) {
        stopDuplicateSearch();
    }
    autoPreparedDuplicateURL = url;
    runDuplicateSearch(true);
}

void DuplicatesState::runDuplicateSearch(bool background)
{
    const NodePointer root = m_host.scannedRoot();
    if (!root) {
        return;
    }
    if (duplicateSearchIsRunning) {
        m_host.flashBanner().flash(
            QCoreApplication::translate("AppState", "A duplicate scan is already running."));
        return;
    }
    clearDuplicates();
    DuplicateFinder::Options options;
    options.fileSystem = &m_host.platform().fileSystem;
    options.contents = m_host.platform().fileContents;
    m_duplicateSlot.restart(
        background ? JobPriority::utility : JobPriority::userInitiated,
        [root, options, searches = m_runningSearches](const JobRun& run) {
            const auto isCancelled = [&run] { return run.isUnwanted(); };
            FoundDuplicates found;
            if (!searches->enter(run.stopFlag(), isCancelled)) {
                return found;
            }
            // Also left when memory runs out, or no later search would begin.
            const auto leave = [&searches](const LockedFlag* flag) { searches->leave(flag); };
            Groups groups;
            {
                const std::unique_ptr<const LockedFlag, decltype(leave)> inside(
                    run.stopFlag().get(), leave);
                groups = DuplicateFinder::find(
                    root, DuplicateFinder::defaultMinimumBytes,
                    [&run](double fraction) { run.report(fraction); }, isCancelled, options);
            }
            // A result that is no longer wanted is destroyed here, with its tree, not on the main
            // thread.
            if (!run.isUnwanted()) {
                found.groups = std::make_shared<const Groups>(std::move(groups));
                found.index = std::make_shared<const DuplicateIndex>(found.groups);
            }
            return found;
        },
        [this](FoundDuplicates found) { publishDuplicates(std::move(found)); },
        [this] {
            duplicateProgress = 0;
            m_host.flashBanner().flash(QCoreApplication::translate(
                "AppState", "Not enough memory to search for duplicates."));
        });
}

/// The groups were walked for the summary in the search's own job.
void DuplicatesState::publishDuplicates(FoundDuplicates found)
{
    duplicateProgress = 1;
    m_duplicateIndex = std::move(found.index);
    duplicateGroups = std::move(found.groups);
    m_host.jobs().release(std::exchange(m_lastFound, duplicateGroups.value()));
    duplicateCount = duplicateIndex().extraCopies();
    duplicateReclaimable = duplicateIndex().reclaimableBytes();
}

void DuplicatesState::stopDuplicateSearch()
{
    m_duplicateSlot.stop();
}

void DuplicatesState::dropDuplicates()
{
    m_host.jobs().release(std::exchange(m_lastFound, nullptr));
    clearDuplicates();
}

std::shared_ptr<const Groups> DuplicatesState::lastFoundDuplicates() const
{
    return m_lastFound && duplicateGroups.value()->empty() ? m_lastFound : duplicateGroups.value();
}

void DuplicatesState::clearDuplicates()
{
    auto old = std::make_pair(duplicateGroups.value(), std::move(m_duplicateIndex));
    duplicateGroups = std::make_shared<const Groups>();
    duplicateCount = 0;
    duplicateReclaimable = 0;
    duplicateSearchIsRunning = false;
    duplicateProgress = 0;
    // Tens of thousands of groups end in the background.
    m_host.jobs().release(std::move(old));
}

const DuplicateIndex& DuplicatesState::duplicateIndex() const
{
    const std::shared_ptr<const Groups>& groups = duplicateGroups.value();
    if (!m_duplicateIndex || m_duplicateIndex->groups() != groups) {
        m_duplicateIndex = std::make_shared<const DuplicateIndex>(groups);
    }
    return *m_duplicateIndex;
}

const Group* DuplicatesState::duplicateGroupOf(const FileNode& file) const
{
    return duplicateIndex().find(file.id());
}

void DuplicatesState::trashOthers(const FileNode& keep)
{
    const Group* const group = duplicateGroupOf(keep);
    if (group == nullptr || group->isBrokenOff(keep)) {
        return;
    }
    const NodePointer root = m_host.scannedRoot();
    std::vector<NodePointer> toStage;
    for (FileNode* const copy : copiesToStage(*group, keep)) {
        toStage.emplace_back(root, copy);
    }
    std::vector<FileNode*> kept;
    std::copy_if(group->files().begin(), group->files().end(), std::back_inserter(kept),
                 [id = keep.id()](const FileNode* file) { return file->id() == id; });
    m_host.changeQueue(kept, toStage);
    const QString name = keep.displayName();
    const bool isOtherStaged =
        std::any_of(group->files().begin(), group->files().end(), [&keep](const FileNode* copy) {
            return copy->id() != keep.id() && copy->isStagedForTrash();
        });
    if (toStage.empty()) {
        if (!isOtherStaged) {
            return; // Those that are left are the same file or were not read to their ends.
        }
        m_host.flashBanner().flash(
            QCoreApplication::translate(
                "AppState", "Kept \"%1\" — the duplicate copies are already staged for Trash.")
                .arg(name));
        return;
    }
    // The plural reads "copys".
    m_host.flashBanner().flash(
        QCoreApplication::translate("AppState",
                                    "Kept \"%1\" — staged %2 duplicate copy%3 for Trash.")
            .arg(name, QString::number(toStage.size()),
                 toStage.size() == 1 ? QString() : QStringLiteral("s")));
}

bool DuplicatesState::isKeeper(const FileNode& file) const
{
    if (file.isStagedForTrash()) {
        return false;
    }
    const Group* const group = duplicateGroupOf(file);
    if (group == nullptr || group->files().size() < 2 || group->isBrokenOff(file)) {
        return false;
    }
    bool isAnyStaged = false;
    for (const FileNode* const copy : group->files()) {
        isAnyStaged = isAnyStaged || copy->isStagedForTrash();
        if (!copy->isStagedForTrash() && copy->id() != file.id() && !group->isBrokenOff(*copy)) {
            return false;
        }
    }
    return isAnyStaged;
}

void DuplicatesState::unkeep(const FileNode& file)
{
    const Group* const group = duplicateGroupOf(file);
    if (group == nullptr) {
        return;
    }
    const std::vector<FileNode*> others = stagedCopies(*group, file);
    if (others.empty()) {
        return;
    }
    m_host.changeQueue(others, {});
    // The plural reads "copyies".
    m_host.flashBanner().flash(
        QCoreApplication::translate("AppState", "Un-kept \"%1\" — %2 copy%3 removed from Trash.")
            .arg(file.displayName(), QString::number(others.size()),
                 others.size() == 1 ? QString() : QStringLiteral("ies")));
}

} // namespace quorvane
