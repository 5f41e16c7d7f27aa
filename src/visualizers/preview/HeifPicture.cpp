// SPDX-License-Identifier: MIT
#include "HeifPicture.h"

#include <QColorSpace>
#include <QIODevice>

#include <libheif/heif.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace quorvane {
namespace {

/// As many bytes as name the kinds of a file.
constexpr qint64 headBytes = 64;
/// Longest side that the decoder may make room for, whatever the file claims.
constexpr int maxSide = 16384;
constexpr std::size_t maxProfileBytes = 4 * 1024 * 1024;

template<auto release>
struct Release
{
    template<class T>
    void operator()(T* thing) const
    {
        release(thing);
    }
};

using Context = std::unique_ptr<heif_context, Release<heif_context_free>>;
using Handle = std::unique_ptr<heif_image_handle, Release<heif_image_handle_release>>;
using Options = std::unique_ptr<heif_decoding_options, Release<heif_decoding_options_free>>;
using Decoded = std::unique_ptr<heif_image, Release<heif_image_release>>;

bool isFine(const heif_error& error)
{
    return error.code == heif_error_Ok;
}

QIODevice& deviceOf(void* user)
{
    return *static_cast<QIODevice*>(user);
}

int64_t position(void* user)
{
    return deviceOf(user).pos();
}

int readBytes(void* data, std::size_t size, void* user)
{
    const auto wanted = static_cast<qint64>(size);
    return deviceOf(user).read(static_cast<char*>(data), wanted) == wanted ? 0 : 1;
}

int seekTo(int64_t place, void* user)
{
    return place >= 0 && deviceOf(user).seek(place) ? 0 : 1;
}

heif_reader_grow_status waitForSize(int64_t size, void* user)
{
    return size <= deviceOf(user).size() ? heif_reader_grow_status_size_reached
                                         : heif_reader_grow_status_size_beyond_eof;
}

constexpr heif_reader deviceReader{1, position, readBytes, seekTo, waitForSize};

QSize sizeOf(const heif_image_handle& handle)
{
    return {heif_image_handle_get_width(&handle), heif_image_handle_get_height(&handle)};
}

bool isWithinBounds(const QSize& size)
{
    return !size.isEmpty() && qint64{size.width()} * size.height() <= maxHeifPixels;
}

Handle thumbnailOf(const heif_image_handle& whole)
{
    heif_item_id id = 0;
    heif_image_handle* thumbnail = nullptr;
    if (heif_image_handle_get_list_of_thumbnail_IDs(&whole, &id, 1) == 1 &&
        isFine(heif_image_handle_get_thumbnail(&whole, id, &thumbnail))) {
        return Handle(thumbnail);
    }
    return nullptr;
}

QColorSpace colorSpaceOf(const heif_image_handle& handle)
{
    const std::size_t size = heif_image_handle_get_raw_color_profile_size(&handle);
    if (size == 0 || size > maxProfileBytes) {
        return {};
    }
    QByteArray profile(static_cast<qsizetype>(size), '\0');
    if (!isFine(heif_image_handle_get_raw_color_profile(&handle, profile.data()))) {
        return {};
    }
    return QColorSpace::fromIccProfile(profile);
}

QImage::Format formatOf(const heif_image_handle& handle)
{
    if (heif_image_handle_has_alpha_channel(&handle) == 0) {
        return QImage::Format_RGB888;
    }
    return heif_image_handle_is_premultiplied_alpha(&handle) != 0
               ? QImage::Format_RGBA8888_Premultiplied
               : QImage::Format_RGBA8888;
}

QImage decode(const heif_image_handle& handle, const QSize& room)
{
    const Options options(heif_decoding_options_alloc());
    if (!options) {
        return {};
    }
    options->convert_hdr_to_8bit = 1;
    const QImage::Format format = formatOf(handle);
    heif_image* raw = nullptr;
    const heif_error error =
        heif_decode_image(&handle, &raw, heif_colorspace_RGB,
                          format == QImage::Format_RGB888 ? heif_chroma_interleaved_RGB
                                                          : heif_chroma_interleaved_RGBA,
                          options.get());
    const Decoded decoded(raw);
    if (!isFine(error) || !decoded) {
        return {};
    }
    int stride = 0;
    const std::uint8_t* const pixels =
        heif_image_get_plane_readonly(decoded.get(), heif_channel_interleaved, &stride);
    if (pixels == nullptr) {
        return {};
    }
    QImage image(pixels, heif_image_get_width(decoded.get(), heif_channel_interleaved),
                 heif_image_get_height(decoded.get(), heif_channel_interleaved), stride, format);
    image.setColorSpace(colorSpaceOf(handle));
    // The pixels go with the decoded picture.
    return fitted(image, room).copy();
}

} // namespace

bool isHeif(QIODevice& device)
{
    if (!device.seek(0)) {
        return false;
    }
    const QByteArray head = device.read(headBytes);
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(head.constData());
    return heif_check_filetype(bytes, static_cast<int>(head.size())) == heif_filetype_yes_supported;
}

Picture readHeif(QIODevice& device, const QSize& room)
{
    const Context context(heif_context_alloc());
    if (!context || !device.seek(0)) {
        return {};
    }
    heif_context_set_maximum_image_size_limit(context.get(), maxSide);
    heif_image_handle* raw = nullptr;
    if (!isFine(heif_context_read_from_reader(context.get(), &deviceReader, &device, nullptr)) ||
        !isFine(heif_context_get_primary_image_handle(context.get(), &raw))) {
        return {};
    }
    const Handle whole(raw);
    const QSize fullSize = sizeOf(*whole);
    if (isWithinBounds(fullSize)) {
        return {decode(*whole, room), fullSize};
    }
    const Handle thumbnail = thumbnailOf(*whole);
    if (!thumbnail || !isWithinBounds(sizeOf(*thumbnail))) {
        return {};
    }
    return {decode(*thumbnail, room), fullSize};
}

} // namespace quorvane
