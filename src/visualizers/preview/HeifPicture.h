// SPDX-License-Identifier: MIT
#pragma once

#include "PictureReader.h"

namespace quorvane {

/// Most pixels of a HEIF picture; of a larger one the thumbnail is taken, if it has one.
constexpr qint64 maxHeifPixels = 64'000'000;

/// Whether the device begins like a picture that libheif reads (HEIC, AVIF). Moves the device.
bool isHeif(QIODevice& device);

/// The chief picture of a HEIF file, as readPicture() does it. libheif applies its turning and
/// mirroring.
Picture readHeif(QIODevice& device, const QSize& room);

} // namespace quorvane
