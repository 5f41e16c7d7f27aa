// SPDX-License-Identifier: MIT
#include "PreviewContent.h"

#include <QFile>
#include <QImageReader>
#include <QStringDecoder>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {
namespace {

/// By its bytes, never waiting for the other end of a pipe. False for anything but a regular file.
bool openRegularFile(QFile& file, const FilePath& path)
{
    const int descriptor = ::open(path.bytes().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    struct stat status
    {};
    if (descriptor < 0) {
        return false;
    }
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return false;
    }
    return true;
}

QImage readPicture(QFile& file, const QSize& atMost)
{
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!reader.canRead()) {
        return {};
    }
    const QSize size = reader.size();
    if (size.isValid()) {
        const bool isTurned =
            reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
        const QSize room = isTurned ? atMost.transposed() : atMost;
        if (size.width() > room.width() || size.height() > room.height()) {
            reader.setScaledSize(size.scaled(room, Qt::KeepAspectRatio));
        }
    }
    return reader.read();
}

bool readText(QFile& file, PreviewContent& content)
{
    if (!file.seek(0)) {
        return false;
    }
    const QByteArray bytes = file.read(PreviewContent::textLimit);
    content.isCut = file.size() > bytes.size();
    if (bytes.isEmpty() || bytes.contains('\0')) {
        return false;
    }
    // A character that the limit cuts in two stays in the decoder and is no error.
    QStringDecoder decoder(QStringDecoder::Utf8);
    content.text = decoder(bytes);
    return !decoder.hasError();
}

} // namespace

PreviewContent PreviewContent::read(const FilePath& path, const QSize& atMost)
{
    PreviewContent content;
    QFile file;
    if (!openRegularFile(file, path)) {
        return content;
    }
    content.picture = readPicture(file, atMost);
    if (!content.picture.isNull()) {
        content.kind = Kind::picture;
    } else if (readText(file, content)) {
        content.kind = Kind::text;
    } else {
        content = {};
    }
    return content;
}

} // namespace quorvane
