// SPDX-License-Identifier: MIT
#pragma once

#include "KeyedScreen.h"
#include "Row.h"
#include "SizeMode.h"

#include <cstdint>
#include <vector>

namespace quorvane {

class EmptyState;
class NodeListModel;
class NodeRowView;

/// The largest items of the whole scan, whatever folder is in focus, in one ranked list.
class TopSizesView final : public KeyedScreen
{
    Q_OBJECT

public:
    explicit TopSizesView(AppState& state, QWidget* parent = nullptr);

    const NodeListModel& topItems() const { return *m_model; }
    std::int64_t totalBytes() const { return m_totalBytes; }

    /// The node's colour, its rank from 1, what it is, its name over its path, its files, its share
    /// of the total and its size. No share for a total of 0.
    static Row rowOf(const FileNode& node, int rank, std::int64_t totalBytes, SizeMode mode);

protected:
    NodePointer target() const override { return state().rootNode.value(); }
    QString key() const override;
    JobHandle startComputing(const NodePointer& target) override;
    void clear() override;

private:
    struct Ranking
    {
        std::vector<FileNode*> items;
        std::int64_t totalBytes = 0;
    };
    void publish(const NodePointer& target, Ranking ranking);

    NodeListModel* m_model;
    NodeRowView* m_list;
    QWidget* m_card;
    EmptyState* m_empty;
    std::int64_t m_totalBytes = 0;
    SizeMode m_mode = SizeMode::disk; ///< of the ranking on show
    QPropertyNotifier m_paletteChanged;
};

} // namespace quorvane
