// SPDX-License-Identifier: MIT
#include "FilePath.h"

#include "Text.h"

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

constexpr std::string_view scheme = "file:";
constexpr std::string_view authority = "//";

bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase)
{
    return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                      [](char a, char b) { return asciiLower(a) == b; });
}

/// The bytes that stand for themselves in the path of a URL: RFC 3986's unreserved ones and "/".
bool standsForItself(char c)
{
    const char lower = asciiLower(c);
    return (lower >= 'a' && lower <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           c == '_' || c == '~' || c == '/';
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = asciiLower(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// The value of the escape "%XY" that starts at the position, or -1 where none does.
int escapedByte(std::string_view text, std::size_t position)
{
    if (text[position] != '%' || position + 2 >= text.size()) {
        return -1;
    }
    const int high = hexValue(text[position + 1]);
    const int low = hexValue(text[position + 2]);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

/// What follows the scheme and a host that is this machine: the path, still escaped, or nothing.
std::string_view localPathOf(std::string_view url)
{
    if (!equalsIgnoringCase(url.substr(0, scheme.size()), scheme)) {
        return {};
    }
    url.remove_prefix(scheme.size());
    if (url.starts_with(authority)) {
        url.remove_prefix(authority.size());
        const std::size_t slash = url.find('/');
        const std::string_view host = url.substr(0, slash);
        if (slash == std::string_view::npos ||
            !(host.empty() || equalsIgnoringCase(host, "localhost"))) {
            return {};
        }
        url.remove_prefix(slash);
    }
    return url.starts_with('/') ? url : std::string_view();
}

} // namespace

FilePath::FilePath(std::string bytes)
    : m_bytes(std::move(bytes))
{
    while (m_bytes.size() > 1 && m_bytes.back() == '/') {
        m_bytes.pop_back();
    }
}

FilePath FilePath::fromText(const QString& text)
{
    return FilePath(text.toStdString());
}

FilePath FilePath::fromFileUrl(std::string_view url)
{
    const std::string_view path = localPathOf(url);
    std::string bytes;
    bytes.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        const int escaped = escapedByte(path, i);
        const char byte = escaped < 0 ? path[i] : static_cast<char>(escaped);
        if (byte == '\0') {
            return {};
        }
        bytes.push_back(byte);
        i += escaped < 0 ? 0 : 2;
    }
    return FilePath(std::move(bytes));
}

std::string_view FilePath::lastComponent() const
{
    const std::size_t slash = m_bytes.rfind('/');
    const std::string_view all = m_bytes;
    return slash == std::string::npos ? all : all.substr(slash + 1);
}

FilePath FilePath::parent() const
{
    const std::size_t slash = m_bytes.rfind('/');
    if (slash == std::string::npos) {
        return {};
    }
    return FilePath(slash == 0 ? std::string("/") : m_bytes.substr(0, slash));
}

FilePath FilePath::appending(std::string_view component) const
{
    std::string bytes = m_bytes;
    if (!bytes.empty() && bytes.back() != '/') {
        bytes.push_back('/');
    }
    bytes.append(component);
    return FilePath(std::move(bytes));
}

bool FilePath::holds(const FilePath& other) const
{
    const std::string_view bytes = other.m_bytes;
    return !m_bytes.empty() && bytes.substr(0, m_bytes.size()) == m_bytes &&
           (bytes.size() == m_bytes.size() || m_bytes == "/" || bytes[m_bytes.size()] == '/');
}

QString FilePath::displayText() const
{
    return quorvane::displayText(m_bytes);
}

std::string FilePath::fileUrl() const
{
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string url(scheme);
    url.append(authority);
    for (const char c : m_bytes) {
        if (standsForItself(c)) {
            url.push_back(c);
        } else {
            const auto byte = static_cast<unsigned char>(c);
            url.push_back('%');
            url.push_back(digits[byte >> 4]);
            url.push_back(digits[byte & 15]);
        }
    }
    return url;
}

} // namespace quorvane
