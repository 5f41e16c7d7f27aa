// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QStyledItemDelegate>
#include <QTreeView>

#include <optional>

namespace quorvane {

/// Rows of a list: a symbol, a title, a line of detail below it, and a value at the right. One line
/// is 32 high, two lines are 48.
class RowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    enum Role {
        detailRole = Qt::UserRole + 0x51, ///< QString; shown when the delegate has two lines
        symbolRole,                       ///< QString, a name of the symbol table
        symbolColorRole,                  ///< int of ThemeColor; accentText unless set
        valueRole                         ///< QString at the right edge
    };

    explicit RowDelegate(bool twoLines, QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    bool hasTwoLines() const { return m_twoLines; }

private:
    bool m_twoLines;
};

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
