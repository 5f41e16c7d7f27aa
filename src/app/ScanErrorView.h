// SPDX-License-Identifier: MIT
#pragma once

#include "Ground.h"

#include <QWidget>

namespace quorvane {

class AppState;
class ElidedLabel;
class EmptyState;
class NavigationState;
class Refresher;
class ScanState;

/// Tells why the last scan gave nothing. Main thread.
class ScanErrorView : public QWidget
{
    Q_OBJECT

public:
    explicit ScanErrorView(AppState& state, QWidget* parent = nullptr);

private:
    void showMessage();

    ScanState& m_scan;
    EmptyState* m_empty;
    Refresher* m_refresher;
};

/// One line over any other section that tells of a scan that failed there, with the way back to the
/// analysis. On show while there is something to tell. Main thread.
class ScanFailureNotice : public Ground
{
    Q_OBJECT

public:
    explicit ScanFailureNotice(AppState& state, QWidget* parent = nullptr);

private:
    void refresh();

    ScanState& m_scan;
    NavigationState& m_navigation;
    ElidedLabel* m_message;
    Refresher* m_refresher;
};

} // namespace quorvane
