// SPDX-License-Identifier: MIT
#pragma once

#include "AppSection.h"
#include "BloatFilter.h"
#include "CheckedTrash.h"
#include "DuplicateFinder.h"
#include "FileTree.h"
#include "HomeTables.h"
#include "JobRunner.h"
#include "Platform.h"

#include <memory>
#include <vector>

namespace quorvane {

class AppState;
class FlashState;

/// What a facet of the model is built from: the platform, the job runner, the flash banner, and the
/// few things that it may ask of the model without knowing the facets that answer. Main thread.
class FacetHost
{
public:
    static FacetHost& of(AppState& state);

    FacetHost(const FacetHost&) = delete;
    FacetHost& operator=(const FacetHost&) = delete;

    const Platform& platform() const { return m_platform; }
    /// Where screens start their layouts, and facets their jobs, these through a JobSlot.
    JobRunner& jobs() { return m_jobs; }
    FlashState& flashBanner() { return m_flash; }
    FileContentCalls& fileContents() const;
    Programs& programs() const;
    /// The user's folders, with what the environment says of them.
    HomeFolders homeFolders() const;

    /// Root of the finished tree; null without one.
    virtual NodePointer scannedRoot() const = 0;
    /// Every node of that tree by its id; never null, empty without one.
    virtual std::shared_ptr<const NodeIndex> scannedNodes() const = 0;
    /// What the last search for duplicates found; never null.
    virtual std::shared_ptr<const DuplicateFinder::Groups> foundDuplicates() const = 0;
    /// The Trash queue, in the order of staging.
    virtual const std::vector<NodePointer>& queue() const = 0;
    /// Puts a stand-alone node into the queue; found is what its entry looked like.
    virtual void stageFound(const NodePointer& item, const TrashRequest& found) = 0;
    /// Keys of the families that are hidden.
    virtual BloatKeys hiddenFamilies() const = 0;
    /// The section on show becomes this one.
    virtual void showSection(AppSection section) = 0;
    /// Takes nodes out of the Trash queue and puts others at its end, in one change.
    virtual void changeQueue(const std::vector<FileNode*>& unstaged,
                             const std::vector<NodePointer>& staged) = 0;
    /// Scans the root again because these paths have changed on the disk. A scan that was asked for
    /// meanwhile starts over instead, where it concerns one of them.
    virtual void scanAgainAfter(const std::vector<FilePath>& changed) = 0;

protected:
    FacetHost(const Platform& platform, FlashState& flash)
        : m_platform(platform)
        , m_flash(flash)
        , m_jobs(platform.lowerThisThread)
    {}
    ~FacetHost() = default;

private:
    Platform m_platform;
    FlashState& m_flash;
    JobRunner m_jobs;
};

} // namespace quorvane
