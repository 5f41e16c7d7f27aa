// SPDX-License-Identifier: MIT
#include "TrashFolders.h"

#include "MountTable.h"
#include "PinnedEntry.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

constexpr std::string_view userPrefix = ".Trash-";

bool isNumber(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

FilePath pathOf(const QString& path)
{
    return FilePath(QFile::encodeName(path).toStdString());
}

} // namespace

TrashFolders::TrashFolders(const FilePath& dataHome, const FilePath& home,
                           std::optional<std::vector<FilePath>> mountPoints)
    : m_homeTrashes{dataHome.appending("Trash"), home.appending(".Trash")}
    , m_mountPoints(std::move(mountPoints))
{
    if (m_mountPoints) {
        std::sort(m_mountPoints->begin(), m_mountPoints->end());
    }
}

TrashFolders TrashFolders::ofSystem()
{
    const std::optional<MountTable> mounts = MountTable::read();
    const auto real = [](const FilePath& folder) {
        return PinnedEntry::realPathOf(folder).value_or(folder);
    };
    return {real(pathOf(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))),
            real(pathOf(QDir::homePath())),
            mounts ? std::optional(mounts->mountPoints()) : std::nullopt};
}

bool TrashFolders::mayBeTrash(std::string_view name)
{
    return name == "Trash" || name == ".Trash" || name == ".Trashes" ||
           name.starts_with(userPrefix) || isNumber(name);
}

bool TrashFolders::isTrash(const FilePath& folder) const
{
    const std::string_view name = folder.lastComponent();
    const FilePath parent = folder.parent();
    if (name == "Trash") {
        // Also that of another user's home, or of a home that is mounted elsewhere.
        constexpr std::string_view usual = "/.local/share";
        return std::string_view(parent.bytes()).ends_with(usual) || folder == m_homeTrashes[0];
    }
    if (name == ".Trash") {
        return folder == m_homeTrashes[1];
    }
    if (name == ".Trashes" ||
        (name.starts_with(userPrefix) && isNumber(name.substr(userPrefix.size())))) {
        return isMountTop(parent);
    }
    return isNumber(name) && parent.lastComponent() == ".Trash" && isMountTop(parent.parent());
}

bool TrashFolders::isInTrash(const FilePath& path) const
{
    for (FilePath folder = path; !folder.lastComponent().empty(); folder = folder.parent()) {
        if (isTrash(folder)) {
            return true;
        }
    }
    return false;
}

bool TrashFolders::isMountTop(const FilePath& folder) const
{
    return !m_mountPoints ||
           std::binary_search(m_mountPoints->begin(), m_mountPoints->end(), folder);
}

} // namespace quorvane
