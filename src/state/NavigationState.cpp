// SPDX-License-Identifier: MIT
#include "NavigationState.h"

#include "DiskScanner.h"
#include "FacetHost.h"
#include "Workspace.h"

namespace quorvane {

NavigationState::NavigationState(FacetHost& host)
    : m_host(host)
{}

NodePointer NavigationState::shownNode() const
{
    return focusNode.value() ? focusNode.value() : m_host.scannedRoot();
}

void NavigationState::select(const NodePointer& node)
{
    selectedNode = node;
}

void NavigationState::focus(const NodePointer& node)
{
    focusNode = node;
    selectedNode = node;
}

void NavigationState::focusUp()
{
    const NodePointer focus = focusNode.value();
    FileNode* const parent = focus ? focus->parent() : nullptr;
    focusNode = parent != nullptr ? NodePointer(focus, parent) : m_host.scannedRoot();
    selectedNode = nullptr;
}

std::optional<std::int64_t> NavigationState::creationDate(const FileNode& node) const
{
    return DiskScanner(0, m_host.platform().fileSystem).fileCreationDate(node.path());
}

void NavigationState::revealInFinder(const FileNode& node)
{
    m_host.platform().workspace.reveal(node.path());
}

void NavigationState::openInApp(const FileNode& node)
{
    m_host.platform().workspace.open(node.path());
}

void NavigationState::openSettings()
{
    if (section.value() != AppSection::settings) {
        sectionBeforeSettings = section.value();
    }
    section = AppSection::settings;
}

void NavigationState::closeSettings()
{
    if (section.value() == AppSection::settings) {
        section = sectionBeforeSettings.value();
    }
}

} // namespace quorvane
