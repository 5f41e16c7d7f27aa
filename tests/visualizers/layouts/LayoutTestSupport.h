// SPDX-License-Identifier: MIT
#pragma once

#include "FileTree.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace quorvane::test {

/// The names of the nodes that a list of layout items points to.
template<class Items>
std::vector<std::string> namesOf(const Items& items)
{
    std::vector<std::string> names;
    for (const auto& item : items) {
        names.emplace_back(item.node->name());
    }
    return names;
}

/// Keeps a tree until the next one, so that a test may lay out a temporary.
inline void keepAlive(std::shared_ptr<FileTree> tree)
{
    static std::shared_ptr<FileTree> kept;
    kept = std::move(tree);
}

using Names = std::vector<std::string>;

} // namespace quorvane::test
