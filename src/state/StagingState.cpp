// SPDX-License-Identifier: MIT
#include "StagingState.h"

#include "FacetHost.h"
#include "FlashState.h"
#include "Trash.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <limits>
#include <unordered_set>
#include <utility>

namespace quorvane {
namespace {

QString itemCount(std::size_t count)
{
    const QLatin1String noun(count == 1 ? "item" : "items");
    return QString::number(count) % QLatin1Char(' ') % noun;
}

bool holds(const std::vector<NodePointer>& queue, const NodePointer& node)
{
    return std::find(queue.begin(), queue.end(), node) != queue.end();
}

/// The nodes with what they looked like: what their finder saw of stand-alone ones.
std::vector<QueueEntry> entriesOf(const std::vector<NodePointer>& nodes,
                                  const std::map<NodePointer, TrashRequest>& found)
{
    std::vector<QueueEntry> entries = entriesOf(nodes);
    for (QueueEntry& entry : entries) {
        if (const auto seen = found.find(entry.node); seen != found.end()) {
            entry.request = seen->second;
        }
    }
    return entries;
}

} // namespace

StagingState::StagingState(FacetHost& host)
    : queueCautions(std::make_shared<const QueueCautions>())
    , m_host(host)
    , m_trashSlot(host.jobs(), {&isTrashingStaged, &trashProgress, &trashStatus})
    , m_cautionSlot(host.jobs())
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

void StagingState::stageItem(const NodePointer& item, const TrashRequest& found)
{
    if (!holds(stagedNodes.value(), item)) {
        m_found.insert_or_assign(item, found);
        toggleStaged(item);
    }
}

void StagingState::unstage(FileNode& node)
{
    node.setStagedForTrash(false);
    const auto isNode = [&node](const NodePointer& staged) { return staged.get() == &node; };
    const std::vector<NodePointer>& listed = stagedNodes.value();
    if (std::none_of(listed.begin(), listed.end(), isNode)) {
        return;
    }
    std::vector<NodePointer> queue;
    queue.reserve(listed.size());
    std::remove_copy_if(listed.begin(), listed.end(), std::back_inserter(queue), isNode);
    setQueue(std::move(queue));
}

void StagingState::setQueue(std::vector<NodePointer> queue)
{
    std::erase_if(m_found, [&queue](const auto& each) { return !holds(queue, each.first); });
    stagedNodes = std::move(queue);
}

void StagingState::dropQueue()
{
    setQueue({});
    queueCautions = std::make_shared<const QueueCautions>();
}

CheckedTrash StagingState::door() const
{
    return {m_host.platform().trash, m_host.platform().home};
}

void StagingState::refreshQueueCautions()
{
    m_looksAgain = m_cautionSlot.isRunning();
    if (m_looksAgain) {
        m_cautionSlot.requestStop();
        return;
    }
    m_cautionSlot.restart(
        JobPriority::userInitiated,
        [nodes = stagedNodes.value(), found = m_found, groups = m_host.foundDuplicates(),
         door = door()](const JobRun& run) {
            const auto isUnwanted = [&run] { return run.isUnwanted(); };
            return std::make_shared<const QueueCautions>(
                cautionsOf(entriesOf(nodes, found), groups, door, isUnwanted)
                    .value_or(QueueCautions{}));
        },
        [this](std::shared_ptr<const QueueCautions> cautions) {
            if (m_looksAgain) {
                refreshQueueCautions();
            } else {
                queueCautions = std::move(cautions);
            }
        });
}

std::int64_t StagingState::stagedSpace() const
{
    std::int64_t sum = 0;
    for (const NodePointer& node : stagedNodes.value()) {
        // An entry and the folder around it count the same bytes twice, and a scan may come close
        // to the largest number alone.
        if (__builtin_add_overflow(sum, node->scannedBytes(), &sum)) {
            return std::numeric_limits<std::int64_t>::max();
        }
    }
    return sum;
}

void StagingState::changeStaged(const std::vector<FileNode*>& unstaged,
                                const std::vector<NodePointer>& staged)
{
    const std::unordered_set<const FileNode*> taken(unstaged.begin(), unstaged.end());
    for (FileNode* const node : unstaged) {
        node->setStagedForTrash(false);
    }
    const std::vector<NodePointer>& listed = stagedNodes.value();
    std::vector<NodePointer> queue;
    queue.reserve(listed.size() + staged.size());
    std::copy_if(listed.begin(), listed.end(), std::back_inserter(queue),
                 [&taken](const NodePointer& node) { return taken.count(node.get()) == 0; });
    const bool isChanged = !staged.empty() || queue.size() != listed.size();
    for (const NodePointer& node : staged) {
        node->setStagedForTrash(true);
        queue.push_back(node);
    }
    // One write for all of them, and none without a change: each notifies every screen.
    if (isChanged) {
        setQueue(std::move(queue));
    }
}

void StagingState::sendStagedToTrash(const AcceptedLosses& accepted)
{
    const std::vector<NodePointer> nodes = stagedNodes.value();
    const std::size_t count = nodes.size();
    const auto found = m_found;
    std::promise<void> end;
    m_batchEnd = end.get_future().share();
    setQueue({});
    m_trashSlot.restart(
        JobPriority::userInitiated,
        [nodes, found, count, accepted, groups = m_host.foundDuplicates(), door = door(),
         end = std::make_shared<std::promise<void>>(std::move(end))](const JobRun& run) {
            const TrashBatch trash(entriesOf(nodes, found), groups, accepted, door);
            const auto divisor = static_cast<double>(std::max<std::size_t>(count, 1));
            std::vector<Sent> sent;
            sent.reserve(count);
            for (std::size_t i = 0; i < count; ++i) {
                nodes[i]->setStagedForTrash(false);
                sent.push_back({trash.entries()[i].request.path, trash.send(i)});
                // Goes on where nobody is there to see it: a batch is never cut off.
                run.reportAndWait(
                    static_cast<double>(i + 1) / divisor,
                    QStringLiteral("Moving %1 of %2 to Trash…").arg(i + 1).arg(count));
            }
            end->set_value();
            return sent;
        },
        [this](const std::vector<Sent>& sent) {
            trashStatus =
                QLatin1String("Moved ") % itemCount(sent.size()) % QLatin1String(" to Trash.");
            remember(sent);
            // The tree is never patched: the scan of the same root shows what has left the disk.
            std::vector<FilePath> paths;
            std::transform(sent.begin(), sent.end(), std::back_inserter(paths),
                           [](const Sent& each) { return each.path; });
            m_host.scanAgainAfter(paths);
        },
        [this, nodes, found] { takeBack(nodes, found); });
    trashStatus = QLatin1String("Moving ") % itemCount(count) % QStringLiteral(" to Trash…");
}

void StagingState::remember(const std::vector<Sent>& sent)
{
    std::map<FilePath, TrashOutcome> failures = trashFailures.value();
    for (const Sent& each : sent) {
        if (each.outcome == TrashOutcome::moved) {
            failures.erase(each.path);
        } else {
            failures.insert_or_assign(each.path, each.outcome);
        }
    }
    trashFailures = std::move(failures);
}

/// After a batch that memory or a thread was missing for. What it has moved is told apart from the
/// rest when the queue is looked at.
void StagingState::takeBack(const std::vector<NodePointer>& nodes,
                            const std::map<NodePointer, TrashRequest>& found)
{
    std::vector<NodePointer> queue = nodes;
    for (const NodePointer& node : stagedNodes.value()) {
        if (!holds(nodes, node)) {
            queue.push_back(node);
        }
    }
    for (const NodePointer& node : nodes) {
        node->setStagedForTrash(true);
    }
    m_found.insert(found.begin(), found.end());
    setQueue(std::move(queue));
    trashStatus = std::nullopt;
    m_host.flashBanner().flash(QCoreApplication::translate(
        "AppState", "Not enough memory to move the items to Trash. They are staged again."));
}

void StagingState::waitForBatch() const
{
    if (m_batchEnd.valid()) {
        m_batchEnd.wait();
    }
}

} // namespace quorvane
