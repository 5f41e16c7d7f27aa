// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"
#include "SizeMode.h"

#include <QStyledItemDelegate>

#include <cstdint>

namespace quorvane {

class NodeListModel;

/// Rows of the ranked list: the node's colour, its rank, what it is, its name over its path, and in
/// columns at the right its files, its share of the scan and its size.
class TopSizesDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit TopSizesDelegate(NodeListModel& model, QObject* parent);

    /// What the rows are measured against; no shares for a total of 0.
    void setTotal(std::int64_t totalBytes, SizeMode mode);
    /// The row as one text, for assistive technology.
    QString describe(const FileNode& node, int rank) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintColumns(QPainter& painter, QRectF& area, const FileNode& node) const;
    QString filesText(const FileNode& node) const;
    QString shareText(const FileNode& node) const;

    NodeListModel& m_model;
    std::int64_t m_totalBytes = 0;
    SizeMode m_mode = SizeMode::disk;
};

} // namespace quorvane
