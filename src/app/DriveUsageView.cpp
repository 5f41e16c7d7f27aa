// SPDX-License-Identifier: MIT
#include "DriveUsageView.h"

#include "Card.h"
#include "DriveState.h"
#include "Label.h"
#include "Progress.h"
#include "Refresher.h"
#include "Tokens.h"

#include <QBoxLayout>
#include <QShowEvent>

#include <cmath>

namespace quorvane {
namespace {

constexpr double warningPercent = 70;
constexpr double fullPercent = 85;

/// A row of the card: what, and how much on the right. Returns the label of the amount.
Label* addRow(QBoxLayout& column, const QString& name, const QString& objectName)
{
    auto* const row = new QHBoxLayout;
    row->addWidget(new Label(name, TextStyle::caption, ThemeColor::text2));
    row->addStretch();
    auto* const amount = new Label({}, TextStyle::captionMedium);
    amount->setObjectName(objectName);
    row->addWidget(amount);
    column.addLayout(row);
    return amount;
}

} // namespace

ThemeColor driveBarColor(double usedPercent)
{
    if (usedPercent >= fullPercent) {
        return ThemeColor::red;
    }
    return usedPercent >= warningPercent ? ThemeColor::orange : ThemeColor::green;
}

/// Rounded down, so that the number names the step that the colour shows.
QString drivePercentText(double usedPercent)
{
    return QString::number(static_cast<int>(std::floor(usedPercent))) + QLatin1Char('%');
}

DriveUsageView::DriveUsageView(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_drive(DriveState::of(state))
    , m_refresher(new Refresher(this, [this] { showSample(); }))
    , m_refreshTimer(new QTimer(this))
{
    setObjectName(QStringLiteral("driveUsage"));
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing::s);
    column->addWidget(makeHeading());
    column->addWidget(makeCard());

    m_refreshTimer->setObjectName(QStringLiteral("driveRefreshTimer"));
    m_refreshTimer->setInterval(refreshInterval);
    connect(m_refreshTimer, &QTimer::timeout, this, [this] { m_drive.refreshDriveUsage(); });
    m_refresher->watch(m_drive.driveStat);
    showSample();
}

QWidget* DriveUsageView::makeHeading()
{
    auto* const heading = new QWidget(this);
    auto* const row = new QHBoxLayout(heading);
    row->setContentsMargins(spacing::s, 0, spacing::s, 0);
    row->addWidget(new SectionHeading(tr("Disk storage")));
    row->addStretch();
    m_percent = new Label({}, TextStyle::label);
    m_percent->setObjectName(QStringLiteral("drivePercent"));
    row->addWidget(m_percent);
    return heading;
}

QWidget* DriveUsageView::makeCard()
{
    auto* const card = new Card(this);
    auto* const column = new QVBoxLayout(card);
    column->setContentsMargins(spacing::m, 13, spacing::m, 10);
    column->setSpacing(spacing::xs);
    m_bar = new ProgressBar(tr("Used share of the disk"));
    m_bar->setObjectName(QStringLiteral("driveBar"));
    column->addWidget(m_bar);
    column->addSpacing(6);
    m_total = addRow(*column, tr("Total"), QStringLiteral("driveTotal"));
    m_available = addRow(*column, tr("Available"), QStringLiteral("driveAvailable"));
    return card;
}

void DriveUsageView::showSample()
{
    const DriveSample sample = m_drive.driveStat.value();
    const double used = sample.usedPercent();
    m_percent->setText(drivePercentText(used));
    m_bar->setFraction(used / 100);
    m_bar->setColor(driveBarColor(used));
    m_total->setText(sample.formattedTotal());
    m_available->setText(sample.formattedFree());
}

void DriveUsageView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous()) {
        m_refreshTimer->start();
    }
}

void DriveUsageView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous()) {
        m_refreshTimer->stop();
    }
}

} // namespace quorvane
