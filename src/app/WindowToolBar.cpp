// SPDX-License-Identifier: MIT
#include "WindowToolBar.h"

#include "Button.h"
#include "Label.h"
#include "NavigationState.h"
#include "Refresher.h"
#include "ScanState.h"
#include "SearchBarView.h"
#include "SegmentedPicker.h"
#include "SettingsState.h"
#include "Tokens.h"

#include <QHBoxLayout>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quorvane {

WindowToolBar::WindowToolBar(AppState& state, const SectionScreens& sections,
                             const VisualizerScreens& visualizers, QWidget* parent)
    : Ground(ThemeColor::veil, Edge::bottom, parent)
    , m_scan(ScanState::of(state))
    , m_navigation(NavigationState::of(state))
    , m_settingsState(SettingsState::of(state))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("toolBar"));
    setFixedHeight(measure::toolBarHeight);
    makeLeadingItems();
    makeVisualizerPicker(visualizers);
    m_search = new SearchBarView(this);
    m_rescan = makeAction(QStringLiteral("arrow.clockwise"), tr("Rescan"),
                          QStringLiteral("rescanButton"), [this] { m_scan.rescan(); });
    m_rescan->setToolTip(tr("Rescan the current folder"));
    m_zoomOut = makeAction(QStringLiteral("level.up"), tr("Zoom Out"),
                           QStringLiteral("zoomOutButton"), [this] { m_navigation.focusUp(); });
    m_zoomOut->setToolTip(tr("Zoom out one level (Esc)"));
    makeDetailsToggle();
    makeSettingsButton(sections);
    layOut();
    m_refresher->watch(m_navigation.section, m_scan.rootNode, m_navigation.focusNode,
                       m_scan.isScanning, m_navigation.visualizer,
                       m_settingsState.storageInspectorVisible);
    refresh();
    setSidebarShown(true);
}

void WindowToolBar::makeLeadingItems()
{
    m_sidebarToggle = new ToolButton(QStringLiteral("sidebar.left"), {}, this);
    m_sidebarToggle->setObjectName(QStringLiteral("sidebarToggle"));
    connect(m_sidebarToggle, &QAbstractButton::clicked, this, &WindowToolBar::sidebarToggled);
    m_back = makeAction(QStringLiteral("chevron.left"), {}, QStringLiteral("backButton"),
                        [this] { m_navigation.section = AppSection::analysis; });
    m_back->setAccessibleName(tr("Back to Analysis"));
    m_back->setToolTip(tr("Back to Analysis (Alt+Left)"));
    m_back->setShortcut(Qt::ALT | Qt::Key_Left);
    m_title = new Label({}, TextStyle::strong, ThemeColor::text1, this);
    m_title->setObjectName(QStringLiteral("sectionTitle"));
}

void WindowToolBar::makeVisualizerPicker(const VisualizerScreens& visualizers)
{
    m_pickerTypes = visualizers.keys();
    m_picker = new SegmentedPicker(tr("Visualization"), this);
    m_picker->setObjectName(QStringLiteral("visualizerPicker"));
    for (const VisualizerType type : m_pickerTypes) {
        m_picker->addSegment(title(type), systemImage(type));
    }
    connect(m_picker, &SegmentedPicker::activated, this, [this](int index) {
        m_navigation.visualizer = m_pickerTypes[static_cast<std::size_t>(index)];
    });
}

ToolButton* WindowToolBar::makeAction(const QString& symbol, const QString& name,
                                      const QString& objectName, std::function<void()> run)
{
    auto* const button = new ToolButton(symbol, name, this);
    button->setObjectName(objectName);
    button->setAccessibleName(name);
    connect(button, &QAbstractButton::clicked, this, std::move(run));
    return button;
}

void WindowToolBar::makeDetailsToggle()
{
    m_details = new ToolButton(QStringLiteral("sidebar.right"), tr("Details"), this);
    m_details->setObjectName(QStringLiteral("detailsButton"));
    m_details->setToolTip(tr("Toggle the details panel"));
    m_details->setCheckable(true);
    connect(m_details, &QAbstractButton::clicked, this,
            [this] { m_settingsState.setInspectorVisible(!m_settingsState.inspectorVisible()); });
}

void WindowToolBar::makeSettingsButton(const SectionScreens& sections)
{
    if (!sections.contains(AppSection::settings)) {
        return;
    }
    m_settings = new ToolButton(QStringLiteral("gearshape"), {}, this);
    m_settings->setObjectName(QStringLiteral("settingsButton"));
    m_settings->setCheckable(true);
    connect(m_settings, &QAbstractButton::clicked, this, [this] {
        if (m_navigation.section.value() == AppSection::settings) {
            m_navigation.closeSettings();
        } else {
            m_navigation.openSettings();
        }
    });
}

void WindowToolBar::layOut()
{
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(spacing::m, 0, spacing::l, 1);
    row->setSpacing(0);
    row->addWidget(m_sidebarToggle);
    row->addWidget(m_back);
    row->addSpacing(spacing::s);
    row->addWidget(m_title);
    row->addSpacing(spacing::l);
    row->addWidget(m_picker);
    row->addStretch();
    row->addWidget(m_search);
    row->addSpacing(spacing::s);
    row->addWidget(m_rescan);
    row->addWidget(m_zoomOut);
    row->addWidget(m_details);
    if (m_settings != nullptr) {
        row->addSpacing(2);
        row->addWidget(m_settings);
    }
}

void WindowToolBar::setSidebarShown(bool shown)
{
    const QString name = shown ? tr("Hide Sidebar") : tr("Show Sidebar");
    m_sidebarToggle->setToolTip(name);
    m_sidebarToggle->setAccessibleName(name);
}

void WindowToolBar::refresh()
{
    const AppSection section = m_navigation.section.value();
    const bool isAnalysis = section == AppSection::analysis;
    m_title->setText(title(section));
    // The settings name themselves in the bar right below.
    m_title->setVisible(section != AppSection::settings);
    m_back->setVisible(!isAnalysis && section != AppSection::settings &&
                       (m_scan.hasScan() || m_scan.isScanning.value()));
    m_rescan->setVisible(m_scan.hasScan());
    m_zoomOut->setVisible(isAnalysis && m_navigation.focusNode.value() != nullptr);
    m_details->setVisible(isAnalysis && m_scan.hasScan());
    m_details->setChecked(m_settingsState.inspectorVisible());
    m_picker->setVisible(m_pickerTypes.size() > 1 && isAnalysis && m_scan.hasScan() &&
                         !m_scan.isScanning.value());
    const auto current =
        std::find(m_pickerTypes.begin(), m_pickerTypes.end(), m_navigation.visualizer.value());
    m_picker->setCurrentIndex(
        current == m_pickerTypes.end() ? -1 : static_cast<int>(current - m_pickerTypes.begin()));
    if (m_settings != nullptr) {
        const QString name =
            section == AppSection::settings ? tr("Close Settings") : tr("Settings");
        m_settings->setText(name);
        m_settings->setToolTip(name);
        m_settings->setAccessibleName(name);
        m_settings->setChecked(section == AppSection::settings);
    }
}

void WindowToolBar::fitWords()
{
    const int available = window()->width();
    m_picker->setCollapsed(available < pickerWordsWidth);
    if (m_settings != nullptr) {
        m_settings->setWordsVisible(available >= settingsWordsWidth);
    }
}

void WindowToolBar::resizeEvent(QResizeEvent* event)
{
    Ground::resizeEvent(event);
    fitWords();
}

} // namespace quorvane
