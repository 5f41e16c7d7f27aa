// SPDX-License-Identifier: MIT
#include "SystemMonitor.h"

#include "ByteFormatter.h"
#include "FileSystemCalls.h"

#include <algorithm>
#include <limits>

namespace quorvane {
namespace {

QString formatted(std::uint64_t bytes)
{
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    return ByteFormatter::string(static_cast<std::int64_t>(std::min(bytes, most)), 1);
}

} // namespace

double DriveSample::usedPercent() const
{
    return totalBytes == 0
               ? 0
               : static_cast<double>(usedBytes()) / static_cast<double>(totalBytes) * 100;
}

QString DriveSample::formattedFree() const
{
    return formatted(freeBytes);
}

QString DriveSample::formattedTotal() const
{
    return formatted(totalBytes);
}

DriveSample SystemMonitor::driveUsage(FileSystemCalls& calls, const FilePath& url)
{
    VolumeCapacity capacity;
    if (!calls.volumeCapacity(url.parent().bytes().c_str(), capacity)) {
        return {};
    }
    return {capacity.totalBytes, capacity.availableBytes};
}

} // namespace quorvane
