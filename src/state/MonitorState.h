// SPDX-License-Identifier: MIT
#pragma once

#include "JobSlot.h"
#include "SystemMonitor.h"

#include <QProperty>
#include <QString>

namespace quorvane {

class AppState;
class FacetHost;
class MachineFigures;

/// The model's readings of the machine, taken while the monitor is on show. Main thread.
class MonitorState
{
public:
    static MonitorState& of(AppState& state);

    explicit MonitorState(FacetHost& host);

    QProperty<SystemMonitor::Sample> machineSample; ///< the last one; zeros before the first
    QProperty<QString> chipSummary;                 ///< empty before the first sample
    QProperty<bool> isSampling{false};              ///< a sample is under way
    /// What the list of processes is cut by, from the next sample on.
    QProperty<SystemMonitor::ProcessOrder> processOrder{SystemMonitor::ProcessOrder::cpu};

    /// Takes a sample in the background; nothing while one is under way.
    void sampleMachine();
    /// Discards the sample under way and forgets the last one.
    void forgetMachine();
    /// Shows the program of a process in the file manager; nothing when it has ended or belongs to
    /// somebody else.
    void revealProgram(std::int32_t pid);

private:
    MachineFigures& machine() const;

    FacetHost& m_host;
    JobSlot m_sampleSlot;
};

} // namespace quorvane
