// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <compare>
#include <string>
#include <string_view>

namespace quorvane {

/// A path as the file system's own bytes, without a trailing slash (but for "/"). No length limit,
/// no assumption of an encoding. A plain value.
class FilePath
{
public:
    FilePath() = default;
    explicit FilePath(std::string bytes);

    /// The path that a text typed or handed over by the desktop stands for, in UTF-8.
    static FilePath fromText(const QString& text);
    /// The path of a "file:" URL of this machine with percent escapes (RFC 8089), byte for byte; a
    /// "%" that starts no escape stands for itself. Empty for any other text, for another host and
    /// for a path that no file can have because it holds a NUL.
    static FilePath fromFileUrl(std::string_view url);

    const std::string& bytes() const { return m_bytes; }
    bool isEmpty() const { return m_bytes.empty(); }

    /// What follows the last slash; empty for "/" and for an empty path.
    std::string_view lastComponent() const;
    /// The path without its last component: "/a" gives "/", "/" gives "/", "a" gives an empty path.
    FilePath parent() const;
    /// The path of an entry of this folder; below an empty path the component itself.
    FilePath appending(std::string_view component) const;

    /// Whether the other path is this one or lies below it, by the bytes of both alone.
    bool holds(const FilePath& other) const;

    /// For the screen only: ill-formed bytes become U+FFFD.
    QString displayText() const;
    /// "file://" and the bytes, all but RFC 3986's unreserved ones and "/" percent-encoded.
    std::string fileUrl() const;

    friend bool operator==(const FilePath&, const FilePath&) = default;
    friend auto operator<=>(const FilePath&, const FilePath&) = default;

private:
    std::string m_bytes;
};

} // namespace quorvane
