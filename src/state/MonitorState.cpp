// SPDX-License-Identifier: MIT
#include "MonitorState.h"

#include "FacetHost.h"
#include "MachineFigures.h"
#include "Workspace.h"

#include <string>
#include <utility>

namespace quorvane {

MonitorState::MonitorState(FacetHost& host)
    : m_host(host)
    , m_sampleSlot(host.jobs(), {&isSampling, nullptr, nullptr})
{}

MachineFigures& MonitorState::machine() const
{
    MachineFigures* const given = m_host.platform().machine;
    return given != nullptr ? *given : MachineFigures::system();
}

void MonitorState::sampleMachine()
{
    if (isSampling.value()) {
        return;
    }
    m_sampleSlot.restart(
        JobPriority::userInitiated,
        [figures = &machine(), order = processOrder.value()](const JobRun&) {
            return std::pair(SystemMonitor::sample(*figures, order),
                             SystemMonitor::chipSummary(*figures));
        },
        [this](std::pair<SystemMonitor::Sample, QString> taken) {
            chipSummary = std::move(taken.second);
            machineSample = std::move(taken.first);
        });
}

void MonitorState::forgetMachine()
{
    m_sampleSlot.stop();
    machineSample = SystemMonitor::Sample();
}

void MonitorState::revealProgram(std::int32_t pid)
{
    // One link of the kernel's own memory: no disk is asked.
    const std::string program = machine().programOf(pid);
    if (!program.empty()) {
        m_host.platform().workspace.reveal(FilePath(program));
    }
}

} // namespace quorvane
