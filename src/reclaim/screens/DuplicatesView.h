// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quorvane {

class AppState;
class Button;
class DuplicatesList;
class EmptyState;
class Label;
class ProgressBar;
class Refresher;
class ScreenHeader;
class Spinner;

/// The review of identical files: starts and stops the search, and lets the user pick the copies to
/// keep. Main thread.
class DuplicatesView : public QWidget
{
    Q_OBJECT

public:
    explicit DuplicatesView(AppState& state, QWidget* parent = nullptr);

    /// What the search does at that fraction, 0 to 1.
    static QString phaseText(double progress);
    /// "{p}%", cut to a whole number.
    static QString percentText(double progress);

private:
    ScreenHeader* makeHeader();
    QWidget* makeProgress();
    QWidget* makeSearching();
    QWidget* makeResults();
    void refresh();
    void refreshProgress();
    void refreshHeader(bool isRunning, bool hasGroups);
    void keepFocusOfVanishingList();
    void returnFocusToList();

    AppState& m_state;
    Button* m_find = nullptr;
    Button* m_cancel = nullptr;
    QWidget* m_progress = nullptr;
    Label* m_phase = nullptr;
    Label* m_percent = nullptr;
    ProgressBar* m_bar = nullptr;
    QWidget* m_searching = nullptr;
    EmptyState* m_noScan = nullptr;
    EmptyState* m_start = nullptr;
    QWidget* m_results = nullptr;
    Label* m_summary = nullptr;
    Label* m_reclaimable = nullptr;
    DuplicatesList* m_list = nullptr;
    bool m_listLostFocus = false; ///< with its last row; it is kept here until rows come
    Refresher* m_refresher;
    Refresher* m_progressRefresher;
};

} // namespace quorvane
