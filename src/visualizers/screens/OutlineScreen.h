// SPDX-License-Identifier: MIT
#pragma once

#include "KeyedScreen.h"
#include "OutlineModel.h"

#include <vector>

class QEvent;

namespace quorvane {

class OutlineTable;

/// An outline of the folder in focus on a card. It opens at once, whatever the size of the tree,
/// and the size mode does not affect it.
class OutlineScreen : public KeyedScreen
{
    Q_OBJECT

public:
    OutlineScreen(AppState& state, std::vector<OutlineModel::Field> fields, QWidget* parent);

    OutlineModel& outline() const { return *m_model; }
    OutlineTable& table() const { return *m_table; }

protected:
    QString key() const override;
    JobHandle startComputing(const NodePointer& target) override;
    void clear() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fitNameColumn();

    OutlineModel* m_model;
    OutlineTable* m_table;
    bool m_isFitting = false;
    bool m_isNameWidthChosen = false; ///< the user has dragged the name's edge
};

/// The tree as a table: name, both sizes and date. A click opens a folder as the one on show.
class ListView final : public OutlineScreen
{
    Q_OBJECT

public:
    explicit ListView(AppState& state, QWidget* parent = nullptr);
};

/// The tree in compact rows: name, files and size. A click selects.
class FoldersView final : public OutlineScreen
{
    Q_OBJECT

public:
    explicit FoldersView(AppState& state, QWidget* parent = nullptr);
};

} // namespace quorvane
