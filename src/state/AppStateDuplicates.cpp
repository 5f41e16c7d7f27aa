// SPDX-License-Identifier: MIT
#include "AppState.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace quorvane {
namespace {

using DuplicateFinder::Group;
using DuplicateFinder::Groups;

/// Hands a search's progress to the main thread, one block at a time: what comes while a block
/// waits there is what that block will tell.
struct ProgressRelay
{
    std::atomic<double> latest = 0;
    std::atomic<bool> isPosted = false;
};

std::vector<FileNode*> stagedCopies(const Group& group, const FileNode& file, bool staged)
{
    std::vector<FileNode*> copies;
    for (FileNode* const copy : group.files()) {
        if (copy->id() != file.id() && copy->isStagedForTrash() == staged) {
            copies.push_back(copy);
        }
    }
    return copies;
}

/// The queue without the nodes of these ids.
std::vector<NodePointer> withoutIds(const std::vector<NodePointer>& queue,
                                    const std::unordered_set<std::int64_t>& ids)
{
    std::vector<NodePointer> rest;
    rest.reserve(queue.size());
    std::copy_if(queue.begin(), queue.end(), std::back_inserter(rest),
                 [&ids](const NodePointer& node) { return ids.count(node->id()) == 0; });
    return rest;
}

} // namespace

void AppState::maybeAutoFindDuplicates(const NodePointer& root)
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

void AppState::runDuplicateSearch(bool background)
{
    const NodePointer root = rootNode.value();
    if (!root) {
        return;
    }
    if (duplicateSearchIsRunning) {
        flash(QStringLiteral("A duplicate scan is already running."));
        return;
    }
    const auto flag = std::make_shared<LockedFlag>();
    m_activeDuplicateCancelFlag = flag;
    if (m_duplicateSearchTask) {
        m_duplicateSearchTask->cancel();
    }
    dropDuplicates();
    duplicateSearchIsRunning = true;
    const auto onProgress = [this, flag, relay = std::make_shared<ProgressRelay>(),
                             post = m_jobs.poster()](double fraction) {
        if (flag->get()) {
            return;
        }
        relay->latest = fraction;
        if (!relay->isPosted.exchange(true)) {
            post([this, relay] {
                relay->isPosted = false;
                duplicateProgress = relay->latest;
            });
        }
    };
    const auto isCancelled = [flag, post = m_jobs.poster()] {
        return flag->get() || post.isClosed();
    };
    DuplicateFinder::Options options;
    options.fileSystem = &m_platform.fileSystem;
    options.contents = m_platform.fileContents;
    m_duplicateSearchTask = m_jobs.start(
        background ? JobPriority::utility : JobPriority::userInitiated,
        [root, onProgress, isCancelled, options, flag,
         running = m_runningSearches](const Job& job) {
            FoundDuplicates found;
            if (!running->enter(flag, isCancelled)) {
                return found;
            }
            Groups groups = DuplicateFinder::find(root, DuplicateFinder::defaultMinimumBytes,
                                                  onProgress, isCancelled, options);
            running->leave(flag);
            // What nobody waits for any longer ends here, tree and all, not on the main thread.
            if (!job.isCancelled()) {
                found.groups = std::make_shared<const Groups>(std::move(groups));
                found.index = std::make_shared<const DuplicateIndex>(found.groups);
            }
            return found;
        },
        [this, flag](FoundDuplicates found) { publishDuplicates(std::move(found), flag); });
}

void AppState::publishDuplicates(FoundDuplicates found, const std::shared_ptr<LockedFlag>& flag)
{
    if (m_activeDuplicateCancelFlag == flag) {
        m_activeDuplicateCancelFlag = nullptr;
    }
    duplicateSearchIsRunning = false;
    if (flag->get()) {
        return;
    }
    duplicateProgress = 1;
    m_duplicateIndex = std::move(found.index);
    duplicateGroups = std::move(found.groups);
    updateDuplicateSummary();
}

void AppState::stopDuplicateSearch()
{
    if (m_activeDuplicateCancelFlag) {
        m_activeDuplicateCancelFlag->set(true);
    }
    if (m_duplicateSearchTask) {
        m_duplicateSearchTask->cancel();
    }
    duplicateSearchIsRunning = false;
}

void AppState::dropDuplicates()
{
    auto old = std::make_pair(duplicateGroups.value(), std::move(m_duplicateIndex));
    duplicateGroups = std::make_shared<const Groups>();
    duplicateCount = 0;
    duplicateReclaimable = 0;
    duplicateSearchIsRunning = false;
    duplicateProgress = 0;
    // Tens of thousands of groups end in the background.
    m_jobs.release(std::move(old));
}

/// The groups were walked for it in the search's own job.
void AppState::updateDuplicateSummary()
{
    duplicateCount = duplicateIndex().extraCopies();
    duplicateReclaimable = duplicateIndex().reclaimableBytes();
}

const DuplicateIndex& AppState::duplicateIndex() const
{
    const std::shared_ptr<const Groups>& groups = duplicateGroups.value();
    if (!m_duplicateIndex || m_duplicateIndex->groups() != groups) {
        m_duplicateIndex = std::make_shared<const DuplicateIndex>(groups);
    }
    return *m_duplicateIndex;
}

const Group* AppState::duplicateGroupOf(const FileNode& file) const
{
    return duplicateIndex().find(file.id());
}

void AppState::trashOthers(const FileNode& keep)
{
    const Group* const group = duplicateGroupOf(keep);
    if (group == nullptr) {
        return;
    }
    const std::vector<FileNode*> toStage = stagedCopies(*group, keep, false);
    const std::size_t staged = stagedNodes.value().size();
    std::unordered_set<std::int64_t> kept;
    for (FileNode* const file : group->files()) {
        if (file->id() == keep.id()) {
            file->setStagedForTrash(false);
            kept.insert(file->id());
        }
    }
    std::vector<NodePointer> queue = withoutIds(stagedNodes.value(), kept);
    queue.reserve(queue.size() + toStage.size());
    for (FileNode* const file : toStage) {
        file->setStagedForTrash(true);
        queue.push_back(share(file));
    }
    // One write, whatever its length, and none without a change: each tells every screen.
    if (!toStage.empty() || queue.size() != staged) {
        stagedNodes = std::move(queue);
    }
    const QString name = keep.displayName();
    if (toStage.empty()) {
        flash(QStringLiteral("Kept \"%1\" — the duplicate copies are already staged for Trash.")
                  .arg(name));
        return;
    }
    // The plural reads "copys".
    flash(QStringLiteral("Kept \"%1\" — staged %2 duplicate copy%3 for Trash.")
              .arg(name, QString::number(toStage.size()),
                   toStage.size() == 1 ? QString() : QStringLiteral("s")));
}

bool AppState::isKeeper(const FileNode& file) const
{
    if (file.isStagedForTrash()) {
        return false;
    }
    const Group* const group = duplicateGroupOf(file);
    if (group == nullptr || group->files().size() < 2) {
        return false;
    }
    return std::all_of(group->files().begin(), group->files().end(),
                       [id = file.id()](const FileNode* copy) {
                           return copy->isStagedForTrash() || copy->id() == id;
                       });
}

void AppState::unkeep(const FileNode& file)
{
    const Group* const group = duplicateGroupOf(file);
    if (group == nullptr) {
        return;
    }
    const std::vector<FileNode*> others = stagedCopies(*group, file, true);
    if (others.empty()) {
        return;
    }
    std::unordered_set<std::int64_t> ids;
    for (FileNode* const copy : others) {
        copy->setStagedForTrash(false);
        ids.insert(copy->id());
    }
    stagedNodes = withoutIds(stagedNodes.value(), ids);
    // The plural reads "copyies".
    flash(QStringLiteral("Un-kept \"%1\" — %2 copy%3 removed from Trash.")
              .arg(file.displayName(), QString::number(others.size()),
                   others.size() == 1 ? QString() : QStringLiteral("ies")));
}

} // namespace quorvane
