// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "Text.h"

#include <QString>

#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    const std::string input(data, data + size);

    const bool isWellFormed = isUtf8(input);
    require((displayText(input).toStdString() == input) == isWellFormed,
            "well-formed text and no other is shown byte for byte");
    const std::string lower = lowercased(input);
    require(isUtf8(lower) == isWellFormed, "lowering keeps text well or ill formed");
    require(isWellFormed || lower.size() == input.size(), "lowering ill-formed bytes keeps each");
    return 0;
}
