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
    std::vector<RemoteMount> remote;
    for (int i = 0; i < count; ++i) {
        const struct statfs& volume = volumes[static_cast<std::size_t>(i)];
        points.emplace_back(volume.f_mntonname);
        if ((volume.f_flags & MNT_LOCAL) == 0) {
            remote.push_back({points.back(), static_cast<std::uint64_t>(volume.f_fsid.val[0])});
        }
    }
    return MountTable(std::move(points), std::move(remote));
}

} // namespace quorvane
