// SPDX-License-Identifier: MIT
#pragma once

#include "DuplicateRowPainter.h"
#include "DuplicateRows.h"

#include <QAbstractScrollArea>
#include <QProperty>

#include <map>
#include <optional>
#include <vector>

class QVariantAnimation;

namespace quorvane {

class AppState;

/// The groups of identical files, each with its copies below when it is open. Rows are painted, not
/// built; what lies out of sight costs nothing.
///
/// Keys: up, down, page and end keys move from row to row; right opens a group and left closes it;
/// Tab, and left and right, move along the buttons of a row; Return and Space press what has the
/// focus. Main thread.
class DuplicatesList : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit DuplicatesList(AppState& state, QWidget* parent = nullptr);
    ~DuplicatesList() override;

    /// Not null. Shows the top again when the groups are others.
    void setGroups(DuplicateRows::GroupsPointer groups);

    const DuplicateRows& rows() const { return m_rows; }
    /// The rows that reach into the viewport, from top to bottom.
    std::vector<DuplicateRow> rowsInSight() const;
    /// Where a part of a row lies, in the viewport's coordinates; the row need not be in sight.
    QRect placeRect(const DuplicatePlace& place) const;
    QRect badgeRect(const DuplicateRow& row) const;
    /// What can be pressed there, or the tooltip of the row itself.
    QString toolTipAt(const QPoint& position) const;

    /// What the keys act on; absent while the list is empty and was never entered.
    const std::optional<DuplicatePlace>& current() const { return m_current; }
    /// Scrolls as far as the row's being in sight needs.
    void setCurrent(const DuplicatePlace& place);
    /// Presses the part: a row that is a group opens or closes.
    void activate(const DuplicatePlace& place);
    /// Changes whenever rows come or go.
    int revision() const { return m_revision; }
    QString accessibleNameOf(const DuplicatePlace& place) const;
    /// What pressing it does, where that is not plain from the name; else empty.
    QString accessibleDescriptionOf(const DuplicatePlace& place) const;
    std::optional<DuplicateButton> button(const DuplicatePlace& place) const
    {
        return m_painter.button(place);
    }
    /// The part below a point of the viewport; absent over what only fades away there.
    std::optional<DuplicatePlace> placeAt(const QPoint& position) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    void toggle(std::size_t group);
    void stopMoving(std::size_t group);
    void rowsChanged();
    void layOut();
    void goToNewRows(const DuplicateRow& first);
    void setHovered(const std::optional<DuplicatePlace>& place);
    void updateHovered();
    void moveBy(int rows);
    void moveTo(int index);
    bool moveAlongRow(int step);
    void moveRight();
    void moveLeft();
    bool handleMoveKey(int key);
    QRect rowRect(const DuplicateRow& row) const;
    DuplicateRowLook lookOf(const DuplicateRow& row) const;
    void paintRows(QPainter& painter, const QRect& area) const;

    AppState& m_state;
    DuplicateRows m_rows;
    DuplicateRowPainter m_painter;
    std::map<std::size_t, QVariantAnimation*> m_moving; ///< groups that open or close just now
    std::optional<DuplicatePlace> m_current;
    std::optional<DuplicatePlace> m_hovered;
    std::optional<DuplicatePlace> m_pressed;
    bool m_showsFocus = false; ///< keys brought the focus here
    int m_revision = 0;
    QPropertyNotifier m_stagedChanged;
    QPropertyNotifier m_batchMoved;
};

} // namespace quorvane
