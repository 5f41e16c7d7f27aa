// SPDX-License-Identifier: MIT
#include "Menu.h"

#include "Symbols.h"

namespace quorvane {

Menu::Menu(QWidget* parent)
    : QMenu(parent)
{}

QAction* Menu::addItem(const QString& symbol, const QString& text)
{
    return addAction(symbolIcon(symbol), text);
}

} // namespace quorvane
