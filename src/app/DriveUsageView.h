// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QTimer>
#include <QWidget>

#include <chrono>

namespace quorvane {

class AppState;
class DriveState;
class Label;
class ProgressBar;
class Refresher;

/// Colour of a bar that shows how full a drive is: 70 and 85 percent are the steps.
ThemeColor driveBarColor(double usedPercent);
/// The whole percents that are full: "61%".
QString drivePercentText(double usedPercent);

/// How full the start-up drive is. Asks again every minute while it is on show. Main thread.
class DriveUsageView : public QWidget
{
    Q_OBJECT

public:
    static constexpr std::chrono::seconds refreshInterval{60};

    explicit DriveUsageView(AppState& state, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makeHeading();
    QWidget* makeCard();
    void showSample();

    DriveState& m_drive;
    Label* m_percent;
    ProgressBar* m_bar;
    Label* m_total;
    Label* m_available;
    Refresher* m_refresher;
    QTimer* m_refreshTimer;
};

} // namespace quorvane
