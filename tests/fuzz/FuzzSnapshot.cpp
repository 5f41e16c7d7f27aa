// SPDX-License-Identifier: MIT
#include "FuzzTarget.h"

#include "ScanSnapshot.h"
#include "SnapshotDiff.h"

#include <QLocale>

#include <cmath>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace quorvane;
    const std::string_view json(reinterpret_cast<const char*>(data), size);
    const auto first = decodeSnapshot(json);
    const auto heading = decodeSnapshotHeading(json);
    require(first.has_value() == heading.has_value(), "both readers judge a text alike");
    if (!first) {
        return 0;
    }
    require(static_cast<const SnapshotHeading&>(*first) == *heading, "both read the same heading");
    require(std::isfinite(first->date), "a date is a number");
    require(!first->formattedDate(QLocale::c()).isEmpty(), "a date can be shown");
    require(decodeSnapshot(encodeSnapshot(*first)) == first, "a snapshot survives its storing");
    const auto rows = diff(*first, ScanSnapshot());
    for (const SnapshotDiff& row : rows) {
        require(row.deltaBytes() <= 0 && !row.formattedDelta().isEmpty(), "a row can be shown");
    }
    require(netChange(rows) <= 0, "the net change is a number");
    return 0;
}
