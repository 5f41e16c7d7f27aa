// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUuid>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

/// True when no byte is above 0x7F.
bool isAscii(std::string_view bytes);

/// Lower-cases A to Z and leaves every other byte alone.
constexpr char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// True when the bytes are well-formed UTF-8 (RFC 3629: no overlong forms, no surrogates).
bool isUtf8(std::string_view bytes);

/// The bytes as text for the screen: every ill-formed sequence becomes U+FFFD. Never used to name a
/// file; operations on the disk take the bytes.
QString displayText(std::string_view bytes);

/// The front of the bytes, at most so many, never ending inside a UTF-8 sequence.
std::string_view utf8Prefix(std::string_view bytes, std::size_t most);

/// Lower-cased with Unicode's full rules, whatever the locale. Where the bytes are not UTF-8 as a
/// whole, A to Z alone are lowered and every other byte stays.
std::string lowercased(std::string_view bytes);

/// The value of a decimal number of digits with at most one point among them, with or without sign
/// and exponent, whatever the locale; the largest double for one beyond, 0 for one too small.
double decimalValue(const std::string& decimal);

/// An id in the form in which it is stored: upper case with hyphens, 36 characters.
std::string uuidText(const QUuid& id);
/// Nothing for any other form.
std::optional<QUuid> uuidFromText(std::string_view text);

} // namespace quorvane
