// SPDX-License-Identifier: MIT
#include "PictureForText.h"

#include <libheif/heif.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quorvane {
namespace {

using Pixels = std::unique_ptr<Pix, DestroyPixels>;
using Bytes = std::vector<std::uint8_t>;

constexpr std::int64_t maxFileBytes = std::int64_t{512} << 20;
constexpr std::int64_t maxPixels = 100'000'000;
/// Mean grey, of 255, below which a picture counts as dark.
constexpr float darkMean = 110;
/// Fewer pixels than an old laptop's screen: cut-outs, with the small letters of menus in them.
constexpr std::int64_t maxDoubledPixels = 1'300'000;

std::optional<Bytes> readWhole(const FilePath& path)
{
    const int file = open(path.bytes().c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
    if (file < 0) {
        return std::nullopt;
    }
    struct stat status = {};
    std::optional<Bytes> bytes;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0 &&
        status.st_size <= maxFileBytes) {
        bytes.emplace(static_cast<std::size_t>(status.st_size));
        std::size_t size = 0;
        while (size < bytes->size()) {
            const ssize_t count = read(file, bytes->data() + size, bytes->size() - size);
            if (count <= 0) {
                break;
            }
            size += static_cast<std::size_t>(count);
        }
        bytes->resize(size);
    }
    close(file);
    return bytes;
}

bool isReasonable(std::int64_t width, std::int64_t height)
{
    return width > 0 && height > 0 && width <= maxPixels && height <= maxPixels / width;
}

/// ISO/IEC 14496-12: a file type box comes first.
bool isIsoMedia(const Bytes& bytes)
{
    return bytes.size() > 12 &&
           std::string_view(reinterpret_cast<const char*>(bytes.data()) + 4, 4) == "ftyp";
}

struct FreeHeif
{
    void operator()(heif_context* context) const { heif_context_free(context); }
    void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
    void operator()(heif_image* image) const { heif_image_release(image); }
};

Pixels greyFrom(const heif_image& image)
{
    int stride = 0;
    const std::uint8_t* const rows =
        heif_image_get_plane_readonly(&image, heif_channel_interleaved, &stride);
    const int width = heif_image_get_width(&image, heif_channel_interleaved);
    const int height = heif_image_get_height(&image, heif_channel_interleaved);
    if (rows == nullptr || !isReasonable(width, height)) {
        return nullptr;
    }
    Pixels pixels(pixCreate(width, height, 8));
    if (!pixels) {
        return nullptr;
    }
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* pixel = rows + static_cast<std::ptrdiff_t>(y) * stride;
        l_uint32* const line =
            pixGetData(pixels.get()) + static_cast<std::ptrdiff_t>(y) * pixGetWpl(pixels.get());
        for (int x = 0; x < width; ++x, pixel += 3) {
            // Luma of ITU-R BT.601, as leptonica weighs colours.
            const auto grey =
                static_cast<l_uint8>((pixel[0] * 77U + pixel[1] * 151U + pixel[2] * 28U) >> 8U);
            SET_DATA_BYTE(line, x, grey);
        }
    }
    return pixels;
}

Pixels readHeif(const Bytes& bytes)
{
    const std::unique_ptr<heif_context, FreeHeif> context(heif_context_alloc());
    heif_image_handle* rawHandle = nullptr;
    if (heif_context_read_from_memory_without_copy(context.get(), bytes.data(), bytes.size(),
                                                   nullptr)
                .code != heif_error_Ok ||
        heif_context_get_primary_image_handle(context.get(), &rawHandle).code != heif_error_Ok) {
        return nullptr;
    }
    const std::unique_ptr<heif_image_handle, FreeHeif> handle(rawHandle);
    if (!isReasonable(heif_image_handle_get_width(handle.get()),
                      heif_image_handle_get_height(handle.get()))) {
        return nullptr;
    }
    heif_image* rawImage = nullptr;
    if (heif_decode_image(handle.get(), &rawImage, heif_colorspace_RGB, heif_chroma_interleaved_RGB,
                          nullptr)
            .code != heif_error_Ok) {
        return nullptr;
    }
    const std::unique_ptr<heif_image, FreeHeif> image(rawImage);
    return greyFrom(*image);
}

Pixels readWithLeptonica(const Bytes& bytes)
{
    l_int32 format = 0;
    l_int32 width = 0;
    l_int32 height = 0;
    if (pixReadHeaderMem(bytes.data(), bytes.size(), &format, &width, &height, nullptr, nullptr,
                         nullptr) == 0 &&
        !isReasonable(width, height)) {
        return nullptr;
    }
    Pixels picture(pixReadMem(bytes.data(), bytes.size()));
    if (!picture || !isReasonable(pixGetWidth(picture.get()), pixGetHeight(picture.get()))) {
        return nullptr;
    }
    if (pixGetDepth(picture.get()) == 32 && pixGetSpp(picture.get()) == 4) {
        // A window's shadow is translucent; on white it disturbs nothing.
        constexpr l_uint32 white = 0xffffff00;
        picture.reset(pixAlphaBlendUniform(picture.get(), white));
    }
    return picture ? Pixels(pixConvertTo8(picture.get(), 0)) : nullptr;
}

/// Of every fourth pixel, which is close enough.
float meanGrey(Pix* grey)
{
    l_float32 mean = 255;
    constexpr l_int32 step = 2;
    pixGetAverageMasked(grey, nullptr, 0, 0, step, L_MEAN_ABSVAL, &mean);
    return mean;
}

} // namespace

PictureForText readPictureForText(const FilePath& file)
{
    setMsgSeverity(L_SEVERITY_NONE);
    const std::optional<Bytes> bytes = readWhole(file);
    if (!bytes || bytes->empty()) {
        return {};
    }
    PictureForText picture;
    picture.pixels = isIsoMedia(*bytes) ? readHeif(*bytes) : readWithLeptonica(*bytes);
    if (!picture.pixels) {
        return {};
    }
    if (meanGrey(picture.pixels.get()) < darkMean) {
        pixInvert(picture.pixels.get(), picture.pixels.get());
    }
    const std::int64_t area =
        std::int64_t{pixGetWidth(picture.pixels.get())} * pixGetHeight(picture.pixels.get());
    if (area <= maxDoubledPixels) {
        if (Pixels doubled{pixScale(picture.pixels.get(), 2, 2)}) {
            picture.pixels = std::move(doubled);
            picture.scale = 2;
        }
    }
    return picture;
}

} // namespace quorvane
