// SPDX-License-Identifier: MIT
#include "BloatFilter.h"

#include "Text.h"

#include <cstdint>

namespace quorvane {
namespace {

constexpr std::array<std::string_view, 5> nodeWords{"node_modules", ".npm", "pnpm", "yarn", "node"};
constexpr std::array<std::string_view, 5> xcodeWords{"xcode", "deriveddata", "simulator",
                                                     "devicesupport", "archives"};
constexpr std::array<std::string_view, 11> buildWords{"build",    "dist",        "target", "pods",
                                                      "carthage", "__pycache__", "venv",   "vendor",
                                                      "gradle",   ".swiftpm",    "bazel"};
constexpr std::array<std::string_view, 3> dockerWords{"docker", "containers", "com.docker"};
constexpr std::array<std::string_view, 3> cacheWords{"cache", "webkit", "autosave"};

constexpr std::array<BloatFilter::Item, 5> table{{
    {"Node.js", "ellipsis.curlybraces", nodeWords},
    {"Xcode", "hammer", xcodeWords},
    {"Build Artifacts", "shippingbox", buildWords},
    {"Docker", "shippingbox.fill", dockerWords},
    {"Caches", "arrow.triangle.2.circlepath", cacheWords},
}};

/// One bit for each residue of a byte by 32: a text holds a keyword only if it has all its bits.
constexpr std::uint32_t bitOf(char c)
{
    return 1U << (static_cast<unsigned char>(c) & 31U);
}

constexpr std::uint32_t bitsOf(std::string_view text)
{
    std::uint32_t bits = 0;
    for (const char c : text) {
        bits |= bitOf(c);
    }
    return bits;
}

struct Keyword
{
    std::string_view text;
    std::string_view key;
    std::uint32_t bits = 0;
};

constexpr std::size_t keywordCount = nodeWords.size() + xcodeWords.size() + buildWords.size() +
                                     dockerWords.size() + cacheWords.size();

/// Every keyword of every item, in the order in which they are tried.
constexpr std::array<Keyword, keywordCount> makeKeywords()
{
    std::array<Keyword, keywordCount> all{};
    std::size_t count = 0;
    for (const BloatFilter::Item& item : table) {
        for (const std::string_view word : item.keywords) {
            all[count++] = {word, item.key, bitsOf(word)};
        }
    }
    return all;
}

constexpr std::array<Keyword, keywordCount> keywords = makeKeywords();

std::optional<std::string_view> firstMatch(std::string_view text, std::uint32_t bits)
{
    for (const Keyword& keyword : keywords) {
        if ((bits & keyword.bits) == keyword.bits &&
            text.find(keyword.text) != std::string_view::npos) {
            return keyword.key;
        }
    }
    return std::nullopt;
}

} // namespace

std::span<const BloatFilter::Item> BloatFilter::items()
{
    return table;
}

std::optional<std::string_view> BloatFilter::match(std::string_view lowerCaseText)
{
    return firstMatch(lowerCaseText, bitsOf(lowerCaseText));
}

std::map<std::string, bool> BloatFilter::defaultBloatFilters()
{
    std::map<std::string, bool> shown;
    for (const Item& item : table) {
        shown.emplace(item.key, true);
    }
    return shown;
}

std::map<std::string, bool> BloatFilter::merged(const std::map<std::string, bool>& stored)
{
    std::map<std::string, bool> shown = defaultBloatFilters();
    for (auto& [key, isShown] : shown) {
        if (const auto found = stored.find(key); found != stored.end()) {
            isShown = found->second;
        }
    }
    return shown;
}

std::optional<std::string_view> FileNode::bloatCategory() const
{
    // Called for every entry of a folder on show: no allocation for the names that disks hold.
    constexpr std::size_t longestName = 255;
    const std::string_view own = name();
    if (own.size() > longestName) {
        return BloatFilter::match(lowercased(own));
    }
    std::array<char, longestName> lowered;
    std::uint32_t bits = 0;
    unsigned seen = 0;
    for (std::size_t i = 0; i < own.size(); ++i) {
        const char c = own[i];
        const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        lowered[i] = lower;
        bits |= bitOf(lower);
        seen |= static_cast<unsigned char>(c);
    }
    if (seen >= 0x80) {
        return BloatFilter::match(lowercased(own));
    }
    return firstMatch({lowered.data(), own.size()}, bits);
}

bool FileNode::isBloatHidden(const BloatKeys& keys) const
{
    if (keys.empty()) {
        return false;
    }
    const std::optional<std::string_view> category = bloatCategory();
    return category && keys.contains(*category);
}

VisibleChildren FileNode::visibleChildren(const BloatKeys& keys) const
{
    return {children(), keys};
}

} // namespace quorvane
