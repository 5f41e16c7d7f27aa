// SPDX-License-Identifier: MIT
#pragma once

#include "CheckedTrash.h"
#include "JobSlot.h"
#include "UninstallableApp.h"

#include <QProperty>
#include <QString>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

class AppState;
class FacetHost;

/// The first thing of an application that a run could not remove.
struct UninstallFailure
{
    TrashOutcome outcome = TrashOutcome::failed;
    FilePath path; ///< empty where the application's own tool could not remove it

    friend bool operator==(const UninstallFailure&, const UninstallFailure&) = default;
};

/// The model's list of applications and the queue of those to be removed. Main thread.
class UninstallState
{
public:
    static UninstallState& of(AppState& state);

    explicit UninstallState(FacetHost& host);

    QProperty<std::vector<UninstallableApp>> installedApps;
    QProperty<bool> isUninstallerLoading{false};
    /// Copies of the rows, in the order of the clicks: they outlive a refresh of the list.
    QProperty<std::vector<UninstallableApp>> uninstallQueue;
    QProperty<bool> isUninstalling{false};
    QProperty<double> uninstallProgress{0}; ///< 0 to 1
    QProperty<std::optional<QString>> uninstallStatus;
    /// What of an application stayed in the latest run that took it, by the id.
    QProperty<std::map<std::string, UninstallFailure>> uninstallFailures;

    /// Lists the applications in the background; nothing while it does.
    void refreshInstalledApps();
    /// Puts the application into the queue or takes it out.
    void toggleUninstall(const UninstallableApp& app);
    bool isQueuedForUninstall(const UninstallableApp& app) const;
    void clearUninstallQueue();
    void revealApp(const UninstallableApp& app);
    /// Sum over the queue: of what only an administrator can remove the leftovers alone.
    std::int64_t uninstallQueueBytes() const;
    /// Works the queue off in the background, one application after another, and scans the root
    /// again where there is one. The queue is empty at once.
    void runUninstallQueue();

protected:
    /// Lists the applications again if they have been listed before.
    void refreshKnownApps();

private:
    FacetHost& m_host;
    JobSlot m_uninstallerSlot;
    JobSlot m_uninstallSlot;
};

} // namespace quorvane
