// SPDX-License-Identifier: MIT
#include "PreviewFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

bool PreviewFile::openRegular(const FilePath& path)
{
    const int descriptor = ::open(path.bytes().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status
    {};
    if (descriptor < 0) {
        return false;
    }
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        !open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
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
