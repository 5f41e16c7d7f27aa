// SPDX-License-Identifier: MIT
#include "PreviewContent.h"

#include "PreviewFile.h"
#include "Text.h"

#include <QMimeDatabase>
#include <QStringDecoder>

#include <utility>

namespace quorvane {
namespace {

/// The text in lines that can be laid out at once.
void breakLines(const QString& text, PreviewContent& content)
{
    int lines = 1;
    qsizetype begin = 0;
    while (begin < text.size()) {
        const qsizetype newline = text.indexOf(QLatin1Char('\n'), begin);
        qsizetype end = newline < 0 ? text.size() : newline + 1;
        const bool isBroken = end - begin > PreviewContent::longestLine + 1;
        if (isBroken) {
            end = begin + PreviewContent::longestLine;
            end -= text[end - 1].isHighSurrogate() ? 1 : 0;
        }
        content.text += QStringView(text).mid(begin, end - begin);
        begin = end;
        if (begin < text.size() && lines++ == PreviewContent::mostLines) {
            content.isCut = true;
            content.isCutByLines = true;
            return;
        }
        if (isBroken) {
            content.text += QLatin1Char('\n');
        }
    }
}

bool readText(QIODevice& file, PreviewContent& content)
{
    if (!file.seek(0)) {
        return false;
    }
    const QByteArray bytes = file.read(PreviewContent::textLimit);
    if (bytes.isEmpty() || bytes.contains('\0')) {
        return false;
    }
    // A character that the limit cuts in two stays in the decoder and is no error.
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    if (decoder.hasError()) {
        return false;
    }
    content.isCut = file.size() > bytes.size();
    breakLines(text, content);
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
