// SPDX-License-Identifier: MIT
#include "UninstallState.h"

#include "AppUninstaller.h"
#include "CheckedMath.h"
#include "CheckedTrash.h"
#include "FacetHost.h"
#include "FileContentCalls.h"
#include "Programs.h"
#include "Text.h"
#include "Workspace.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace quorvane {
namespace {

/// A removal may ask for a password first.
constexpr std::chrono::minutes removalTimeout{10};

struct UninstallRun
{
    std::vector<FilePath> touched;
    std::map<std::string, UninstallFailure> failures;
};

QString appCount(std::size_t count)
{
    return QString::number(count) + (count == 1 ? QStringLiteral(" app") : QStringLiteral(" apps"));
}

TrashRequest requestFor(const FilePath& path, const std::optional<EntryStatus>& seen)
{
    if (seen) {
        return TrashRequest::of(path, path.parent(), *seen);
    }
    TrashRequest request;
    request.path = path;
    request.root = path.parent();
    return request;
}

/// Removes one application as far as it is ours to remove, then its leftovers; what fails does not
/// keep the rest from going.
void uninstall(const UninstallableApp& app, const CheckedTrash& door, Programs& programs,
               UninstallRun& run)
{
    std::optional<UninstallFailure> failure;
    const auto send = [&](const FilePath& path, const std::optional<EntryStatus>& seen) {
        const TrashOutcome outcome = door.moveToTrash(requestFor(path, seen));
        run.touched.push_back(path);
        if (outcome != TrashOutcome::moved && !failure) {
            failure = UninstallFailure{outcome, path};
        }
    };
    if (app.goesToTrash()) {
        send(app.bundleURL, app.seen);
    } else if (app.goesByOwnTool()) {
        const auto output = programs.run(app.removal(), removalTimeout, {});
        run.touched.push_back(app.bundleURL);
        if (!output || output->exitCode != 0) {
            failure = UninstallFailure{TrashOutcome::failed, {}};
        }
    }
    for (const UninstallComponent& component : app.components) {
        send(component.url, component.seen);
    }
    if (failure) {
        run.failures.emplace(app.id, *failure);
    }
}

} // namespace

UninstallState::UninstallState(FacetHost& host)
    : m_host(host)
    , m_uninstallerSlot(host.jobs(), {&isUninstallerLoading, nullptr, nullptr})
    , m_uninstallSlot(host.jobs(), {&isUninstalling, &uninstallProgress, &uninstallStatus})
{}

void UninstallState::refreshInstalledApps()
{
    if (isUninstallerLoading.value()) {
        return;
    }
    installedApps = std::vector<UninstallableApp>();
    m_uninstallerSlot.restart(
        JobPriority::userInitiated,
        [folders = m_host.homeFolders(), calls = &m_host.platform().fileSystem,
         contents = &m_host.fileContents(), programs = &m_host.programs()](const JobRun& run) {
            const AppUninstaller::Sources sources = AppUninstaller::Sources::of(folders, *calls);
            return AppUninstaller::allApplications(
                sources, [&run] { return run.isUnwanted(); }, *calls, *contents, *programs);
        },
        [this](std::vector<UninstallableApp> apps) { installedApps = std::move(apps); });
}

void UninstallState::refreshKnownApps()
{
    if (!installedApps.value().empty()) {
        refreshInstalledApps();
    }
}

void UninstallState::toggleUninstall(const UninstallableApp& app)
{
    std::vector<UninstallableApp> queue = uninstallQueue.value();
    const auto isIt = [&app](const UninstallableApp& each) { return each.id == app.id; };
    if (std::erase_if(queue, isIt) == 0) {
        queue.push_back(app);
    }
    uninstallQueue = std::move(queue);
}

bool UninstallState::isQueuedForUninstall(const UninstallableApp& app) const
{
    const std::vector<UninstallableApp>& queue = uninstallQueue.value();
    return std::any_of(queue.begin(), queue.end(),
                       [&app](const UninstallableApp& each) { return each.id == app.id; });
}

void UninstallState::clearUninstallQueue()
{
    uninstallQueue = std::vector<UninstallableApp>();
}

void UninstallState::revealApp(const UninstallableApp& app)
{
    m_host.platform().workspace.reveal(app.bundleURL);
}

std::int64_t UninstallState::uninstallQueueBytes() const
{
    std::int64_t sum = 0;
    for (const UninstallableApp& app : uninstallQueue.value()) {
        sum = checkedAdd(sum, app.isForAdministrator() ? app.extraBytes() : app.totalBytes(),
                         "AppState::uninstallQueueBytes");
    }
    return sum;
}

void UninstallState::runUninstallQueue()
{
    const std::vector<UninstallableApp> apps = uninstallQueue.value();
    clearUninstallQueue();
    std::map<std::string, UninstallFailure> failures = uninstallFailures.value();
    for (const UninstallableApp& app : apps) {
        failures.erase(app.id);
    }
    uninstallFailures = std::move(failures);
    m_uninstallSlot.restart(
        JobPriority::userInitiated,
        [apps, door = CheckedTrash(m_host.platform().trash, m_host.platform().home),
         programs = &m_host.programs()](const JobRun& run) {
            UninstallRun result;
            const auto total = static_cast<double>(std::max<std::size_t>(apps.size(), 1));
            for (std::size_t i = 0; i < apps.size(); ++i) {
                // Goes on where nobody is there to see it: a run is never cut off.
                run.reportAndWait(
                    static_cast<double>(i) / total,
                    QStringLiteral("Uninstalling %1…").arg(displayText(apps[i].name)));
                uninstall(apps[i], door, *programs, result);
            }
            return result;
        },
        [this, count = apps.size()](const UninstallRun& run) {
            uninstallProgress = 1;
            uninstallStatus = QStringLiteral("Uninstalled %1.").arg(appCount(count));
            std::map<std::string, UninstallFailure> all = uninstallFailures.value();
            all.insert(run.failures.begin(), run.failures.end());
            uninstallFailures = std::move(all);
            if (m_host.scannedRoot()) {
                m_host.scanAgainAfter(run.touched);
            }
        });
    uninstallStatus = QStringLiteral("Preparing uninstall…");
}

} // namespace quorvane
