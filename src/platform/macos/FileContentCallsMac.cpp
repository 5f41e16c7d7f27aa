// SPDX-License-Identifier: MIT
#include "PosixFileContentCalls.h"

#include <fcntl.h>

#include <algorithm>
#include <limits>

namespace quorvane {
namespace {

class MacFileContentCalls final : public PosixFileContentCalls
{
public:
    void willRead(int file, std::int64_t position, std::int64_t bytes) override
    {
        radvisory range = {};
        range.ra_offset = position;
        range.ra_count =
            static_cast<int>(std::min<std::int64_t>(bytes, std::numeric_limits<int>::max()));
        fcntl(file, F_RDADVISE, &range);
    }

    void willReadParts(int file) override { fcntl(file, F_RDAHEAD, 0); }

    void willReadOnce(int file) override { fcntl(file, F_RDAHEAD, 1); }
};

} // namespace

FileContentCalls& FileContentCalls::system()
{
    static MacFileContentCalls calls;
    return calls;
}

} // namespace quorvane
