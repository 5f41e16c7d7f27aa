// SPDX-License-Identifier: MIT
#include "SnapshotsView.h"

#include "ByteFormatter.h"
#include "Card.h"
#include "EmptyState.h"
#include "Label.h"
#include "NavigationState.h"
#include "NodeContextMenuModifier.h"
#include "Refresher.h"
#include "RowView.h"
#include "ScanState.h"
#include "SettingsState.h"
#include "SnapshotChart.h"
#include "SnapshotsState.h"
#include "Text.h"
#include "Theme.h"
#include "Tokens.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLocale>
#include <QScopedValueRollback>
#include <QShowEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quorvane {
namespace {

enum SavedAction { deleteAction };

constexpr int cardEdge = 1;
constexpr int chartCardHeight = 212;
constexpr int rowHeight = 32;
constexpr int savedHeight = 48;
constexpr int byteCell = 92;
constexpr int deltaCell = 104;
constexpr int savedWidth = 388;
constexpr int compareWidth = 208;
/// Below this width of the screen the saved list goes under the table.
constexpr int minSideBySide = 1320 - measure::sideBarWidth;

Row diffRow(const SnapshotDiff& diff)
{
    Row row;
    row.title = displayText(diff.path);
    row.titleStyle = TextStyle::body;
    const qsizetype name = row.title.lastIndexOf(QLatin1Char('/')) + 1;
    row.titleSpans = {{0, name, ThemeColor::text3}};
    RowCell delta = RowCell::number(diff.formattedDelta(), deltaCell);
    // Space was won where something shrank.
    delta.color = diff.deltaBytes() < 0 ? ThemeColor::greenText : ThemeColor::orangeText;
    row.cells = {RowCell::note(diff.formattedPast(), byteCell),
                 RowCell::note(diff.formattedPresent(), byteCell), delta};
    return row;
}

Row diffTitles()
{
    Row row;
    row.title = SnapshotsView::tr("Path");
    row.cells = {RowCell::note(SnapshotsView::tr("Past"), byteCell),
                 RowCell::note(SnapshotsView::tr("Now"), byteCell),
                 RowCell::note(SnapshotsView::tr("Δ"), deltaCell)};
    return row;
}

Row savedRow(const StoredSnapshot& snapshot, bool isBusy)
{
    Row row;
    row.title = snapshot.formattedDate(QLocale());
    row.titleElide = Qt::ElideRight;
    row.path = displayText(snapshot.rootPath);
    row.cells = {RowCell::number(ByteFormatter::string(snapshot.rootBytes), byteCell)};
    RowAction remove = RowAction::icon(deleteAction, QStringLiteral("trash"),
                                       SnapshotsView::tr("Delete this snapshot"));
    remove.isEnabled = !isBusy;
    row.actions = {remove};
    return row;
}

QWidget* cardAround(QWidget* list)
{
    auto* const card = new Card;
    auto* const column = new QVBoxLayout(card);
    column->setContentsMargins(cardEdge, cardEdge, cardEdge, cardEdge);
    column->addWidget(list);
    return card;
}

} // namespace

SnapshotsView::SnapshotsView(AppState& state, QWidget* parent)
    : ToolFrame(QStringLiteral("clock.arrow.circlepath"), tr("Snapshots"), parent)
    , m_state(state)
    , m_snapshots(SnapshotsState::of(state))
    , m_scan(ScanState::of(state))
    , m_diffs(new RowModel(this))
    , m_saved(new RowModel(this))
{
    setObjectName(QStringLiteral("snapshotsView"));
    m_save = addAction(QStringLiteral("camera.fill"), tr("Save snapshot"));
    m_save->setObjectName(QStringLiteral("saveSnapshotButton"));
    connect(m_save, &QAbstractButton::clicked, this, [this] { m_snapshots.saveCurrentSnapshot(); });
    m_refresh = addAction(QStringLiteral("arrow.clockwise"), tr("Refresh"));
    m_refresh->setObjectName(QStringLiteral("refreshSnapshotsButton"));
    connect(m_refresh, &QAbstractButton::clicked, this, [this] { m_snapshots.loadSnapshots(); });
    addEmpty(QStringLiteral("none"), QStringLiteral("clock.arrow.circlepath"), {},
             tr("Save a snapshot of a scan, then scan again later and diff them to see what grew "
                "and what shrank."))
        ->setObjectName(QStringLiteral("noSnapshots"));

    body()->setSpacing(spacing::l);
    body()->addWidget(makeCompareRow());
    body()->addWidget(makeChart());
    m_columns = new QGridLayout;
    m_columns->setContentsMargins(0, 0, 0, 0);
    m_columns->setHorizontalSpacing(spacing::xl);
    m_columns->setVerticalSpacing(spacing::l);
    makeTable();
    makeSaved();
    body()->addLayout(m_columns, 1);
    layOutColumns();

    auto* const busy = new Refresher(this, [this] { refreshBusy(); });
    busy->watch(m_snapshots.isSnapshotBusy, m_snapshots.snapshotStatus, m_scan.rootNode);
    auto* const list = new Refresher(this, [this] { refreshSnapshots(); });
    list->watch(m_snapshots.snapshots, m_snapshots.isSnapshotBusy, m_snapshots.baseSnapshotID,
                m_scan.rootNode);
    auto* const diffs = new Refresher(this, [this] { refreshDiffs(); });
    diffs->watch(m_snapshots.growth);
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this,
            [this] { refreshDiffs(); });
    refreshBusy();
    refreshSnapshots();
    refreshDiffs();
}

QWidget* SnapshotsView::makeCompareRow()
{
    auto* const row = new QWidget;
    auto* const line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(spacing::s);
    m_base = new QComboBox;
    m_base->setObjectName(QStringLiteral("compareSnapshotPicker"));
    m_base->setAccessibleName(tr("Compare"));
    m_base->setFixedSize(compareWidth, measure::field);
    connect(m_base, &QComboBox::activated, this, [this](int index) {
        const QVariant id = m_base->itemData(index);
        m_snapshots.compareWith(id.isValid() ? std::optional(id.toUuid()) : std::nullopt);
    });
    line->addWidget(new Label(tr("Compare"), TextStyle::body, ThemeColor::text2));
    line->addWidget(m_base);
    line->addWidget(new Label(tr("vs today"), TextStyle::body, ThemeColor::text2));
    line->addStretch();
    return row;
}

QWidget* SnapshotsView::makeChart()
{
    m_chartCard = new Card;
    m_chartCard->setFixedHeight(chartCardHeight);
    auto* const column = new QVBoxLayout(m_chartCard);
    column->setContentsMargins(spacing::l, spacing::l, spacing::l, spacing::xs);
    auto* const head = new QHBoxLayout;
    head->addWidget(new Label(tr("Bytes over time"), TextStyle::strong));
    head->addStretch();
    m_chartRoot = new ElidedLabel({}, Qt::ElideMiddle, TextStyle::path, ThemeColor::text3);
    m_chartRoot->setObjectName(QStringLiteral("chartRoot"));
    head->addWidget(m_chartRoot);
    column->addLayout(head);
    m_chart = new SnapshotChart;
    connect(m_chart, &SnapshotChart::chosen, this,
            [this](const QUuid& id) { m_snapshots.compareWith(id); });
    column->addWidget(m_chart);
    return m_chartCard;
}

QWidget* SnapshotsView::makeTable()
{
    m_tableColumn = new QWidget;
    auto* const column = new QVBoxLayout(m_tableColumn);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing::s);
    auto* const line = new QHBoxLayout;
    line->setSpacing(spacing::s);
    m_changed = new Label({}, TextStyle::strong);
    m_changed->setObjectName(QStringLiteral("changedItems"));
    m_showingTop = new Label(tr("Showing top %1").arg(maxRows), TextStyle::body, ThemeColor::text2);
    m_showingTop->setObjectName(QStringLiteral("showingTop"));
    m_net = new Label({}, TextStyle::strong);
    m_net->setObjectName(QStringLiteral("netChange"));
    line->addWidget(m_changed);
    line->addWidget(m_showingTop);
    line->addStretch();
    line->addWidget(m_net);
    column->addLayout(line);
    m_table = new RowView(*m_diffs, {.height = rowHeight});
    m_table->setObjectName(QStringLiteral("snapshotDiffTable"));
    m_table->setAccessibleName(tr("Changes since the snapshot"));
    m_table->setTitles(diffTitles());
    m_table->setActivatesOnDoubleClick(true);
    connect(m_table, &RowView::rowActivated, this,
            [this](const QModelIndex& index) { openRow(index.row()); });
    connect(
        m_table, &RowView::contextMenuRequested, this,
        [this](const QModelIndex& index, const QPoint& position) {
            const auto& growth = m_snapshots.growth.value();
            const auto row = static_cast<std::size_t>(index.row());
            // What is gone has no menu: nothing is staged on the word of an old picture.
            if (growth && growth->hasFileOfRow(row)) {
                NodeContextMenuModifier{m_state, growth->nodeOfRow(row)}.popUp(*m_table, position);
            }
        });
    column->addWidget(cardAround(m_table), 1);
    column->addStretch();
    return m_tableColumn;
}

QWidget* SnapshotsView::makeSaved()
{
    m_savedColumn = new QWidget;
    auto* const column = new QVBoxLayout(m_savedColumn);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing::s);
    m_savedHeading = new Label({}, TextStyle::strong);
    m_savedHeading->setObjectName(QStringLiteral("savedSnapshotsHeading"));
    column->addWidget(m_savedHeading);
    m_savedList = new RowView(*m_saved, {.height = savedHeight});
    m_savedList->setObjectName(QStringLiteral("savedSnapshotsList"));
    m_savedList->setAccessibleName(tr("Saved snapshots"));
    const auto snapshotAt = [this](const QModelIndex& index) {
        return m_snapshots.snapshots.value().at(static_cast<std::size_t>(index.row()));
    };
    connect(m_savedList, &RowView::rowActivated, this,
            [this, snapshotAt](const QModelIndex& index) {
                m_snapshots.compareWith(snapshotAt(index).id);
            });
    connect(m_savedList, &RowView::actionTriggered, this,
            [this, snapshotAt](const QModelIndex& index, int) {
                m_snapshots.deleteSnapshot(snapshotAt(index));
            });
    m_savedCard = cardAround(m_savedList);
    column->addWidget(m_savedCard, 1);
    column->addStretch();
    return m_savedColumn;
}

/// Leads to the file, or to the folder that is left of its path, in the analysis.
void SnapshotsView::openRow(int row)
{
    const std::shared_ptr<const SnapshotGrowth> growth = m_snapshots.growth.value();
    if (!growth) {
        return;
    }
    const NodePointer node = growth->nodeOfRow(static_cast<std::size_t>(row));
    NavigationState& navigation = NavigationState::of(m_state);
    if (node->isDirectory()) {
        navigation.focus(node);
    } else if (node->parent() != nullptr) {
        navigation.focus(NodePointer(node, node->parent()));
    }
    navigation.select(node);
    SettingsState::of(m_state).setInspectorVisible(true);
    navigation.section = AppSection::analysis;
}

void SnapshotsView::refreshBusy()
{
    const bool isBusy = m_snapshots.isSnapshotBusy;
    setBusy(m_snapshots.snapshotStatus.value().value_or(QString()));
    m_save->setEnabled(m_scan.hasScan() && !isBusy);
    m_refresh->setEnabled(!isBusy);
}

void SnapshotsView::refreshSnapshots()
{
    const std::vector<StoredSnapshot>& list = m_snapshots.snapshots.value();
    const std::optional<QUuid>& base = m_snapshots.baseSnapshotID.value();
    const QSignalBlocker quiet(m_base);
    m_base->clear();
    m_base->addItem(tr("None"));
    std::vector<Row> rows;
    RowModel::Keys keys;
    int chosen = -1;
    for (const StoredSnapshot& snapshot : list) {
        m_base->addItem(snapshot.formattedDate(QLocale()), QVariant(snapshot.id));
        if (snapshot.id == base) {
            chosen = static_cast<int>(rows.size());
        }
        rows.push_back(savedRow(snapshot, m_snapshots.isSnapshotBusy));
        // Copies made by hand share an id, but no two files a name.
        keys.push_back(qHash(QByteArray::fromStdString(snapshot.fileName)));
    }
    m_base->setCurrentIndex(chosen + 1);
    m_savedCard->setMaximumHeight(static_cast<int>(rows.size()) * savedHeight + 2 * cardEdge);
    m_saved->setRows(std::move(rows), std::move(keys));
    m_savedList->select(chosen < 0 ? QModelIndex() : m_saved->index(chosen));
    m_savedHeading->setText(tr("Saved snapshots (%1)").arg(list.size()));
    refreshChart();
    if (list.empty()) {
        showEmpty(QStringLiteral("none"));
    } else {
        showBody();
    }
}

void SnapshotsView::refreshChart()
{
    const std::vector<StoredSnapshot>& list = m_snapshots.snapshots.value();
    const std::optional<QUuid>& base = m_snapshots.baseSnapshotID.value();
    const auto chosen = std::find_if(list.begin(), list.end(),
                                     [&](const StoredSnapshot& each) { return each.id == base; });
    std::string root = list.empty() ? std::string() : list.front().rootPath;
    if (chosen != list.end()) {
        root = chosen->rootPath;
    } else if (const NodePointer& scanned = m_scan.rootNode.value()) {
        const std::string current = scanned->path().displayText().toStdString();
        const bool isKnown = std::any_of(list.begin(), list.end(), [&](const StoredSnapshot& each) {
            return each.rootPath == current;
        });
        root = isKnown ? current : root;
    }
    std::vector<StoredSnapshot> ofRoot;
    std::copy_if(list.begin(), list.end(), std::back_inserter(ofRoot),
                 [&](const StoredSnapshot& each) { return each.rootPath == root; });
    m_chart->setSnapshots(std::move(ofRoot));
    m_chart->setChosen(base);
    m_chartRoot->setText(displayText(root));
}

void SnapshotsView::refreshDiffs()
{
    const std::shared_ptr<const SnapshotGrowth> growth = m_snapshots.growth.value();
    const std::size_t count = growth ? growth->diffs().size() : 0;
    const auto shown = static_cast<int>(std::min(count, maxRows));
    m_diffs->setRows(shown, [growth](int row) {
        return diffRow(growth->diffs()[static_cast<std::size_t>(row)]);
    });
    setShown(*m_tableColumn, count > 0);
    m_changed->setText(tr("%1 changed items").arg(count));
    m_showingTop->setVisible(count > maxRows);
    const std::int64_t net = growth ? growth->net() : 0;
    m_net->setText(netChangeText(net));
    m_net->setTextColor(net < 0 ? ThemeColor::greenText : ThemeColor::orangeText);
    layOutColumns();
}

void SnapshotsView::layOutColumns()
{
    const bool isBeside = width() >= minSideBySide && !m_tableColumn->isHidden();
    m_columns->removeWidget(m_tableColumn);
    m_columns->removeWidget(m_savedColumn);
    m_columns->addWidget(m_tableColumn, 0, 0);
    m_columns->addWidget(m_savedColumn, isBeside ? 0 : 1, isBeside ? 1 : 0);
    m_columns->setColumnStretch(0, 1);
    m_savedColumn->setFixedWidth(isBeside ? savedWidth : QWIDGETSIZE_MAX);
    if (!isBeside) {
        m_savedColumn->setMinimumWidth(0);
    }
}

void SnapshotsView::showEvent(QShowEvent* event)
{
    ToolFrame::showEvent(event);
    if (m_snapshots.snapshots.value().empty()) {
        m_snapshots.loadSnapshots();
    }
}

void SnapshotsView::resizeEvent(QResizeEvent* event)
{
    ToolFrame::resizeEvent(event);
    layOutColumns();
}

} // namespace quorvane
