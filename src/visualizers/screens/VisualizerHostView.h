// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenRegistry.h"

#include <QProperty>
#include <QWidget>

#include <map>

class QStackedWidget;

namespace quorvane {

class AppState;
class NavigationState;

/// The analysis of a finished scan: the way down to the folder on show, the current visualiser,
/// the footer, and the details beside them. Esc anywhere inside zooms out one level.
class VisualizerHostView : public QWidget
{
    Q_OBJECT

public:
    VisualizerHostView(AppState& state, VisualizerScreens screens, QWidget* parent = nullptr);

private:
    void showVisualizer();

    AppState& m_state;
    NavigationState& m_navigation;
    VisualizerScreens m_screens;
    QPropertyNotifier m_visualizerChanged;
    QStackedWidget* m_stack;
    std::map<VisualizerType, QWidget*> m_views;
};

/// The visualisers that are built.
VisualizerScreens makeVisualizerScreens();

} // namespace quorvane
