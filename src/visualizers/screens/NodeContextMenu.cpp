// SPDX-License-Identifier: MIT
#include "NodeContextMenu.h"

#include "AppState.h"
#include "Menu.h"

#include <QAction>
#include <QPoint>

namespace quorvane {

void popUpNodeContextMenu(AppState& state, const NodePointer& node, QWidget& owner,
                          const QPoint& globalPosition)
{
    if (!node) {
        return;
    }
    auto* const menu = new Menu(&owner);
    menu->setObjectName(QStringLiteral("nodeContextMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const NodePointer root = state.rootNode.value();
    const bool isStaged = node->isStagedForTrash();
    QAction* const stage = menu->addItem(
        isStaged ? QStringLiteral("arrow.uturn.backward") : QStringLiteral("trash"),
        isStaged ? QStringLiteral("Unstage from Cleanup") : QStringLiteral("Stage for Cleanup"));
    stage->setObjectName(QStringLiteral("stageAction"));
    stage->setEnabled(!root || node->id() != root->id());
    QObject::connect(stage, &QAction::triggered, menu,
                     [&state, node] { state.toggleStaged(node); });
    const QAction* const reveal =
        menu->addItem(QStringLiteral("folder"), QStringLiteral("Reveal in Finder"));
    QObject::connect(reveal, &QAction::triggered, menu,
                     [&state, node] { state.revealInFinder(*node); });
    const QAction* const open =
        menu->addItem(QStringLiteral("arrowshape.turn.up.right"), QStringLiteral("Open"));
    QObject::connect(open, &QAction::triggered, menu, [&state, node] { state.openInApp(*node); });
    menu->popup(globalPosition);
}

} // namespace quorvane
