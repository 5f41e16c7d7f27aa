// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "SteamLibraries.h"

#include <set>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    std::set<FilePath> seen;
    for (const FilePath& library : steamLibrariesIn(text)) {
        const std::string& path = library.bytes();
        require(path.starts_with('/'), "a library's path is absolute");
        require((path + '/').find("/../") == std::string::npos, "no library leads upwards");
        require(seen.insert(library).second, "a library is told once");
    }
    return 0;
}
