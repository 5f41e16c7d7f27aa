// SPDX-License-Identifier: MIT
#include "StagingState.h"

#include "CheckedMath.h"
#include "FacetHost.h"
#include "Trash.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace quorvane {
namespace {

QString itemCount(std::size_t count)
{
    const QLatin1String noun(count == 1 ? "item" : "items");
    return QString::number(count) % QLatin1Char(' ') % noun;
}

} // namespace

StagingState::StagingState(FacetHost& host)
    : m_host(host)
    , m_trashSlot(host.jobs(), {&isTrashingStaged, &trashProgress, &trashStatus})
{}

void StagingState::toggleStaged(const NodePointer& node)
{
    if (node->isStagedForTrash()) {
        unstage(*node);
        return;
    }
    node->setStagedForTrash(true);
    const std::vector<NodePointer>& listed = stagedNodes.value();
    std::vector<NodePointer> queue;
    queue.reserve(listed.size() + 1);
    queue.assign(listed.begin(), listed.end());
    queue.push_back(node);
    stagedNodes = std::move(queue);
}

void StagingState::unstage(FileNode& node)
{
    node.setStagedForTrash(false);
    const auto isNode = [id = node.id()](const NodePointer& staged) { return staged->id() == id; };
    const std::vector<NodePointer>& listed = stagedNodes.value();
    if (std::none_of(listed.begin(), listed.end(), isNode)) {
        return;
    }
    std::vector<NodePointer> queue;
    queue.reserve(listed.size());
    std::remove_copy_if(listed.begin(), listed.end(), std::back_inserter(queue), isNode);
    stagedNodes = std::move(queue);
}

std::int64_t StagingState::stagedSpace() const
{
    std::int64_t sum = 0;
    for (const NodePointer& node : stagedNodes.value()) {
        sum = checkedAdd(sum, node->scannedBytes(), "AppState::stagedSpace");
    }
    return sum;
}

void StagingState::changeStaged(const std::vector<FileNode*>& unstaged,
                                const std::vector<NodePointer>& staged)
{
    std::unordered_set<std::int64_t> ids;
    for (FileNode* const node : unstaged) {
        node->setStagedForTrash(false);
        ids.insert(node->id());
    }
    const std::vector<NodePointer>& listed = stagedNodes.value();
    std::vector<NodePointer> queue;
    queue.reserve(listed.size() + staged.size());
    std::copy_if(listed.begin(), listed.end(), std::back_inserter(queue),
                 [&ids](const NodePointer& node) { return ids.count(node->id()) == 0; });
    const bool isChanged = !staged.empty() || queue.size() != listed.size();
    for (const NodePointer& node : staged) {
        node->setStagedForTrash(true);
        queue.push_back(node);
    }
    // One write, whatever its length, and none without a change: each tells every screen.
    if (isChanged) {
        stagedNodes = std::move(queue);
    }
}

void StagingState::sendStagedToTrash()
{
    const std::vector<NodePointer> batch = stagedNodes.value();
    stagedNodes = std::vector<NodePointer>{};
    m_trashSlot.restart(
        JobPriority::userInitiated,
        [batch, trash = &m_host.platform().trash](const JobRun& run) {
            const std::size_t count = batch.size();
            const auto divisor = static_cast<double>(std::max<std::size_t>(count, 1));
            std::vector<FilePath> sent;
            sent.reserve(count);
            for (std::size_t i = 0; i < count; ++i) {
                batch[i]->setStagedForTrash(false);
                // What cannot be moved is seen again in the scan that follows.
                sent.push_back(batch[i]->path());
                trash->moveToTrash(sent.back());
                if (!run.reportAndWait(
                        static_cast<double>(i + 1) / divisor,
                        QStringLiteral("Moving %1 of %2 to Trash…").arg(i + 1).arg(count))) {
                    break;
                }
            }
            return sent;
        },
        [this](const std::vector<FilePath>& sent) {
            trashStatus =
                QLatin1String("Moved ") % itemCount(sent.size()) % QLatin1String(" to Trash.");
            // The tree is never patched: the scan of the same root shows what has left the disk.
            m_host.scanAgainAfter(sent);
        });
    trashStatus = QLatin1String("Moving ") % itemCount(batch.size()) % QStringLiteral(" to Trash…");
}

} // namespace quorvane
