// SPDX-License-Identifier: MIT
#include "SteamLibraries.h"

#include <algorithm>
#include <optional>
#include <string>

namespace quorvane {
namespace {

/// Takes quoted strings and braces off the front of a text.
class Tokens
{
public:
    explicit Tokens(std::string_view text)
        : m_rest(text)
    {}

    struct Token
    {
        char brace = 0; ///< '{' or '}'; 0 for a string
        std::string text;
    };

    std::optional<Token> next()
    {
        for (;;) {
            const std::size_t start = m_rest.find_first_of("\"{}/");
            if (start == std::string_view::npos) {
                return std::nullopt;
            }
            const char first = m_rest[start];
            m_rest.remove_prefix(start + 1);
            if (first == '"') {
                return Token{0, quoted()};
            }
            if (first != '/') {
                return Token{first, {}};
            }
            if (m_rest.starts_with('/')) {
                m_rest.remove_prefix(std::min(m_rest.find('\n'), m_rest.size()));
            }
        }
    }

private:
    std::string quoted()
    {
        std::string text;
        while (!m_rest.empty()) {
            char c = m_rest.front();
            m_rest.remove_prefix(1);
            if (c == '"') {
                break;
            }
            if (c == '\\' && !m_rest.empty()) {
                c = m_rest.front();
                m_rest.remove_prefix(1);
                c = c == 'n' ? '\n' : c == 't' ? '\t' : c;
            }
            text.push_back(c);
        }
        return text;
    }

    std::string_view m_rest;
};

bool isLibraryKey(std::string_view key)
{
    return key == "path" ||
           (!key.empty() && key.find_first_not_of("0123456789") == std::string_view::npos);
}

/// Absolute, and without a component that leads elsewhere.
bool isPlainPath(std::string_view path)
{
    if (!path.starts_with('/') || path.find('\0') != std::string_view::npos) {
        return false;
    }
    while (!path.empty()) {
        path.remove_prefix(1);
        const std::string_view component = path.substr(0, path.find('/'));
        if (component == "." || component == "..") {
            return false;
        }
        path.remove_prefix(component.size());
    }
    return true;
}

} // namespace

std::vector<FilePath> steamLibrariesIn(std::string_view text)
{
    std::vector<FilePath> libraries;
    Tokens tokens(text);
    std::optional<std::string> key;
    while (std::optional<Tokens::Token> token = tokens.next()) {
        if (token->brace != 0) {
            key.reset();
        } else if (!key) {
            key = std::move(token->text);
        } else {
            const bool isLibrary = isLibraryKey(*key) && isPlainPath(token->text);
            key.reset();
            FilePath path{isLibrary ? std::move(token->text) : std::string()};
            if (isLibrary &&
                std::find(libraries.begin(), libraries.end(), path) == libraries.end()) {
                libraries.push_back(std::move(path));
            }
        }
    }
    return libraries;
}

} // namespace quorvane
