// SPDX-License-Identifier: MIT
#include "ScanErrorView.h"

#include "AppState.h"
#include "EmptyState.h"
#include "Refresher.h"

#include <QVBoxLayout>

namespace quorvane {

ScanErrorView::ScanErrorView(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_empty(
          new EmptyState(QStringLiteral("exclamationmark.triangle"), tr("Scan failed"), {}, this))
    , m_refresher(new Refresher(this, [this] { showMessage(); }))
{
    setObjectName(QStringLiteral("scanErrorView"));
    Button* const tryAgain = m_empty->addButton({}, tr("Try Again"), ButtonRole::prominent);
    tryAgain->setObjectName(QStringLiteral("tryAgainButton"));
    connect(tryAgain, &QAbstractButton::clicked, this,
            [this] { m_state.errorMessage = std::nullopt; });
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(m_empty);
    m_refresher->watch(m_state.errorMessage);
    showMessage();
}

/// The old message stays while the view is on its way out.
void ScanErrorView::showMessage()
{
    if (m_state.errorMessage.value()) {
        m_empty->setText(*m_state.errorMessage.value());
    }
}

} // namespace quorvane
