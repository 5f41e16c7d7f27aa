// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quorvane {

/// Finds folders by path among those seen so far. The folders from the root to the last one found
/// or added are kept as a chain, so that in a text that runs depth first a find is one comparison.
class FolderChain
{
public:
    /// Begins with the root, which is number 0.
    void start(std::string_view rootPath);
    /// The number of the folder with that path; absent when none has it.
    std::optional<std::size_t> find(std::string_view path);
    /// Adds a folder below one that find() has just answered. The path is its own, whole.
    void add(std::size_t parent, std::string_view name, std::size_t folder, std::string_view path);

private:
    struct Step
    {
        std::size_t folder;
        std::size_t pathLength;
    };
    struct Key
    {
        std::size_t parent;
        std::string name;
        friend bool operator==(const Key&, const Key&) = default;
    };
    struct KeyHash
    {
        std::size_t operator()(const Key& key) const
        {
            return std::hash<std::string>()(key.name) ^ (key.parent * 0x9E3779B97F4A7C15U);
        }
    };

    std::optional<std::size_t> findFromRoot(std::string_view path);

    std::string m_path; ///< of the chain's last step
    std::size_t m_rootLength = 0;
    std::vector<Step> m_chain;
    std::unordered_map<Key, std::size_t, KeyHash> m_folders;
};

} // namespace quorvane
