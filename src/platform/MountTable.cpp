// SPDX-License-Identifier: MIT
#include "MountTable.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace quorvane {
namespace {

/// Of a line: ID, parent, device, root of the mount, mount point, …
constexpr int fieldsBeforeMountPoint = 4;

bool isOctal(char c)
{
    return c >= '0' && c <= '7';
}

std::string withoutOctalEscapes(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape = text[i] == '\\' && i + 3 < text.size() && text[i + 1] <= '3' &&
                              isOctal(text[i + 1]) && isOctal(text[i + 2]) && isOctal(text[i + 3]);
        if (!isEscape) {
            bytes.push_back(text[i]);
            continue;
        }
        const int value = (text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0');
        bytes.push_back(static_cast<char>(value));
        i += 3;
    }
    return bytes;
}

std::string_view mountPointField(std::string_view line)
{
    for (int i = 0; i < fieldsBeforeMountPoint; ++i) {
        const std::size_t space = line.find(' ');
        if (space == std::string_view::npos) {
            return {};
        }
        line.remove_prefix(space + 1);
    }
    return line.substr(0, line.find(' '));
}

} // namespace

MountTable::MountTable(std::vector<FilePath> mountPoints)
    : m_mountPoints(std::move(mountPoints))
{
    std::sort(m_mountPoints.begin(), m_mountPoints.end());
    m_mountPoints.erase(std::unique(m_mountPoints.begin(), m_mountPoints.end()),
                        m_mountPoints.end());
}

MountTable MountTable::fromMountInfo(std::string_view text)
{
    std::vector<FilePath> points;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view field = mountPointField(text.substr(0, end));
        if (field.starts_with('/')) {
            points.emplace_back(withoutOctalEscapes(field));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return MountTable(std::move(points));
}

bool MountTable::isMountPoint(const FilePath& path) const
{
    return std::binary_search(m_mountPoints.begin(), m_mountPoints.end(), path);
}

bool MountTable::hasMountBelow(const FilePath& path) const
{
    return std::any_of(m_mountPoints.begin(), m_mountPoints.end(), [&path](const FilePath& point) {
        return path.holds(point) && point != path;
    });
}

} // namespace quorvane
