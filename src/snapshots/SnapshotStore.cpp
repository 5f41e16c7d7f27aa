// SPDX-License-Identifier: MIT
#include "SnapshotStore.h"

#include "DirectoryWalk.h"
#include "Text.h"
#include "Workers.h"

#include <QDir>
#include <QStandardPaths>

#include <algorithm>
#include <atomic>
#include <numeric>
#include <span>
#include <utility>

namespace quorvane {
namespace {

constexpr std::string_view extension = ".json";

bool isSnapshotName(std::string_view name)
{
    return name.size() > extension.size() && name.ends_with(extension);
}

std::string fileNameOf(const QUuid& id)
{
    return uuidText(id) + std::string(extension);
}

/// The text of bytes as it is stored.
std::string storedText(std::string&& bytes)
{
    return isUtf8(bytes) ? std::move(bytes) : displayText(bytes).toStdString();
}

} // namespace

std::string snapshotEntryPath(std::string_view path, std::string_view rootPath)
{
    std::string rest;
    rest.reserve(path.size() + 1);
    rest.push_back('/');
    for (std::size_t at = 0; at < path.size();) {
        const std::size_t found = rootPath.empty() ? path.npos : path.find(rootPath, at);
        rest.append(path.substr(at, found - at));
        at = found == path.npos ? path.size() : found + rootPath.size();
    }
    const std::size_t begin = rest.find_first_not_of('/');
    if (begin == rest.npos) {
        return {};
    }
    rest.erase(rest.find_last_not_of('/') + 1);
    rest.erase(0, begin - 1);
    return rest;
}

SnapshotStore::SnapshotStore(FilePath directory, FileSystemCalls& fileSystem,
                             FileContentCalls& contents, StoredFiles& files)
    : m_directory(std::move(directory))
    , m_fileSystem(fileSystem)
    , m_contents(contents)
    , m_files(files)
{}

FilePath SnapshotStore::snapshotsDirectory()
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return FilePath::fromText(data.isEmpty() ? QDir::tempPath() : data)
        .appending("Quorvane")
        .appending("Snapshots");
}

CapturedSnapshot SnapshotStore::capture(FileNode& root)
{
    std::vector<FileNode*> found;
    std::vector<FileNode*> stack{&root};
    while (!stack.empty() && found.size() < maximumEntries) {
        FileNode* const node = stack.back();
        stack.pop_back();
        if (node->isDirectory()) {
            for (FileNode& child : node->children()) {
                // The many small files never reach the stack.
                if (child.isDirectory() || child.scannedBytes() >= minimumBytesCaptured) {
                    stack.push_back(&child);
                }
            }
        } else if (node->scannedBytes() >= minimumBytesCaptured) {
            found.push_back(node);
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const FileNode* a, const FileNode* b) {
        return a->scannedBytes() > b->scannedBytes();
    });
    CapturedSnapshot captured;
    ScanSnapshot& snapshot = captured.snapshot;
    const FilePath rootPath = root.path();
    snapshot.id = QUuid::createUuid();
    snapshot.date = snapshotDateNow();
    snapshot.rootPath = storedText(std::string(rootPath.bytes()));
    snapshot.rootBytes = root.scannedBytes();
    snapshot.items.reserve(found.size());
    for (const FileNode* const node : found) {
        std::string path = snapshotEntryPath(node->path().bytes(), rootPath.bytes());
        if (path.empty()) {
            path = node->name();
        }
        snapshot.items.push_back({storedText(std::move(path)), node->scannedBytes()});
    }
    captured.nodes = std::move(found);
    return captured;
}

bool SnapshotStore::save(const ScanSnapshot& snapshot) const
{
    return m_files.makeFolder(m_directory) &&
           m_files.save(m_directory, fileNameOf(snapshot.id), encodeSnapshot(snapshot));
}

std::optional<std::string> SnapshotStore::contentsOf(int folder, const char* name) const
{
    const int file = m_contents.open(folder, name);
    if (file < 0) {
        return std::nullopt;
    }
    OpenFileStatus status;
    std::optional<std::string> bytes;
    if (m_contents.status(file, status) && status.isRegularFile &&
        status.bytes <= maximumFileBytes) {
        bytes.emplace(static_cast<std::size_t>(status.bytes), '\0');
        std::size_t size = 0;
        while (size < bytes->size()) {
            const std::int64_t got =
                m_contents.read(file, std::as_writable_bytes(std::span(*bytes).subspan(size)));
            if (got <= 0) {
                break;
            }
            size += static_cast<std::size_t>(got);
        }
        // Shorter than it was a moment ago: what is left of it is judged as it stands.
        bytes->resize(size);
    }
    m_contents.close(file);
    return bytes;
}

std::optional<std::string> SnapshotStore::contentsOf(const std::string& name) const
{
    const ReachablePlace place(m_fileSystem, m_directory.appending(name));
    return place.isReachable() ? contentsOf(place.parent(), place.name()) : std::nullopt;
}

std::vector<StoredSnapshot> SnapshotStore::load(const std::function<bool()>& isCancelled) const
{
    // With "." behind it the folder may be a link to the one that holds the files.
    const ReachablePlace place(m_fileSystem, m_directory.appending("."));
    const int folder =
        place.isReachable() ? m_fileSystem.openDirectory(place.parent(), place.name()) : -1;
    if (folder < 0) {
        return {};
    }
    const OpenDirectory directory(m_fileSystem, folder);
    NameList listing;
    if (!m_fileSystem.appendNames(folder, listing)) {
        return {};
    }
    std::vector<std::string> names;
    for (std::size_t i = 0; i < listing.spans.size(); ++i) {
        names.emplace_back(listing.nameAt(i));
    }
    std::erase_if(names, [](const std::string& name) { return !isSnapshotName(name); });
    std::sort(names.begin(), names.end());
    std::vector<std::optional<StoredSnapshot>> read(names.size());
    std::atomic<std::size_t> next = 0;
    runOnWorkers(std::min(processorCount(), names.size()), [&] {
        for (std::size_t i = next++; i < names.size(); i = next++) {
            if (isCancelled()) {
                return;
            }
            const std::optional<std::string> json = contentsOf(folder, names[i].c_str());
            if (const auto heading = json ? decodeSnapshotHeading(*json) : std::nullopt) {
                read[i] = {*heading, names[i]};
            }
        }
    });
    std::vector<StoredSnapshot> snapshots;
    for (std::optional<StoredSnapshot>& each : read) {
        if (each) {
            snapshots.push_back(std::move(*each));
        }
    }
    std::stable_sort(
        snapshots.begin(), snapshots.end(),
        [](const StoredSnapshot& a, const StoredSnapshot& b) { return a.date > b.date; });
    return snapshots;
}

std::optional<ScanSnapshot> SnapshotStore::read(const StoredSnapshot& stored) const
{
    const std::optional<std::string> json = contentsOf(stored.fileName);
    std::optional<ScanSnapshot> snapshot = json ? decodeSnapshot(*json) : std::nullopt;
    return snapshot && snapshot->id == stored.id ? snapshot : std::nullopt;
}

bool SnapshotStore::remove(const QUuid& id) const
{
    const std::string name = fileNameOf(id);
    const std::optional<std::string> json = contentsOf(name);
    const std::optional<SnapshotHeading> heading =
        json ? decodeSnapshotHeading(*json) : std::nullopt;
    return heading && heading->id == id && m_files.remove(m_directory, name);
}

} // namespace quorvane
