// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::test {

/// Property lists written by hand from the format's description, not by the library that reads
/// them.

inline std::string xmlList(std::string_view identifier)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
           "<key>CFBundleName</key><string>Other</string><key>CFBundleIdentifier</key><string>" +
           std::string(identifier) + "</string></dict></plist>\n";
}

/// The objects one after the other, then where each begins, then the trailer.
inline std::string binaryListOf(const std::vector<std::string>& objects,
                                unsigned char referenceBytes)
{
    constexpr int offsetBytes = 3;
    const auto bigEndian = [](std::uint64_t value, int bytes) {
        std::string text;
        for (int i = bytes - 1; i >= 0; --i) {
            text.push_back(static_cast<char>(value >> (8 * i) & 0xFFU));
        }
        return text;
    };
    std::string list = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += bigEndian(list.size(), offsetBytes);
        list += object;
    }
    const std::size_t table = list.size();
    list += offsets;
    list += std::string(6, '\0');
    list.push_back(static_cast<char>(offsetBytes));
    list.push_back(static_cast<char>(referenceBytes));
    list += bigEndian(objects.size(), 8) + bigEndian(0, 8) + bigEndian(table, 8);
    return list;
}

/// Identifiers of at most 14 ASCII characters go with their length in the marker.
inline std::string binaryString(std::string_view text)
{
    std::string object;
    if (text.size() < 15) {
        object.push_back(static_cast<char>(0x50 | text.size()));
    } else {
        object += {'\x5F', '\x10', static_cast<char>(text.size())};
    }
    return object += text;
}

inline std::string binaryList(std::string_view identifier)
{
    return binaryListOf(
        {std::string("\xD1\x01\x02"), binaryString("CFBundleIdentifier"), binaryString(identifier)},
        1);
}

/// Arrays, each of which holds the next one so many times.
inline std::string nestedBinaryList(std::size_t depth, std::size_t times)
{
    std::vector<std::string> objects;
    for (std::size_t i = 0; i < depth; ++i) {
        std::string object(1, static_cast<char>(0xA0 | times));
        for (std::size_t j = 0; j < times; ++j) {
            for (int shift : {16, 8, 0}) {
                object.push_back(static_cast<char>((i + 1) >> shift & 0xFFU));
            }
        }
        objects.push_back(std::move(object));
    }
    objects.emplace_back("\xA0");
    return binaryListOf(objects, 3);
}

} // namespace quorvane::test
