// SPDX-License-Identifier: MIT
#pragma once

#include "KeyedScreen.h"

#include <cstdint>
#include <vector>

namespace quorvane {

class EmptyState;
class NodeListModel;
class NodeListView;
class TopSizesDelegate;

/// The largest items of the whole scan, whatever folder is in focus, in one ranked list.
class TopSizesView final : public KeyedScreen
{
    Q_OBJECT

public:
    explicit TopSizesView(AppState& state, QWidget* parent = nullptr);

    const NodeListModel& topItems() const { return *m_model; }
    std::int64_t totalBytes() const { return m_totalBytes; }

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
    NodeListView* m_list;
    TopSizesDelegate* m_delegate;
    QWidget* m_card;
    EmptyState* m_empty;
    std::int64_t m_totalBytes = 0;
    QPropertyNotifier m_paletteChanged;
};

} // namespace quorvane
