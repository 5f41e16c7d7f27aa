// SPDX-License-Identifier: MIT
#pragma once

#include "RowDelegate.h"
#include "RowModel.h"

#include <QTreeView>

#include <optional>

namespace quorvane {

/// A list of rows, flat or with levels, that a model serves as values (see Row.h). Only the rows in
/// sight are made; a million are fine where all have one height.
///
/// Keys: up, down, page and end keys move from row to row; right opens a row and left closes it;
/// Tab, and left and right, move along the controls of a row; Return and Space press what has the
/// focus, on a row with a check box or a switch this one. Letters find a title. Accessible: each
/// row with all that it shows, each control with its name.
///
/// Without a frame and a ground: it stands on a Card, or its rows draw cards of their own
/// (RowMetrics::hasOwnCards). Its size hint is the height of all rows, so that a card around it
/// ends where the rows do. Main thread.
class RowView : public QTreeView
{
    Q_OBJECT

public:
    /// The model outlives the view, or is its child.
    explicit RowView(QAbstractItemModel& model, const RowMetrics& metrics = {},
                     QWidget* parent = nullptr);

    const RowMetrics& metrics() const { return m_metrics; }
    /// Where rows differ in height (rowrole::height). Costs a pass over all rows.
    void setHasSeveralHeights(bool several) { setUniformRowHeights(!several); }
    /// A click and the press keys open and close a row with rows below it.
    void setRowsToggle(bool toggle) { m_rowsToggle = toggle; }
    /// Rows are activated by a double click or Return instead of a single click.
    void setActivatesOnDoubleClick(bool doubleClick) { m_activatesOnDoubleClick = doubleClick; }
    /// Titles above the columns, 28 high; the row has the shape of the rows below.
    void setTitles(const Row& titles);
    const std::optional<Row>& titles() const { return m_titles; }
    /// Lets the user drag the left edges of the titles.
    void setCellsResizable(bool resizable) { m_cellsResizable = resizable; }
    bool areCellsResizable() const { return m_cellsResizable; }
    /// points; 0 for the cell's own width.
    void setCellWidth(std::size_t cell, int width);
    /// Shown in the middle while there is no row.
    void setPlaceholder(const QString& text);

    Row rowOf(const QModelIndex& index) const;
    RowLook lookOf(const QModelIndex& index) const;
    /// Where the parts of a row lie, in the viewport's coordinates; empty for a row out of sight.
    RowPlaces placesOf(const QModelIndex& index) const;
    /// The row itself for no part.
    QRect partRect(const QModelIndex& index, const std::optional<RowPart>& part) const;
    std::optional<RowPart> partAt(const QModelIndex& index, const QPoint& position) const;
    /// What is said about the place below the pointer.
    QString toolTipAt(const QPoint& position) const;

    /// The control that the keys act on; absent for the row itself.
    const std::optional<RowPart>& currentPart() const { return m_part; }
    /// Makes a row current without selecting it, and scrolls to it.
    void setCurrent(const QModelIndex& index, const std::optional<RowPart>& part = {});
    /// Presses a control, or the row itself for none.
    void press(const QModelIndex& index, const std::optional<RowPart>& part = {});
    /// Opens a closed row and closes an open one.
    void toggle(const QModelIndex& index);
    /// Whether the keys have the lead, not the pointer.
    bool isLedByKeys() const { return m_showsFocus; }
    /// Counts the changes after which a row's index may stand for another one.
    int revision() const { return m_revision; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    void setModel(QAbstractItemModel* model) override;
    void reset() override;

Q_SIGNALS:
    /// A click on a row, or Return on it.
    void rowActivated(const QModelIndex& index);
    /// A button was pressed; RowAction::toggled for the check box or the switch, and
    /// RowAction::copied after the command went to the clipboard.
    void actionTriggered(const QModelIndex& index, int actionId);
    /// The user moved the selection; not emitted for select().
    void selectionMoved(const QModelIndex& index);
    /// position: on the screen.
    void contextMenuRequested(const QModelIndex& index, const QPoint& position);
    /// The Delete or Backspace key on a row.
    void removeRequested(const QModelIndex& index);

public Q_SLOTS:
    /// Shows a row as selected and current, opening the rows above it, or none for an invalid
    /// index.
    void select(const QModelIndex& index);

protected:
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void drawBranches(QPainter* painter, const QRect& rect,
                      const QModelIndex& index) const override;
    void paintEvent(QPaintEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QList<int>& roles) override;
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    /// A row and one of its controls.
    struct Place
    {
        QPersistentModelIndex index;
        std::optional<RowPart> part;
        bool operator==(const Place& other) const
        {
            return index == other.index && part == other.part;
        }
    };

    int levelOf(const QModelIndex& index) const;
    int rowsHeight() const;
    Place placeAt(const QPoint& position) const;
    void setHovered(const Place& place);
    void updateHovered();
    bool moveAlongRow(int step);
    void moveRight();
    void moveLeft();
    bool pressKey(const QKeyEvent& event);
    void rowsChanged();
    void keepCurrent();
    bool isOnChevron(const QModelIndex& index, const QPoint& position) const;
    QString rowToolTip(const Row& row, const RowPlaces& places, const QPoint& position) const;

    RowMetrics m_metrics;
    std::optional<Row> m_titles;
    QString m_placeholder;
    bool m_rowsToggle = false;
    bool m_activatesOnDoubleClick = false;
    bool m_cellsResizable = false;
    bool m_showsFocus = false;  ///< the keys have the lead, not the pointer
    bool m_isFollowing = false; ///< the selection comes from outside
    std::optional<RowPart> m_part;
    Place m_hovered;
    Place m_pressed;
    int m_lastRow = -1; ///< of the current row, before the rows moved
    int m_revision = 0;
};

} // namespace quorvane
