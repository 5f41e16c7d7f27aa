// SPDX-License-Identifier: MIT
#include "DiskTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

constexpr mode_t folderMode = 0755;
constexpr mode_t fileMode = 0644;
constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

void require(bool succeeded, const std::string& what)
{
    if (!succeeded) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

/// A descriptor that is closed at the end.
class Descriptor
{
public:
    explicit Descriptor(int number = -1)
        : m_number(number)
    {}
    Descriptor(Descriptor&& other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor()
    {
        if (m_number >= 0) {
            close(m_number);
        }
    }

    int number() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }

private:
    int m_number;
};

std::string baseFor(DiskTree::Place place)
{
    const char* const memory = "/dev/shm";
    if (place == DiskTree::Place::memory && access(memory, W_OK | X_OK) == 0) {
        return memory;
    }
    const char* const temporary = std::getenv("TMPDIR");
    return temporary != nullptr ? temporary : "/tmp";
}

bool isFolder(int directory, const char* name)
{
    struct stat status = {};
    return fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

/// Removes what is no folder and returns the names of the folders.
std::vector<std::string> emptyOfFiles(int directory)
{
    std::vector<std::string> names;
    // A fresh descriptor, so that the listing starts at the beginning.
    DIR* const listing = fdopendir(openat(directory, ".", folderFlags));
    if (listing == nullptr) {
        return names;
    }
    while (const dirent* const entry = readdir(listing)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    closedir(listing);
    std::erase_if(names, [directory](const std::string& name) {
        if (isFolder(directory, name.c_str())) {
            return false;
        }
        unlinkat(directory, name.c_str(), 0);
        return true;
    });
    return names;
}

/// Goes down and up with one open folder at a time, so that neither the depth nor the number of
/// descriptors nor the length of a path sets a limit.
void removeAll(const std::string& top)
{
    struct Level
    {
        std::string name;
        std::vector<std::string> folders;
    };
    struct stat status = {};
    if (lstat(top.c_str(), &status) != 0) {
        return;
    }
    if (!S_ISDIR(status.st_mode)) {
        unlink(top.c_str());
        return;
    }
    chmod(top.c_str(), folderMode);
    Descriptor here(open(top.c_str(), folderFlags));
    std::vector<Level> levels{{top, emptyOfFiles(here.number())}};
    while (here.isOpen()) {
        Level& level = levels.back();
        if (!level.folders.empty()) {
            const std::string name = std::move(level.folders.back());
            level.folders.pop_back();
            fchmodat(here.number(), name.c_str(), folderMode, 0);
            Descriptor below(openat(here.number(), name.c_str(), folderFlags));
            if (below.isOpen()) {
                here = std::move(below);
                levels.push_back({name, emptyOfFiles(here.number())});
            }
            continue;
        }
        const std::string name = std::move(level.name);
        levels.pop_back();
        if (levels.empty()) {
            rmdir(name.c_str());
            return;
        }
        here = Descriptor(openat(here.number(), "..", folderFlags));
        unlinkat(here.number(), name.c_str(), AT_REMOVEDIR);
    }
}

} // namespace

DiskTree::DiskTree(Place place)
{
    std::string pattern = baseFor(place) + "/qv-disk.XXXXXX";
    require(mkdtemp(pattern.data()) != nullptr, pattern);
    require(chmod(pattern.c_str(), folderMode) == 0, pattern);
    m_root = FilePath(pattern);
}

DiskTree::~DiskTree()
{
    removeAll(m_root.bytes());
}

std::string DiskTree::placeFor(std::string_view relative)
{
    const FilePath place = path(relative);
    if (place.parent() != m_root) {
        folder(relative.substr(0, relative.rfind('/')));
    }
    return place.bytes();
}

void DiskTree::folder(std::string_view relative)
{
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = relative.find('/', end + 1);
        const std::string place = path(relative.substr(0, end)).bytes();
        require(mkdir(place.c_str(), folderMode) == 0 || errno == EEXIST, place);
    }
}

void DiskTree::file(std::string_view relative, std::int64_t bytes)
{
    fileWithContents(relative, std::string(static_cast<std::size_t>(bytes), 'x'));
}

void DiskTree::fileWithContents(std::string_view relative, std::string_view contents)
{
    const std::string place = placeFor(relative);
    const Descriptor file(
        open(place.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, fileMode));
    require(file.isOpen(), place);
    while (!contents.empty()) {
        const ssize_t written = write(file.number(), contents.data(), contents.size());
        require(written > 0, place);
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
}

void DiskTree::hole(std::string_view relative, std::int64_t bytes)
{
    file(relative);
    const std::string place = path(relative).bytes();
    require(truncate(place.c_str(), bytes) == 0, place);
}

void DiskTree::hardLink(std::string_view existing, std::string_view relative)
{
    const std::string place = placeFor(relative);
    require(link(path(existing).bytes().c_str(), place.c_str()) == 0, place);
}

void DiskTree::symbolicLink(std::string_view target, std::string_view relative)
{
    const std::string place = placeFor(relative);
    require(symlink(std::string(target).c_str(), place.c_str()) == 0, place);
}

void DiskTree::fifo(std::string_view relative)
{
    const std::string place = placeFor(relative);
    require(mkfifo(place.c_str(), fileMode) == 0, place);
}

void DiskTree::socket(std::string_view relative)
{
    const std::string place = placeFor(relative);
    require(mknod(place.c_str(), S_IFSOCK | fileMode, 0) == 0, place);
}

void DiskTree::chain(std::string_view relative, int depth, std::string_view name)
{
    folder(relative);
    const std::string step(name);
    Descriptor here(open(path(relative).bytes().c_str(), folderFlags));
    for (int i = 0; i < depth; ++i) {
        require(mkdirat(here.number(), step.c_str(), folderMode) == 0, step);
        here = Descriptor(openat(here.number(), step.c_str(), folderFlags));
        require(here.isOpen(), step);
    }
}

void DiskTree::mode(std::string_view relative, mode_t mode)
{
    const std::string place = path(relative).bytes();
    require(chmod(place.c_str(), mode) == 0, place);
}

void DiskTree::modified(std::string_view relative, std::int64_t seconds)
{
    const std::string place = path(relative).bytes();
    timespec times[2] = {};
    times[0].tv_sec = seconds;
    times[1].tv_sec = seconds;
    require(utimensat(AT_FDCWD, place.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0, place);
}

void DiskTree::remove(std::string_view relative)
{
    removeAll(path(relative).bytes());
}

} // namespace quorvane
