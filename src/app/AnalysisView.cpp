// SPDX-License-Identifier: MIT
#include "AnalysisView.h"

#include "Refresher.h"
#include "ScanErrorView.h"
#include "ScanProgressView.h"
#include "ScanState.h"
#include "WelcomeView.h"

#include <QStackedLayout>

#include <utility>

namespace quorvane {

AnalysisPage analysisPage(bool isScanning, bool hasError, bool hasScan)
{
    if (isScanning) {
        return AnalysisPage::progress;
    }
    if (hasError) {
        return AnalysisPage::error;
    }
    return hasScan ? AnalysisPage::result : AnalysisPage::welcome;
}

AnalysisView::AnalysisView(AppState& state, ScreenFactory makeResult, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_scan(ScanState::of(state))
    , m_makeResult(std::move(makeResult))
    , m_stack(new QStackedLayout(this))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("analysisView"));
    m_refresher->watch(m_scan.isScanning, m_scan.errorMessage, m_scan.rootNode);
    refresh();
}

QWidget* AnalysisView::makePage(AnalysisPage page)
{
    switch (page) {
    case AnalysisPage::progress:
        return new ScanProgressView(m_state, this);
    case AnalysisPage::error:
        return new ScanErrorView(m_state, this);
    case AnalysisPage::result:
        return m_makeResult(m_state, this);
    case AnalysisPage::welcome:
        break;
    }
    return new WelcomeView(m_state, this);
}

void AnalysisView::refresh()
{
    m_page = analysisPage(m_scan.isScanning.value(), m_scan.errorMessage.value().has_value(),
                          m_scan.hasScan());
    QWidget*& page = m_pages[static_cast<std::size_t>(m_page)];
    if (page == nullptr) {
        page = makePage(m_page);
        m_stack->addWidget(page);
    }
    m_stack->setCurrentWidget(page);
}

} // namespace quorvane
