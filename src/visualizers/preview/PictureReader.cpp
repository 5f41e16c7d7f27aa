// SPDX-License-Identifier: MIT
#include "PictureReader.h"

#include "DrawingReader.h"
#include "HeifPicture.h"

#include <QColorSpace>
#include <QIODevice>
#include <QImageReader>

namespace quorvane {
namespace {

bool isLarger(const QSize& size, const QSize& room)
{
    return size.width() > room.width() || size.height() > room.height();
}

/// Megabytes that one picture may take, for the whole program: pictures of most formats are held
/// whole before they are scaled.
constexpr int maxMegabytes = 512;

void allowLargePictures()
{
    static const bool isSet = [] {
        QImageReader::setAllocationLimit(maxMegabytes);
        return true;
    }();
    Q_UNUSED(isSet);
}

/// Held line by line while it is scaled; Qt's own bound on memory guards what cannot be.
bool isReadByLines(const QByteArray& format)
{
    return format == "png";
}

Picture readWithQt(QIODevice& device, const QSize& room)
{
    allowLargePictures();
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!reader.canRead()) {
        return {};
    }
    const QByteArray format = reader.format();
    if (format.startsWith("svg")) {
        return device.seek(0) ? readDrawing(device, room) : Picture{};
    }
    QSize size = reader.size();
    if (size.isValid()) {
        const qint64 pixels = qint64{size.width()} * size.height();
        if (!isReadByLines(format) && pixels > maxPicturePixels) {
            return {};
        }
        const bool isTurned =
            reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
        const QSize place = isTurned ? room.transposed() : room;
        if (isLarger(size, place)) {
            reader.setScaledSize(size.scaled(place, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
        }
        if (isTurned) {
            size.transpose();
        }
    }
    const QImage image = reader.read();
    return {fitted(image, room), size.isValid() ? size : image.size()};
}

} // namespace

QImage fitted(const QImage& image, const QSize& room)
{
    if (image.isNull()) {
        return {};
    }
    QImage result = image;
    if (isLarger(image.size(), room)) {
        const QSize size = image.size().scaled(room, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
        result = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    const QColorSpace space = result.colorSpace();
    if (space.isValid() && space != QColorSpace(QColorSpace::SRgb)) {
        result.convertToColorSpace(QColorSpace::SRgb);
    }
    return result;
}

Picture readPicture(QIODevice& device, const QSize& room)
{
    if (isHeif(device)) {
        return readHeif(device, room);
    }
    return device.seek(0) ? readWithQt(device, room) : Picture{};
}

} // namespace quorvane
