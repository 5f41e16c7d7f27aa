// SPDX-License-Identifier: MIT
#include "PreviewContent.h"

#include "PreviewFile.h"
#include "PreviewText.h"
#include "Text.h"

#include <QMimeDatabase>

#include <optional>
#include <utility>

namespace quorvane {
namespace {

bool readText(QIODevice& file, PreviewContent& content)
{
    if (!file.seek(0)) {
        return false;
    }
    const QByteArray bytes = file.read(PreviewContent::textLimit);
    const std::optional<QString> text = decodedText(bytes);
    if (!text) {
        return false;
    }
    const BrokenText broken = brokenIntoLines(*text);
    content.text = broken.text;
    content.isCutByLines = broken.isCut;
    content.isCut = broken.isCut || file.size() > bytes.size();
    return true;
}

bool isMedia(const QMimeType& type)
{
    const QString name = type.name();
    return name.startsWith(QLatin1String("audio/")) || name.startsWith(QLatin1String("video/")) ||
           name == QLatin1String("application/ogg");
}

/// By what it holds or by its name: its player finds out.
bool mayBeMedia(QIODevice& file, const FilePath& path)
{
    const QMimeDatabase types;
    return (file.seek(0) && isMedia(types.mimeTypeForData(&file))) ||
           isMedia(types.mimeTypeForFile(displayText(path.lastComponent()),
                                         QMimeDatabase::MatchExtension));
}

} // namespace

PreviewContent PreviewContent::read(const FilePath& path, const QSize& room, const LockedFlag& stop)
{
    PreviewContent content;
    auto file = std::make_unique<PreviewFile>(&stop);
    if (!file->openRegular(path)) {
        return content;
    }
    if (DocumentPages::isDocument(*file)) {
        content.document = DocumentPages::open(std::move(file));
        content.kind = content.document ? Kind::document : Kind::summary;
        return content;
    }
    content.picture = readPicture(*file, room);
    if (!content.picture.image.isNull()) {
        content.kind = Kind::picture;
    } else if (readText(*file, content)) {
        content.kind = Kind::text;
    } else if (mayBeMedia(*file, path)) {
        content.kind = Kind::media;
    }
    return content;
}

} // namespace quorvane
