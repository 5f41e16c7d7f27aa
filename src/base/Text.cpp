// SPDX-License-Identifier: MIT
#include "Text.h"

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
    if (isAscii(bytes)) {
        return true;
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text =
        decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    return !decoder.hasError();
}

QString displayText(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
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
