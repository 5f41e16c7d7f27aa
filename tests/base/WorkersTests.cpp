// SPDX-License-Identifier: MIT
#include "Workers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <stdexcept>

namespace quorvane {
namespace {

TEST(Workers, RunTheWorkOnceOnEachOfThem)
{
    std::atomic<int> runs = 0;
    runOnWorkers(5, [&runs] { ++runs; });
    EXPECT_EQ(runs.load(), 5);
    runOnWorkers(1, [&runs] { ++runs; });
    EXPECT_EQ(runs.load(), 6);
}

TEST(Workers, WhatOneOfThemThrowsReachesTheCallerOnceAllHaveEnded)
{
    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
    EXPECT_THROW(runOnWorkers(4,
                              [&] {
                                  if (begun++ == 2) {
                                      throw std::bad_alloc();
                                  }
                                  ++ended;
                              }),
                 std::bad_alloc);
    EXPECT_EQ(ended.load(), 3);
    EXPECT_THROW(runOnWorkers(3, [] { throw std::length_error("each"); }), std::length_error);
}

} // namespace
} // namespace quorvane
