// SPDX-License-Identifier: MIT
#pragma once

#include "AgeMap.h"
#include "KeyedScreen.h"

namespace quorvane {

class AgeBarChart;
class EmptyState;
class Label;
class NodeListModel;
class NodeListView;

/// How old the bytes are: a chart by month of last modification, and below it the big files that
/// nobody touched for a year.
class AgeMapView final : public KeyedScreen
{
    Q_OBJECT

public:
    explicit AgeMapView(AppState& state, QWidget* parent = nullptr);

    const AgeBarChart& chart() const { return *m_chart; }
    const NodeListModel& untouched() const { return *m_model; }

protected:
    QString key() const override;
    JobHandle startComputing(const NodePointer& target) override;
    void clear() override;

private:
    QWidget* makeChartCard();
    QWidget* makeListHeader();
    QWidget* makeListCard();
    void publish(const NodePointer& target, AgeMap map);

    NodeListModel* m_model;
    AgeBarChart* m_chart = nullptr;
    Label* m_noDates = nullptr;
    NodeListView* m_list = nullptr;
    Label* m_nothingOld = nullptr;
    QWidget* m_content = nullptr;
    EmptyState* m_noScan = nullptr;
};

} // namespace quorvane
