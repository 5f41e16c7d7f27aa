// SPDX-License-Identifier: MIT
#include "TextNeedle.h"

#include "Text.h"

#include <QByteArrayView>

#include <algorithm>
#include <cstddef>

namespace quorvane {
namespace {

/// U+212A KELVIN SIGN folds to "k" and U+017F LATIN SMALL LETTER LONG S to "s"; no other character
/// beyond ASCII folds to one within (CaseFolding.txt, status C and S).
constexpr std::string_view kelvinSign = "\xE2\x84\xAA";
constexpr std::string_view longS = "\xC5\xBF";

char asciiUpper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

} // namespace

std::string comparableText(std::string_view bytes)
{
    std::string lower = lowercased(bytes);
    if (isAscii(lower) || !isUtf8(lower)) {
        return lower;
    }
    return displayText(lower).normalized(QString::NormalizationForm_C).toStdString();
}

TextNeedle::TextNeedle(const QString& text)
    : m_text(text.normalized(QString::NormalizationForm_C))
    , m_matcher(m_text, Qt::CaseInsensitive)
{
    const std::string bytes = m_text.toStdString();
    m_isAscii = isAscii(bytes);
    if (!m_isAscii || bytes.empty()) {
        return;
    }
    m_lower.resize(bytes.size());
    std::transform(bytes.begin(), bytes.end(), m_lower.begin(), asciiLower);
    m_hasForeignForms = m_lower.find_first_of("ks") != m_lower.npos;
    const std::size_t last = m_lower.size() - 1;
    m_skips.fill(static_cast<std::uint32_t>(m_lower.size()));
    for (std::size_t i = 0; i < last; ++i) {
        const auto skip = static_cast<std::uint32_t>(last - i);
        m_skips[static_cast<unsigned char>(m_lower[i])] = skip;
        m_skips[static_cast<unsigned char>(asciiUpper(m_lower[i]))] = skip;
    }
}

bool TextNeedle::isInName(std::string_view name) const
{
    return isIn(name, Fallback::replacement);
}

bool TextNeedle::isInContents(std::string_view contents) const
{
    return isIn(contents, Fallback::latin1);
}

bool TextNeedle::isIn(std::string_view bytes, Fallback fallback) const
{
    if (m_text.isEmpty()) {
        return false;
    }
    if (!m_isAscii) {
        return isInDecoded(bytes, fallback);
    }
    // An ASCII letter is one byte in either encoding, and no byte of any other character.
    if (isInBytes(bytes)) {
        return true;
    }
    return m_hasForeignForms &&
           (bytes.find(longS) != bytes.npos || bytes.find(kelvinSign) != bytes.npos) &&
           isInDecoded(bytes, fallback);
}

bool TextNeedle::isInBytes(std::string_view bytes) const
{
    const std::size_t length = m_lower.size();
    const char lastLetter = m_lower.back();
    for (std::size_t end = length; end <= bytes.size();) {
        const char c = bytes[end - 1];
        if (asciiLower(c) == lastLetter &&
            std::equal(m_lower.begin(), m_lower.end() - 1, bytes.begin() + (end - length),
                       [](char wanted, char found) { return wanted == asciiLower(found); })) {
            return true;
        }
        end += m_skips[static_cast<unsigned char>(c)];
    }
    return false;
}

bool TextNeedle::isInDecoded(std::string_view bytes, Fallback fallback) const
{
    if (fallback == Fallback::latin1 && !isUtf8(bytes)) {
        // Latin 1 has no combining characters: it is composed already.
        return m_matcher.indexIn(QString::fromLatin1(QByteArrayView(bytes))) >= 0;
    }
    const QString text = displayText(bytes);
    return m_matcher.indexIn(m_isAscii ? text : text.normalized(QString::NormalizationForm_C)) >= 0;
}

} // namespace quorvane
