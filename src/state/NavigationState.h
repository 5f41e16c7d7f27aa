// SPDX-License-Identifier: MIT
#pragma once

#include "AppSection.h"
#include "FileTree.h"
#include "JobSlot.h"
#include "VisualizerType.h"

#include <QProperty>

#include <cstdint>
#include <optional>

namespace quorvane {

class AppState;
class FacetHost;

/// When a node was created, in whole seconds since 1970: absent when that could not be read and
/// where the file system keeps no such date.
struct CreationDate
{
    NodePointer node; ///< null as long as nothing was read
    std::optional<std::int64_t> seconds;

    friend bool operator==(const CreationDate&, const CreationDate&) = default;
};

/// Where the user is: the section and the visualiser on show, and the place in the tree. Main
/// thread.
class NavigationState
{
public:
    static NavigationState& of(AppState& state);

    explicit NavigationState(FacetHost& host);

    QProperty<NodePointer> selectedNode; ///< node whose details are shown
    QProperty<AppSection> section{AppSection::analysis};
    QProperty<AppSection> sectionBeforeSettings{AppSection::analysis};
    QProperty<VisualizerType> visualizer{VisualizerType::treemap};
    QProperty<NodePointer> focusNode;     ///< folder that the visualisers draw as root
    QProperty<CreationDate> creationDate; ///< the last that was read

    /// The folder on show: the focus, else the root; absent without a tree.
    NodePointer shownNode() const;

    void select(const NodePointer& node);
    void focus(const NodePointer& node);
    void focusUp();
    /// Asks the file system in the background when the node was created; creationDate tells it. A
    /// volume that hangs takes one thread: of what is asked for meanwhile the last is read next.
    void readCreationDate(const NodePointer& node);
    /// The tree has gone: nothing of it is held any more.
    void dropCreationDate();
    void revealInFinder(const FileNode& node);
    void openInApp(const FileNode& node);

    void openSettings();
    void closeSettings();

private:
    FacetHost& m_host;
    JobSlot m_creationSlot;
    NodePointer m_readsCreationOf;   ///< while the job is under way
    NodePointer m_readsCreationNext; ///< asked for meanwhile; null for none
};

} // namespace quorvane
