// SPDX-License-Identifier: MIT
#include "FileIndex.h"

#include "DiskScanner.h"
#include "FileSystemCalls.h"
#include "IndexBuilder.h"
#include "IndexSearch.h"
#include "MappedFile.h"
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

class MappedFileIndex::Image
{
public:
    Image(MappedFile mapped, IndexTable rows)
        : file(std::move(mapped))
        , table(std::move(rows))
    {}

    MappedFile file;
    IndexTable table;
};

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

std::shared_ptr<const MappedFileIndex::Image> MappedFileIndex::load() const
{
    std::optional<MappedFile> file = MappedFile::open(m_file);
    if (!file) {
        return nullptr;
    }
    std::optional<IndexTable> table = IndexTable::fromBytes(file->bytes());
    return table ? std::make_shared<const Image>(std::move(*file), std::move(*table)) : nullptr;
}

void MappedFileIndex::use(std::shared_ptr<const Image> image)
{
    // The old one is unmapped with the lock released.
    const std::lock_guard guard(m_lock);
    m_image.swap(image);
}

bool MappedFileIndex::open()
{
    if (current() == nullptr) {
        use(load());
    }
    return current() != nullptr;
}

void MappedFileIndex::renew()
{
    if (current() == nullptr) {
        return;
    }
    std::shared_ptr<const Image> image = load();
    const std::lock_guard guard(m_lock);
    if (m_image != nullptr) {
        m_image.swap(image);
    }
}

std::shared_ptr<const MappedFileIndex::Image> MappedFileIndex::current() const
{
    const std::lock_guard guard(m_lock);
    return m_image;
}

std::optional<std::int64_t> MappedFileIndex::madeMs() const
{
    const std::shared_ptr<const Image> image = current();
    return image ? std::optional(image->table.madeMs()) : std::nullopt;
}

std::optional<FilePath> MappedFileIndex::rootPath() const
{
    const std::shared_ptr<const Image> image = current();
    return image ? std::optional(image->table.rootPath()) : std::nullopt;
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
    renew();
    return Outcome::made;
}

MappedFileIndex::Outcome MappedFileIndex::makeFrom(FileNode& root, std::int64_t madeMs,
                                                   const LockedFlag& stop)
{
    const std::shared_ptr<const Image> older = load();
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
    renew();
    return Outcome::made;
}

std::optional<FileIndex::Candidates>
MappedFileIndex::candidates(const SearchRequest& request, std::size_t limit, const LockedFlag& stop)
{
    const std::shared_ptr<const Image> image = current();
    if (!image) {
        return std::nullopt;
    }
    SearchRequest resolved = request;
    resolved.scope = resolvedScope(request.scope, image->table.rootPath());
    const IndexHits hits = searchIndex(image->table, resolved, limit, stop);
    if (stop.get()) {
        return std::nullopt;
    }
    Candidates candidates;
    candidates.isComplete = hits.isComplete;
    for (const IndexTable::Row row : hits.rows) {
        candidates.paths.push_back(image->table.path(row));
    }
    return candidates;
}

std::uint64_t MappedFileIndex::generation() const
{
    const std::shared_ptr<const Image> image = current();
    return image ? image->table.checksum() : 0;
}

} // namespace quorvane
