// SPDX-License-Identifier: MIT
#pragma once

#include "SizeMode.h"

#include <QStyledItemDelegate>

namespace quorvane {

class FileNode;
class NodeListModel;

/// Rows of the files that nobody touched: symbol, name over path, date and size.
class UntouchedDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    UntouchedDelegate(NodeListModel& model, QObject* parent);

    /// The row as one text, for assistive technology.
    QString describe(const FileNode& node) const;

    void setSizeMode(SizeMode mode) { m_mode = mode; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    static void paintIcon(QPainter& painter, const QRectF& area, const FileNode& node);

    NodeListModel& m_model;
    SizeMode m_mode = SizeMode::disk;
};

} // namespace quorvane
