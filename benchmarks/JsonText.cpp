// SPDX-License-Identifier: MIT
#include "JsonText.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace quorvane {
namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";
constexpr int significantDigits = 17;

/// What a lead byte demands of the bytes after it (RFC 3629, table of section 4).
struct LeadRule
{
    std::size_t length = 0; ///< 0 for a byte that begins nothing
    unsigned char secondMin = 0x80;
    unsigned char secondMax = 0xBF;
};

LeadRule leadRule(unsigned char lead)
{
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {2};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return {3, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return {4, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
    }
    return {};
}

bool isPlain(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x7F && c != '"' && c != '\\';
}

void appendEscape(std::string& out, char32_t codePoint)
{
    static constexpr char digits[] = "0123456789abcdef";
    switch (codePoint) {
    case U'"':
        out.append("\\\"");
        return;
    case U'\\':
        out.append("\\\\");
        return;
    case U'\n':
        out.append("\\n");
        return;
    case U'\t':
        out.append("\\t");
        return;
    case U'\r':
        out.append("\\r");
        return;
    default:
        out.append("\\u");
        for (int shift = 12; shift >= 0; shift -= 4) {
            out.push_back(digits[(codePoint >> shift) & 15]);
        }
    }
}

void appendHexadecimal(std::string& out, std::string_view bytes)
{
    static constexpr char digits[] = "0123456789abcdef";
    out.push_back('"');
    for (const char c : bytes) {
        out.push_back(digits[static_cast<unsigned char>(c) >> 4]);
        out.push_back(digits[static_cast<unsigned char>(c) & 15]);
    }
    out.push_back('"');
}

bool needsEscape(char32_t codePoint)
{
    return codePoint < 0x20 || codePoint == U'"' || codePoint == U'\\' ||
           (codePoint >= 0x7F && codePoint <= 0x9F) || codePoint == 0x2028 || codePoint == 0x2029;
}

} // namespace

Utf8Step utf8Step(std::string_view bytes, std::size_t position)
{
    const auto lead = static_cast<unsigned char>(bytes[position]);
    if (lead < 0x80) {
        return {1, true, lead};
    }
    const LeadRule rule = leadRule(lead);
    if (rule.length == 0) {
        return {1, false, 0};
    }
    char32_t codePoint = lead & (0x7FU >> rule.length);
    for (std::size_t i = 1; i < rule.length; ++i) {
        if (position + i >= bytes.size()) {
            return {i, false, 0};
        }
        const auto byte = static_cast<unsigned char>(bytes[position + i]);
        if (byte < (i == 1 ? rule.secondMin : 0x80) || byte > (i == 1 ? rule.secondMax : 0xBF)) {
            return {i, false, 0};
        }
        codePoint = codePoint << 6 | (byte & 0x3F);
    }
    return {rule.length, true, codePoint};
}

void appendUtf8(std::string& out, char32_t codePoint)
{
    const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0 | codePoint >> 6);
        put(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        put(0xE0 | codePoint >> 12);
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    } else {
        put(0xF0 | codePoint >> 18);
        put(0x80 | (codePoint >> 12 & 0x3F));
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    }
}

bool appendJsonText(std::string& out, std::string_view bytes)
{
    bool isWellFormed = true;
    std::size_t i = 0;
    while (i < bytes.size()) {
        std::size_t plainEnd = i;
        while (plainEnd < bytes.size() && isPlain(bytes[plainEnd])) {
            ++plainEnd;
        }
        out.append(bytes.substr(i, plainEnd - i));
        i = plainEnd;
        if (i == bytes.size()) {
            break;
        }
        const Utf8Step step = utf8Step(bytes, i);
        if (!step.isWellFormed) {
            isWellFormed = false;
            out.append(replacementCharacter);
        } else if (needsEscape(step.codePoint)) {
            appendEscape(out, step.codePoint);
        } else {
            out.append(bytes.substr(i, step.length));
        }
        i += step.length;
    }
    return isWellFormed;
}

void JsonObject::key(std::string_view key)
{
    if (!m_isFirst) {
        m_out.push_back(',');
    }
    m_isFirst = false;
    m_out.push_back('"');
    m_out.append(key);
    m_out.append("\":");
}

void JsonObject::integer(std::string_view name, std::int64_t value)
{
    key(name);
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    m_out.append(digits.data(), end);
}

void JsonObject::real(std::string_view name, double value)
{
    key(name);
    std::array<char, 40> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::general, significantDigits)
                         .ptr;
    m_out.append(digits.data(), end);
}

void JsonObject::boolean(std::string_view name, bool value)
{
    key(name);
    m_out.append(value ? "true" : "false");
}

void JsonObject::text(std::string_view name, std::string_view bytes)
{
    key(name);
    m_out.push_back('"');
    appendJsonText(m_out, bytes);
    m_out.push_back('"');
}

void JsonObject::escapedText(std::string_view name, std::string_view content)
{
    key(name);
    m_out.push_back('"');
    m_out.append(content);
    m_out.push_back('"');
}

void JsonObject::hexadecimal(std::string_view name, std::string_view bytes)
{
    key(name);
    appendHexadecimal(m_out, bytes);
}

void JsonObject::null(std::string_view name)
{
    key(name);
    m_out.append("null");
}

void JsonObject::path(std::string_view bytes)
{
    key("path");
    m_out.push_back('"');
    const bool isWellFormed = appendJsonText(m_out, bytes);
    m_out.push_back('"');
    if (!isWellFormed) {
        hexadecimal("rawPath", bytes);
    }
}

void JsonObject::paths(const std::vector<std::string>& paths)
{
    std::vector<bool> areText;
    JsonList texts(list("paths"));
    for (const std::string& path : paths) {
        std::string& out = texts.next();
        out.push_back('"');
        areText.push_back(appendJsonText(out, path));
        out.push_back('"');
    }
    texts.close();
    if (std::find(areText.begin(), areText.end(), false) == areText.end()) {
        return;
    }
    JsonList raw(list("rawPaths"));
    for (std::size_t i = 0; i < paths.size(); ++i) {
        std::string& out = raw.next();
        if (areText[i]) {
            out.append("null");
        } else {
            appendHexadecimal(out, paths[i]);
        }
    }
    raw.close();
}

std::string& JsonObject::list(std::string_view name)
{
    key(name);
    return m_out;
}

} // namespace quorvane
