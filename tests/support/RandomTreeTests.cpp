// SPDX-License-Identifier: MIT
#include "RandomTree.h"

#include "TreeText.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace quorvane::test {
namespace {

TEST(RandomTree, SameSeedSameTree)
{
    EXPECT_EQ(textOfTree(randomTree(5)->root()), textOfTree(randomTree(5)->root()));
    EXPECT_NE(textOfTree(randomTree(5)->root()), textOfTree(randomTree(6)->root()));
}

TEST(RandomTree, KeepsToItsOptions)
{
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomTreeOptions options;
        options.entries = 120;
        options.maxDepth = 4;
        options.maxChildren = 9;
        const auto tree = randomTree(seed, options);
        std::set<std::int64_t> ids;
        std::vector<const FileNode*> stack{&tree->root()};
        while (!stack.empty()) {
            const FileNode& node = *stack.back();
            stack.pop_back();
            ids.insert(node.id());
            EXPECT_LE(node.depth(), 4U);
            EXPECT_LE(node.children().size(), 9U);
            std::set<std::string_view> names;
            for (const FileNode& child : node.children()) {
                EXPECT_TRUE(names.insert(child.name()).second) << child.name();
                stack.push_back(&child);
            }
        }
        EXPECT_LE(ids.size(), 121U);
        EXPECT_GE(ids.size(), 2U);
        EXPECT_EQ(*ids.rbegin(), static_cast<std::int64_t>(ids.size()) - 1);
    }
}

} // namespace
} // namespace quorvane::test
