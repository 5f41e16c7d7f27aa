// SPDX-License-Identifier: MIT
#include "PreviewFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace quorvane {
namespace {

constexpr int readingFlags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

bool isRegular(const struct stat& status)
{
    return S_ISREG(status.st_mode);
}

#ifdef O_PATH

/// Takes hold of the entry without opening it and looks what it is; only then is it opened, and
/// through the hold, so that nothing can have taken its place. Returns a descriptor or -1.
int openRegularFile(const char* path)
{
    const int entry = ::open(path, O_PATH | O_CLOEXEC);
    if (entry < 0) {
        return -1;
    }
    struct stat status
    {};
    int file = -1;
    if (::fstat(entry, &status) == 0 && isRegular(status)) {
        file = ::open(("/proc/self/fd/" + std::to_string(entry)).c_str(), readingFlags);
    }
    ::close(entry);
    return file;
}

#else

/// Looks what the entry is before it opens it, and afterwards whether it is the same one still.
/// Returns a descriptor or -1.
int openRegularFile(const char* path)
{
    struct stat before
    {};
    if (::stat(path, &before) != 0 || !isRegular(before)) {
        return -1;
    }
    const int file = ::open(path, readingFlags);
    struct stat opened
    {};
    if (file >= 0 && (::fstat(file, &opened) != 0 || !isRegular(opened) ||
                      opened.st_dev != before.st_dev || opened.st_ino != before.st_ino)) {
        ::close(file);
        return -1;
    }
    return file;
}

#endif

} // namespace

bool PreviewFile::openRegular(const FilePath& path)
{
    const int descriptor = openRegularFile(path.bytes().c_str());
    if (descriptor < 0) {
        return false;
    }
    if (!open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return false;
    }
    return true;
}

qint64 PreviewFile::readData(char* data, qint64 most)
{
    if (m_stop != nullptr && m_stop->get()) {
        return -1;
    }
    return QFile::readData(data, most);
}

} // namespace quorvane
