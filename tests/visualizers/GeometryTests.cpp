// SPDX-License-Identifier: MIT
#include "Geometry.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

TEST(Rect, HoldsItsLeftAndTopEdgeOnly)
{
    const Rect rect{10, 20, 30, 40};
    EXPECT_TRUE(rect.contains(10, 20));
    EXPECT_TRUE(rect.contains(39.9, 59.9));
    EXPECT_FALSE(rect.contains(40, 30));
    EXPECT_FALSE(rect.contains(20, 60));
    EXPECT_FALSE(rect.contains(9.9, 30));
    EXPECT_FALSE(rect.contains(20, 19.9));
}

TEST(Rect, IntersectionIsTheCommonPart)
{
    EXPECT_EQ((Rect{0, 0, 10, 10}.intersected({4, 6, 10, 10})), (Rect{4, 6, 6, 4}));
    EXPECT_EQ((Rect{0, 0, 10, 10}.intersected({2, 3, 4, 5})), (Rect{2, 3, 4, 5}));
}

TEST(Rect, IntersectionOfDistantOnesHasANegativeSide)
{
    const Rect common = Rect{0, 0, 10, 10}.intersected({20, 0, 5, 10});
    EXPECT_LT(common.width, 0);
    EXPECT_EQ(common.height, 10);
}

} // namespace
} // namespace quorvane
