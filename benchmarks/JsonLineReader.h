// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorvane {

/// One member of a JSON object. The texts are valid until the reader's next step.
struct JsonMember
{
    enum class Kind : unsigned char {
        null,
        boolean,
        integer, ///< a whole number of 64 bits, exact
        real,    ///< any other number
        text,
        nested ///< an array or an object, passed over
    };

    std::string_view key;
    Kind kind = Kind::null;
    bool boolean = false;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view text; ///< escapes resolved; half a surrogate pair reads as U+FFFD
};

/// Reads one line that holds one JSON object, member after member. Copies nothing but strings with
/// escapes. The line must outlive it.
class JsonLineReader
{
public:
    explicit JsonLineReader(std::string_view line)
        : m_line(line)
    {}

    /// False at the end of the object and at a fault.
    bool next(JsonMember& member);
    /// What is wrong with the line; empty when nothing is.
    std::string_view fault() const { return m_fault; }

private:
    bool fail(std::string_view fault);
    void skipBlanks();
    bool take(char c);
    bool takeWord(std::string_view word);
    bool openObject();
    bool finish();
    bool readText(std::string& scratch, std::string_view& text);
    bool readEscape(std::string& scratch);
    bool readHexUnit(char32_t& unit);
    bool readValue(JsonMember& member);
    bool readNumber(JsonMember& member);
    bool skipNested();

    std::string_view m_line;
    std::size_t m_position = 0;
    bool m_isOpen = false;
    bool m_hasMember = false;
    std::string_view m_fault;
    std::string m_keyScratch;
    std::string m_textScratch;
};

} // namespace quorvane
