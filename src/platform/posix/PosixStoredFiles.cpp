// SPDX-License-Identifier: MIT
#include "StoredFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace quorvane {
namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

class OpenFolder
{
public:
    explicit OpenFolder(const FilePath& folder)
        : m_descriptor(open(folder.bytes().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {}
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;
    ~OpenFolder()
    {
        if (m_descriptor >= 0) {
            close(m_descriptor);
        }
    }

    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

bool writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return fsync(file) == 0;
}

class PosixStoredFiles final : public StoredFiles
{
public:
    bool makeFolder(const FilePath& folder) override
    {
        const std::string& path = folder.bytes();
        for (std::size_t end = path.find('/', 1); end != path.npos; end = path.find('/', end + 1)) {
            mkdir(path.substr(0, end).c_str(), folderMode);
        }
        struct stat status = {};
        return mkdir(path.c_str(), folderMode) == 0 ||
               (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode));
    }

    bool save(const FilePath& folder, std::string_view name, std::string_view bytes) override
    {
        const OpenFolder open(folder);
        const std::string finalName(name);
        const std::string partialName = finalName + ".partial";
        // What an earlier save was killed in.
        unlinkat(open.descriptor(), partialName.c_str(), 0);
        const int file = openat(open.descriptor(), partialName.c_str(),
                                O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, fileMode);
        if (file < 0) {
            return false;
        }
        bool isSaved = writeAll(file, bytes);
        isSaved = close(file) == 0 && isSaved;
        isSaved = isSaved && renameat(open.descriptor(), partialName.c_str(), open.descriptor(),
                                      finalName.c_str()) == 0;
        if (!isSaved) {
            unlinkat(open.descriptor(), partialName.c_str(), 0);
        }
        // The new name is on the disk when the folder that holds it is.
        return isSaved && fsync(open.descriptor()) == 0;
    }

    bool remove(const FilePath& folder, std::string_view name) override
    {
        const OpenFolder open(folder);
        const std::string entry(name);
        struct stat status = {};
        return fstatat(open.descriptor(), entry.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
               S_ISREG(status.st_mode) && unlinkat(open.descriptor(), entry.c_str(), 0) == 0;
    }
};

} // namespace

StoredFiles& StoredFiles::system()
{
    static PosixStoredFiles files;
    return files;
}

} // namespace quorvane
