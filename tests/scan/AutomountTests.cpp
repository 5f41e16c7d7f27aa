// SPDX-License-Identifier: MIT
#include "DiskScanner.h"

#include "DiskTree.h"
#include "ScanSupport.h"
#include "TreeText.h"
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <linux/auto_fs.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>

namespace quorvane {
namespace {

using test::nodeAt;
using test::scanned;

/// The automounter's own part, in the process group that the kernel lets into the map: two volumes
/// in use, one of them deeper in the map, and beside each of them one that is not.
[[noreturn]] void serveMap(const std::string& map, int requests)
{
    setpgid(0, 0);
    const std::string options = "fd=" + std::to_string(requests) +
                                ",pgrp=" + std::to_string(getpgrp()) +
                                ",minproto=5,maxproto=5,indirect";
    bool isMade = mount("quorvane", map.c_str(), "autofs", 0, options.c_str()) == 0;
    for (const char* const folder : {"/used", "/unused", "/host", "/host/export", "/host/idle"}) {
        isMade = isMade && mkdir((map + folder).c_str(), 0755) == 0;
    }
    for (const char* const volume : {"/used", "/host/export"}) {
        const std::string place = map + volume;
        isMade = isMade && mount("quorvane", place.c_str(), "tmpfs", 0, nullptr) == 0;
        std::ofstream(place + "/file") << "seven b";
    }
    _exit(isMade ? 0 : 1);
}

/// Refuses every mount that is asked for, and remembers that one was.
class Refuser
{
public:
    Refuser(const std::string& map, int requests)
        : m_root(open(map.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
        , m_thread([this, requests] { watch(requests); })
    {}
    Refuser(const Refuser&) = delete;
    Refuser& operator=(const Refuser&) = delete;
    ~Refuser()
    {
        m_thread.join();
        close(m_root);
    }
    bool wasAsked() const { return m_wasAsked; }

private:
    void watch(int requests)
    {
        // Readable by a request, or closed by the end of the test.
        pollfd waiting{requests, POLLIN, 0};
        poll(&waiting, 1, -1);
        m_wasAsked = (waiting.revents & POLLIN) != 0;
        ioctl(m_root, AUTOFS_IOC_CATATONIC, 0);
    }

    int m_root;
    std::atomic<bool> m_wasAsked = false;
    std::thread m_thread;
};

/// Whether the kernel has the automounter's file system.
bool hasAutofs()
{
    std::ifstream file("/proc/filesystems");
    const std::string known{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return known.find("\tautofs\n") != std::string::npos;
}

void scanMap(const DiskTree& disk)
{
    const std::string map = disk.path("map").bytes();
    std::array<int, 2> requests{};
    ASSERT_EQ(pipe(requests.data()), 0);
    const pid_t automounter = fork();
    if (automounter == 0) {
        serveMap(map, requests[1]);
    }
    int status = 0;
    ASSERT_EQ(waitpid(automounter, &status, 0), automounter);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
    Refuser refuser(map, requests[0]);
    const auto tree = scanned(disk.root());
    const bool wasAsked = refuser.wasAsked();
    // Ends the watch: the one entry that is asked for.
    EXPECT_NE(access((map + "/unused/end").c_str(), F_OK), 0);
    EXPECT_FALSE(wasAsked);
    EXPECT_EQ(nodeAt(tree->root(), "map/used/file").scannedBytes(), 7);
    EXPECT_EQ(nodeAt(tree->root(), "map/host/export/file").scannedBytes(), 7);
    EXPECT_TRUE(nodeAt(tree->root(), "map/unused").children().empty());
    EXPECT_TRUE(nodeAt(tree->root(), "map/host/idle").children().empty());
    EXPECT_EQ(tree->root().scannedBytes(), 14);
}

TEST(Automounts, WhatIsMountedBelowAMapIsListedAndNothingElseIsMounted)
{
    if (!hasAutofs()) {
        GTEST_SKIP() << "the kernel knows no automounter";
    }
    DiskTree disk;
    disk.folder("map");
    if (!withPrivateMounts([&disk] { scanMap(disk); })) {
        GTEST_SKIP() << "no folder can be mounted here";
    }
}

} // namespace
} // namespace quorvane
