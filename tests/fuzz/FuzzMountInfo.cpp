// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "MountTable.h"

#include <algorithm>
#include <string>
#include <string_view>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    const std::string input(data, data + size);
    const MountTable table = MountTable::fromMountInfo(input);
    const auto lines = static_cast<std::size_t>(std::count(input.begin(), input.end(), '\n')) + 1;
    require(table.mountPoints().size() <= lines, "a line gives one mount point at most");
    require(std::is_sorted(table.mountPoints().begin(), table.mountPoints().end()), "sorted");
    for (const FilePath& point : table.mountPoints()) {
        require(point.bytes().starts_with('/'), "a mount point is an absolute path");
        require(table.isMountPoint(point), "a mount point is found");
        require(point.bytes() == "/" || table.hasMountBelow(FilePath("/")), "and lies below /");
    }
    // Any name comes back from the form in which the kernel writes it.
    std::string escaped = "/";
    std::string plain = "/";
    for (const char c : input.substr(0, 255)) {
        plain += c;
        if (c == ' ' || c == '\t' || c == '\n' || c == '\\') {
            const auto byte = static_cast<unsigned char>(c);
            escaped += {'\\', static_cast<char>('0' + byte / 64),
                        static_cast<char>('0' + byte / 8 % 8), static_cast<char>('0' + byte % 8)};
        } else {
            escaped += c;
        }
    }
    const MountTable one = MountTable::fromMountInfo("9 1 0:9 / " + escaped + " rw - t s rw\n");
    require(one.mountPoints().size() == 1 && one.isMountPoint(FilePath(plain)),
            "a name survives its escapes");
    return 0;
}
