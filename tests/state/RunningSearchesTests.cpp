// SPDX-License-Identifier: MIT
#include "RunningSearches.h"

#include "Gate.h"

#include <gtest/gtest.h>

#include <future>
#include <memory>

namespace quorvane {
namespace {

class RunningSearchesTests : public testing::Test
{
protected:
    static std::shared_ptr<LockedFlag> search() { return std::make_shared<LockedFlag>(); }
    static bool never() { return false; }

    RunningSearches m_searches;
};

TEST_F(RunningSearchesTests, SearchesThatAreNotStoppedHoldNobodyUp)
{
    const auto isAsked = [] {
        ADD_FAILURE() << "there is nothing to wait for";
        return true;
    };
    EXPECT_TRUE(m_searches.enter(search(), isAsked));
    EXPECT_TRUE(m_searches.enter(search(), isAsked));
}

TEST_F(RunningSearchesTests, AStoppedSearchIsWaitedForUntilItLeaves)
{
    const auto stopped = search();
    ASSERT_TRUE(m_searches.enter(stopped, never));
    stopped->set(true);
    Gate looked;
    int looks = 0;
    const auto isCancelled = [&] {
        if (++looks == 3) {
            looked.pass();
        }
        return false;
    };
    auto next =
        std::async(std::launch::async, [&] { return m_searches.enter(search(), isCancelled); });
    looked.awaitVisitor(); // It has come to wait, and gone on waiting.
    looked.open();
    m_searches.leave(stopped.get());
    EXPECT_TRUE(next.get());
    EXPECT_GE(looks, 3);
}

TEST_F(RunningSearchesTests, EachOfSeveralStoppedOnesIsWaitedFor)
{
    const auto first = search();
    const auto second = search();
    ASSERT_TRUE(m_searches.enter(first, never));
    ASSERT_TRUE(m_searches.enter(second, never));
    first->set(true);
    second->set(true);
    m_searches.leave(second.get());
    int looks = 0;
    EXPECT_FALSE(m_searches.enter(search(), [&looks] { return ++looks == 2; }));
    m_searches.leave(first.get());
    EXPECT_TRUE(m_searches.enter(search(), never));
}

TEST_F(RunningSearchesTests, WhoIsStoppedWhileItWaitsNeverEnters)
{
    const auto stopped = search();
    ASSERT_TRUE(m_searches.enter(stopped, never));
    stopped->set(true);
    const auto waiting = search();
    waiting->set(true);
    EXPECT_FALSE(m_searches.enter(waiting, [&waiting] { return waiting->get(); }));
    m_searches.leave(stopped.get());
    EXPECT_TRUE(m_searches.enter(search(), [] { return true; })) << "nobody is left inside";
}

} // namespace
} // namespace quorvane
