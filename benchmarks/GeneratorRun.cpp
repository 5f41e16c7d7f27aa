// SPDX-License-Identifier: MIT
#include "GeneratorRun.h"

#include "EmptyFolder.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <thread>
#include <variant>
#include <vector>

namespace quorvane {
namespace {

constexpr unsigned mostThreads = 4;

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
    const unsigned count = std::clamp(std::thread::hardware_concurrency(), 1U, mostThreads);
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
