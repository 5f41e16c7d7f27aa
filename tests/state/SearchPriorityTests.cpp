// SPDX-License-Identifier: MIT
#include "DuplicateSearchFixture.h"
#include "ThisThread.h"
#include "ThreadPriority.h"

#include <QProperty>

#include <atomic>
#include <mutex>
#include <set>
#include <string_view>
#include <utility>

namespace quorvane {
namespace {

/// Searches and scans on a platform that lowers threads in earnest. Notes at what priority the
/// bytes of files and the entries of folders are read.
class SearchPriority : public DuplicateSearchFixture
{
protected:
    using Seen = std::set<ThreadPriorityState>;

    SearchPriority()
    {
        platform.lowerThisThread = lowerThisThread;
        m_contents.beforeOpen = [this] { note(m_reading); };
        // A search may look into folders, too, and begins when the scan has ended.
        m_scanChanged =
            state().isScanning.addNotifier([this] { m_isScanning = state().isScanning.value(); });
        calls.before(FaultyFileSystemCalls::Call::openDirectory, [this](int, std::string_view) {
            if (m_isScanning) {
                note(m_listing);
            }
        });
    }

    void note(Seen& seen)
    {
        const std::lock_guard guard(m_lock);
        seen.insert(priorityOfThisThread());
    }
    Seen taken(Seen& seen)
    {
        const std::lock_guard guard(m_lock);
        return std::exchange(seen, {});
    }

    const Seen m_yielding{{19, 3}};
    const Seen m_usual{priorityOfThisThread()};
    Seen m_reading;
    Seen m_listing;
    std::mutex m_lock;
    std::atomic<bool> m_isScanning = false;
    QPropertyNotifier m_scanChanged;
};

TEST_F(SearchPriority, OnlyTheSearchBehindAScanYieldsAndAllOfIt)
{
    ASSERT_NE(m_usual, m_yielding);
    makePairs("f");
    scan(disk.root());
    EXPECT_EQ(taken(m_listing), m_usual);
    awaitSearch();
    ASSERT_EQ(groups().size(), 100U);
    EXPECT_EQ(taken(m_reading), m_yielding) << "its workers as well";

    state().runDuplicateSearch();
    awaitSearch();
    EXPECT_EQ(taken(m_reading), m_usual);

    // The threads are used again, each for what it was made for.
    scan(disk.path("f"));
    EXPECT_EQ(taken(m_listing), m_usual);
    awaitSearch();
    EXPECT_EQ(taken(m_reading), m_yielding);
    EXPECT_EQ(Seen{priorityOfThisThread()}, m_usual);
}

} // namespace
} // namespace quorvane
