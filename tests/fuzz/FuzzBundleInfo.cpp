// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "BundleInfo.h"

#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    const std::string list(data, data + size);
    const BundleInfo first = readBundleInfo(list);
    const BundleInfo second = readBundleInfo(list);
    require(first.identifier == second.identifier && first.iconFile == second.iconFile,
            "one list says one thing");
    return 0;
}
