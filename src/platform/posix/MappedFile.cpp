// SPDX-License-Identifier: MIT
#include "MappedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace quorvane {
namespace {

/// A descriptor that is closed at the end.
class Descriptor
{
public:
    explicit Descriptor(int number)
        : m_number(number)
    {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (m_number >= 0) {
            close(m_number);
        }
    }

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }

private:
    int m_number;
};

} // namespace

std::optional<MappedFile> MappedFile::open(const FilePath& file)
{
    const Descriptor opened(
        ::open(file.bytes().c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!opened.isOpen() || fstat(opened.number(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_uid != geteuid()) {
        return std::nullopt;
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size == 0) {
        return MappedFile(std::span<const std::byte>());
    }
    const void* const start = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, opened.number(), 0);
    if (start == MAP_FAILED) {
        return std::nullopt;
    }
    return MappedFile({static_cast<const std::byte*>(start), size});
}

MappedFile::MappedFile(MappedFile&& other) noexcept
    : m_bytes(std::exchange(other.m_bytes, {}))
{}

MappedFile& MappedFile::operator=(MappedFile&& other) noexcept
{
    std::swap(m_bytes, other.m_bytes);
    return *this;
}

MappedFile::~MappedFile()
{
    if (!m_bytes.empty()) {
        munmap(const_cast<std::byte*>(m_bytes.data()), m_bytes.size());
    }
}

} // namespace quorvane
