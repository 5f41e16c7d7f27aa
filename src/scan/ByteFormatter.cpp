// SPDX-License-Identifier: MIT
#include "ByteFormatter.h"

#include "CheckedMath.h"
#include "FileNode.h"
#include "Text.h"

#include <QByteArray>
#include <QStringView>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

namespace quorvane {
namespace {

constexpr std::array<QStringView, 6> units{u"B", u"KB", u"MB", u"GB", u"TB", u"PB"};
constexpr double step = 1024;
constexpr int maxFractionDigits = 20;

struct SizeWord
{
    QStringView word;
    double factor;
};

constexpr double kilo = 1024;
constexpr double mega = 1048576;
constexpr double giga = 1073741824;
constexpr double tera = 1099511627776;

constexpr std::array sizeWords{
    SizeWord{u"", 1},
    SizeWord{u"B", 1},
    SizeWord{u"BYTE", 1},
    SizeWord{u"BYTES", 1},
    SizeWord{u"K", kilo},
    SizeWord{u"KB", kilo},
    SizeWord{u"KIB", kilo},
    SizeWord{u"KILOBYTE", kilo},
    SizeWord{u"KILOBYTES", kilo},
    SizeWord{u"M", mega},
    SizeWord{u"MB", mega},
    SizeWord{u"MIB", mega},
    SizeWord{u"MEGABYTE", mega},
    SizeWord{u"MEGABYTES", mega},
    SizeWord{u"G", giga},
    SizeWord{u"GB", giga},
    SizeWord{u"GIB", giga},
    SizeWord{u"GIGABYTE", giga},
    SizeWord{u"GIGABYTES", giga},
    SizeWord{u"T", tera},
    SizeWord{u"TB", tera},
    SizeWord{u"TIB", tera},
    SizeWord{u"TERABYTE", tera},
    SizeWord{u"TERABYTES", tera},
};

bool isDigitAt(QStringView text, qsizetype at)
{
    return at < text.size() && text[at] >= QLatin1Char('0') && text[at] <= QLatin1Char('9');
}

bool isAnyOfAt(QStringView text, qsizetype at, char first, char second)
{
    return at < text.size() && (text[at] == QLatin1Char(first) || text[at] == QLatin1Char(second));
}

qsizetype skipDigits(QStringView text, qsizetype at)
{
    while (isDigitAt(text, at)) {
        ++at;
    }
    return at;
}

/// Length of the decimal number that the text begins with: sign, digits with at most one point
/// among them, exponent. An exponent without digits is no part of it. 0 when there is no number.
qsizetype decimalLength(QStringView text)
{
    const qsizetype start = isAnyOfAt(text, 0, '+', '-') ? 1 : 0;
    const qsizetype point = skipDigits(text, start);
    qsizetype end = point;
    if (isAnyOfAt(text, point, '.', '.')) {
        end = skipDigits(text, point + 1);
        if (end - start == 1) {
            return 0;
        }
    }
    if (end == start) {
        return 0;
    }
    if (isAnyOfAt(text, end, 'e', 'E')) {
        const qsizetype digits = isAnyOfAt(text, end + 1, '+', '-') ? end + 2 : end + 1;
        if (isDigitAt(text, digits)) {
            return skipDigits(text, digits);
        }
    }
    return end;
}

ByteSize::Reading wholeBytes(double product)
{
    constexpr double limit = 9223372036854775808.0;
    if (!(product >= -limit && product < limit)) {
        return {std::nullopt, true};
    }
    return {static_cast<std::int64_t>(product), false};
}

} // namespace

QString ByteFormatter::string(std::int64_t bytes, int fractionDigits)
{
    if (bytes < 1024) {
        return QString::number(bytes) + QLatin1Char(' ') + units.front();
    }
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    while (value >= step && unit + 1 < units.size()) {
        value *= 1 / step;
        ++unit;
    }
    // Not QString::number(): that rounds 1.25 up, while ties go to the even digit here.
    std::array<char, 64> digits;
    const auto written =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed,
                      std::clamp(fractionDigits, 0, maxFractionDigits));
    return QLatin1String(digits.data(), written.ptr) + QLatin1Char(' ') + units[unit];
}

std::optional<std::int64_t> ByteSize::parse(std::string_view text)
{
    const Reading reading = read(text);
    if (reading.isTooLarge) {
        overflowFault("ByteSize.parse");
    }
    return reading.bytes;
}

ByteSize::Reading ByteSize::read(std::string_view text)
{
    const QString decoded =
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).trimmed();
    const qsizetype length = decimalLength(decoded);
    if (length == 0) {
        return {};
    }
    const double number = decimalValue(decoded.first(length).toStdString());
    const QString word = QStringView(decoded).sliced(length).toString().trimmed().toUpper();
    for (const SizeWord& row : sizeWords) {
        if (row.word == word) {
            return wholeBytes(number * row.factor);
        }
    }
    return {};
}

QString FileNode::formattedBytes() const
{
    return ByteFormatter::string(scannedBytes());
}

QString FileNode::formattedBytesOnDisk() const
{
    return ByteFormatter::string(scannedBytesOnDisk());
}

} // namespace quorvane
