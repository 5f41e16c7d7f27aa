// SPDX-License-Identifier: MIT
#pragma once

#include "ToolFrame.h"

#include <QProperty>

#include <vector>

namespace quorvane {

class AppState;
class DuplicatesModel;
class Refresher;
class RowView;

/// The search for identical files and the review of what it found. Nothing is deleted here: what
/// is not kept goes into the Trash queue. Main thread.
class DuplicatesView : public ToolFrame
{
    Q_OBJECT

public:
    explicit DuplicatesView(AppState& state, QWidget* parent = nullptr);

    /// What the search does at that progress, 0 to 1.
    static QString phaseText(double progress);
    /// In whole percent, cut.
    static QString percentText(double progress);

private:
    void makeButtons();
    void makeList();
    void refresh();
    void refreshProgress();
    void refreshHeader(bool isRunning, bool hasGroups);
    void refreshGroups();
    void openShown(int first);
    void press(const QModelIndex& index, int action);
    void showMore(const QModelIndex& index);

    AppState& m_state;
    Button* m_find = nullptr;
    Button* m_cancel = nullptr;
    DuplicatesModel* m_model;
    RowView* m_list = nullptr;
    bool m_isOpening = false; ///< what was open before
    Refresher* m_refresher;
    Refresher* m_progressRefresher;
    std::vector<QPropertyNotifier> m_observers;
};

} // namespace quorvane
