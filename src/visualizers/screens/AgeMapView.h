// SPDX-License-Identifier: MIT
#pragma once

#include "AgeMap.h"
#include "KeyedScreen.h"
#include "Row.h"
#include "SizeMode.h"

namespace quorvane {

class AgeBarChart;
class EmptyState;
class Label;
class NodeListModel;
class NodeRowView;

/// How old the bytes are: a chart by month of last modification, and below it the big files that
/// nobody touched for a year.
class AgeMapView final : public KeyedScreen
{
    Q_OBJECT

public:
    explicit AgeMapView(AppState& state, QWidget* parent = nullptr);

    const AgeBarChart& chart() const { return *m_chart; }
    const NodeListModel& untouched() const { return *m_model; }

    /// What the row of an untouched file shows: its icon, name over path, date and size.
    static Row rowOf(const FileNode& node, SizeMode mode);

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
    SizeMode m_mode = SizeMode::disk; ///< of the list on show
    AgeBarChart* m_chart = nullptr;
    Label* m_noDates = nullptr;
    NodeRowView* m_list = nullptr;
    Label* m_nothingOld = nullptr;
    QWidget* m_content = nullptr;
    EmptyState* m_noScan = nullptr;
};

} // namespace quorvane
