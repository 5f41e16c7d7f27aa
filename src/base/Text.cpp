// SPDX-License-Identifier: MIT
#include "Text.h"

#include <QByteArrayView>
#include <QStringDecoder>

#include <algorithm>

namespace quorvane {
namespace {

bool isAscii(std::string_view bytes)
{
    return std::none_of(bytes.begin(), bytes.end(),
                        [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

} // namespace

bool isUtf8(std::string_view bytes)
{
    return QByteArrayView(bytes).isValidUtf8();
}

QString displayText(std::string_view bytes)
{
    // QString::fromUtf8() would drop a byte order mark, and two names would look alike.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(bytes));
}

std::string_view utf8Prefix(std::string_view bytes, std::size_t most)
{
    if (bytes.size() <= most) {
        return bytes;
    }
    constexpr std::size_t longestSequence = 4;
    for (std::size_t back = 0; back < longestSequence && back <= most; ++back) {
        // A byte of the form 10xxxxxx continues a sequence.
        if ((static_cast<unsigned char>(bytes[most - back]) & 0xC0U) != 0x80U) {
            return bytes.substr(0, most - back);
        }
    }
    return bytes.substr(0, most);
}

std::string lowercased(std::string_view bytes)
{
    if (isAscii(bytes) || !isUtf8(bytes)) {
        std::string result(bytes);
        std::transform(result.begin(), result.end(), result.begin(), [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        });
        return result;
    }
    return displayText(bytes).toLower().toStdString();
}

} // namespace quorvane
