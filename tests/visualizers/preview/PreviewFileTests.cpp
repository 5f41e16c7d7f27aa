// SPDX-License-Identifier: MIT
#include "PreviewFile.h"

#include "DiskTree.h"
#include "PreviewContent.h"
#include "WaitFor.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

namespace quorvane {
namespace {

/// A thread that waits for somebody to read the pipe.
class WaitingWriter
{
public:
    explicit WaitingWriter(const FilePath& pipe)
        : m_pipe(pipe)
        , m_thread([this] {
            m_number = static_cast<long>(::syscall(SYS_gettid));
            m_descriptor = ::open(m_pipe.bytes().c_str(), O_WRONLY | O_CLOEXEC);
            m_isThrough = true;
        })
    {}

    ~WaitingWriter()
    {
        // A reader of its own lets it go.
        const int reader = ::open(m_pipe.bytes().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        m_thread.join();
        ::close(reader);
        ::close(m_descriptor);
    }

    /// A call that wakes the thread ends its sleep before it returns, and what the thread does
    /// next is to say that it is through.
    bool waits() const { return state() == 'S' && !m_isThrough; }

private:
    char state() const
    {
        std::ifstream file("/proc/self/task/" + std::to_string(m_number.load()) + "/stat");
        std::stringstream text;
        text << file.rdbuf();
        const std::size_t name = text.str().rfind(") ");
        return m_number == 0 || name == std::string::npos ? '?' : text.str()[name + 2];
    }

    FilePath m_pipe;
    std::atomic<long> m_number = 0;
    std::atomic<bool> m_isThrough = false;
    int m_descriptor = -1;
    std::thread m_thread;
};

TEST(PreviewFileTests, AWriterThatWaitsAtAPipeGoesOnWaiting)
{
    DiskTree disk;
    disk.fifo("pipe");
    disk.symbolicLink("pipe", "link");
    const WaitingWriter writer(disk.path("pipe"));
    ASSERT_TRUE(waitFor([&writer] { return writer.waits(); }));
    for (const char* const name : {"pipe", "link"}) {
        PreviewFile file;
        EXPECT_FALSE(file.openRegular(disk.path(name))) << name;
        EXPECT_TRUE(writer.waits()) << name;
        const LockedFlag stop;
        PreviewContent::read(disk.path(name), QSize(100, 100), stop);
        EXPECT_TRUE(writer.waits()) << name;
    }
}

TEST(PreviewFileTests, OpensFilesAndLinksToThemByTheirBytes)
{
    DiskTree disk;
    disk.fileWithContents("odd \xff name", "held");
    disk.symbolicLink("odd \xff name", "link");
    for (const char* const name : {"odd \xff name", "link"}) {
        PreviewFile file;
        ASSERT_TRUE(file.openRegular(disk.path(name))) << name;
        EXPECT_EQ(file.readAll(), QByteArray("held")) << name;
    }
}

TEST(PreviewFileTests, OpensNothingElse)
{
    DiskTree disk;
    disk.folder("folder");
    disk.socket("socket");
    disk.symbolicLink("link", "link");
    disk.symbolicLink("/dev/null", "device");
    for (const char* const name : {"folder", "socket", "link", "device", "missing"}) {
        PreviewFile file;
        EXPECT_FALSE(file.openRegular(disk.path(name))) << name;
        EXPECT_FALSE(file.isOpen()) << name;
    }
}

} // namespace
} // namespace quorvane
