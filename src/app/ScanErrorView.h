// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quorvane {

class AppState;
class EmptyState;
class Refresher;

/// Tells why the last scan gave nothing. Main thread.
class ScanErrorView : public QWidget
{
    Q_OBJECT

public:
    explicit ScanErrorView(AppState& state, QWidget* parent = nullptr);

private:
    void showMessage();

    AppState& m_state;
    EmptyState* m_empty;
    Refresher* m_refresher;
};

} // namespace quorvane
