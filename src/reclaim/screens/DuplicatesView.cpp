// SPDX-License-Identifier: MIT
#include "DuplicatesView.h"

#include "AppState.h"
#include "ByteFormatter.h"
#include "DuplicatesModel.h"
#include "EmptyState.h"
#include "Refresher.h"
#include "RowView.h"
#include "Tokens.h"

#include <QScopedValueRollback>

#include <utility>

namespace quorvane {
namespace {

constexpr int startTextWidth = 420;
constexpr double walkEnd = 0.06;
constexpr double samplingEnd = 0.4;

QString symbol()
{
    return QStringLiteral("rectangle.on.rectangle.angled");
}

const QString noScan = QStringLiteral("duplicatesNoScan");
const QString start = QStringLiteral("duplicatesStart");
const QString searching = QStringLiteral("duplicatesSearching");

} // namespace

DuplicatesView::DuplicatesView(AppState& state, QWidget* parent)
    : ToolFrame(symbol(), tr("Duplicate files"), parent)
    , m_state(state)
    , m_model(new DuplicatesModel(state, this))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
    , m_progressRefresher(new Refresher(this, [this] { refreshProgress(); }))
{
    setObjectName(QStringLiteral("duplicatesView"));
    addEmpty(noScan, symbol(), tr("Scan a folder to find duplicates."), {})->setObjectName(noScan);
    addEmpty(start, symbol(), tr("Find identical files across your scan"),
             tr("Byte-for-byte SHA-256 comparison. Only same-size files are ever opened and "
                "hashed, so it stays fast. Large copies are found first."),
             startTextWidth)
        ->setObjectName(start);
    addWaiting(searching, tr("Searching for duplicates across your scan…"),
               tr("Hashing same-size files in the background. Results appear here automatically."))
        ->setObjectName(searching);
    setProgressName(tr("Progress of the search for duplicates"));
    makeButtons();
    makeList();
    m_refresher->watch(m_state.duplicateGroups, m_state.duplicateSearchIsRunning,
                       m_state.duplicateCount, m_state.duplicateReclaimable, m_state.rootNode);
    m_progressRefresher->watch(m_state.duplicateProgress, m_state.duplicateSearchIsRunning);
    refresh();
    refreshProgress();
}

void DuplicatesView::makeButtons()
{
    m_find = addAction(QStringLiteral("f.cursive.circle"), tr("Find duplicates"));
    m_find->setObjectName(QStringLiteral("findDuplicatesButton"));
    connect(m_find, &QAbstractButton::clicked, this, [this] { m_state.runDuplicateSearch(); });
    m_cancel = addAction({}, tr("Cancel"));
    m_cancel->setObjectName(QStringLiteral("cancelDuplicatesButton"));
    connect(m_cancel, &QAbstractButton::clicked, this, [this] { m_state.stopDuplicateSearch(); });
}

void DuplicatesView::makeList()
{
    RowMetrics metrics;
    metrics.height = DuplicatesModel::groupHeight;
    metrics.paddingLeft = 18;
    metrics.hasLevels = true;
    metrics.chevronSide = 12;
    metrics.chevronGap = 16;
    metrics.levelIndent = 0;
    m_list = new RowView(*m_model, metrics);
    m_list->setObjectName(QStringLiteral("duplicatesList"));
    m_list->setAccessibleName(tr("Duplicate files"));
    m_list->setHasSeveralHeights(true);
    m_list->setRowsToggle(true);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    addList(*m_list);
    connect(m_list, &RowView::actionTriggered, this, &DuplicatesView::press);
    connect(m_list, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        if (!m_isOpening) {
            m_model->setOpen(index, true);
        }
    });
    connect(m_list, &QTreeView::collapsed, this,
            [this](const QModelIndex& index) { m_model->setOpen(index, false); });
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this, [this] {
        m_model->measureColumns();
        m_model->refreshRows();
    });
    const auto showStaged = [this] { m_model->refreshRows(); };
    m_observers.push_back(m_state.stagedNodes.addNotifier(showStaged));
    // A batch on its way to the Trash leaves the queue at once, and its files are staged no more
    // one after the other.
    m_observers.push_back(m_state.trashProgress.addNotifier(showStaged));
}

void DuplicatesView::press(const QModelIndex& index, int action)
{
    switch (action) {
    case duplicaterows::keepLatest:
        duplicaterows::pressKeepLatest(m_state, *m_model->groupOf(index));
        break;
    case duplicaterows::keep:
        duplicaterows::pressKeep(m_state, *m_model->fileOf(index));
        break;
    case duplicaterows::reveal:
        m_state.revealInFinder(*m_model->fileOf(index));
        break;
    default:
        showMore(index);
    }
}

void DuplicatesView::showMore(const QModelIndex& index)
{
    const QModelIndex last = index.siblingAtRow(index.row() - 1);
    m_model->showMore(index);
    if (!index.parent().isValid()) {
        openShown(index.row());
    }
    m_list->setCurrent(m_model->index(index.row(), 0, index.parent()));
    if (m_list->isLedByKeys()) {
        // Keys go on from there: the new rows fill the view, below the one that was the last.
        m_list->scrollTo(last, QAbstractItemView::PositionAtTop);
    }
}

/// Opens those groups from a row on that were open when they were last on show.
void DuplicatesView::openShown(int first)
{
    const QScopedValueRollback opening(m_isOpening, true);
    for (int row = first; row < static_cast<int>(m_model->shownGroups()); ++row) {
        if (m_model->isOpen(static_cast<std::size_t>(row))) {
            m_list->setExpanded(m_model->index(row), true);
        }
    }
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
    setProgress(m_state.duplicateSearchIsRunning.value()
                    ? std::optional(Progress{progress, phaseText(progress), percentText(progress)})
                    : std::nullopt);
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

void DuplicatesView::refreshGroups()
{
    const auto& groups = m_state.duplicateGroups.value();
    if (groups != m_model->groups()) {
        // It may be the last that held tens of thousands of groups and their tree.
        m_state.jobs().release(m_model->setGroups(groups));
        openShown(0);
    }
}

void DuplicatesView::refresh()
{
    const bool isRunning = m_state.duplicateSearchIsRunning.value();
    refreshGroups();
    const bool hasGroups = !m_model->groups()->empty();
    refreshHeader(isRunning, hasGroups);
    if (hasGroups) {
        setSummary({{tr("%1 extra copies across %2 groups")
                         .arg(m_state.duplicateCount.value())
                         .arg(m_model->groups()->size()),
                     TextStyle::body, ThemeColor::text1, QStringLiteral("duplicateSummary")}},
                   {dim(tr("Reclaimable")),
                    strong(ByteFormatter::string(m_state.duplicateReclaimable.value()),
                           QStringLiteral("duplicateReclaimable"))});
        showBody();
        return;
    }
    setSummary({});
    showEmpty(isRunning ? searching : m_state.hasScan() ? start : noScan);
}

} // namespace quorvane
