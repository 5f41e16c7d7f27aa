// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "IndexTable.h"
#include "LockedFlag.h"
#include "SearchResult.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace quorvane {

class FileNode;
class FileSystemCalls;

/// Names of everything on the machine, and of a part of it what else a search asks for. Any thread.
class FileIndex
{
public:
    struct Candidates
    {
        std::vector<FilePath> paths;
        bool isComplete = true; ///< false: there are more than were asked for
    };

    virtual ~FileIndex() = default;

    /// Entries that may answer the request, in the index's own order of rank; of a large answer the
    /// best `limit` at least. What they are now is for the caller to find out. Blocks; absent when
    /// the index cannot be asked or stop was set.
    virtual std::optional<Candidates> candidates(const SearchRequest& request, std::size_t limit,
                                                 const LockedFlag& stop) = 0;
    /// Which state of the index answers now; 0 while none does.
    virtual std::uint64_t generation() const = 0;
};

/// The index that Quorvane makes for itself: a file of IndexTable's form, mapped while it is open.
class MappedFileIndex final : public FileIndex
{
public:
    enum class Outcome { made, stopped, failed };

    /// The calls must outlive it.
    explicit MappedFileIndex(FilePath file, FileSystemCalls& calls);

    /// "Quorvane/files.index" below the user's folder for caches.
    static FilePath standardFile();

    /// The file as it is at one time, mapped and checked.
    class Image;
    /// Maps the file and reads all of it; null when there is no sound one.
    std::shared_ptr<const Image> load() const;
    /// Answers from this from now on, or with null from nothing. Searches that run keep what they
    /// began with until they end.
    void use(std::shared_ptr<const Image> image);
    /// Maps the file if none is in use; false when there is no sound one.
    bool open();
    void close() { use(nullptr); }
    /// When the oldest part of the open index was begun, milliseconds since 1970.
    std::optional<std::int64_t> madeMs() const;
    /// The folder that the open index tells about; "/" for the whole machine.
    std::optional<FilePath> rootPath() const;

    /// Walks the folder anew and writes its index; opens that if one is open. Leaves out Trash
    /// folders, the volumes of other machines and what the kernel makes up. Blocks.
    Outcome make(const FilePath& root, const LockedFlag& stop);
    /// The same from a finished tree that was begun to be walked at madeMs. With a tree of a part
    /// of what the index in the file tells about, only that part is replaced.
    Outcome makeFrom(FileNode& root, std::int64_t madeMs, const LockedFlag& stop);

    std::optional<Candidates> candidates(const SearchRequest& request, std::size_t limit,
                                         const LockedFlag& stop) override;
    std::uint64_t generation() const override;

private:
    std::shared_ptr<const Image> current() const;
    /// Answers from the file as it is now, if anybody wants answers.
    void renew();

    FilePath m_file;
    FileSystemCalls& m_calls;
    mutable std::mutex m_lock;
    std::shared_ptr<const Image> m_image;
};

} // namespace quorvane
