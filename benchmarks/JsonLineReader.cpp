// SPDX-License-Identifier: MIT
#include "JsonLineReader.h"

#include "JsonText.h"
#include "Text.h"

#include <charconv>

namespace quorvane {
namespace {

constexpr std::string_view brokenObject = "is not a JSON object";
constexpr std::string_view brokenText = "holds a string that does not end or has a wrong escape";
constexpr char32_t replacement = 0xFFFD;

bool isHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

char simpleEscape(char c)
{
    switch (c) {
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case '"':
    case '\\':
    case '/':
        return c;
    default:
        return '\0';
    }
}

/// The grammar of RFC 8259: no leading zeros, no plus sign, digits on both sides of a point.
std::size_t numberLength(std::string_view text, bool& isWhole)
{
    std::size_t i = 0;
    const auto digits = [&] {
        const std::size_t first = i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9') {
            ++i;
        }
        return i - first;
    };
    isWhole = true;
    i += text.starts_with('-') ? 1 : 0;
    const std::size_t first = i;
    const std::size_t count = digits();
    if (count == 0 || (count > 1 && text[first] == '0')) {
        return 0;
    }
    if (i < text.size() && text[i] == '.') {
        isWhole = false;
        ++i;
        if (digits() == 0) {
            return 0;
        }
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        isWhole = false;
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
            ++i;
        }
        if (digits() == 0) {
            return 0;
        }
    }
    return i;
}

} // namespace

bool JsonLineReader::fail(std::string_view fault)
{
    m_fault = fault;
    m_position = m_line.size();
    return false;
}

void JsonLineReader::skipBlanks()
{
    const std::size_t next = m_line.find_first_not_of(" \t\r\n", m_position);
    m_position = next == m_line.npos ? m_line.size() : next;
}

bool JsonLineReader::take(char c)
{
    skipBlanks();
    if (m_position < m_line.size() && m_line[m_position] == c) {
        ++m_position;
        return true;
    }
    return false;
}

bool JsonLineReader::takeWord(std::string_view word)
{
    if (m_line.substr(m_position).starts_with(word)) {
        m_position += word.size();
        return true;
    }
    return false;
}

bool JsonLineReader::openObject()
{
    if (!isUtf8(m_line)) {
        return fail("is not UTF-8");
    }
    m_isOpen = take('{');
    return m_isOpen || fail(brokenObject);
}

bool JsonLineReader::finish()
{
    skipBlanks();
    if (m_position != m_line.size()) {
        return fail("has something behind its JSON object");
    }
    return false;
}

bool JsonLineReader::next(JsonMember& member)
{
    if (!m_fault.empty() || (!m_isOpen && !openObject())) {
        return false;
    }
    if (take('}')) {
        return finish();
    }
    if (m_hasMember && !take(',')) {
        return fail(brokenObject);
    }
    m_hasMember = true;
    if (!take('"')) {
        return fail(brokenObject);
    }
    if (!readText(m_keyScratch, member.key)) {
        return fail(brokenText);
    }
    if (!take(':')) {
        return fail(brokenObject);
    }
    skipBlanks();
    return readValue(member);
}

bool JsonLineReader::readText(std::string& scratch, std::string_view& text)
{
    const std::size_t start = m_position;
    const std::size_t stop = m_line.find_first_of("\"\\", start);
    if (stop == m_line.npos) {
        return false;
    }
    if (m_line[stop] == '"') {
        text = m_line.substr(start, stop - start);
        m_position = stop + 1;
        return true;
    }
    scratch.assign(m_line.substr(start, stop - start));
    m_position = stop;
    while (m_position < m_line.size()) {
        const char c = m_line[m_position++];
        if (c == '"') {
            text = scratch;
            return true;
        }
        if (c != '\\') {
            scratch.push_back(c);
        } else if (!readEscape(scratch)) {
            return false;
        }
    }
    return false;
}

bool JsonLineReader::readEscape(std::string& scratch)
{
    if (m_position >= m_line.size()) {
        return false;
    }
    const char c = m_line[m_position++];
    if (c != 'u') {
        const char simple = simpleEscape(c);
        scratch.push_back(simple);
        return simple != '\0';
    }
    char32_t unit = 0;
    if (!readHexUnit(unit)) {
        return false;
    }
    if (isHighSurrogate(unit) && m_line.substr(m_position).starts_with("\\u")) {
        const std::size_t before = m_position;
        m_position += 2;
        char32_t low = 0;
        if (!readHexUnit(low)) {
            return false;
        }
        if (isLowSurrogate(low)) {
            appendUtf8(scratch, 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
            return true;
        }
        m_position = before;
    }
    appendUtf8(scratch, isHighSurrogate(unit) || isLowSurrogate(unit) ? replacement : unit);
    return true;
}

bool JsonLineReader::readHexUnit(char32_t& unit)
{
    const std::string_view digits = m_line.substr(m_position, 4);
    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto parsed = std::from_chars(digits.data(), end, number, 16);
    if (digits.size() != 4 || parsed.ptr != end) {
        return false;
    }
    unit = number;
    m_position += 4;
    return true;
}

bool JsonLineReader::readValue(JsonMember& member)
{
    if (m_position >= m_line.size()) {
        return fail(brokenObject);
    }
    const char first = m_line[m_position];
    if (first == '"') {
        ++m_position;
        member.kind = JsonMember::Kind::text;
        return readText(m_textScratch, member.text) || fail(brokenText);
    }
    if (first == '{' || first == '[') {
        member.kind = JsonMember::Kind::nested;
        return skipNested();
    }
    if (takeWord("null")) {
        member.kind = JsonMember::Kind::null;
        return true;
    }
    member.boolean = first == 't';
    if (takeWord("true") || takeWord("false")) {
        member.kind = JsonMember::Kind::boolean;
        return true;
    }
    return readNumber(member);
}

bool JsonLineReader::readNumber(JsonMember& member)
{
    const std::string_view rest = m_line.substr(m_position);
    bool isWhole = false;
    const std::size_t length = numberLength(rest, isWhole);
    if (length == 0) {
        return fail("holds a value that is not JSON");
    }
    m_position += length;
    const char* const end = rest.data() + length;
    if (isWhole && std::from_chars(rest.data(), end, member.integer).ec == std::errc()) {
        member.kind = JsonMember::Kind::integer;
        return true;
    }
    member.kind = JsonMember::Kind::real;
    std::from_chars(rest.data(), end, member.real);
    return true;
}

bool JsonLineReader::skipNested()
{
    std::string open;
    do {
        const char c = m_line[m_position++];
        if (c == '{' || c == '[') {
            open.push_back(c == '{' ? '}' : ']');
        } else if (c == '}' || c == ']') {
            if (open.back() != c) {
                return fail(brokenObject);
            }
            open.pop_back();
        } else if (c == '"') {
            std::string_view passed;
            if (!readText(m_textScratch, passed)) {
                return fail(brokenText);
            }
        }
    } while (!open.empty() && m_position < m_line.size());
    return open.empty() || fail(brokenObject);
}

} // namespace quorvane
