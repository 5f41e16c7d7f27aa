// SPDX-License-Identifier: MIT
#include "CheckedTrash.h"
#include "Command.h"
#include "DuplicateFinder.h"
#include "JsonText.h"
#include "Trash.h"
#include "TrashBatch.h"
#include "TreeSource.h"

#include <QDir>

#include <iostream>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace quorvane {
namespace {

constexpr OptionRule options[] = {{"dump", true}, {"accept-losses", false}};

std::shared_ptr<const DuplicateFinder::Groups> duplicatesIn(const NodePointer& root)
{
    return std::make_shared<const DuplicateFinder::Groups>(
        DuplicateFinder::find(root, DuplicateFinder::defaultMinimumBytes, [](double) {}));
}

void send(const std::vector<QueueEntry>& queue, const NodePointer& root, bool acceptsLosses)
{
    const CheckedTrash door(Trash::system(), FilePath::fromText(QDir::homePath()));
    const std::shared_ptr<const DuplicateFinder::Groups> groups = duplicatesIn(root);
    AcceptedLosses accepted;
    if (acceptsLosses) {
        accepted = cautionsOf(queue, groups, door, [] { return false; })->losses;
    }
    const TrashBatch batch(queue, groups, accepted, door);
    for (std::size_t i = 0; i < queue.size(); ++i) {
        const TrashOutcome outcome = batch.send(i);
        std::string line;
        JsonObject object(line);
        object.path(queue[i].request.path.bytes());
        object.text("outcome", nameOf(outcome));
        object.endLine();
        std::cout << line << std::flush;
    }
}

int runTrash(const Arguments& arguments)
{
    std::vector<std::string_view> paths;
    const auto loaded = loadTree(arguments, paths);
    if (const SourceFault* fault = std::get_if<SourceFault>(&loaded)) {
        return complain(fault->message, fault->code);
    }
    if (paths.empty()) {
        return complain("trash needs a PATH to move; try --help", exitUsage);
    }
    const std::shared_ptr<FileTree> tree = std::get<std::shared_ptr<FileTree>>(loaded);
    std::vector<NodePointer> nodes;
    for (const std::string_view path : paths) {
        FileNode* const node = nodeAt(*tree, path);
        if (node == nullptr) {
            return complain("no such entry in the tree: " + std::string(path), exitFailure);
        }
        // A path given twice is staged once.
        if (!node->isStagedForTrash()) {
            node->setStagedForTrash(true);
            nodes.emplace_back(tree, node);
        }
    }
    send(entriesOf(nodes), tree->rootPointer(), arguments.has("accept-losses"));
    return exitSuccess;
}

} // namespace

const Command trashCommand{"trash", "(DIR | --dump FILE) PATH... [--accept-losses]",
                           "Stage entries of a tree and send them to the Trash as the program "
                           "does.",
                           options, runTrash};

} // namespace quorvane
