// SPDX-License-Identifier: MIT
#include "UnprivilegedRun.h"

#include <gtest/gtest.h>

#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <exception>
#include <string>

namespace quorvane {
namespace {

constexpr unsigned nobody = 65534;

const testing::TestResult& currentResult()
{
    return *testing::UnitTest::GetInstance()->current_test_info()->result();
}

std::string failuresSince(int firstPart)
{
    std::string text;
    for (int i = firstPart; i < currentResult().total_part_count(); ++i) {
        const testing::TestPartResult& part = currentResult().GetTestPartResult(i);
        if (part.failed()) {
            text += std::string(part.file_name() != nullptr ? part.file_name() : "?") + ":" +
                    std::to_string(part.line_number()) + ": " + part.message() + "\n";
        }
    }
    return text;
}

/// Never returns: ends the child after its failures have gone into the pipe.
[[noreturn]] void runInChild(const std::function<void()>& body, int pipeEnd)
{
    const int firstPart = currentResult().total_part_count();
    std::string failures;
    try {
        body();
    } catch (const std::exception& error) {
        failures = std::string("exception: ") + error.what() + "\n";
    }
    failures += failuresSince(firstPart);
    const bool isTold =
        write(pipeEnd, failures.data(), failures.size()) == static_cast<ssize_t>(failures.size());
    std::fflush(nullptr);
    _exit(failures.empty() && isTold ? 0 : 1);
}

std::string readAll(int pipeEnd)
{
    std::string text;
    std::array<char, 4096> buffer{};
    ssize_t got = 0;
    while ((got = read(pipeEnd, buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
    return text;
}

} // namespace

int endOfChildProcess(const std::function<void()>& body)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        ADD_FAILURE() << "no pipe";
        return -1;
    }
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        runInChild(body, ends[1]);
    }
    close(ends[1]);
    const std::string failures = child < 0 ? "no child process" : readAll(ends[0]);
    close(ends[0]);
    int status = -1;
    if (child > 0) {
        waitpid(child, &status, 0);
    }
    if (!failures.empty()) {
        ADD_FAILURE() << "in the child process:\n" << failures;
    }
    return status;
}

void inChildProcess(const std::function<void()>& body)
{
    const int status = endOfChildProcess(body);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
}

bool withPrivateMounts(const std::function<void()>& body)
{
    constexpr int notPermitted = 77;
    const int status = endOfChildProcess([&body] {
        if (unshare(CLONE_NEWNS) != 0 ||
            mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
            _exit(notPermitted);
        }
        body();
    });
    if (WIFEXITED(status) && WEXITSTATUS(status) == notPermitted) {
        return false;
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
    return true;
}

void asUnprivilegedUser(const std::function<void()>& body)
{
    if (geteuid() != 0) {
        body();
        return;
    }
    inChildProcess([&body] {
        ASSERT_EQ(setgroups(0, nullptr), 0);
        ASSERT_EQ(setgid(nobody), 0);
        ASSERT_EQ(setuid(nobody), 0);
        body();
    });
}

} // namespace quorvane
