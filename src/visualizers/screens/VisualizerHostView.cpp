// SPDX-License-Identifier: MIT
#include "VisualizerHostView.h"

#include "AgeMapView.h"
#include "BreadcrumbBar.h"
#include "CanvasViews.h"
#include "FooterView.h"
#include "InspectorView.h"
#include "NavigationState.h"
#include "OutlineScreen.h"
#include "Tokens.h"
#include "TopSizesView.h"

#include <QHBoxLayout>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {
namespace {

template<class Screen>
QWidget* makeScreen(AppState& state, QWidget* parent)
{
    return new Screen(state, parent);
}

} // namespace

VisualizerHostView::VisualizerHostView(AppState& state, VisualizerScreens screens, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_navigation(NavigationState::of(state))
    , m_screens(std::move(screens))
    , m_stack(new QStackedWidget(this))
{
    setObjectName(QStringLiteral("visualizerHost"));
    auto* const canvasRow = new QVBoxLayout;
    canvasRow->setContentsMargins(measure::canvasInset, 0, measure::canvasInset,
                                  measure::canvasInset);
    canvasRow->addWidget(m_stack);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    auto* const column = new QVBoxLayout;
    column->setSpacing(0);
    row->addLayout(column, 1);
    row->addWidget(new InspectorView(state, this));
    column->addWidget(new BreadcrumbBar(state, this));
    column->addLayout(canvasRow, 1);
    column->addWidget(new FooterView(state, this));

    auto* const zoomOut = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    zoomOut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(zoomOut, &QShortcut::activated, this, [this] { m_navigation.focusUp(); });

    m_visualizerChanged = m_navigation.visualizer.addNotifier([this] { showVisualizer(); });
    showVisualizer();
}

void VisualizerHostView::showVisualizer()
{
    const VisualizerType type = m_navigation.visualizer.value();
    QWidget*& view = m_views[type];
    if (view == nullptr && m_screens.contains(type)) {
        view = m_screens.make(type, m_state, m_stack);
        m_stack->addWidget(view);
    }
    if (view != nullptr) {
        m_stack->setCurrentWidget(view);
    }
}

VisualizerScreens makeVisualizerScreens()
{
    VisualizerScreens screens;
    screens.add(VisualizerType::folders, makeScreen<FoldersView>);
    screens.add(VisualizerType::list, makeScreen<ListView>);
    screens.add(VisualizerType::topSizes, makeScreen<TopSizesView>);
    screens.add(VisualizerType::ageMap, makeScreen<AgeMapView>);
    for (const CanvasRow& row : canvasRows) {
        screens.add(row.type, [&row](AppState& state, QWidget* parent) -> QWidget* {
            return new VisualizerCanvas(state, row.traits, parent);
        });
    }
    return screens;
}

} // namespace quorvane
