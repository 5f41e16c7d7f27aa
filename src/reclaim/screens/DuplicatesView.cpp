// SPDX-License-Identifier: MIT
#include "DuplicatesView.h"

#include "AppState.h"
#include "Button.h"
#include "ByteFormatter.h"
#include "Card.h"
#include "DuplicatesList.h"
#include "EmptyState.h"
#include "Label.h"
#include "Progress.h"
#include "Refresher.h"
#include "ScreenHeader.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {
namespace {

constexpr int startTextWidth = 420;
constexpr int summaryGap = 14;
constexpr double walkEnd = 0.06;
constexpr double samplingEnd = 0.4;

QString symbol()
{
    return QStringLiteral("rectangle.on.rectangle.angled");
}

} // namespace

DuplicatesView::DuplicatesView(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_refresher(new Refresher(this, [this] { refresh(); }))
    , m_progressRefresher(new Refresher(this, [this] { refreshProgress(); }))
{
    setObjectName(QStringLiteral("duplicatesView"));
    m_noScan = new EmptyState(symbol(), tr("Scan a folder to find duplicates."), {}, this);
    m_noScan->setObjectName(QStringLiteral("duplicatesNoScan"));
    m_start = new EmptyState(symbol(), tr("Find identical files across your scan"),
                             tr("Byte-for-byte SHA-256 comparison. Only same-size files are ever "
                                "opened and hashed, so it stays fast. Large copies are found "
                                "first."),
                             this);
    m_start->setObjectName(QStringLiteral("duplicatesStart"));
    m_start->setTextWidth(startTextWidth);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(makeProgress());
    column->addWidget(makeResults());
    column->addWidget(makeSearching(), 1);
    column->addWidget(m_noScan, 1);
    column->addWidget(m_start, 1);
    column->addStretch();

    m_refresher->watch(m_state.duplicateGroups, m_state.duplicateSearchIsRunning,
                       m_state.duplicateCount, m_state.duplicateReclaimable, m_state.rootNode);
    m_progressRefresher->watch(m_state.duplicateProgress);
    refresh();
    refreshProgress();
}

ScreenHeader* DuplicatesView::makeHeader()
{
    auto* const header = new ScreenHeader(symbol(), tr("Duplicate files"), this);
    m_find = new Button(QStringLiteral("f.cursive.circle"), tr("Find duplicates"));
    m_find->setObjectName(QStringLiteral("findDuplicatesButton"));
    connect(m_find, &QAbstractButton::clicked, this, [this] { m_state.runDuplicateSearch(); });
    header->addAction(m_find);
    m_cancel = new Button(tr("Cancel"));
    m_cancel->setObjectName(QStringLiteral("cancelDuplicatesButton"));
    connect(m_cancel, &QAbstractButton::clicked, this, [this] { m_state.stopDuplicateSearch(); });
    header->addAction(m_cancel);
    return header;
}

QWidget* DuplicatesView::makeProgress()
{
    m_progress = new QWidget(this);
    m_progress->setObjectName(QStringLiteral("duplicateProgress"));
    auto* const column = new QVBoxLayout(m_progress);
    column->setContentsMargins(measure::screenMargin, spacing::xs, measure::screenMargin,
                               spacing::l);
    column->setSpacing(spacing::s);
    auto* const words = new QHBoxLayout;
    m_phase = new Label({}, TextStyle::caption, ThemeColor::text2);
    m_phase->setObjectName(QStringLiteral("duplicatePhase"));
    words->addWidget(m_phase);
    words->addStretch();
    m_percent = new NumberCell(QStringLiteral("100%"), TextStyle::captionStrong);
    m_percent->setObjectName(QStringLiteral("duplicatePercent"));
    words->addWidget(m_percent);
    column->addLayout(words);
    m_bar = new ProgressBar(tr("Progress of the search for duplicates"));
    m_bar->setObjectName(QStringLiteral("duplicateProgressBar"));
    column->addWidget(m_bar);
    return m_progress;
}

QWidget* DuplicatesView::makeSearching()
{
    m_searching = new QWidget(this);
    m_searching->setObjectName(QStringLiteral("duplicatesSearching"));
    auto* const column = new QVBoxLayout(m_searching);
    column->setContentsMargins(measure::screenMargin, 0, measure::screenMargin, 0);
    column->setSpacing(0);
    const QString heading = tr("Searching for duplicates across your scan…");
    auto* const spinner = new Spinner(heading);
    spinner->setWordsVisible(false);
    auto* const first = new Label(heading, TextStyle::heading);
    auto* const second = new Label(tr("Hashing same-size files in the background. Results appear "
                                      "here automatically."),
                                   TextStyle::body, ThemeColor::text2);
    first->setAlignment(Qt::AlignCenter);
    second->setAlignment(Qt::AlignCenter);
    column->addStretch();
    column->addWidget(spinner, 0, Qt::AlignHCenter);
    column->addSpacing(spacing::l);
    column->addWidget(first);
    column->addSpacing(6);
    column->addWidget(second);
    column->addStretch();
    return m_searching;
}

QWidget* DuplicatesView::makeResults()
{
    m_results = new QWidget(this);
    m_results->setObjectName(QStringLiteral("duplicateResults"));
    auto* const column = new QVBoxLayout(m_results);
    column->setContentsMargins(measure::screenMargin, 0, measure::screenMargin,
                               measure::screenMargin);
    column->setSpacing(summaryGap);
    auto* const line = new QHBoxLayout;
    line->setSpacing(spacing::xs);
    m_summary = new Label;
    m_summary->setObjectName(QStringLiteral("duplicateSummary"));
    line->addWidget(m_summary);
    line->addStretch();
    line->addWidget(new Label(tr("Reclaimable"), TextStyle::body, ThemeColor::text2));
    m_reclaimable = new Label({}, TextStyle::strong);
    m_reclaimable->setObjectName(QStringLiteral("duplicateReclaimable"));
    line->addWidget(m_reclaimable);
    column->addLayout(line);
    auto* const card = new Card;
    auto* const inside = new QVBoxLayout(card);
    inside->setContentsMargins(1, 1, 1, 1);
    m_list = new DuplicatesList(m_state);
    inside->addWidget(m_list);
    column->addWidget(card);
    return m_results;
}

QString DuplicatesView::phaseText(double progress)
{
    if (progress <= walkEnd) {
        return tr("Reading your scan's folder tree…");
    }
    if (progress < samplingEnd) {
        return tr("Sampling same-size files…");
    }
    return progress < 1 ? tr("Verifying identical contents…") : tr("Done.");
}

QString DuplicatesView::percentText(double progress)
{
    return QString::number(static_cast<int>(progress * 100)) + QLatin1Char('%');
}

void DuplicatesView::refreshProgress()
{
    const double progress = m_state.duplicateProgress.value();
    m_phase->setText(phaseText(progress));
    m_percent->setText(percentText(progress));
    m_bar->setFraction(progress);
}

void DuplicatesView::refreshHeader(bool isRunning, bool hasGroups)
{
    const QWidget* const focused = window()->focusWidget();
    const bool movesFocus = focused == m_find || focused == m_cancel;
    Button* const shown = isRunning ? m_cancel : m_find;
    m_find->setRole(hasGroups ? ButtonRole::bordered : ButtonRole::prominent);
    shown->show();
    if (movesFocus) {
        shown->setFocus(Qt::OtherFocusReason);
    }
    (isRunning ? m_find : m_cancel)->hide();
}

void DuplicatesView::keepFocusOfVanishingList()
{
    if (window()->focusWidget() == m_list) {
        // Left to itself it would fall on whatever control of the window comes next.
        setFocus(Qt::OtherFocusReason);
        m_listLostFocus = true;
    }
}

void DuplicatesView::returnFocusToList()
{
    if (std::exchange(m_listLostFocus, false) && window()->focusWidget() == this) {
        m_list->setFocus(Qt::OtherFocusReason);
    }
}

void DuplicatesView::refresh()
{
    const auto& groups = m_state.duplicateGroups.value();
    const bool isRunning = m_state.duplicateSearchIsRunning.value();
    const bool hasGroups = !groups->empty();
    refreshHeader(isRunning, hasGroups);
    m_progress->setVisible(isRunning);
    m_list->setGroups(groups);
    m_summary->setText(tr("%1 extra copies across %2 groups")
                           .arg(m_state.duplicateCount.value())
                           .arg(groups->size()));
    m_reclaimable->setText(ByteFormatter::string(m_state.duplicateReclaimable.value()));

    if (!hasGroups) {
        keepFocusOfVanishingList();
    }
    m_results->setVisible(hasGroups);
    if (hasGroups) {
        returnFocusToList();
    }
    m_searching->setVisible(!hasGroups && isRunning);
    m_noScan->setVisible(!hasGroups && !isRunning && !m_state.hasScan());
    m_start->setVisible(!hasGroups && !isRunning && m_state.hasScan());
}

} // namespace quorvane
