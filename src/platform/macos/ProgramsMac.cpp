// SPDX-License-Identifier: MIT
#include "PosixPrograms.h"

#include <libproc.h>

#include <algorithm>

#include <array>

namespace quorvane {
namespace {

class MacPrograms final : public PosixPrograms
{
public:
    std::vector<Running> running() override
    {
        std::vector<pid_t> pids(
            static_cast<std::size_t>(std::max(proc_listallpids(nullptr, 0), 0)));
        const int count =
            proc_listallpids(pids.data(), static_cast<int>(pids.size() * sizeof(pid_t)));
        std::vector<Running> found;
        for (int i = 0; i < count && i < static_cast<int>(pids.size()); ++i) {
            std::array<char, PROC_PIDPATHINFO_MAXSIZE> path{};
            if (proc_pidpath(pids[static_cast<std::size_t>(i)], path.data(), path.size()) > 0) {
                found.push_back({path.data(), {}});
            }
        }
        return found;
    }
};

} // namespace

Programs& Programs::system()
{
    static MacPrograms programs;
    return programs;
}

} // namespace quorvane
