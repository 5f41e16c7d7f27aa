// SPDX-License-Identifier: MIT
#include "PosixPrograms.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>

extern char** environ;

namespace quorvane {
namespace {

constexpr std::chrono::milliseconds pollInterval{50};
constexpr std::size_t maxOutputBytes = std::size_t{16} << 20;

/// A pipe whose ends are closed with it. A program that is started inherits neither by itself.
struct Pipe
{
    int ends[2] = {-1, -1};

    Pipe()
    {
        if (pipe(ends) == 0) {
            fcntl(ends[0], F_SETFD, FD_CLOEXEC);
            fcntl(ends[1], F_SETFD, FD_CLOEXEC);
        }
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe()
    {
        close(0);
        close(1);
    }
    void close(int end)
    {
        if (ends[end] >= 0) {
            ::close(ends[end]);
            ends[end] = -1;
        }
    }
};

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// The program's environment, with a locale in which it prints what a program can read.
std::vector<std::string> plainEnvironment()
{
    std::vector<std::string> variables;
    for (char** each = environ; each != nullptr && *each != nullptr; ++each) {
        const std::string_view variable = *each;
        if (!variable.starts_with("LC_") && !variable.starts_with("LANGUAGE=")) {
            variables.emplace_back(variable);
        }
    }
    variables.emplace_back("LC_ALL=C.UTF-8");
    return variables;
}

pid_t start(std::span<const std::string> arguments, int output)
{
    std::vector<std::string> words(arguments.begin(), arguments.end());
    std::vector<std::string> variables = plainEnvironment();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    const int fault = posix_spawnp(&child, words.front().c_str(), &actions, nullptr,
                                   pointersTo(words).data(), pointersTo(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    return fault == 0 ? child : -1;
}

/// The exit code of a child that has ended or is about to; -1 for one that a signal ended.
int waitFor(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return -1;
        }
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Reads until the child closes its end; false when it was not to be waited for any longer.
bool readAll(int end, std::string& text, std::chrono::milliseconds timeout,
             const std::function<bool()>& isCancelled)
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    std::array<char, 16384> chunk;
    for (;;) {
        pollfd waiting{end, POLLIN, 0};
        const int ready = poll(&waiting, 1, static_cast<int>(pollInterval.count()));
        if ((isCancelled && isCancelled()) || std::chrono::steady_clock::now() > deadline ||
            text.size() > maxOutputBytes) {
            return false;
        }
        if (ready <= 0) {
            continue;
        }
        const ssize_t got = read(end, chunk.data(), chunk.size());
        if (got == 0) {
            return true;
        }
        if (got < 0 && errno != EINTR) {
            return false;
        }
        text.append(chunk.data(), static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    }
}

} // namespace

std::optional<Programs::Output> PosixPrograms::run(std::span<const std::string> arguments,
                                                   std::chrono::milliseconds timeout,
                                                   const std::function<bool()>& isCancelled)
{
    Pipe pipe;
    if (arguments.empty() || pipe.ends[0] < 0) {
        return std::nullopt;
    }
    const pid_t child = start(arguments, pipe.ends[1]);
    pipe.close(1);
    if (child < 0) {
        return std::nullopt;
    }
    Output output;
    if (!readAll(pipe.ends[0], output.text, timeout, isCancelled)) {
        kill(child, SIGTERM);
        pipe.close(0);
        waitFor(child);
        return std::nullopt;
    }
    output.exitCode = waitFor(child);
    return output;
}

} // namespace quorvane
