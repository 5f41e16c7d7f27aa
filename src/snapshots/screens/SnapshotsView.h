// SPDX-License-Identifier: MIT
#pragma once

#include "SnapshotDiff.h"
#include "ToolFrame.h"

#include <span>

class QComboBox;
class QGridLayout;

namespace quorvane {

class AppState;
class RowModel;
class ScanState;
class SnapshotChart;
class SnapshotsState;

/// The section of snapshots: the saved ones, the bytes of their root over time, and one of them
/// compared with the current tree. Main thread.
class SnapshotsView : public ToolFrame
{
    Q_OBJECT

public:
    /// Rows of the comparison that are shown.
    static constexpr std::size_t maxRows = 400;

    explicit SnapshotsView(AppState& state, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeCompareRow();
    QWidget* makeChart();
    QWidget* makeTable();
    QWidget* makeSaved();
    void openRow(int row);
    void refreshBusy();
    void refreshSnapshots();
    void refreshChart();
    void refreshDiffs();
    void layOutColumns();

    AppState& m_state;
    SnapshotsState& m_snapshots;
    ScanState& m_scan;
    Button* m_save;
    Button* m_refresh;
    QComboBox* m_base = nullptr;
    SnapshotChart* m_chart = nullptr;
    QWidget* m_chartCard = nullptr;
    Label* m_chartRoot = nullptr;
    QGridLayout* m_columns = nullptr;
    QWidget* m_tableColumn = nullptr;
    Label* m_changed = nullptr;
    Label* m_showingTop = nullptr;
    Label* m_net = nullptr;
    RowModel* m_diffs;
    RowView* m_table = nullptr;
    QWidget* m_savedColumn = nullptr;
    Label* m_savedHeading = nullptr;
    RowModel* m_saved;
    RowView* m_savedList = nullptr;
    QWidget* m_savedCard = nullptr;
};

} // namespace quorvane
