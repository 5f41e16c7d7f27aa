// SPDX-License-Identifier: MIT
#include "ScanProgressView.h"

#include "Button.h"
#include "ByteFormatter.h"
#include "Card.h"
#include "Label.h"
#include "Painting.h"
#include "Progress.h"
#include "Refresher.h"
#include "ScanProgressText.h"
#include "ScanState.h"
#include "SpringAnimation.h"
#include "Symbols.h"
#include "TabularLabel.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace quorvane {
namespace {

constexpr int columnWidth = 480;
constexpr int tileHeight = 84;
/// Of the live line, when a parent follows.
constexpr int longestName = columnWidth * 2 / 3;
/// The counter hurries after the reports without ever running past one and back.
constexpr double counterResponse = 0.4;
constexpr double counterDamping = 1;
/// A byte count this near to the report reads the same.
constexpr double counterTolerance = 0.0002;

QString grouped(std::int64_t count)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::DefaultNumberOptions);
    return locale.toString(static_cast<qlonglong>(count));
}

class SymbolView : public QWidget
{
public:
    explicit SymbolView(const QString& symbol)
        : m_symbol(symbol)
    {
        setFixedSize(measure::iconButtonSmall, measure::iconButtonSmall);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintSymbol(painter, m_symbol, rect(), measure::iconButtonSmall,
                    themeColor(ThemeColor::text2));
    }

private:
    QString m_symbol;
};

/// A card with a symbol and a name over a number.
TabularLabel* addTile(QHBoxLayout& row, const QString& symbol, const QString& name,
                      const QString& objectName)
{
    auto* const card = new Card;
    card->setFixedHeight(tileHeight);
    auto* const column = new QVBoxLayout(card);
    column->setContentsMargins(spacing::l, 14, spacing::l, 14);
    column->setSpacing(5);
    auto* const heading = new QHBoxLayout;
    heading->setSpacing(7);
    heading->addWidget(new SymbolView(symbol), 0, Qt::AlignVCenter);
    heading->addWidget(new Label(name, TextStyle::caption, ThemeColor::text2), 1);
    column->addLayout(heading);
    auto* const number = new TabularLabel(TextStyle::figure);
    number->setObjectName(objectName);
    column->addWidget(number);
    row.addWidget(card, 1);
    return number;
}

} // namespace

ScanProgressView::ScanProgressView(AppState& state, QWidget* parent)
    : GlowView({QSizeF(520, 380), 0.40, 0.09}, parent)
    , m_scan(ScanState::of(state))
    , m_byteSpring(new SpringAnimation(counterResponse, counterDamping, 1, this))
    , m_hasReportedPath(hasUsablePath(m_scan.progress.value()))
    , m_refresher(new Refresher(this, [this] { followProgress(); }))
{
    setObjectName(QStringLiteral("scanProgressView"));
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(spacing::xl, 0, spacing::xl, 0);
    whole->setSpacing(0);
    whole->addStretch(2);
    whole->addWidget(makeColumn(), 0, Qt::AlignHCenter);
    auto* const cancel = new Button(QStringLiteral("xmark.circle"), tr("Cancel Scan"));
    cancel->setObjectName(QStringLiteral("cancelScanButton"));
    connect(cancel, &QAbstractButton::clicked, this, [this] { m_scan.cancelScan(); });
    whole->addSpacing(28);
    whole->addWidget(cancel, 0, Qt::AlignHCenter);
    whole->addStretch(3);

    connect(m_byteSpring, &SpringAnimation::valueChanged, this, &ScanProgressView::showBytes);
    m_scanStarted = m_scan.isScanning.addNotifier([this] {
        if (m_scan.isScanning.value()) {
            m_hasReportedPath = false;
            m_byteSpring->jumpTo(0);
        }
    });
    // At once, since a report that follows in the same event may name no path any more.
    m_pathReported = m_scan.progress.addNotifier([this] {
        m_hasReportedPath = m_hasReportedPath || hasUsablePath(m_scan.progress.value());
    });
    m_refresher->watch(m_scan.progress);
    showBytes(0);
    followProgress();
}

QWidget* ScanProgressView::makeColumn()
{
    auto* const panel = new QWidget(this);
    panel->setFixedWidth(columnWidth);
    auto* const column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_bytes = new TabularLabel(TextStyle::counter);
    m_bytes->setObjectName(QStringLiteral("scanByteCounter"));
    m_bytes->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    column->addWidget(m_bytes);
    column->addSpacing(28);
    auto* const tiles = new QHBoxLayout;
    tiles->setSpacing(spacing::m);
    m_folders =
        addTile(*tiles, QStringLiteral("folder"), tr("Folders"), QStringLiteral("scanFolderCount"));
    m_files = addTile(*tiles, QStringLiteral("doc"), tr("Files"), QStringLiteral("scanFileCount"));
    column->addLayout(tiles);
    column->addSpacing(28);
    m_sweep = new SweepRail(tr("Scan in progress"));
    m_sweep->setObjectName(QStringLiteral("scanRail"));
    column->addWidget(m_sweep);
    column->addSpacing(spacing::l);
    auto* const heading = new Label(tr("Scanning"), TextStyle::label, ThemeColor::text3);
    column->addWidget(heading);
    column->addSpacing(spacing::xs);
    column->addWidget(makeLiveLine());
    return panel;
}

QWidget* ScanProgressView::makeLiveLine()
{
    auto* const line = new QWidget;
    line->setObjectName(QStringLiteral("scanLiveLine"));
    auto* const row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    m_liveName = new ElidedLabel({}, Qt::ElideMiddle, TextStyle::row);
    m_liveName->setObjectName(QStringLiteral("scanLiveName"));
    m_liveParent = new ElidedLabel({}, Qt::ElideRight, TextStyle::body, ThemeColor::text2);
    m_liveParent->setObjectName(QStringLiteral("scanLiveParent"));
    row->addWidget(m_liveName);
    row->addWidget(m_liveParent, 1);
    return line;
}

void ScanProgressView::followProgress()
{
    const std::optional<ScanProgress>& progress = m_scan.progress.value();
    if (!isVisible() || !progress) {
        return;
    }
    const auto bytes = static_cast<double>(progress->bytesSeen);
    m_byteSpring->setTolerance(std::max(1.0, bytes * counterTolerance));
    m_byteSpring->moveTo(bytes);
    m_folders->setText(grouped(progress->directoriesScanned));
    m_files->setText(grouped(progress->filesScanned));
    showLiveLine();
}

void ScanProgressView::showBytes(double bytes)
{
    m_bytes->setText(ByteFormatter::string(std::llround(bytes), 1));
}

void ScanProgressView::showLiveLine()
{
    const ScanLiveLine line = scanLiveLine(m_scan.progress.value(), m_hasReportedPath);
    const int room = line.parent.isEmpty() ? columnWidth : longestName;
    m_liveName->setText(line.name);
    m_liveName->setFixedWidth(std::min(textWidth(TextStyle::row, line.name), room));
    m_liveParent->setText(line.parent);
}

void ScanProgressView::showEvent(QShowEvent* event)
{
    GlowView::showEvent(event);
    m_refresher->refreshNow();
}

} // namespace quorvane
