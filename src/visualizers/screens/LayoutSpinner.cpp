// SPDX-License-Identifier: MIT
#include "LayoutSpinner.h"

#include "Painting.h"
#include "Progress.h"
#include "Theme.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>

namespace quorvane {

LayoutSpinner::LayoutSpinner(QWidget* screen)
    : QWidget(screen)
{
    setObjectName(QStringLiteral("layoutSpinner"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(spacing::m, spacing::s, spacing::m, spacing::s);
    row->addWidget(new Spinner(tr("Computing layout…"), this));
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayOverContent);
    connect(&m_delay, &QTimer::timeout, this, &LayoutSpinner::appear);
    hide();
}

void LayoutSpinner::centerIn(const QRect& area)
{
    adjustSize();
    QRect place = rect();
    place.moveCenter(area.center());
    move(place.topLeft());
}

void LayoutSpinner::start(bool isOverContent)
{
    if (!isOverContent) {
        appear();
    } else if (isHidden() && !m_delay.isActive()) {
        m_delay.start();
    }
}

void LayoutSpinner::stop()
{
    m_delay.stop();
    hide();
}

void LayoutSpinner::appear()
{
    raise();
    show();
}

void LayoutSpinner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(themeColor(ThemeColor::hairline), 1));
    painter.setBrush(themeColor(ThemeColor::popover));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius::surface,
                            radius::surface);
}

} // namespace quorvane
