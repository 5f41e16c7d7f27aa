// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QString>

#include <array>
#include <cstddef>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace quorvane {

/// Families of developer and cache folders that the user can hide from every visualiser.
struct BloatFilter
{
    struct Item
    {
        std::string_view key;                       ///< name of the switch, shown and stored
        std::string_view icon;                      ///< symbol name
        std::span<const std::string_view> keywords; ///< lower-case fragments
    };

    /// In the order that decides ties: the first item with a matching keyword claims the name.
    static std::span<const Item> items();
    /// The key of the first item with a keyword contained in the text, which must be lower-case.
    static std::optional<std::string_view> match(std::string_view lowerCaseText);
    /// Every key, all true: every family is shown.
    static std::map<std::string, bool> defaultBloatFilters();
    /// The default with the stored value of each known key copied in; unknown keys are dropped.
    static std::map<std::string, bool> merged(const std::map<std::string, bool>& stored);
};

/// A set of family keys that are hidden. A plain value.
class BloatKeys : public std::set<std::string, std::less<>>
{
public:
    using std::set<std::string, std::less<>>::set;
};

/// A folder's children without the hidden ones, order kept, without a copy. The node and the keys
/// must outlive it.
class VisibleChildren
{
public:
    class Iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = FileNode;
        using difference_type = std::ptrdiff_t;
        using pointer = FileNode*;
        using reference = FileNode&;

        Iterator() = default;
        Iterator(FileNode* node, FileNode* end, const BloatKeys* keys)
            : m_node(node)
            , m_end(end)
            , m_keys(keys)
        {
            skipHidden();
        }

        FileNode& operator*() const { return *m_node; }
        FileNode* operator->() const { return m_node; }
        Iterator& operator++()
        {
            ++m_node;
            skipHidden();
            return *this;
        }
        Iterator operator++(int)
        {
            Iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const Iterator& a, const Iterator& b)
        {
            return a.m_node == b.m_node;
        }

    private:
        void skipHidden()
        {
            while (m_node != m_end && !m_keys->empty() && m_node->isBloatHidden(*m_keys)) {
                ++m_node;
            }
        }

        FileNode* m_node = nullptr;
        FileNode* m_end = nullptr;
        const BloatKeys* m_keys = nullptr;
    };

    VisibleChildren(std::span<FileNode> children, const BloatKeys& keys)
        : m_children(children)
        , m_keys(&keys)
    {}

    Iterator begin() const { return {m_children.data(), last(), m_keys}; }
    Iterator end() const { return {last(), last(), m_keys}; }
    bool empty() const { return begin() == end(); }

private:
    FileNode* last() const { return m_children.data() + m_children.size(); }

    std::span<FileNode> m_children;
    const BloatKeys* m_keys;
};

} // namespace quorvane
