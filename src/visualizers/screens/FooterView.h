// SPDX-License-Identifier: MIT
#pragma once

#include <QProperty>
#include <QWidget>

namespace quorvane {

class AppState;
class SegmentedPicker;

/// The strip below the visualisers, 44 high: the size measure to choose, and what the pointer and
/// the keys do. Main thread.
class FooterView : public QWidget
{
    Q_OBJECT

public:
    explicit FooterView(AppState& state, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showSizeMode();

    AppState& m_state;
    SegmentedPicker* m_sizeBasis;
    QPropertyNotifier m_sizeModeChanged;
};

} // namespace quorvane
