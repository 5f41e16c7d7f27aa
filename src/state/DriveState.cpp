// SPDX-License-Identifier: MIT
#include "DriveState.h"

#include "FacetHost.h"
#include "FileSystemCalls.h"
#include "SystemMonitor.h"

#include <utility>

namespace quorvane {

DriveState::DriveState(FacetHost& host)
    : m_host(host)
    , m_driveSlot(host.jobs())
{}

void DriveState::refreshDriveUsage()
{
    // A volume that hangs must not take a thread at each reading.
    if (m_driveSlot.isRunning()) {
        m_readsDriveAgain = true;
        return;
    }
    m_driveSlot.restart(
        JobPriority::utility,
        [home = m_host.platform().home, calls = &m_host.platform().fileSystem](const JobRun&) {
            return SystemMonitor::driveUsage(*calls, home);
        },
        [this](DriveSample sample) {
            driveStat = sample;
            if (std::exchange(m_readsDriveAgain, false)) {
                refreshDriveUsage();
            }
        });
}

} // namespace quorvane
