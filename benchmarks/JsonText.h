// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane {

/// One step through bytes that may be UTF-8.
struct Utf8Step
{
    std::size_t length; ///< bytes to pass, at least 1
    bool isWellFormed;  ///< false: the bytes stand for one replacement character
    char32_t codePoint; ///< meaningful only when well-formed
};

/// The character that begins at a position inside the bytes. An ill-formed one is as long as its
/// longest part that could have begun a character, and at least one byte.
Utf8Step utf8Step(std::string_view bytes, std::size_t position);
void appendUtf8(std::string& out, char32_t codePoint);

/// Appends the bytes as they stand between the quotes of a JSON string. Control characters and line
/// separators are escaped, so that a line of output stays a line; each ill-formed sequence becomes
/// U+FFFD. Returns whether there was none.
bool appendJsonText(std::string& out, std::string_view bytes);

/// Appends one JSON object to a text, member after member. The keys are trusted to need no escapes.
class JsonObject
{
public:
    explicit JsonObject(std::string& out)
        : m_out(out)
    {
        m_out.push_back('{');
    }
    JsonObject(const JsonObject&) = delete;
    JsonObject& operator=(const JsonObject&) = delete;

    void integer(std::string_view key, std::int64_t value);
    /// Finite numbers only, with 17 significant digits.
    void real(std::string_view key, double value);
    void boolean(std::string_view key, bool value);
    void text(std::string_view key, std::string_view bytes);
    /// A string whose content is escaped already.
    void escapedText(std::string_view key, std::string_view content);
    /// The bytes as lower-case hexadecimal digits.
    void hexadecimal(std::string_view key, std::string_view bytes);
    void null(std::string_view key);
    /// "path", and "rawPath" where the bytes are not UTF-8.
    void path(std::string_view bytes);
    /// "paths", and "rawPaths" where the bytes of any of them are not UTF-8: there null stands for
    /// a path that is.
    void paths(const std::vector<std::string>& paths);
    /// Where a JsonList or a JsonObject goes, which is closed before the next member is added.
    std::string& list(std::string_view key);
    /// Closes an object that stands in a list or in an object.
    void close() { m_out.push_back('}'); }
    /// Closes the object and ends the line.
    void endLine() { m_out.append("}\n"); }

private:
    void key(std::string_view key);

    std::string& m_out;
    bool m_isFirst = true;
};

/// Appends the items of a JSON list, one after the other.
class JsonList
{
public:
    explicit JsonList(std::string& out)
        : m_out(out)
    {
        m_out.push_back('[');
    }
    JsonList(const JsonList&) = delete;
    JsonList& operator=(const JsonList&) = delete;

    /// Where the next item goes.
    std::string& next()
    {
        if (!m_isFirst) {
            m_out.push_back(',');
        }
        m_isFirst = false;
        return m_out;
    }
    void close() { m_out.push_back(']'); }

private:
    std::string& m_out;
    bool m_isFirst = true;
};

} // namespace quorvane
