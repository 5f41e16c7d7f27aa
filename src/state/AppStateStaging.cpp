// SPDX-License-Identifier: MIT
#include "AppState.h"

#include "CheckedMath.h"
#include "Trash.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace quorvane {
namespace {

QString itemCount(std::size_t count)
{
    const QLatin1String noun(count == 1 ? "item" : "items");
    return QString::number(count) % QLatin1Char(' ') % noun;
}

/// Whether what a scan of the folder finds depends on one of the paths.
bool concerns(const FilePath& folder, const std::vector<FilePath>& paths)
{
    return std::any_of(paths.begin(), paths.end(), [&folder](const FilePath& path) {
        return folder.holds(path) || path.holds(folder);
    });
}

} // namespace

void AppState::stageSelection()
{
    const NodePointer node = selectedNode.value();
    const NodePointer root = rootNode.value();
    if (!node || (root && node->id() == root->id())) {
        return;
    }
    toggleStaged(node);
}

void AppState::toggleStaged(const NodePointer& node)
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

void AppState::unstage(FileNode& node)
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

std::int64_t AppState::stagedSpace() const
{
    std::int64_t sum = 0;
    for (const NodePointer& node : stagedNodes.value()) {
        sum = checkedAdd(sum, node->scannedBytes(), "AppState::stagedSpace");
    }
    return sum;
}

void AppState::sendStagedToTrash()
{
    const std::vector<NodePointer> batch = stagedNodes.value();
    stagedNodes = std::vector<NodePointer>{};
    isTrashingStaged = true;
    trashProgress = 0;
    trashStatus = QLatin1String("Moving ") % itemCount(batch.size()) % QStringLiteral(" to Trash…");
    m_jobs.start(
        JobPriority::userInitiated,
        [this, batch, trash = &m_platform.trash, post = m_jobs.poster()](const Job& job) {
            const std::size_t count = batch.size();
            const auto divisor = static_cast<double>(std::max<std::size_t>(count, 1));
            std::vector<FilePath> sent;
            sent.reserve(count);
            for (std::size_t i = 0; i < count; ++i) {
                batch[i]->setStagedForTrash(false);
                // What cannot be moved is seen again in the scan that follows.
                sent.push_back(batch[i]->path());
                trash->moveToTrash(sent.back());
                const bool isShown = post.andWait(job, [this, i, count, divisor] {
                    trashProgress = static_cast<double>(i + 1) / divisor;
                    trashStatus = QStringLiteral("Moving %1 of %2 to Trash…").arg(i + 1).arg(count);
                });
                if (!isShown) {
                    break;
                }
            }
            return sent;
        },
        [this](const std::vector<FilePath>& sent) { finishTrashing(sent); });
}

/// The tree is never patched: the scan of the same root shows what has left the disk.
void AppState::finishTrashing(const std::vector<FilePath>& sent)
{
    isTrashingStaged = false;
    trashStatus = QLatin1String("Moved ") % itemCount(sent.size()) % QLatin1String(" to Trash.");
    if (hasScan()) {
        rescan();
    } else if (isScanning && !m_cancelFlag->get() && concerns(m_scannedURL, sent)) {
        // It was asked for during the batch and may have listed what has gone since.
        m_startsScanOver = true;
        m_cancelFlag->set(true);
    }
}

} // namespace quorvane
