// SPDX-License-Identifier: MIT
#include "Json.h"

#include "Text.h"

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace quorvane {
namespace {

constexpr std::array<std::pair<char, char>, 8> simpleEscapes{{{'"', '"'},
                                                              {'\\', '\\'},
                                                              {'/', '/'},
                                                              {'b', '\b'},
                                                              {'f', '\f'},
                                                              {'n', '\n'},
                                                              {'r', '\r'},
                                                              {'t', '\t'}}};

/// Bytes that cannot stand for themselves within a string.
bool endsRun(char c)
{
    return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20;
}

bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

void appendCodePoint(std::string& out, char32_t point)
{
    const QByteArray utf8 = QString::fromUcs4(&point, 1).toUtf8();
    out.append(utf8.constData(), static_cast<std::size_t>(utf8.size()));
}

void appendEscaped(std::string& out, char c)
{
    static constexpr char digits[] = "0123456789abcdef";
    const auto simple = std::find_if(simpleEscapes.begin(), simpleEscapes.end(),
                                     [c](const auto& pair) { return pair.second == c; });
    out.push_back('\\');
    if (simple != simpleEscapes.end()) {
        out.push_back(simple->first);
        return;
    }
    const auto code = static_cast<unsigned char>(c);
    out.append("u00");
    out.push_back(digits[code / 16]);
    out.push_back(digits[code % 16]);
}

std::size_t digitsAt(std::string_view text, std::size_t from)
{
    std::size_t end = from;
    while (end < text.size() && text[end] >= '0' && text[end] <= '9') {
        ++end;
    }
    return end - from;
}

} // namespace

void appendJsonString(std::string& out, std::string_view bytes)
{
    if (!isUtf8(bytes)) {
        appendJsonString(out, displayText(bytes).toStdString());
        return;
    }
    out.push_back('"');
    for (std::size_t i = 0; i < bytes.size();) {
        std::size_t end = i;
        while (end < bytes.size() && bytes[end] != '/' && !endsRun(bytes[end])) {
            ++end;
        }
        out.append(bytes.substr(i, end - i));
        if (end < bytes.size()) {
            appendEscaped(out, bytes[end]);
            ++end;
        }
        i = end;
    }
    out.push_back('"');
}

JsonReader::JsonReader(std::string_view text)
    : m_text(text)
    , m_hasFailed(!isUtf8(text))
{}

bool JsonReader::fail()
{
    m_hasFailed = true;
    return false;
}

void JsonReader::skipBlanks()
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (m_position < m_text.size() && isBlank(m_text[m_position])) {
        ++m_position;
    }
}

bool JsonReader::take(char c)
{
    skipBlanks();
    if (m_hasFailed || m_position == m_text.size() || m_text[m_position] != c) {
        return false;
    }
    ++m_position;
    return true;
}

bool JsonReader::takeWord(std::string_view word)
{
    skipBlanks();
    if (m_hasFailed || !m_text.substr(m_position).starts_with(word)) {
        return false;
    }
    m_position += word.size();
    return true;
}

bool JsonReader::begin(char open, char close)
{
    if (!take(open)) {
        return fail();
    }
    m_open.push_back(close);
    m_isFirst = true;
    return true;
}

bool JsonReader::beginObject()
{
    return begin('{', '}');
}

bool JsonReader::beginArray()
{
    return begin('[', ']');
}

bool JsonReader::nextMember(char close)
{
    if (m_hasFailed || m_open.empty() || m_open.back() != close) {
        return fail();
    }
    if (take(close)) {
        m_open.pop_back();
        m_isFirst = false;
        return false;
    }
    if (!std::exchange(m_isFirst, false) && !take(',')) {
        return fail();
    }
    return true;
}

bool JsonReader::nextKey(std::string& key)
{
    return nextMember('}') && text(key) && (take(':') || fail());
}

bool JsonReader::nextItem()
{
    return nextMember(']');
}

bool JsonReader::text(std::string& out)
{
    out.clear();
    if (!take('"')) {
        return fail();
    }
    for (;;) {
        const std::size_t start = m_position;
        while (m_position < m_text.size() && !endsRun(m_text[m_position])) {
            ++m_position;
        }
        out.append(m_text.substr(start, m_position - start));
        if (m_position == m_text.size()) {
            return fail();
        }
        const char c = m_text[m_position++];
        if (c == '"') {
            return true;
        }
        if (c != '\\' || !escape(out)) {
            return fail();
        }
    }
}

bool JsonReader::skipText()
{
    if (!take('"')) {
        return fail();
    }
    for (;;) {
        while (m_position < m_text.size() && !endsRun(m_text[m_position])) {
            ++m_position;
        }
        if (m_position == m_text.size()) {
            return fail();
        }
        const char c = m_text[m_position++];
        if (c == '"') {
            return true;
        }
        // A slash is the escape that paths are full of.
        if (c == '\\' && m_position < m_text.size() && m_text[m_position] == '/') {
            ++m_position;
            continue;
        }
        m_scratch.clear();
        if (c != '\\' || !escape(m_scratch)) {
            return fail();
        }
    }
}

bool JsonReader::escape(std::string& out)
{
    if (m_position == m_text.size()) {
        return false;
    }
    const char c = m_text[m_position++];
    if (c != 'u') {
        const auto simple = std::find_if(simpleEscapes.begin(), simpleEscapes.end(),
                                         [c](const auto& pair) { return pair.first == c; });
        if (simple == simpleEscapes.end()) {
            return false;
        }
        out.push_back(simple->second);
        return true;
    }
    char32_t unit = 0;
    if (!hexUnit(unit) || isLowSurrogate(unit)) {
        return false;
    }
    if (isHighSurrogate(unit)) {
        char32_t low = 0;
        if (!m_text.substr(m_position).starts_with("\\u")) {
            return false;
        }
        m_position += 2;
        if (!hexUnit(low) || !isLowSurrogate(low)) {
            return false;
        }
        unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
    appendCodePoint(out, unit);
    return true;
}

bool JsonReader::hexUnit(char32_t& unit)
{
    const std::string_view digits = m_text.substr(m_position, 4);
    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, number, 16);
    if (digits.size() != 4 || parsed.ptr != end) {
        return false;
    }
    unit = number;
    m_position += digits.size();
    return true;
}

std::string_view JsonReader::number(bool& isWhole)
{
    skipBlanks();
    const std::string_view rest = m_text.substr(std::min(m_position, m_text.size()));
    std::size_t end = rest.starts_with('-') ? 1 : 0;
    const std::size_t whole = digitsAt(rest, end);
    if (m_hasFailed || whole == 0 || (whole > 1 && rest[end] == '0')) {
        return {};
    }
    end += whole;
    isWhole = true;
    if (end < rest.size() && rest[end] == '.') {
        const std::size_t fraction = digitsAt(rest, end + 1);
        if (fraction == 0) {
            return {};
        }
        end += 1 + fraction;
        isWhole = false;
    }
    if (end < rest.size() && (rest[end] == 'e' || rest[end] == 'E')) {
        ++end;
        end += end < rest.size() && (rest[end] == '+' || rest[end] == '-') ? 1 : 0;
        const std::size_t exponent = digitsAt(rest, std::min(end, rest.size()));
        if (exponent == 0) {
            return {};
        }
        end += exponent;
        isWhole = false;
    }
    m_position += end;
    return rest.substr(0, end);
}

bool JsonReader::integer(std::int64_t& out)
{
    bool isWhole = false;
    const std::string_view digits = number(isWhole);
    return (!digits.empty() && isWhole &&
            std::from_chars(digits.data(), digits.data() + digits.size(), out).ec == std::errc()) ||
           fail();
}

bool JsonReader::real(double& out)
{
    bool isWhole = false;
    const std::string_view digits = number(isWhole);
    return (!digits.empty() &&
            std::from_chars(digits.data(), digits.data() + digits.size(), out).ec == std::errc() &&
            std::isfinite(out)) ||
           fail();
}

bool JsonReader::boolean(bool& out)
{
    out = takeWord("true");
    return out || takeWord("false") || fail();
}

bool JsonReader::skipScalar()
{
    skipBlanks();
    if (m_position < m_text.size() && m_text[m_position] == '"') {
        return skipText();
    }
    bool isWhole = false;
    return takeWord("true") || takeWord("false") || takeWord("null") || !number(isWhole).empty() ||
           fail();
}

bool JsonReader::skipValue()
{
    const std::size_t depth = m_open.size();
    bool isValueDue = true;
    do {
        if (isValueDue) {
            skipBlanks();
            const char c = m_position < m_text.size() ? m_text[m_position] : '\0';
            if (c == '{' || c == '[') {
                begin(c, c == '{' ? '}' : ']');
            } else if (!skipScalar()) {
                return false;
            }
        }
        if (m_open.size() > depth) {
            isValueDue = m_open.back() == '}' ? nextKey(m_scratch) : nextItem();
        }
    } while (!m_hasFailed && m_open.size() > depth);
    return !m_hasFailed;
}

bool JsonReader::isComplete()
{
    skipBlanks();
    return !m_hasFailed && m_open.empty() && m_position == m_text.size();
}

} // namespace quorvane
