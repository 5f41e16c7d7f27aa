// SPDX-License-Identifier: MIT
#pragma once

#include "KeyedScreen.h"
#include "OutlineModel.h"

namespace quorvane {

/// An outline of the folder in focus on a card. It opens at once, whatever the size of the tree,
/// and the size mode does not affect it.
class OutlineScreen : public KeyedScreen
{
    Q_OBJECT

public:
    /// titles: of the columns, in the shape of the rows.
    OutlineScreen(AppState& state, OutlineModel::Describe describe, const Row& titles,
                  NodeRowView::Activation activation, QWidget* parent);

    OutlineModel& outline() const { return *m_model; }
    NodeRowView& table() const { return *m_table; }

protected:
    QString key() const override;
    JobHandle startComputing(const NodePointer& target) override;
    void clear() override;

private:
    void setOutline(VisibleScanTree outline);

    OutlineModel* m_model;
    NodeRowView* m_table;
};

/// The tree as a table: name, both sizes and date. A click opens a folder as the one on show.
class ListView final : public OutlineScreen
{
    Q_OBJECT

public:
    explicit ListView(AppState& state, QWidget* parent = nullptr);

    static Row rowOf(const FileNode& node);
};

/// The tree in compact rows: name, files and size. A click selects.
class FoldersView final : public OutlineScreen
{
    Q_OBJECT

public:
    explicit FoldersView(AppState& state, QWidget* parent = nullptr);

    static Row rowOf(const FileNode& node);
};

} // namespace quorvane
