// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSize>

class QIODevice;

namespace quorvane {

/// A picture as a preview shows it. A plain value.
struct Picture
{
    /// Null when there is none to show.
    QImage image;
    /// Pixels of the whole picture, turned as it is shown.
    QSize fullSize;
};

/// Most pixels of a picture whose decoder has to hold all of them at once.
constexpr qint64 maxPicturePixels = 200'000'000;

/// Reads the picture in any format that Qt or libheif knows: turned and mirrored as its metadata
/// says, in sRGB, and scaled into the room (device pixels) while it is decoded where the format
/// allows that, so that a huge picture takes little memory. A drawing without pixels of its own
/// fills the room. An empty result for what is no picture, for a broken one and for one beyond the
/// bounds. Waits for the disk: any thread but the main one.
Picture readPicture(QIODevice& device, const QSize& room);

/// The picture no larger than the room, and in sRGB.
QImage fitted(const QImage& image, const QSize& room);

} // namespace quorvane
