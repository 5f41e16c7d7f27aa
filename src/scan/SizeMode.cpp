// SPDX-License-Identifier: MIT
#include "SizeMode.h"

#include "ByteFormatter.h"
#include "FileNode.h"

namespace quorvane {

std::string_view rawValue(SizeMode mode)
{
    return mode == SizeMode::disk ? "disk" : "logical";
}

std::optional<SizeMode> sizeModeFromRawValue(std::string_view text)
{
    for (const SizeMode mode : allSizeModes) {
        if (rawValue(mode) == text) {
            return mode;
        }
    }
    return std::nullopt;
}

QString title(SizeMode mode)
{
    return mode == SizeMode::disk ? QStringLiteral("Size on disk") : QStringLiteral("Logical size");
}

std::int64_t weightBasis(const FileNode& node, SizeMode mode)
{
    return mode == SizeMode::disk ? node.scannedBytesOnDisk() : node.scannedBytes();
}

QString basisLabel(const FileNode& node, SizeMode mode)
{
    return ByteFormatter::string(weightBasis(node, mode));
}

} // namespace quorvane
