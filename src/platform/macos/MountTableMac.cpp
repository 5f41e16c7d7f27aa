// SPDX-License-Identifier: MIT
#include "MountTable.h"

#include <sys/mount.h>
#include <sys/param.h>
#include <sys/ucred.h>

#include <cstddef>
#include <string_view>
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
    std::vector<MountedVolume> mounted;
    for (int i = 0; i < count; ++i) {
        const struct statfs& volume = volumes[static_cast<std::size_t>(i)];
        const std::string_view type(volume.f_fstypename);
        const bool isMadeUp = type == "devfs" || type == "fdesc" || type == "autofs";
        const bool isRemote = (volume.f_flags & MNT_LOCAL) == 0;
        mounted.push_back({FilePath(volume.f_mntonname),
                           isMadeUp   ? MountKind::kernelMade
                           : isRemote ? MountKind::remote
                                      : MountKind::local,
                           static_cast<std::uint64_t>(volume.f_fsid.val[0])});
    }
    return MountTable(std::move(mounted));
}

} // namespace quorvane
