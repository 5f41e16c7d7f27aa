// SPDX-License-Identifier: MIT
#include "BundleInfo.h"

#include <plist/plist.h>

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace quorvane {
namespace {

struct FreePlist
{
    void operator()(void* plist) const { plist_free(plist); }
};

/// A binary property list names its objects by number, so that a few bytes can stand for a list of
/// any size or depth, and the library builds it all. This walk, which builds nothing, tells whether
/// that is as little as a real one.
class BinaryListCheck
{
public:
    explicit BinaryListCheck(std::string_view list)
        : m_list(list)
    {}

    static bool isBinary(std::string_view list) { return list.starts_with("bplist"); }

    bool isModest()
    {
        if (m_list.size() < trailerBytes) {
            return false;
        }
        const std::size_t trailer = m_list.size() - trailerBytes;
        m_offsetBytes = static_cast<unsigned char>(m_list[trailer + 6]);
        m_referenceBytes = static_cast<unsigned char>(m_list[trailer + 7]);
        m_objects = number(trailer + 8, 8);
        m_table = number(trailer + 24, 8);
        push(number(trailer + 16, 8), 0);
        for (std::size_t visits = 0; !m_pending.empty(); ++visits) {
            const auto [object, depth] = m_pending.back();
            m_pending.pop_back();
            if (visits >= maxObjects || depth > maxDepth || !enter(object, depth)) {
                return false;
            }
        }
        return true;
    }

private:
    static constexpr std::size_t trailerBytes = 32;
    static constexpr std::size_t maxObjects = 50000;
    static constexpr unsigned maxDepth = 100;

    /// Big-endian; 0 beyond the end.
    std::uint64_t number(std::uint64_t at, unsigned bytes) const
    {
        std::uint64_t value = 0;
        if (bytes > 8 || at > m_list.size() || m_list.size() - at < bytes) {
            return 0;
        }
        for (unsigned i = 0; i < bytes; ++i) {
            value = value << 8 | static_cast<unsigned char>(m_list[at + i]);
        }
        return value;
    }

    void push(std::uint64_t object, unsigned depth) { m_pending.emplace_back(object, depth); }

    /// Pushes what the object holds; false when that is more than there are bytes.
    bool enter(std::uint64_t object, unsigned depth)
    {
        if (object >= m_objects || object >= m_list.size()) {
            return false;
        }
        std::uint64_t at = number(m_table + object * m_offsetBytes, m_offsetBytes);
        const auto marker = static_cast<unsigned>(number(at, 1));
        const unsigned kind = marker >> 4;
        if (kind != 0xA && kind != 0xC && kind != 0xD) {
            return true;
        }
        ++at;
        std::uint64_t count = marker & 0xFU;
        if (count == 0xFU) {
            const unsigned bytes = 1U << (number(at, 1) & 7U);
            count = number(at + 1, bytes);
            at += 1 + bytes;
        }
        count *= kind == 0xD ? 2 : 1;
        if (count > m_list.size() || m_pending.size() + count > maxObjects) {
            return false;
        }
        for (std::uint64_t i = 0; i < count; ++i) {
            push(number(at + i * m_referenceBytes, m_referenceBytes), depth + 1);
        }
        return true;
    }

    std::string_view m_list;
    unsigned m_offsetBytes = 0;
    unsigned m_referenceBytes = 0;
    std::uint64_t m_objects = 0;
    std::uint64_t m_table = 0;
    std::vector<std::pair<std::uint64_t, unsigned>> m_pending;
};

std::optional<std::string> stringOf(plist_t dictionary, const char* key)
{
    const plist_t node = plist_dict_get_item(dictionary, key);
    if (node == nullptr || plist_get_node_type(node) != PLIST_STRING) {
        return std::nullopt;
    }
    std::uint64_t length = 0;
    const char* const text = plist_get_string_ptr(node, &length);
    return text == nullptr ? std::nullopt : std::optional(std::string(text, length));
}

} // namespace

BundleInfo readBundleInfo(std::string_view propertyList)
{
    BundleInfo info;
    if (propertyList.empty() || propertyList.size() > maxPropertyListBytes) {
        return info;
    }
    if (BinaryListCheck::isBinary(propertyList) && !BinaryListCheck(propertyList).isModest()) {
        return info;
    }
    plist_t plist = nullptr;
    plist_from_memory(propertyList.data(), static_cast<std::uint32_t>(propertyList.size()), &plist);
    const std::unique_ptr<void, FreePlist> owner(plist);
    if (plist == nullptr || plist_get_node_type(plist) != PLIST_DICT) {
        return info;
    }
    info.identifier = stringOf(plist, "CFBundleIdentifier");
    info.iconFile = stringOf(plist, "CFBundleIconFile").value_or("");
    return info;
}

} // namespace quorvane
