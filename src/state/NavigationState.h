// SPDX-License-Identifier: MIT
#pragma once

#include "AppSection.h"
#include "FileTree.h"
#include "VisualizerType.h"

#include <QProperty>

#include <cstdint>
#include <optional>

namespace quorvane {

class AppState;
class FacetHost;

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
    QProperty<NodePointer> focusNode; ///< folder that the visualisers draw as root

    /// The folder on show: the focus, else the root; absent without a tree.
    NodePointer shownNode() const;

    void select(const NodePointer& node);
    void focus(const NodePointer& node);
    void focusUp();
    /// When the node was created, in whole seconds since 1970: one call to the file system. Absent
    /// when it fails and where the file system keeps no such date.
    std::optional<std::int64_t> creationDate(const FileNode& node) const;
    void revealInFinder(const FileNode& node);
    void openInApp(const FileNode& node);

    void openSettings();
    void closeSettings();

private:
    FacetHost& m_host;
};

} // namespace quorvane
