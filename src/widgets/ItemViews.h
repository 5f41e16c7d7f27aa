// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QTreeView>

#include <optional>

namespace quorvane {

/// A table, flat or with open and closed levels: header 28, rows 32, whole rows hovered, selected
/// and focused. The first column takes the free width. Set the model, then resize the others.
class TableView : public QTreeView
{
    Q_OBJECT

public:
    explicit TableView(QWidget* parent = nullptr);

    /// The round corners below the rows, points: those of the table's own frame unless it stands on
    /// something else. Rows keep clear of them.
    void setCornerRadius(int radius) { m_cornerRadius = radius; }

protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void drawBranches(QPainter* painter, const QRect& rect,
                      const QModelIndex& index) const override;

private:
    int cornerRadius() const;
    void clipToCorners(QPainter& painter, const QRect& row) const;

    std::optional<int> m_cornerRadius;
};

} // namespace quorvane
