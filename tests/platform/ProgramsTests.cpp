// SPDX-License-Identifier: MIT
#include "Programs.h"

#include "DiskTree.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace quorvane {
namespace {

constexpr std::chrono::seconds patience{60};

std::optional<Programs::Output> run(std::vector<std::string> arguments,
                                    std::chrono::milliseconds timeout = patience,
                                    const std::function<bool()>& isCancelled = {})
{
    return Programs::system().run(arguments, timeout, isCancelled);
}

TEST(Programs, PrintsAndExitCodeComeBack)
{
    const auto output = run({"sh", "-c", "echo out; echo err >&2; exit 3"});
    ASSERT_TRUE(output.has_value());
    EXPECT_EQ(output->text, "out\n");
    EXPECT_EQ(output->exitCode, 3);
}

TEST(Programs, ArgumentsReachTheProgramAsTheyAre)
{
    const auto output = run({"printf", "%s|", "a b", "$HOME", "", "\"q\""});
    ASSERT_TRUE(output.has_value());
    EXPECT_EQ(output->text, "a b|$HOME||\"q\"|");
}

TEST(Programs, TheLocaleIsOneThatProgramsCanRead)
{
    EXPECT_EQ(run({"sh", "-c", "echo $LC_ALL"})->text, "C.UTF-8\n");
}

TEST(Programs, WhatCannotBeStartedGivesNothing)
{
    EXPECT_FALSE(run({"/nowhere/at/all"}).has_value());
    EXPECT_FALSE(run({}).has_value());
}

TEST(Programs, NothingIsThereToRead)
{
    EXPECT_EQ(run({"cat"})->text, "");
}

TEST(Programs, ASignalGivesNoExitCode)
{
    EXPECT_EQ(run({"sh", "-c", "kill -9 $$"})->exitCode, -1);
}

TEST(Programs, LongOutputArrivesWhole)
{
    const auto output = run({"sh", "-c", "head -c 1000000 /dev/zero"});
    ASSERT_TRUE(output.has_value());
    EXPECT_EQ(output->text.size(), 1000000U);
}

TEST(Programs, OutputWithoutEndIsGivenUp)
{
    EXPECT_FALSE(run({"cat", "/dev/zero"}).has_value());
}

/// A program that runs for ten minutes and tells its process.
class LongProgram
{
public:
    LongProgram() = default;
    LongProgram(const LongProgram&) = delete;
    LongProgram& operator=(const LongProgram&) = delete;
    ~LongProgram()
    {
        if (m_process > 0 && !hasEnded()) {
            kill(m_process, SIGKILL);
        }
    }

    std::vector<std::string> arguments() const
    {
        return {"sh", "-c", R"(echo $$ >"$0.new" && mv "$0.new" "$0" && exec sleep 600)", file()};
    }
    void awaitStart()
    {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        while (m_process == 0 && std::chrono::steady_clock::now() < deadline) {
            std::ifstream(file()) >> m_process;
            std::this_thread::yield();
        }
    }
    /// Nothing is left of the process: it has ended, and its end was waited for.
    bool hasEnded() const { return m_process > 0 && kill(m_process, 0) != 0 && errno == ESRCH; }

private:
    std::string file() const { return m_disk.path("process").bytes(); }

    DiskTree m_disk;
    pid_t m_process = 0;
};

TEST(Programs, AProgramThatTakesTooLongIsEnded)
{
    LongProgram program;
    // Asked after every poll and before the time is compared: that is up by then.
    EXPECT_FALSE(run(program.arguments(), std::chrono::milliseconds(1), [&] {
                     program.awaitStart();
                     return false;
                 }).has_value());
    EXPECT_TRUE(program.hasEnded());
}

TEST(Programs, ACancelEndsTheProgram)
{
    LongProgram program;
    EXPECT_FALSE(run(program.arguments(), patience, [&] {
                     program.awaitStart();
                     return true;
                 }).has_value());
    EXPECT_TRUE(program.hasEnded());
}

TEST(Programs, OurOwnProcessIsAmongThoseThatRun)
{
    std::array<char, 4096> own{};
    ASSERT_GT(readlink("/proc/self/exe", own.data(), own.size() - 1), 0);
    const std::vector<Programs::Running> running = Programs::system().running();
    EXPECT_TRUE(std::any_of(running.begin(), running.end(), [&](const Programs::Running& each) {
        return each.executable == own.data();
    }));
}

} // namespace
} // namespace quorvane
