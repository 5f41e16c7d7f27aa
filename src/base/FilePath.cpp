// SPDX-License-Identifier: MIT
#include "FilePath.h"

#include "Text.h"

#include <cctype>
#include <utility>

namespace quorvane {
namespace {

constexpr std::string_view scheme = "file://";

bool isUnreserved(unsigned char c)
{
    return (c < 0x80 && std::isalnum(c) != 0) || c == '-' || c == '.' || c == '_' || c == '~' ||
           c == '/';
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const int lower = c | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
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
    if (!url.starts_with(scheme)) {
        return {};
    }
    url.remove_prefix(scheme.size());
    const std::size_t slash = url.find('/');
    if (slash == std::string_view::npos) {
        return {};
    }
    const std::string_view host = url.substr(0, slash);
    if (!host.empty() && host != "localhost") {
        return {};
    }
    url.remove_prefix(slash);
    std::string bytes;
    for (std::size_t i = 0; i < url.size(); ++i) {
        if (url[i] == '%' && i + 2 < url.size() && hexValue(url[i + 1]) >= 0 &&
            hexValue(url[i + 2]) >= 0) {
            bytes.push_back(static_cast<char>(hexValue(url[i + 1]) * 16 + hexValue(url[i + 2])));
            i += 2;
        } else {
            bytes.push_back(url[i]);
        }
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

QString FilePath::displayText() const
{
    return quorvane::displayText(m_bytes);
}

std::string FilePath::fileUrl() const
{
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string url(scheme);
    for (const char c : m_bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (isUnreserved(byte)) {
            url.push_back(c);
        } else {
            url.push_back('%');
            url.push_back(digits[byte >> 4]);
            url.push_back(digits[byte & 15]);
        }
    }
    return url;
}

} // namespace quorvane
