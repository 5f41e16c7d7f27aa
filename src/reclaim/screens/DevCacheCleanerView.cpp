// SPDX-License-Identifier: MIT
#include "DevCacheCleanerView.h"

#include "BloatFilterBar.h"
#include "ByteFormatter.h"
#include "CleanupCautions.h"
#include "Dialog.h"
#include "Label.h"
#include "Progress.h"
#include "Refresher.h"
#include "RowView.h"
#include "SettingsState.h"
#include "ToolRows.h"

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

constexpr int rowHeight = 48;
constexpr int barWidth = 140;
constexpr int maxCautionLines = 6;

QString plural(qsizetype count)
{
    return count == 1 ? QString() : QStringLiteral("s");
}

QString sizeOf(const std::vector<DevCacheCleaner::CacheItem>& items)
{
    return ByteFormatter::string(DevCacheCleaner::totalBytes(items));
}

/// A line for each item that calls for a second thought; beyond six, one that counts the rest.
QStringList cautionLinesOf(const std::vector<DevCacheCleaner::CacheItem>& items)
{
    QStringList lines;
    for (const DevCacheCleaner::CacheItem& item : items) {
        if (!item.evidence.caution.empty()) {
            lines << DevCacheCleanerView::tr("“%1”: %2.")
                         .arg(item.path.displayText(), toolrows::text(item.evidence.caution));
        }
    }
    if (lines.size() > maxCautionLines) {
        const auto rest = lines.size() - (maxCautionLines - 1);
        lines = lines.first(maxCautionLines - 1);
        lines << DevCacheCleanerView::tr("%1 more have a mark on their rows.").arg(rest);
    }
    return lines;
}

} // namespace

DevCacheCleanerView::DevCacheCleanerView(AppState& state, QWidget* parent)
    : ToolFrame(QStringLiteral("wrench.and.screwdriver"), tr("Dev cache cleaner"), parent)
    , m_caches(DevCachesState::of(state))
    , m_rows(this)
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("devCacheCleanerView"));
    m_cancel = addAction({}, tr("Cancel"));
    m_cancel->setObjectName(QStringLiteral("cancelDevScan"));
    connect(m_cancel, &QAbstractButton::clicked, this, [this] { m_caches.cancelDevCleanupScan(); });
    m_rescan = addAction(QStringLiteral("arrow.clockwise"), tr("Scan caches"));
    m_rescan->setObjectName(QStringLiteral("rescanDevCaches"));
    connect(m_rescan, &QAbstractButton::clicked, this, [this] { scan(false); });
    m_deep = addAction(QStringLiteral("house.fill"), tr("Deep scan home"));
    m_deep->setObjectName(QStringLiteral("deepScanHome"));
    connect(m_deep, &QAbstractButton::clicked, this, [this] { scan(true); });
    addEmpty(QStringLiteral("nothing"), QStringLiteral("wrench.and.screwdriver"),
             tr("Reclaim space from developer caches"),
             tr("Finds Xcode DerivedData, SwiftPM/CocoaPods/npm/Gradle caches, go/Cargo/pip "
                "caches, and build folders like node_modules and .build. Items are moved to the "
                "Trash — nothing is ever deleted in the background."));
    body()->addWidget(new BloatFilterBar(SettingsState::of(state)));
    RowMetrics metrics;
    metrics.height = rowHeight;
    metrics.hasOwnCards = true;
    auto* const list = new RowView(m_rows.model(), metrics);
    list->setObjectName(QStringLiteral("devCacheList"));
    list->setAccessibleName(tr("Caches"));
    list->setHasSeveralHeights(true);
    list->setSelectionMode(QAbstractItemView::NoSelection);
    connect(list, &RowView::actionTriggered, this, [this](const QModelIndex& index, int action) {
        if (action == RowAction::toggled) {
            toggle(index.row());
        }
    });
    connect(list, &RowView::rowActivated, this,
            [this](const QModelIndex& index) { toggle(index.row()); });
    addList(*list);
    makeBottom();
    m_refresher->watch(m_caches.devCleanupCount);
    refresh();
}

void DevCacheCleanerView::makeBottom()
{
    m_summary = new Label({}, TextStyle::body);
    m_summary->setObjectName(QStringLiteral("devCacheSummary"));
    addBottomWidget(Side::left, m_summary);
    m_select = addBottomAction(Side::left, {}, tr("Select largest"), ButtonRole::plain);
    m_select->setObjectName(QStringLiteral("selectLargest"));
    connect(m_select, &QAbstractButton::clicked, this, [this] {
        m_rows.toggleSelection();
        refreshBottom();
    });
    m_bar = new ProgressBar(tr("Share of the items that is in the Trash"));
    m_bar->setFixedWidth(barWidth);
    addBottomWidget(Side::right, m_bar);
    m_status = new Label({}, TextStyle::caption, ThemeColor::text2);
    m_status->setObjectName(QStringLiteral("devCacheStatus"));
    addBottomWidget(Side::right, m_status);
    m_trash =
        addBottomAction(Side::right, QStringLiteral("trash.fill"), {}, ButtonRole::destructive);
    m_trash->setObjectName(QStringLiteral("trashDevCaches"));
    connect(m_trash, &QAbstractButton::clicked, this, [this] { askToTrash(); });
}

void DevCacheCleanerView::showEvent(QShowEvent* event)
{
    ToolFrame::showEvent(event);
    if (items().empty() && !m_isScanning && !m_isTrashing) {
        scan(false);
    }
}

void DevCacheCleanerView::hideEvent(QHideEvent* event)
{
    ToolFrame::hideEvent(event);
    m_caches.cancelDevCleanupScan();
}

void DevCacheCleanerView::scan(bool deep)
{
    if (m_isScanning) {
        return;
    }
    m_statusText.clear();
    m_errorMessage.clear();
    m_deepScan = deep;
    m_isScanning = true;
    refresh();
    auto onFound = [self = QPointer(this), deep](std::optional<std::vector<CacheItem>> found) {
        if (self) {
            self->takeFound(deep, std::move(found));
        }
    };
    deep ? m_caches.deepScanBuildDirs(std::move(onFound))
         : m_caches.scanDevCaches(std::move(onFound));
}

void DevCacheCleanerView::takeFound(bool deep, std::optional<std::vector<CacheItem>> found)
{
    // A look that was cancelled leaves the list as it was.
    if (!found) {
        m_rows.setItems(items());
    } else {
        m_rows.setItems(deep ? DevCacheCleaner::merged(items(), *found) : std::move(*found));
    }
    m_statusText =
        tr("%1 locations, %2 reclaimed would free").arg(items().size()).arg(sizeOf(items()));
    m_deepScan = false;
    m_isScanning = false;
    refresh();
}

void DevCacheCleanerView::toggle(int row)
{
    if (!m_isTrashing) {
        m_rows.toggle(row);
        refreshBottom();
    }
}

void DevCacheCleanerView::askToTrash()
{
    const std::vector<CacheItem> items = m_rows.picked();
    if (items.empty() || m_isTrashing || m_dialog) {
        return;
    }
    m_dialog = new Dialog(window());
    m_dialog->setObjectName(QStringLiteral("trashDevCachesDialog"));
    m_dialog->setSymbol(QStringLiteral("trash.fill"), Tint::red);
    const auto count = static_cast<qsizetype>(items.size());
    m_dialog->setTitle(tr("Move %1 item%2 to Trash?").arg(count).arg(plural(count)));
    m_dialog->setText(tr("%1 will be recoverable from the Trash.").arg(sizeOf(items)));
    auto* const cautions = new CautionPanel;
    m_dialog->bodyLayout()->addWidget(cautions);
    cautions->setLines(cautionLinesOf(items));
    m_dialog->addButton(tr("Cancel"), ButtonRole::bordered, false);
    m_dialog->addButton(tr("Move to Trash"), ButtonRole::destructive, true);
    connect(m_dialog, &Dialog::accepted, this, [this, items] { performTrash(items); });
    m_dialog->open();
}

/// Takes what the dialog has asked about, whatever the selection has become since.
void DevCacheCleanerView::performTrash(const std::vector<CacheItem>& items)
{
    const std::size_t count = items.size();
    m_isTrashing = true;
    m_trashProgress = 0;
    m_trashStatus =
        tr("Moving %1 item%2 to Trash…").arg(count).arg(plural(static_cast<qsizetype>(count)));
    refresh();
    const QPointer self(this);
    m_caches.trashDevCaches(
        items,
        [self, count](std::size_t done) {
            if (self) {
                self->m_trashProgress = static_cast<double>(done) / static_cast<double>(count);
                self->m_trashStatus = tr("Moving %1 of %2 to Trash…").arg(done).arg(count);
                self->refreshBottom();
            }
        },
        [self](const std::vector<DevCachesState::Move>& moves) {
            if (self) {
                self->takeMoves(moves);
            }
        });
}

void DevCacheCleanerView::takeMoves(const std::vector<DevCachesState::Move>& moves)
{
    const auto moved = static_cast<std::size_t>(
        std::count_if(moves.begin(), moves.end(), [](const DevCachesState::Move& move) {
            return move.outcome == TrashOutcome::moved;
        }));
    m_rows.takeMoves(moves);
    m_isTrashing = false;
    m_errorMessage.clear();
    m_statusText.clear();
    if (moved == 0) {
        m_errorMessage = tr("Nothing could be moved to Trash.");
    } else if (moved == moves.size()) {
        m_statusText = tr("Moved %1 to Trash").arg(moved);
    } else {
        m_statusText = tr("Moved %1 to Trash (%2 failed)").arg(moved).arg(moves.size() - moved);
    }
    refresh();
}

QString DevCacheCleanerView::countText() const
{
    const std::int64_t count = m_caches.devCleanupCount.value();
    return m_deepScan ? tr("%1 folders").arg(count) : tr("%1 places").arg(count);
}

void DevCacheCleanerView::refresh()
{
    setBusy(!m_isScanning ? QString()
            : m_deepScan  ? tr("Deep scanning home…")
                          : tr("Scanning caches…"));
    setSummary(m_isScanning ? std::vector<Note>{dim(countText(), QStringLiteral("devCacheCount"))}
                            : std::vector<Note>{});
    setShown(*m_cancel, m_isScanning);
    setShown(*m_rescan, !m_isScanning && !m_isTrashing);
    setShown(*m_deep, !m_isScanning && !m_isTrashing);
    m_rescan->setText(items().empty() ? tr("Scan caches") : tr("Rescan"));
    if (items().empty() && !m_isScanning) {
        showEmpty(QStringLiteral("nothing"));
    } else {
        showBody();
    }
    refreshBottom();
}

void DevCacheCleanerView::refreshBottom()
{
    const bool hasItems = !items().empty();
    const std::vector<CacheItem> chosen = m_rows.picked();
    const auto count = static_cast<qsizetype>(chosen.empty() ? items().size() : chosen.size());
    m_summary->setText(chosen.empty()
                           ? tr("%1 cache location%2 · reclaimable %3")
                                 .arg(count)
                                 .arg(plural(count), sizeOf(items()))
                           : tr("%1 selected · %2 reclaimable").arg(count).arg(sizeOf(chosen)));
    m_select->setText(chosen.empty() ? tr("Select largest") : tr("Clear selection"));
    const QString status = m_isTrashing               ? m_trashStatus
                           : m_errorMessage.isEmpty() ? m_statusText
                                                      : m_errorMessage;
    m_bar->setFraction(m_trashProgress);
    m_status->setText(status);
    m_trash->setText(tr("Trash %1").arg(chosen.size()));
    setShown(*m_summary, hasItems);
    setShown(*m_select, hasItems && !m_isTrashing);
    setShown(*m_bar, m_isTrashing);
    setShown(*m_status, !status.isEmpty());
    setShown(*m_trash, !chosen.empty() && !m_isTrashing);
}

} // namespace quorvane
