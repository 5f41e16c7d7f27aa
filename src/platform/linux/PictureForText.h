// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <leptonica/allheaders.h>

#include <memory>

namespace quorvane {

struct DestroyPixels
{
    void operator()(Pix* pixels) const { pixDestroy(&pixels); }
};

/// A picture made ready for text recognition: eight bits of grey, dark text on a light ground.
struct PictureForText
{
    std::unique_ptr<Pix, DestroyPixels> pixels; ///< absent for what is no picture
    double scale = 1;                           ///< its size, measured by the file's picture
};

/// Reads PNG, JPEG, TIFF, GIF (each file's first picture) through leptonica, HEIC and HEIF through
/// libheif. Any thread. A dark picture is inverted, a small one doubled. A file of more than 512
/// MiB or a picture of more than 100 million pixels is taken for none.
PictureForText readPictureForText(const FilePath& file);

} // namespace quorvane
