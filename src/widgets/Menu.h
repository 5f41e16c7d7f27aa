// SPDX-License-Identifier: MIT
#pragma once

#include <QMenu>

namespace quorvane {

/// A context menu: rounded popover, rows 28 high with symbols.
class Menu : public QMenu
{
    Q_OBJECT

public:
    explicit Menu(QWidget* parent = nullptr);

    /// An empty symbol leaves the place of the symbol free.
    QAction* addItem(const QString& symbol, const QString& text);
};

} // namespace quorvane
