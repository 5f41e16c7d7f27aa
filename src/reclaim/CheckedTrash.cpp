// SPDX-License-Identifier: MIT
#include "CheckedTrash.h"

#include "FileTree.h"
#include "PinnedEntry.h"
#include "ProtectedPlaces.h"
#include "Trash.h"

#include <string>
#include <utility>

namespace quorvane {
namespace {

TrashOutcome outcomeOf(PinnedEntry::Failure failure)
{
    switch (failure) {
    case PinnedEntry::Failure::missing:
        return TrashOutcome::missing;
    case PinnedEntry::Failure::behindLink:
        return TrashOutcome::behindLink;
    default:
        return TrashOutcome::failed;
    }
}

TrashOutcome outcomeOf(Trash::Outcome outcome)
{
    switch (outcome) {
    case Trash::Outcome::moved:
        return TrashOutcome::moved;
    case Trash::Outcome::missing:
        return TrashOutcome::missing;
    case Trash::Outcome::notPermitted:
        return TrashOutcome::notPermitted;
    case Trash::Outcome::readOnly:
        return TrashOutcome::readOnly;
    case Trash::Outcome::notOfferedHere:
        return TrashOutcome::notOfferedHere;
    default:
        return TrashOutcome::failed;
    }
}

EntryStatus::Kind kindOf(const FileNode& node)
{
    return node.isDirectory()      ? EntryStatus::Kind::directory
           : node.isRegularFile()  ? EntryStatus::Kind::regularFile
           : node.isSymbolicLink() ? EntryStatus::Kind::symbolicLink
                                   : EntryStatus::Kind::other;
}

std::optional<TrashOutcome> differenceOf(const EntryStatus& found, const TrashRequest& request)
{
    if (request.kind && *request.kind != found.kind) {
        return TrashOutcome::otherKind;
    }
    if ((request.size && *request.size != found.size) ||
        (request.modifiedSeconds && *request.modifiedSeconds != found.modifiedSeconds)) {
        return TrashOutcome::changed;
    }
    return std::nullopt;
}

bool mayNotGo(const FilePath& path, const FilePath& home)
{
    return isProtectedPlace(path) || path.holds(home);
}

/// Reaches the entry from the very folder that was scanned. Absent when nothing is in the way.
std::optional<TrashOutcome> reach(const TrashRequest& request, PinnedEntry& entry)
{
    entry = PinnedEntry::reach(request.root, request.path,
                               request.mayRootBeLink ? PinnedEntry::RootLink::follow
                                                     : PinnedEntry::RootLink::refuse);
    if (entry.failure() != PinnedEntry::Failure::none) {
        return outcomeOf(entry.failure());
    }
    const bool isRoot = request.path == request.root;
    if (request.rootIdentity && !isRoot && *request.rootIdentity != entry.topIdentity()) {
        return TrashOutcome::behindLink;
    }
    return std::nullopt;
}

/// Looks at the entry and keeps hold of it. Absent when nothing is in the way.
std::optional<TrashOutcome> check(const TrashRequest& request, const FilePath& home,
                                  const CheckedTrash::MountReader& readMounts, PinnedEntry& entry)
{
    if (mayNotGo(request.path, home)) {
        return TrashOutcome::protectedPlace;
    }
    if (const std::optional<TrashOutcome> obstacle = reach(request, entry)) {
        return obstacle;
    }
    const std::optional<FilePath> realHome = PinnedEntry::realPathOf(home);
    if (mayNotGo(entry.realPath(), realHome.value_or(home))) {
        return TrashOutcome::protectedPlace;
    }
    // Before the entry itself is asked: a mount that belongs to somebody else does not answer.
    const std::optional<MountTable> mounts = readMounts();
    if (!mounts) {
        return TrashOutcome::mountsUnknown;
    }
    if (mounts->isMountPoint(entry.realPath())) {
        return TrashOutcome::mountPoint;
    }
    if (mounts->hasMountBelow(entry.realPath())) {
        return TrashOutcome::holdsMount;
    }
    EntryStatus found;
    if (!entry.pin(found)) {
        return outcomeOf(entry.failure());
    }
    return differenceOf(found, request);
}

} // namespace

TrashRequest TrashRequest::of(const FileNode& node)
{
    TrashRequest request;
    request.path = node.path();
    const FileNode* top = &node;
    while (top->parent() != nullptr) {
        top = top->parent();
    }
    const bool isStandAlone = top == &node && !node.dateModified();
    if (isStandAlone) {
        request.root = request.path.parent();
        return request;
    }
    request.root = top->path();
    request.mayRootBeLink = false;
    request.rootIdentity = FileTree::identityOf(*top);
    request.kind = kindOf(node);
    if (node.isRegularFile()) {
        if (!node.isSizeCapped()) {
            request.size = node.logicalSize();
        }
        request.modifiedSeconds = node.dateModified();
    }
    return request;
}

TrashRequest TrashRequest::of(const FilePath& path, const FilePath& root, const EntryStatus& status)
{
    TrashRequest request;
    request.path = path;
    request.root = root;
    request.kind = status.kind;
    if (status.kind == EntryStatus::Kind::regularFile) {
        request.size = status.size;
        request.modifiedSeconds = status.modifiedSeconds;
    }
    return request;
}

std::string_view nameOf(TrashOutcome outcome)
{
    switch (outcome) {
    case TrashOutcome::moved:
        return "moved";
    case TrashOutcome::missing:
        return "missing";
    case TrashOutcome::notPermitted:
        return "notPermitted";
    case TrashOutcome::readOnly:
        return "readOnly";
    case TrashOutcome::notOfferedHere:
        return "notOfferedHere";
    case TrashOutcome::protectedPlace:
        return "protectedPlace";
    case TrashOutcome::mountPoint:
        return "mountPoint";
    case TrashOutcome::holdsMount:
        return "holdsMount";
    case TrashOutcome::mountsUnknown:
        return "mountsUnknown";
    case TrashOutcome::behindLink:
        return "behindLink";
    case TrashOutcome::otherKind:
        return "otherKind";
    case TrashOutcome::changed:
        return "changed";
    case TrashOutcome::lastCopy:
        return "lastCopy";
    case TrashOutcome::failed:
        break;
    }
    return "failed";
}

std::optional<TrashOutcome> differenceOnDisk(const TrashRequest& request)
{
    PinnedEntry entry;
    if (const std::optional<TrashOutcome> obstacle = reach(request, entry)) {
        return obstacle;
    }
    EntryStatus found;
    if (!entry.pin(found)) {
        return outcomeOf(entry.failure());
    }
    return differenceOf(found, request);
}

CheckedTrash::CheckedTrash(Trash& trash, FilePath home, MountReader readMounts)
    : m_trash(&trash)
    , m_home(std::move(home))
    , m_readMounts(readMounts ? std::move(readMounts) : MountReader(&MountTable::read))
{}

std::optional<TrashOutcome> CheckedTrash::obstacleTo(const TrashRequest& request) const
{
    PinnedEntry entry;
    if (const std::optional<TrashOutcome> obstacle = check(request, m_home, m_readMounts, entry)) {
        return obstacle;
    }
    const std::optional<Trash::Outcome> refused = m_trash->obstacleTo(request.path);
    return refused ? std::optional(outcomeOf(*refused)) : std::nullopt;
}

CheckedTrash CheckedTrash::withOneMountTable() const
{
    return {*m_trash, m_home, [table = m_readMounts()] { return table; }};
}

TrashOutcome CheckedTrash::moveToTrash(const TrashRequest& request) const
{
    PinnedEntry entry;
    if (const std::optional<TrashOutcome> obstacle = check(request, m_home, m_readMounts, entry)) {
        return *obstacle;
    }
    return outcomeOf(m_trash->moveToTrash(request.path));
}

} // namespace quorvane
