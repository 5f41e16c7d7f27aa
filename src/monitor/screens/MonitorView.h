// SPDX-License-Identifier: MIT
#pragma once

#include "MonitorState.h"
#include "ToolFrame.h"

#include <QTimer>

#include <chrono>
#include <vector>

namespace quorvane {

class Label;
class MemorySegments;
class ProgressBar;
class Refresher;
class RowModel;
class RowView;
class SegmentedPicker;
class Sparkline;

/// The live dashboard of the machine. Samples once a second while it is on show, and begins anew
/// with empty charts each time. Main thread.
class MonitorView : public ToolFrame
{
    Q_OBJECT

public:
    explicit MonitorView(AppState& state, QWidget* parent = nullptr);

    static constexpr std::chrono::milliseconds interval{1000};
    /// Values that a chart holds: half a minute.
    static constexpr std::size_t maxHistory = 30;
    /// Appends a value and drops the oldest beyond maxHistory.
    static void push(std::vector<double>& history, double value);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makeCpuCard();
    QWidget* makeMemoryCard();
    QWidget* makeNetworkCard();
    QWidget* makePowerCard();
    QWidget* makeProcesses();
    void refresh();
    void takeSample();
    void showCpu(const CPUSample& cpu);
    void showMemory(const MemorySample& memory);
    void showNetwork(const NetRateSample& network);
    void showPower(const BatterySample& battery);
    void showProcesses();
    void showMenu(int row, const QPoint& position);

    MonitorState& m_state;
    Refresher* m_refresher;
    QTimer m_timer;
    double m_jitter = 0; ///< of the sample under way
    std::vector<double> m_cpuUserHistory;
    std::vector<double> m_cpuSysHistory;
    std::vector<double> m_downHistory;
    std::vector<double> m_upHistory;
    std::vector<ProcessSample> m_processes;

    Label* m_load = nullptr;
    Label* m_user = nullptr;
    Label* m_sys = nullptr;
    Sparkline* m_cpuChart = nullptr;
    Label* m_used = nullptr;
    Label* m_ofTotal = nullptr;
    MemorySegments* m_segments = nullptr;
    std::vector<Label*> m_memoryCells;
    Label* m_download = nullptr;
    Label* m_upload = nullptr;
    Sparkline* m_networkChart = nullptr;
    Label* m_percent = nullptr;
    Label* m_time = nullptr;
    Label* m_status = nullptr;
    Label* m_cycles = nullptr;
    Label* m_health = nullptr;
    ProgressBar* m_charge = nullptr;
    Label* m_source = nullptr;
    Label* m_processesTitle = nullptr;
    SegmentedPicker* m_order = nullptr;
    RowModel* m_rows = nullptr;
    RowView* m_list = nullptr;
};

} // namespace quorvane
