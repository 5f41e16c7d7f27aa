// SPDX-License-Identifier: MIT
#pragma once

#include "Row.h"

#include <QAbstractItemModel>

#include <functional>
#include <utility>
#include <vector>

class QMimeData;

namespace quorvane {

/// A model that answers by rows as values: subclass it for levels, with index, parent, rowCount and
/// row. Main thread.
class RowSource : public QAbstractItemModel
{
    Q_OBJECT

public:
    using QAbstractItemModel::QAbstractItemModel;

    virtual Row row(const QModelIndex& index) const = 0;
    /// Points; 0 for the view's own height.
    virtual int height(const QModelIndex& index) const;
    /// Asked of every row of a list, also of those out of sight; item unless overridden.
    virtual RowKind kind(const QModelIndex& index) const;

    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Makes rows draggable: what a drag of these rows carries, or null for none.
    using Drag = std::function<QMimeData*(const QModelIndexList&)>;
    void setDrag(Drag drag) { m_drag = std::move(drag); }
    QMimeData* mimeData(const QModelIndexList& indexes) const override;

    /// Tells that all rows may look different now; none came or went.
    void refreshRows();

private:
    Drag m_drag;
};

/// A flat list of rows, made when they are shown: a million cost nothing but their keys.
class RowModel : public RowSource
{
    Q_OBJECT

public:
    /// Rows count from 0.
    using Provide = std::function<Row(int row)>;
    /// What stays the same of each row while it moves; the keys of a list differ.
    using Keys = std::vector<quint64>;
    using Height = std::function<int(int row)>;
    using Kind = std::function<RowKind(int row)>;

    using RowSource::RowSource;

    /// Replaces all rows. With keys the current and the selected rows are found again and the place
    /// stays; without, the list begins anew.
    void setRows(int count, Provide provide, Keys keys = {});
    /// The same with rows at hand.
    void setRows(std::vector<Row> rows, Keys keys = {});
    /// For lists with rows of several heights. Set before the rows.
    void setHeights(Height height) { m_height = std::move(height); }
    /// For lists made row by row with headings or buttons among them. Set before the rows.
    void setKinds(Kind kind) { m_kind = std::move(kind); }

    QModelIndex index(int row, int column = 0, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    Row row(const QModelIndex& index) const override;
    int height(const QModelIndex& index) const override;
    RowKind kind(const QModelIndex& index) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void moveHeld(const Keys& keys);

    int m_count = 0;
    Provide m_provide;
    Keys m_keys;
    Height m_height;
    Kind m_kind;
};

} // namespace quorvane
