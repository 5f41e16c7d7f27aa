// SPDX-License-Identifier: MIT
#include "FooterView.h"

#include "AppState.h"
#include "Label.h"
#include "SegmentedPicker.h"
#include "SizeMode.h"
#include "Theme.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>

#include <algorithm>
#include <cstddef>

namespace quorvane {
namespace {

constexpr int pickerWidth = 240;

} // namespace

FooterView::FooterView(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_sizeBasis(new SegmentedPicker(tr("Size basis"), this))
{
    setObjectName(QStringLiteral("footerView"));
    setFixedHeight(measure::footerHeight);
    m_sizeBasis->setObjectName(QStringLiteral("sizeBasisPicker"));
    m_sizeBasis->setFixedWidth(pickerWidth);
    for (const SizeMode mode : allSizeModes) {
        m_sizeBasis->addSegment(title(mode));
    }
    auto* const hint = new ElidedLabel(
        tr("Hover to inspect · Click a folder to zoom · Right-click for actions · Esc zooms out"),
        Qt::ElideRight, TextStyle::caption, ThemeColor::text3, this);
    hint->setObjectName(QStringLiteral("footerHint"));
    hint->setAlignment(Qt::AlignRight | Qt::AlignVCenter);

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(spacing::m, 1, spacing::l, 0);
    row->setSpacing(spacing::l);
    row->addWidget(m_sizeBasis);
    row->addWidget(hint, 1);

    connect(m_sizeBasis, &SegmentedPicker::activated, this, [this](int index) {
        m_state.setSizeMode(allSizeModes[static_cast<std::size_t>(index)]);
    });
    m_sizeModeChanged = m_state.storageSizeMode.addNotifier([this] { showSizeMode(); });
    showSizeMode();
}

void FooterView::showSizeMode()
{
    const auto* const mode =
        std::find(allSizeModes.begin(), allSizeModes.end(), m_state.sizeMode());
    m_sizeBasis->setCurrentIndex(static_cast<int>(mode - allSizeModes.begin()));
}

void FooterView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, width(), 1), themeColor(ThemeColor::hairline));
}

} // namespace quorvane
