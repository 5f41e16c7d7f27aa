// SPDX-License-Identifier: MIT
#include "Trash.h"

#include <gio/gio.h>

#include <memory>

namespace quorvane {
namespace {

struct Unreference
{
    void operator()(GFile* file) const { g_object_unref(file); }
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
};

} // namespace

Trash& Trash::system()
{
    static GioTrash trash;
    return trash;
}

} // namespace quorvane
