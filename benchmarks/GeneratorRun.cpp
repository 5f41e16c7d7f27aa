// SPDX-License-Identifier: MIT
#include "GeneratorRun.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <thread>
#include <variant>
#include <vector>

namespace quorvane {
namespace {

constexpr unsigned maxThreads = 4;

std::string refusal(const FilePath& folder, const std::string& reason)
{
    return folder.bytes() + ": " + reason;
}

/// Opens a folder in which nothing is yet, and makes it if it does not exist; its parent must. A
/// descriptor that the caller closes, or a message.
std::variant<int, std::string> openEmptyFolder(const FilePath& folder)
{
    if (mkdir(folder.bytes().c_str(), 0755) != 0 && errno != EEXIST) {
        return refusal(folder, std::generic_category().message(errno));
    }
    std::error_code fault;
    const bool isEmpty = std::filesystem::is_empty(folder.bytes(), fault);
    if (fault) {
        return refusal(folder, fault.message());
    }
    if (!isEmpty) {
        return refusal(folder, "the folder is not empty");
    }
    const int top = open(folder.bytes().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (top < 0) {
        return refusal(folder, std::generic_category().message(errno));
    }
    return top;
}

} // namespace

void FirstFault::note(const std::string& place)
{
    const int code = errno;
    const std::lock_guard guard(m_lock);
    if (!m_message) {
        m_message = "cannot make " + place + ": " + std::generic_category().message(code);
    }
    m_isNoted = true;
}

void runOnSomeThreads(const std::function<void(std::atomic<std::size_t>& next)>& work)
{
    std::atomic<std::size_t> next{0};
    const unsigned count = std::clamp(std::thread::hardware_concurrency(), 1U, maxThreads);
    std::vector<std::thread> threads;
    for (unsigned i = 1; i < count; ++i) {
        threads.emplace_back([&] { work(next); });
    }
    work(next);
    for (std::thread& thread : threads) {
        thread.join();
    }
}

std::optional<std::string>
fillEmptyFolder(const FilePath& folder,
                const std::function<std::optional<std::string>(int descriptor)>& fill)
{
    const std::variant<int, std::string> opened = openEmptyFolder(folder);
    if (const std::string* fault = std::get_if<std::string>(&opened)) {
        return *fault;
    }
    const int descriptor = std::get<int>(opened);
    std::optional<std::string> fault = fill(descriptor);
    close(descriptor);
    return fault;
}

} // namespace quorvane
