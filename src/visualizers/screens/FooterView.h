// SPDX-License-Identifier: MIT
#pragma once

#include <QProperty>
#include <QWidget>

namespace quorvane {

class AppState;
class SettingsState;
class FooterHint;
class GrowthLegend;
class SegmentedPicker;

/// The strip below the visualisers, 44 high: the size measure to choose, the switch and the legend
/// of growth while there is a comparison, and what the pointer and the keys do. That hint takes two
/// lines where it does not fit on one, and goes below the choice where there is no room beside it;
/// so does the legend. Main thread.
class FooterView : public QWidget
{
    Q_OBJECT

public:
    explicit FooterView(AppState& state, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void showSizeMode();
    void layOut();
    int layOutLegend(int top, int& right);

    SettingsState& m_settings;
    SegmentedPicker* m_sizeBasis;
    GrowthLegend* m_legend;
    FooterHint* m_hint;
    QPropertyNotifier m_sizeModeChanged;
};

} // namespace quorvane
