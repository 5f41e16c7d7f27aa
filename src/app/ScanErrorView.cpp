// SPDX-License-Identifier: MIT
#include "ScanErrorView.h"

#include "EmptyState.h"
#include "Label.h"
#include "NavigationState.h"
#include "Refresher.h"
#include "ScanState.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <optional>

namespace quorvane {

ScanErrorView::ScanErrorView(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_scan(ScanState::of(state))
    , m_empty(
          new EmptyState(QStringLiteral("exclamationmark.triangle"), tr("Scan failed"), {}, this))
    , m_refresher(new Refresher(this, [this] { showMessage(); }))
{
    setObjectName(QStringLiteral("scanErrorView"));
    Button* const tryAgain = m_empty->addButton({}, tr("Try Again"), ButtonRole::prominent);
    tryAgain->setObjectName(QStringLiteral("tryAgainButton"));
    connect(tryAgain, &QAbstractButton::clicked, this,
            [this] { m_scan.errorMessage = std::nullopt; });
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(m_empty);
    m_refresher->watch(m_scan.errorMessage);
    showMessage();
}

/// The old message stays while the view is on its way out.
void ScanErrorView::showMessage()
{
    if (m_scan.errorMessage.value()) {
        m_empty->setText(*m_scan.errorMessage.value());
    }
}

ScanFailureNotice::ScanFailureNotice(AppState& state, QWidget* parent)
    : Ground(ThemeColor::popover, Edge::bottom, parent)
    , m_scan(ScanState::of(state))
    , m_navigation(NavigationState::of(state))
    , m_message(new ElidedLabel({}, Qt::ElideMiddle, TextStyle::body, ThemeColor::text1, this))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    constexpr int sideMargin = 16;
    constexpr int edgeMargin = 8;
    setObjectName(QStringLiteral("scanFailureNotice"));
    m_message->setObjectName(QStringLiteral("scanFailureMessage"));
    auto* const show = new Button(tr("Show"), ButtonRole::bordered, ControlSize::small, this);
    show->setObjectName(QStringLiteral("showScanFailureButton"));
    connect(show, &QAbstractButton::clicked, this,
            [this] { m_navigation.section = AppSection::analysis; });
    auto* const line = new QHBoxLayout(this);
    line->setContentsMargins(sideMargin, edgeMargin, sideMargin, edgeMargin);
    line->addWidget(m_message, 1);
    line->addWidget(show);
    m_refresher->watch(m_scan.errorMessage, m_navigation.section);
    refresh();
}

void ScanFailureNotice::refresh()
{
    const std::optional<QString>& message = m_scan.errorMessage.value();
    const bool isTold = message && m_navigation.section.value() != AppSection::analysis;
    if (isTold) {
        m_message->setText(tr("Scan failed") + QStringLiteral(": ") + *message);
    }
    setVisible(isTold);
}

} // namespace quorvane
