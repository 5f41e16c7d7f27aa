// SPDX-License-Identifier: MIT
#include "NavigationState.h"

#include "DiskScanner.h"
#include "FacetHost.h"
#include "Workspace.h"

#include <utility>

namespace quorvane {

NavigationState::NavigationState(FacetHost& host)
    : m_host(host)
    , m_creationSlot(host.jobs())
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

void NavigationState::readCreationDate(const NodePointer& node)
{
    if (m_creationSlot.isRunning()) {
        m_readsCreationNext = node == m_readsCreationOf ? nullptr : node;
        return;
    }
    m_readsCreationOf = node;
    const auto publish = [this](const std::optional<std::int64_t>& seconds) {
        if (const NodePointer read = std::exchange(m_readsCreationOf, nullptr)) {
            creationDate = CreationDate{read, seconds};
        }
        if (const NodePointer next = std::exchange(m_readsCreationNext, nullptr)) {
            readCreationDate(next);
        }
    };
    m_creationSlot.restart(
        JobPriority::userInitiated,
        [path = node->path(), calls = &m_host.platform().fileSystem](const JobRun&) {
            return DiskScanner(1, *calls).fileCreationDate(path);
        },
        publish, [publish] { publish(std::nullopt); });
}

void NavigationState::dropCreationDate()
{
    m_readsCreationOf = nullptr;
    m_readsCreationNext = nullptr;
    creationDate = CreationDate{};
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
