// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "TagRule.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    const std::string_view json(reinterpret_cast<const char*>(data), size);
    const auto first = decodeTagRules(json);
    if (!first) {
        return 0;
    }
    const QByteArray written = encodeTagRules(*first);
    const auto second = decodeTagRules(
        std::string_view(written.constData(), static_cast<std::size_t>(written.size())));
    require(second == first, "rules that were read are stored and read again as they are");
    require(encodeTagRules(*second) == written, "the stored form is one");
    return 0;
}
