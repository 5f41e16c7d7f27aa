// SPDX-License-Identifier: MIT
#include "NodeContextMenuModifier.h"

#include "Menu.h"
#include "NavigationState.h"
#include "ScanState.h"
#include "StagingState.h"

#include <QAction>
#include <QCoreApplication>
#include <QPoint>

#include <memory>

namespace quorvane {

namespace {

/// Whether both belong to one tree. The model holds none when the first is null.
bool isSameTree(const NodePointer& first, const NodePointer& second)
{
    return first && second && !first.owner_before(second) && !second.owner_before(first);
}

/// Acts on the node as long as its tree is the one on show: a menu stays open while a scan replaces
/// it, and neither keeps the old tree alive nor reaches into it.
template<class Act>
void connectEntry(const QAction& entry, Menu& menu, const ScanState& scan, const NodePointer& node,
                  Act act)
{
    QObject::connect(&entry, &QAction::triggered, &menu,
                     [&scan, weak = std::weak_ptr<FileNode>(node), act] {
                         const NodePointer current = weak.lock();
                         if (isSameTree(current, scan.rootNode.value())) {
                             act(current);
                         }
                     });
}

} // namespace

void NodeContextMenuModifier::popUp(QWidget& owner, const QPoint& globalPosition) const
{
    if (!node) {
        return;
    }
    auto* const menu = new Menu(&owner);
    menu->setObjectName(QStringLiteral("nodeContextMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const ScanState& scan = ScanState::of(state);
    NavigationState& navigation = NavigationState::of(state);
    const NodePointer root = scan.rootNode.value();
    const bool isStaged = node->isStagedForTrash();
    QAction* const stage = menu->addItem(
        isStaged ? QStringLiteral("arrow.uturn.backward") : QStringLiteral("trash"),
        isStaged ? QCoreApplication::translate("NodeContextMenu", "Unstage from Cleanup")
                 : QCoreApplication::translate("NodeContextMenu", "Stage for Cleanup"));
    stage->setObjectName(QStringLiteral("stageAction"));
    stage->setEnabled(!root || node->id() != root->id());
    connectEntry(*stage, *menu, scan, node,
                 [&staging = StagingState::of(state)](const NodePointer& shown) {
                     staging.toggleStaged(shown);
                 });
    QAction* const reveal =
        menu->addItem(QStringLiteral("folder"),
                      QCoreApplication::translate("NodeContextMenu", "Reveal in Finder"));
    reveal->setObjectName(QStringLiteral("revealAction"));
    connectEntry(*reveal, *menu, scan, node,
                 [&navigation](const NodePointer& shown) { navigation.revealInFinder(*shown); });
    QAction* const open = menu->addItem(QStringLiteral("arrowshape.turn.up.right"),
                                        QCoreApplication::translate("NodeContextMenu", "Open"));
    open->setObjectName(QStringLiteral("openAction"));
    connectEntry(*open, *menu, scan, node,
                 [&navigation](const NodePointer& shown) { navigation.openInApp(*shown); });
    menu->popup(globalPosition);
}

} // namespace quorvane
