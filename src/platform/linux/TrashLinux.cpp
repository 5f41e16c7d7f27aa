// SPDX-License-Identifier: MIT
#include "Trash.h"

#include <gio/gio.h>
#include <sys/statvfs.h>

#include <memory>

namespace quorvane {
namespace {

struct Unreference
{
    void operator()(GFile* file) const { g_object_unref(file); }
    void operator()(GFileInfo* info) const { g_object_unref(info); }
    void operator()(GError* error) const { g_error_free(error); }
};

Trash::Outcome outcomeOf(const GError& error)
{
    if (error.domain != g_io_error_quark()) {
        return Trash::Outcome::failed;
    }
    switch (error.code) {
    case G_IO_ERROR_NOT_FOUND:
        return Trash::Outcome::missing;
    case G_IO_ERROR_PERMISSION_DENIED:
        return Trash::Outcome::notPermitted;
    case G_IO_ERROR_READ_ONLY:
        return Trash::Outcome::readOnly;
    case G_IO_ERROR_NOT_SUPPORTED:
        return Trash::Outcome::notOfferedHere;
    default:
        return Trash::Outcome::failed;
    }
}

bool isOnReadOnlyVolume(const FilePath& path)
{
    struct statvfs volume = {};
    return statvfs(path.parent().bytes().c_str(), &volume) == 0 && (volume.f_flag & ST_RDONLY) != 0;
}

/// The Trash of freedesktop.org, through GIO: below the user's data folder for what lies on the
/// home's volume, else in a folder at the top of the entry's own volume.
class GioTrash final : public Trash
{
public:
    Outcome moveToTrash(const FilePath& path) override
    {
        if (path.isEmpty()) {
            // GIO would take the working folder for it.
            return Outcome::missing;
        }
        const std::unique_ptr<GFile, Unreference> file(g_file_new_for_path(path.bytes().c_str()));
        GError* rawError = nullptr;
        if (g_file_trash(file.get(), nullptr, &rawError) != 0) {
            return Outcome::moved;
        }
        const std::unique_ptr<GError, Unreference> error(rawError);
        return error ? outcomeOf(*error) : Outcome::failed;
    }

    std::optional<Outcome> obstacleTo(const FilePath& path) override
    {
        const std::unique_ptr<GFile, Unreference> file(g_file_new_for_path(path.bytes().c_str()));
        GError* rawError = nullptr;
        const std::unique_ptr<GFileInfo, Unreference> info(g_file_query_info(
            file.get(), G_FILE_ATTRIBUTE_ACCESS_CAN_DELETE "," G_FILE_ATTRIBUTE_ACCESS_CAN_TRASH,
            G_FILE_QUERY_INFO_NOFOLLOW_SYMLINKS, nullptr, &rawError));
        const std::unique_ptr<GError, Unreference> error(rawError);
        if (!info) {
            return error ? outcomeOf(*error) : Outcome::failed;
        }
        const auto isDenied = [&info](const char* attribute) {
            return g_file_info_has_attribute(info.get(), attribute) != 0 &&
                   g_file_info_get_attribute_boolean(info.get(), attribute) == 0;
        };
        if (isDenied(G_FILE_ATTRIBUTE_ACCESS_CAN_DELETE)) {
            return isOnReadOnlyVolume(path) ? Outcome::readOnly : Outcome::notPermitted;
        }
        return isDenied(G_FILE_ATTRIBUTE_ACCESS_CAN_TRASH) ? std::optional(Outcome::notOfferedHere)
                                                           : std::nullopt;
    }
};

} // namespace

Trash& Trash::system()
{
    static GioTrash trash;
    return trash;
}

} // namespace quorvane
