// SPDX-License-Identifier: MIT
#pragma once

#include "DriveSample.h"
#include "JobSlot.h"

#include <QProperty>

namespace quorvane {

class AppState;
class FacetHost;

/// The model's reading of the start-up drive. Main thread.
class DriveState
{
public:
    static DriveState& of(AppState& state);

    explicit DriveState(FacetHost& host);

    QProperty<DriveSample> driveStat; ///< usage of the start-up drive

    /// Reads the usage in the background. One reading is under way at a time; asked for meanwhile,
    /// one more follows.
    void refreshDriveUsage();

private:
    FacetHost& m_host;
    JobSlot m_driveSlot;
    bool m_readsDriveAgain = false;
};

} // namespace quorvane
