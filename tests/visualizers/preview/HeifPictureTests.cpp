// SPDX-License-Identifier: MIT
#include "HeifPicture.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QColor>

#include <libheif/heif.h>

#include <cstddef>
#include <cstdint>

namespace quorvane {
namespace {

heif_error append(heif_context*, const void* data, std::size_t size, void* user)
{
    static_cast<QByteArray*>(user)->append(static_cast<const char*>(data),
                                           static_cast<qsizetype>(size));
    return {heif_error_Ok, heif_suberror_Unspecified, ""};
}

/// A HEIC file: the left half red, the right one blue, then turned or mirrored by its metadata.
QByteArray encoded(int width, int height, heif_orientation orientation = heif_orientation_normal)
{
    heif_image* image = nullptr;
    heif_image_create(width, height, heif_colorspace_RGB, heif_chroma_interleaved_RGB, &image);
    heif_image_add_plane(image, heif_channel_interleaved, width, height, 8);
    int stride = 0;
    std::uint8_t* const pixels = heif_image_get_plane(image, heif_channel_interleaved, &stride);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint8_t* const pixel = pixels + y * stride + 3 * x;
            pixel[0] = x < width / 2 ? 255 : 0;
            pixel[1] = 0;
            pixel[2] = x < width / 2 ? 0 : 255;
        }
    }
    heif_context* const context = heif_context_alloc();
    heif_encoder* encoder = nullptr;
    EXPECT_EQ(heif_context_get_encoder_for_format(context, heif_compression_HEVC, &encoder).code,
              heif_error_Ok)
        << "the system's libheif has no encoder";
    QByteArray bytes;
    if (encoder != nullptr) {
        heif_encoding_options* const options = heif_encoding_options_alloc();
        options->image_orientation = orientation;
        heif_context_encode_image(context, image, encoder, options, nullptr);
        heif_writer writer{1, append};
        heif_context_write(context, &writer, &bytes);
        heif_encoding_options_free(options);
        heif_encoder_release(encoder);
    }
    heif_context_free(context);
    heif_image_release(image);
    return bytes;
}

Picture read(QByteArray bytes, const QSize& room = QSize(1000, 1000))
{
    QBuffer device(&bytes);
    device.open(QIODevice::ReadOnly);
    return readPicture(device, room);
}

bool isRed(const QColor& color)
{
    return color.red() > 200 && color.blue() < 60;
}

bool isBlue(const QColor& color)
{
    return color.blue() > 200 && color.red() < 60;
}

TEST(HeifPictureTests, ReadsAPictureAsItIs)
{
    const Picture picture = read(encoded(64, 32));
    ASSERT_EQ(picture.image.size(), QSize(64, 32));
    EXPECT_EQ(picture.fullSize, QSize(64, 32));
    EXPECT_TRUE(isRed(picture.image.pixelColor(8, 16)));
    EXPECT_TRUE(isBlue(picture.image.pixelColor(56, 16)));
}

TEST(HeifPictureTests, ScalesIntoTheRoom)
{
    const Picture picture = read(encoded(256, 128), QSize(100, 100));
    EXPECT_EQ(picture.image.size(), QSize(100, 50));
    EXPECT_EQ(picture.fullSize, QSize(256, 128));
}

TEST(HeifPictureTests, TurnsAndMirrorsAsTheMetadataSays)
{
    // Turned clockwise, what was on the left is at the top.
    const Picture turned = read(encoded(64, 32, heif_orientation_rotate_90_cw));
    ASSERT_EQ(turned.image.size(), QSize(32, 64));
    EXPECT_EQ(turned.fullSize, QSize(32, 64));
    EXPECT_TRUE(isRed(turned.image.pixelColor(16, 8)));
    EXPECT_TRUE(isBlue(turned.image.pixelColor(16, 56)));
    const Picture mirrored = read(encoded(64, 32, heif_orientation_flip_horizontally));
    ASSERT_EQ(mirrored.image.size(), QSize(64, 32));
    EXPECT_TRUE(isBlue(mirrored.image.pixelColor(8, 16)));
}

TEST(HeifPictureTests, ABrokenPictureIsNone)
{
    const QByteArray whole = encoded(64, 32);
    ASSERT_FALSE(whole.isEmpty());
    for (const qsizetype length : {qsizetype{12}, qsizetype{40}, whole.size() / 2}) {
        EXPECT_TRUE(read(whole.left(length)).image.isNull()) << length;
    }
    QByteArray damaged = whole;
    for (qsizetype i = 60; i < damaged.size(); i += 7) {
        damaged[i] = static_cast<char>(~damaged[i]);
    }
    read(damaged); // whatever comes of it, the program goes on
}

TEST(HeifPictureTests, OtherFilesAreNoHeif)
{
    QByteArray film("\0\0\0\x18"
                    "ftypmp42\0\0\0\0mp42isom",
                    24);
    QBuffer device(&film);
    device.open(QIODevice::ReadOnly);
    EXPECT_FALSE(isHeif(device));
    QByteArray nothing;
    QBuffer empty(&nothing);
    empty.open(QIODevice::ReadOnly);
    EXPECT_FALSE(isHeif(empty));
}

} // namespace
} // namespace quorvane
