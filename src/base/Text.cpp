// SPDX-License-Identifier: MIT
#include "Text.h"

#include <QByteArrayView>
#include <QStringDecoder>

#include <algorithm>
#include <locale>
#include <sstream>

namespace quorvane {

bool isAscii(std::string_view bytes)
{
    unsigned char all = 0;
    for (const char c : bytes) {
        all = static_cast<unsigned char>(all | static_cast<unsigned char>(c));
    }
    return all < 0x80;
}

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
    constexpr std::size_t maxSequenceLength = 4;
    for (std::size_t back = 0; back < maxSequenceLength && back <= most; ++back) {
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
        std::transform(result.begin(), result.end(), result.begin(), asciiLower);
        return result;
    }
    return displayText(bytes).toLower().toStdString();
}

std::string uuidText(const QUuid& id)
{
    return id.toString(QUuid::WithoutBraces).toUpper().toStdString();
}

std::optional<QUuid> uuidFromText(std::string_view text)
{
    // The parser takes braces and lower case as well, and gives the null id for what it cannot
    // read.
    const QUuid id = QUuid::fromString(displayText(text));
    return uuidText(id) == text ? std::optional(id) : std::nullopt;
}

double decimalValue(const std::string& decimal)
{
    // Not QByteArray::toDouble(): that gives 0 for a number too large.
    std::istringstream stream(decimal);
    stream.imbue(std::locale::classic());
    double value = 0;
    stream >> value;
    return value;
}

} // namespace quorvane
