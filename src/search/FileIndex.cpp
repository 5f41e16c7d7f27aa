// SPDX-License-Identifier: MIT
#include "FileIndex.h"

#include "DiskScanner.h"
#include "FileSystemCalls.h"
#include "IndexBuilder.h"
#include "IndexSearch.h"
#include "MountTable.h"

#include <QStandardPaths>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <system_error>
#include <utility>
#include <variant>

namespace quorvane {
namespace {

/// The file system as an index sees it: a folder on which another machine's volume is mounted is
/// not listed, as if the kernel had made it up.
class LocalFileSystem final : public FileSystemCalls
{
public:
    LocalFileSystem(FileSystemCalls& below, const std::vector<RemoteMount>& remote)
        : m_below(below)
        , m_remote(remote)
    {}

    int openDirectory(int parent, const char* name) override
    {
        return m_below.openDirectory(parent, name);
    }
    void close(int directory) override { m_below.close(directory); }
    bool appendNames(int directory, NameList& names, const std::atomic<bool>& stops) override
    {
        return m_below.appendNames(directory, names, stops);
    }
    bool status(int directory, const char* name, EntryStatus& status) override
    {
        return m_below.status(directory, name, status);
    }
    bool creationDate(int directory, const char* name, std::int64_t& seconds) override
    {
        return m_below.creationDate(directory, name, seconds);
    }
    VolumeKind volumeKind(int parent, const char* name) override
    {
        const VolumeKind kind = m_below.volumeKind(parent, name);
        EntryStatus status;
        const bool isRemote =
            !m_remote.empty() && m_below.status(parent, name, status) &&
            std::any_of(m_remote.begin(), m_remote.end(),
                        [&](const RemoteMount& mount) { return mount.device == status.device; });
        return isRemote ? VolumeKind::kernelMade : kind;
    }
    bool volumeCapacity(const char* path, VolumeCapacity& capacity) override
    {
        return m_below.volumeCapacity(path, capacity);
    }
    int descriptorLimit() override { return m_below.descriptorLimit(); }

private:
    FileSystemCalls& m_below;
    const std::vector<RemoteMount>& m_remote;
};

/// The folder without links on the way, where the index knows it so: links are not followed when an
/// index is made.
FilePath resolvedScope(const FilePath& scope, const FilePath& root)
{
    std::error_code fault;
    const FilePath real(std::filesystem::canonical(scope.bytes(), fault).native());
    return !fault && root.holds(real) ? real : scope;
}

std::vector<RemoteMount> remoteMounts()
{
    const std::optional<MountTable> table = MountTable::read();
    return table ? table->remote() : std::vector<RemoteMount>();
}

std::int64_t now()
{
    return static_cast<std::int64_t>(SearchQueryParser::currentMs());
}

} // namespace

MappedFileIndex::MappedFileIndex(FilePath file, FileSystemCalls& calls)
    : m_file(std::move(file))
    , m_calls(calls)
{}

FilePath MappedFileIndex::standardFile()
{
    return FilePath::fromText(
               QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation))
        .appending("Quorvane/files.index");
}

std::shared_ptr<const MappedFileIndex::Opened> MappedFileIndex::load() const
{
    std::optional<MappedFile> file = MappedFile::open(m_file);
    if (!file) {
        return nullptr;
    }
    std::optional<IndexTable> table = IndexTable::fromBytes(file->bytes());
    return table ? std::make_shared<const Opened>(Opened{std::move(*file), std::move(*table)})
                 : nullptr;
}

std::shared_ptr<const MappedFileIndex::Opened> MappedFileIndex::current() const
{
    const std::lock_guard guard(m_lock);
    return m_opened;
}

bool MappedFileIndex::open()
{
    return current() != nullptr || reopen();
}

bool MappedFileIndex::reopen()
{
    std::shared_ptr<const Opened> opened = load();
    const std::lock_guard guard(m_lock);
    m_opened = std::move(opened);
    ++m_generation;
    return m_opened != nullptr;
}

void MappedFileIndex::close()
{
    std::shared_ptr<const Opened> dropped;
    const std::lock_guard guard(m_lock);
    dropped.swap(m_opened);
}

std::optional<std::int64_t> MappedFileIndex::madeMs() const
{
    const std::shared_ptr<const Opened> opened = current();
    return opened ? std::optional(opened->table.madeMs()) : std::nullopt;
}

std::optional<FilePath> MappedFileIndex::rootPath() const
{
    const std::shared_ptr<const Opened> opened = current();
    return opened ? std::optional(opened->table.rootPath()) : std::nullopt;
}

MappedFileIndex::Outcome MappedFileIndex::make(const FilePath& root, const LockedFlag& stop)
{
    std::vector<RemoteMount> remote = remoteMounts();
    // Who asks for a folder of another machine's volume gets it.
    std::erase_if(remote, [&](const RemoteMount& each) { return each.mountPoint.holds(root); });
    LocalFileSystem local(m_calls, remote);
    DiskScanner scanner(0, local);
    const std::int64_t begun = now();
    const DiskScanner::Result scanned =
        scanner.scan(root, [&](const ScanProgress&) { return !stop.get(); });
    const auto* const tree = std::get_if<std::shared_ptr<FileTree>>(&scanned);
    if (tree == nullptr) {
        return stop.get() ? Outcome::stopped : Outcome::failed;
    }
    IndexBuilder builder(begun, remote);
    if (!builder.add((*tree)->root(), stop)) {
        return stop.get() ? Outcome::stopped : Outcome::failed;
    }
    if (!builder.write(m_file)) {
        return Outcome::failed;
    }
    if (current() != nullptr) {
        reopen();
    }
    return Outcome::made;
}

MappedFileIndex::Outcome MappedFileIndex::makeFrom(FileNode& root, std::int64_t madeMs,
                                                   const LockedFlag& stop)
{
    const std::shared_ptr<const Opened> older = load();
    const FilePath path = root.path();
    const bool isPart =
        older && older->table.rootPath() != path && older->table.rootPath().holds(path);
    IndexBuilder builder(madeMs, remoteMounts());
    const bool isAdded = isPart ? builder.add(older->table, root, stop) : builder.add(root, stop);
    if (!isAdded) {
        return stop.get() ? Outcome::stopped : Outcome::failed;
    }
    if (!builder.write(m_file)) {
        return Outcome::failed;
    }
    if (current() != nullptr) {
        reopen();
    }
    return Outcome::made;
}

std::optional<FileIndex::Candidates>
MappedFileIndex::candidates(const SearchRequest& request, std::size_t limit, const LockedFlag& stop)
{
    const std::shared_ptr<const Opened> opened = current();
    if (!opened) {
        return std::nullopt;
    }
    SearchRequest resolved = request;
    resolved.scope = resolvedScope(request.scope, opened->table.rootPath());
    const IndexHits hits = searchIndex(opened->table, resolved, limit, stop);
    if (stop.get()) {
        return std::nullopt;
    }
    Candidates candidates;
    candidates.isComplete = hits.isComplete;
    for (const IndexTable::Row row : hits.rows) {
        candidates.paths.push_back(opened->table.path(row));
    }
    return candidates;
}

std::uint64_t MappedFileIndex::generation() const
{
    const std::lock_guard guard(m_lock);
    return m_generation;
}

} // namespace quorvane
