// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quorvane {

/// Appends a JSON string with its quotes. A slash is written as "\/" and a control character
/// without an escape of its own as "\u00xx"; all else stands as it is, in UTF-8. Each ill-formed
/// sequence becomes U+FFFD.
void appendJsonString(std::string& out, std::string_view bytes);

/// Reads JSON text (RFC 8259) value by value, as the caller expects them, and builds nothing: a
/// file of any size and depth costs no more than its own bytes. Every function returns false at the
/// first fault, and from then on always. The text must outlive it.
class JsonReader
{
public:
    /// A text that is not UTF-8 is a fault.
    explicit JsonReader(std::string_view text);

    bool beginObject();
    /// The next key, whose value has to be read or skipped before the next call. False behind the
    /// last member, too.
    bool nextKey(std::string& key);
    bool beginArray();
    /// Another item follows, to be read or skipped before the next call. False behind the last one.
    bool nextItem();

    /// A string, escapes resolved. Half a surrogate pair is a fault.
    bool text(std::string& out);
    /// The same, but nothing of it is kept.
    bool skipText();
    /// A whole number of 64 bits without fraction and exponent.
    bool integer(std::int64_t& out);
    /// Any number that a double can hold as a finite one.
    bool real(double& out);
    bool boolean(bool& out);
    /// Any value, whatever its depth.
    bool skipValue();

    /// All went well, every object and array is closed, and only blanks are left.
    bool isComplete();
    bool hasFailed() const { return m_hasFailed; }

private:
    bool fail();
    void skipBlanks();
    bool take(char c);
    bool takeWord(std::string_view word);
    bool begin(char open, char close);
    bool nextMember(char close);
    bool escape(std::string& out);
    bool hexUnit(char32_t& unit);
    /// The number at the position; empty when there is none.
    std::string_view number(bool& isWhole);
    bool skipScalar();

    std::string_view m_text;
    std::size_t m_position = 0;
    std::string m_open; ///< closing brackets of the containers around the position
    bool m_isFirst = true;
    bool m_hasFailed = false;
    std::string m_scratch;
};

} // namespace quorvane
