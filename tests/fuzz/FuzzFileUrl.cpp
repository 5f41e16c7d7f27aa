// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "FilePath.h"

#include <string>
#include <string_view>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    const std::string input(data, data + size);

    const FilePath path = FilePath::fromFileUrl(input);
    if (!path.isEmpty()) {
        require(path.bytes().front() == '/', "a URL gives a whole path");
        require(path.bytes().find('\0') == std::string::npos, "no path holds a NUL");
        require(FilePath::fromFileUrl(path.fileUrl()) == path, "a path survives its URL");
    }

    // Any bytes that a file system can give make a path that comes back from its own URL.
    if (input.find('\0') == std::string::npos) {
        const FilePath named = FilePath("/").appending(input);
        require(FilePath::fromFileUrl(named.fileUrl()) == named, "any name survives its URL");
    }
    return 0;
}
