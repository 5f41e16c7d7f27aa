// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QAbstractListModel>
#include <QListView>

#include <vector>

namespace quorvane {

/// The Trash queue as a list. Holds the tree that its nodes are of. Main thread.
class StagedModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        pathRole = Qt::UserRole, ///< QString, the whole path
        filesRole,               ///< QString, "{n} files"; empty for anything but a folder
        sizeRole,                ///< QString, formatted bytes
        isDirectoryRole,         ///< bool
        symbolRole               ///< QString, a name of the symbol table
    };

    using QAbstractListModel::QAbstractListModel;

    void setNodes(std::vector<NodePointer> nodes);
    const NodePointer& node(int row) const { return m_nodes[static_cast<std::size_t>(row)]; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    static QString filesText(const FileNode& node);
    static QString accessibleText(const FileNode& node);

    std::vector<NodePointer> m_nodes;
};

/// Rows of staged nodes, 52 high, each with a button that takes it out of the queue; the Delete key
/// does so for the current row. Only the rows on show cost anything.
class StagedList : public QListView
{
    Q_OBJECT

public:
    explicit StagedList(QWidget* parent = nullptr);

    /// Keeps place and current row as far as they are still there.
    void setNodes(std::vector<NodePointer> nodes);

    /// Where the button of a row lies, in the viewport's coordinates; empty for a row out of sight.
    QRect buttonRect(int row) const;
    bool isButtonHovered(const QModelIndex& index) const { return m_hoveredButton == index.row(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void unstageRequested(const NodePointer& node);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    /// The row whose button lies below the point; -1 for none.
    int buttonAt(const QPoint& position) const;
    void setHoveredButton(int row);
    void requestUnstage(int row);

    StagedModel* m_model;
    int m_hoveredButton = -1;
    int m_pressedButton = -1;
};

} // namespace quorvane
