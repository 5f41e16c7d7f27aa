// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <string_view>

namespace quorvane {

/// Bytes to text. Units step by 1024 and read B, KB, MB, GB, TB, PB.
struct ByteFormatter
{
    /// "512 B" below 1024 and for negative numbers; above, fixed notation with fractionDigits (0 to
    /// 20) digits and a point. There is no rounding before the unit is chosen: 1048575 is "1024.0
    /// KB".
    static QString string(std::int64_t bytes, int fractionDigits = 1);
};

/// Text to bytes.
struct ByteSize
{
    /// "1.5 gb" gives 1610612736; nothing when no number leads the text or the unit is unknown. A
    /// product that does not fit into 64 bits ends the program.
    static std::optional<std::int64_t> parse(std::string_view text);

    /// What a text that is still being typed stands for.
    struct Reading
    {
        std::optional<std::int64_t> bytes; ///< absent for a text that is no size
        bool isTooLarge = false;           ///< a size, but beyond 64 bits
    };
    /// The same as parse() for a text of any size: none ends the program.
    static Reading read(std::string_view text);
};

} // namespace quorvane
