// SPDX-License-Identifier: MIT
#include "QuickWinsView.h"

#include "Dialog.h"
#include "EmptyState.h"
#include "QuickWinsState.h"
#include "Refresher.h"
#include "RowView.h"
#include "SettingsState.h"
#include "StagingState.h"
#include "Text.h"
#include "ToolRows.h"

#include <utility>

namespace quorvane {
namespace {

constexpr int rowHeight = 74;
constexpr int commandHeight = 26;
constexpr int sizeWidth = 84;
constexpr int dateWidth = 140;
constexpr int stageWidth = 100;
constexpr int emptyTextWidth = 440;

QString counted(qsizetype count, const QString& one, const QString& many)
{
    return (count == 1 ? one : many).arg(count);
}

} // namespace

QuickWinsView::QuickWinsView(AppState& state, QWidget* parent)
    : ToolFrame(QStringLiteral("bolt"), tr("Quick Wins"), parent)
    , m_quickWins(QuickWinsState::of(state))
    , m_staging(StagingState::of(state))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("quickWinsView"));
    m_refresh = addAction(QStringLiteral("arrow.clockwise"), tr("Refresh"));
    m_refresh->setObjectName(QStringLiteral("refreshQuickWins"));
    connect(m_refresh, &QAbstractButton::clicked, this, [this] { m_quickWins.refreshQuickWins(); });
    addEmpty(QStringLiteral("nothing"), QStringLiteral("bolt"),
             tr("Nothing found — clean machine!"),
             tr("We check Xcode DerivedData, iOS Simulators, device backups, build cache "
                "directories and common junk folders. Stage anything you want gone — it lands in "
                "the Trash queue for review."));
    m_hidden = addEmpty(QStringLiteral("hidden"), QStringLiteral("bolt"), tr("All results hidden"),
                        {}, emptyTextWidth);
    m_model = new RowModel(this);
    m_model->setHeights([this](int row) {
        const bool hasCommand = !m_wins[static_cast<std::size_t>(row)].command.empty();
        return rowHeight + (hasCommand ? commandHeight : 0);
    });
    RowMetrics metrics;
    metrics.height = rowHeight;
    m_view = new RowView(*m_model, metrics);
    m_view->setObjectName(QStringLiteral("quickWinsList"));
    m_view->setAccessibleName(tr("Quick wins"));
    m_view->setHasSeveralHeights(true);
    m_view->setSelectionMode(QAbstractItemView::NoSelection);
    connect(m_view, &RowView::actionTriggered, this, &QuickWinsView::act);
    addList(*m_view);
    m_refresher->watch(m_quickWins.quickWins, m_quickWins.isQuickWinsLoading,
                       m_quickWins.quickWinsMeasured, m_staging.stagedNodes,
                       m_staging.trashFailures, SettingsState::of(state).storageBloatFilters);
    refresh();
}

void QuickWinsView::showEvent(QShowEvent* event)
{
    ToolFrame::showEvent(event);
    if (m_quickWins.quickWins.value().empty() && !m_quickWins.isQuickWinsLoading.value()) {
        m_quickWins.refreshQuickWins();
    }
}

void QuickWinsView::hideEvent(QHideEvent* event)
{
    ToolFrame::hideEvent(event);
    m_quickWins.stopQuickWins();
}

Row QuickWinsView::rowOf(const QuickWin& win, bool isStaged) const
{
    Row row;
    row.symbol = win.url.lastComponent().ends_with(".app") ? QStringLiteral("app.fill")
                                                           : QStringLiteral("folder.fill");
    row.title = displayText(win.name);
    row.badges = toolrows::evidenceBadges(win.evidence);
    if (win.isOfSystem()) {
        RowBadge badge;
        badge.text = tr("part of the system");
        badge.toolTip = tr("Nothing that belongs to the installed system is ever moved.");
        row.badges.push_back(badge);
    }
    const std::map<FilePath, TrashOutcome>& failures = m_staging.trashFailures.value();
    if (const auto failure = failures.find(win.url); failure != failures.end()) {
        row.badges.push_back(toolrows::notMoved(failure->second, win.url));
    }
    row.detail = displayText(win.detail);
    row.path = win.url.displayText();
    row.command = toolrows::text(win.command);
    if (win.evidence.lastChanged) {
        RowCell changed = RowCell::note(
            tr("Changed %1").arg(toolrows::date(*win.evidence.lastChanged)), dateWidth);
        changed.givesWay = true;
        row.cells.push_back(changed);
    }
    row.cells.push_back(RowCell::number(win.formattedBytes(), sizeWidth));
    row.actions.push_back(
        RowAction::icon(revealAction, QStringLiteral("magnifyingglass"), tr("Reveal in Finder")));
    RowAction stage;
    stage.id = stageAction;
    stage.text = isStaged ? tr("Staged") : tr("Stage");
    stage.symbol =
        isStaged ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("plus.circle");
    stage.toolTip = tr("Stage for Trash — it lands in the Trash queue under Cleanup for review; "
                       "you stay on this page.");
    stage.width = stageWidth;
    stage.role = isStaged ? ButtonRole::queued : ButtonRole::bordered;
    if (win.isStageable()) {
        row.actions.push_back(stage);
    } else {
        row.cells.push_back(RowCell::note({}, stageWidth)); // sizes stay below each other
    }
    return row;
}

void QuickWinsView::refresh()
{
    const bool isLoading = m_quickWins.isQuickWinsLoading.value();
    setBusy(isLoading ? tr("Looking for junk…") : QString());
    setShown(*m_refresh, !isLoading);
    m_wins = m_quickWins.filteredQuickWins();
    m_staged = m_quickWins.areStaged(m_wins);
    const auto count = static_cast<qsizetype>(m_wins.size());
    RowModel::Keys keys;
    for (const QuickWin& win : m_wins) {
        keys.push_back(toolrows::key(win.id));
    }
    m_model->setRows(
        static_cast<int>(count),
        [this](int row) {
            const auto place = static_cast<std::size_t>(row);
            return rowOf(m_wins[place], m_staged[place]);
        },
        std::move(keys));
    if (isLoading) {
        setSummary({dim(counted(m_quickWins.quickWinsMeasured.value(), tr("%1 place measured"),
                                tr("%1 places measured")),
                        QStringLiteral("quickWinsCount"))});
        showNothing();
        return;
    }
    if (!m_wins.empty()) {
        std::vector<Note> left{{tr("%1 candidates — all removable, all regenerable").arg(count),
                                TextStyle::body, ThemeColor::text1,
                                QStringLiteral("quickWinsSummary")}};
        if (m_quickWins.isQuickWinsFiltered()) {
            left.push_back(dim(tr("showing subset — disable more Dev Bloat Filters to hide"),
                               QStringLiteral("quickWinsSubset")));
        }
        setSummary(left, {dim(tr("Stage sends each item to the Trash queue for review"))});
        showBody();
        return;
    }
    setSummary({});
    if (const auto hidden = static_cast<qsizetype>(m_quickWins.quickWins.value().size())) {
        m_hidden->setText(counted(
            hidden,
            tr("%1 candidate are hidden because of the Dev Bloat Filters. Adjust them in the Dev "
               "Cache Cleaner tool."),
            tr("%1 candidates are hidden because of the Dev Bloat Filters. Adjust them in the Dev "
               "Cache Cleaner tool.")));
        showEmpty(QStringLiteral("hidden"));
    } else {
        showEmpty(QStringLiteral("nothing"));
    }
}

void QuickWinsView::act(const QModelIndex& index, int action)
{
    if (index.row() < 0 || index.row() >= static_cast<int>(m_wins.size())) {
        return;
    }
    const QuickWin win = m_wins[static_cast<std::size_t>(index.row())];
    if (action == revealAction) {
        m_quickWins.revealQuickWin(win);
    } else if (action == stageAction) {
        stage(win);
    }
}

void QuickWinsView::stage(const QuickWin& win)
{
    const bool asks = !win.evidence.caution.empty() && !m_quickWins.isStagedQuickWin(win) &&
                      m_asked.count(win.id) == 0;
    if (asks) {
        ask(win);
    } else {
        m_quickWins.stageQuickWin(win);
    }
}

void QuickWinsView::ask(const QuickWin& win)
{
    m_dialog = new Dialog(window());
    m_dialog->setObjectName(QStringLiteral("stageCautionDialog"));
    m_dialog->setSymbol(QStringLiteral("exclamationmark.triangle.fill"), Tint::orange);
    m_dialog->setTitle(tr("Stage \"%1\" for Trash?").arg(displayText(win.name)));
    QString reason = toolrows::text(win.evidence.caution);
    reason.front() = reason.front().toUpper();
    m_dialog->setText(reason + QStringLiteral(".\n") + win.url.displayText());
    m_dialog->addButton(tr("Cancel"), ButtonRole::bordered, false);
    m_dialog->addButton(tr("Stage"), ButtonRole::destructive, true);
    connect(m_dialog, &Dialog::accepted, this, [this, win] {
        m_asked.insert(win.id);
        if (!m_quickWins.isStagedQuickWin(win)) {
            m_quickWins.stageQuickWin(win);
        }
    });
    m_dialog->open();
}

} // namespace quorvane
