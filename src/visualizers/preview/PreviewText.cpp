// SPDX-License-Identifier: MIT
#include "PreviewText.h"

#include <QStringDecoder>

#include <algorithm>

namespace quorvane {
namespace {

/// Of so many characters one may be a control character; of bytes at random one of nine is.
constexpr qsizetype charactersPerControl = 50;

bool isControl(QChar character)
{
    constexpr char16_t firstPrintable = u' ';
    constexpr char16_t erase = 0x7f;
    switch (character.unicode()) {
    case u'\t':
    case u'\n':
    case u'\r':
    case u'\f':
        return false;
    default:
        return character.unicode() < firstPrintable || character.unicode() == erase;
    }
}

bool isReadable(const QString& text)
{
    const auto controls = std::count_if(text.begin(), text.end(), isControl);
    return !text.contains(QChar(u'\0')) && controls * charactersPerControl <= text.size();
}

/// Half a character at the end stays in the decoder, or is half a pair.
std::optional<QString> decoded(const QByteArray& bytes, QStringConverter::Encoding encoding)
{
    QStringDecoder decoder(encoding);
    QString text = decoder(bytes);
    if (decoder.hasError()) {
        return std::nullopt;
    }
    if (!text.isEmpty() && text.back().isHighSurrogate()) {
        text.chop(1);
    }
    return text;
}

} // namespace

std::optional<QString> decodedText(const QByteArray& bytes)
{
    std::optional<QString> text;
    if (const auto marked = QStringConverter::encodingForData(bytes)) {
        text = decoded(bytes, *marked);
        if (text) {
            return text->isEmpty() || !isReadable(*text) ? std::nullopt : text;
        }
    }
    if (bytes.isEmpty() || bytes.contains('\0')) {
        return std::nullopt;
    }
    text = decoded(bytes, QStringConverter::Utf8);
    if (!text) {
        const QString latin = QString::fromLatin1(bytes);
        return isReadable(latin) ? std::optional(latin) : std::nullopt;
    }
    return text->isEmpty() ? std::nullopt : text;
}

BrokenText brokenIntoLines(const QString& text)
{
    BrokenText broken;
    int lines = 1;
    qsizetype begin = 0;
    while (begin < text.size()) {
        const qsizetype newline = text.indexOf(QLatin1Char('\n'), begin);
        qsizetype end = newline < 0 ? text.size() : newline + 1;
        const bool isLong = end - begin > maxTextLineLength + 1;
        if (isLong) {
            end = begin + maxTextLineLength;
            end -= text[end - 1].isHighSurrogate() ? 1 : 0;
        }
        broken.text += QStringView(text).mid(begin, end - begin);
        begin = end;
        if (begin < text.size() && lines++ == maxTextLines) {
            broken.isCut = true;
            return broken;
        }
        if (isLong) {
            broken.text += QLatin1Char('\n');
        }
    }
    return broken;
}

} // namespace quorvane
