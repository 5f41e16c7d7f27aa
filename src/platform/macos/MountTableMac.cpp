// SPDX-License-Identifier: MIT
#include "MountTable.h"

#include <sys/mount.h>
#include <sys/param.h>
#include <sys/ucred.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace quorvane {

std::optional<MountTable> MountTable::read()
{
    const int expected = getfsstat(nullptr, 0, MNT_NOWAIT);
    if (expected <= 0) {
        return std::nullopt;
    }
    // Room for what is mounted between the two calls.
    std::vector<struct statfs> volumes(static_cast<std::size_t>(expected) + 16);
    const int count = getfsstat(
        volumes.data(), static_cast<int>(volumes.size() * sizeof(struct statfs)), MNT_NOWAIT);
    if (count <= 0) {
        return std::nullopt;
    }
    std::vector<FilePath> points;
    for (int i = 0; i < count; ++i) {
        points.emplace_back(volumes[static_cast<std::size_t>(i)].f_mntonname);
    }
    return MountTable(std::move(points));
}

} // namespace quorvane
