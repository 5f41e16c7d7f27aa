// SPDX-License-Identifier: MIT
#include "SearchView.h"

#include "AppSection.h"
#include "Button.h"
#include "Card.h"
#include "Chip.h"
#include "EmptyState.h"
#include "FileTypeCategory.h"
#include "InspectorFacts.h"
#include "KeyHints.h"
#include "Label.h"
#include "Menu.h"
#include "NavigationState.h"
#include "NodeColors.h"
#include "QuickLookPreview.h"
#include "Refresher.h"
#include "RowView.h"
#include "ScanState.h"
#include "SearchState.h"
#include "SegmentedPicker.h"
#include "ShapePainting.h"
#include "TextField.h"
#include "Tokens.h"

#include <QClipboard>
#include <QComboBox>
#include <QDateTime>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLocale>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>

namespace quorvane {
namespace {

constexpr int delayMs = 160;
constexpr int fieldTop = 20;
constexpr int sizeWidth = 92;
constexpr int dateWidth = 72;
constexpr int listInset = 6;
constexpr int rowHeight = 50;

template<class Filters>
void addTitles(QComboBox& box, const Filters& filters)
{
    for (const auto filter : filters) {
        box.addItem(title(filter));
    }
}

} // namespace

std::vector<RowSpan> highlightedSpans(const QString& name, const QString& query)
{
    const QString lower = name.toLower();
    std::vector<RowSpan> spans;
    // A letter that changes its length has no place in the name as it is shown.
    if (lower.size() != name.size()) {
        return spans;
    }
    for (const std::string& bytes : FolderSearch::wordsOf(query)) {
        const QString word = QString::fromStdString(bytes);
        for (qsizetype at = lower.indexOf(word); at >= 0;
             at = lower.indexOf(word, at + word.size())) {
            spans.push_back({at, word.size(), ThemeColor::accentText});
        }
    }
    std::sort(spans.begin(), spans.end(),
              [](const RowSpan& a, const RowSpan& b) { return a.start < b.start; });
    std::vector<RowSpan> merged;
    for (const RowSpan& span : spans) {
        const qsizetype end = span.start + span.length;
        if (merged.empty() || span.start > merged.back().start + merged.back().length) {
            merged.push_back(span);
        } else {
            RowSpan& last = merged.back();
            last.length = std::max(last.start + last.length, end) - last.start;
        }
    }
    return merged;
}

QString shortDate(std::optional<std::int64_t> seconds, std::int64_t nowSeconds)
{
    if (!seconds) {
        return {};
    }
    const QDateTime date = QDateTime::fromSecsSinceEpoch(*seconds);
    const bool isToday = date.date() == QDateTime::fromSecsSinceEpoch(nowSeconds).date();
    return QLocale::c().toString(date, isToday ? QStringLiteral("HH:mm") : QStringLiteral("MMM d"));
}

SearchView::SearchView(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_scan(ScanState::of(state))
    , m_navigation(NavigationState::of(state))
    , m_search(SearchState::of(state))
    , m_refresher(new Refresher(this, [this] { takeResults(); }))
{
    setObjectName(QStringLiteral("searchView"));
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(makeResults(), 1);
    column->addWidget(makeFooter());
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayMs);
    connect(&m_delay, &QTimer::timeout, this, [this] {
        m_searchedRoot = m_scan.rootNode.value();
        m_search.searchFolder(m_query);
    });
    m_refresher->watch(m_search.folderSearchResults, m_scan.rootNode);
    takeResults();
    refreshChips();
}

QWidget* SearchView::makeHeader()
{
    auto* const header = new QWidget(this);
    auto* const column = new QVBoxLayout(header);
    column->setContentsMargins(measure::screenMargin, fieldTop, measure::screenMargin, 0);
    column->setSpacing(14);
    m_field = new TextField(tr("Search this folder…"), header);
    m_field->setObjectName(QStringLiteral("searchField"));
    m_field->setAccessibleName(tr("Search this folder…"));
    m_field->setSymbol(QStringLiteral("magnifyingglass"));
    m_field->setClearable(true, tr("Clear query (Esc)"));
    m_field->setFieldHeight(measure::fieldLarge);
    m_field->installEventFilter(this);
    connect(m_field, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_query.text = text;
        evaluate();
    });
    column->addWidget(m_field);
    auto* const line = new QHBoxLayout;
    line->setSpacing(10);
    makeFilters(*line);
    column->addLayout(line);
    m_cut = new Label(tr("Showing the top %1 matches by relevance").arg(FolderSearch::maxHits),
                      TextStyle::caption, ThemeColor::text3, header);
    m_cut->setObjectName(QStringLiteral("searchCut"));
    column->addWidget(m_cut);
    return header;
}

QComboBox* SearchView::addMenu(QLayout& line, const QString& name, const char* objectName)
{
    auto* const box = new QComboBox(this);
    box->setObjectName(QLatin1String(objectName));
    box->setAccessibleName(name);
    setControlSize(*box, ControlSize::regular);
    line.addWidget(box);
    return box;
}

void SearchView::makeFilters(QLayout& line)
{
    m_kind = new SegmentedPicker(tr("Kind"), this);
    m_kind->setObjectName(QStringLiteral("searchKind"));
    for (const KindFilter kind : allKindFilters) {
        m_kind->addSegment(title(kind));
    }
    connect(m_kind, &SegmentedPicker::activated, this, [this](int index) {
        m_query.kind = allKindFilters[static_cast<std::size_t>(index)];
        evaluate();
    });
    line.addWidget(m_kind);
    m_category = addMenu(line, tr("Category"), "searchCategory");
    m_category->addItem(tr("Any category"));
    for (const FileTypeCategory category : allFileTypeCategories) {
        m_category->addItem(displayName(category));
    }
    connect(m_category, &QComboBox::activated, this, [this](int index) {
        m_query.category.reset();
        if (index > 0) {
            m_query.category = allFileTypeCategories[static_cast<std::size_t>(index - 1)];
        }
        evaluate();
    });
    m_size = addMenu(line, tr("Size"), "searchSize");
    addTitles(*m_size, allByteFilters);
    connect(m_size, &QComboBox::activated, this, [this](int index) {
        m_query.minBytes = allByteFilters[static_cast<std::size_t>(index)];
        evaluate();
    });
    m_age = addMenu(line, tr("Age"), "searchAge");
    addTitles(*m_age, allAgeFilters);
    connect(m_age, &QComboBox::activated, this, [this](int index) {
        m_query.age = allAgeFilters[static_cast<std::size_t>(index)];
        evaluate();
    });
    m_clear = new Button(tr("Clear"), ButtonRole::plain, ControlSize::regular, this);
    m_clear->setObjectName(QStringLiteral("searchClearFilters"));
    connect(m_clear, &QAbstractButton::clicked, this, &SearchView::resetFilters);
    line.addWidget(m_clear);
    auto* const chips = new QWidget(this);
    m_chips = new QHBoxLayout(chips);
    m_chips->setContentsMargins(0, 0, 0, 0);
    m_chips->setSpacing(spacing::s);
    m_chips->setAlignment(Qt::AlignRight);
    chips->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    line.addWidget(chips);
}

QWidget* SearchView::makeResults()
{
    auto* const area = new QWidget(this);
    auto* const around = new QVBoxLayout(area);
    around->setContentsMargins(measure::screenMargin, 18, measure::screenMargin, spacing::l);
    m_area = new QStackedLayout;
    around->addLayout(m_area);
    auto* const card = new Card(area);
    auto* const inside = new QVBoxLayout(card);
    inside->setContentsMargins(1, listInset, 1, listInset);
    m_model = new RowModel(this);
    RowMetrics metrics;
    metrics.height = rowHeight;
    metrics.inset = listInset;
    metrics.hasSeparators = false;
    m_rows = new RowView(*m_model, metrics, card);
    m_rows->setObjectName(QStringLiteral("searchResults"));
    m_rows->setAccessibleName(tr("Matches"));
    m_rows->setMouseTracking(true);
    inside->addWidget(m_rows);
    connect(m_rows, &QAbstractItemView::entered, this,
            [this](const QModelIndex& index) { select(index.row()); });
    connect(m_rows, &RowView::selectionMoved, this,
            [this](const QModelIndex& index) { m_selected = index.row(); });
    connect(m_rows, &RowView::rowActivated, this,
            [this](const QModelIndex& index) { open(index.row()); });
    connect(m_rows, &RowView::contextMenuRequested, this,
            [this](const QModelIndex& index, const QPoint& position) {
                showMenu(index.row(), position);
            });
    m_list = card;
    m_nothing = new EmptyState(QStringLiteral("questionmark.folder"), {}, {}, area);
    m_nothing->setObjectName(QStringLiteral("searchNothing"));
    m_hint = new EmptyState(
        QStringLiteral("magnifyingglass.circle"), {},
        tr("Type a name to find files and folders across the whole scan.\nBest matches rise to "
           "the top. Want your whole Mac? Use Spotlight Search (⌘⇧Space)."),
        area);
    m_hint->setObjectName(QStringLiteral("searchHint"));
    for (QWidget* const page :
         {m_list, static_cast<QWidget*>(m_nothing), static_cast<QWidget*>(m_hint)}) {
        m_area->addWidget(page);
    }
    return area;
}

QWidget* SearchView::makeFooter()
{
    auto* const footer = new KeyHints(this);
    m_count = footer->count();
    m_count->setObjectName(QStringLiteral("searchCount"));
    footer->add(QStringLiteral("↑↓"), tr("navigate"));
    footer->add(QStringLiteral("↵"), tr("open"));
    footer->add(QStringLiteral("⌘↵"), tr("Finder"));
    footer->add(QStringLiteral("⌘Y"), tr("preview"));
    footer->add(QStringLiteral("Esc"), tr("clear"));
    return footer;
}

void SearchView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_field->setFocus();
}

void SearchView::evaluate()
{
    m_delay.stop();
    showFilters();
    refreshChips();
    if (m_query.text.isEmpty() && !m_query.hasActiveFilter()) {
        m_search.clearFolderSearch();
        m_refresher->refreshNow();
        return;
    }
    m_delay.start();
    refreshArea();
}

void SearchView::takeResults()
{
    const auto results = m_search.folderSearchResults.value();
    const bool hasTree = m_scan.hasScan();
    const bool isWanted = !m_query.text.isEmpty() || m_query.hasActiveFilter();
    // Another tree: what was asked is asked of it, too.
    const bool isAnother = hasTree && m_searchedRoot.lock() != m_scan.rootNode.value();
    if (isAnother && isWanted && !m_delay.isActive()) {
        m_delay.start();
    }
    if (results != m_results) {
        m_results = results;
        refreshRows();
        select(m_results && !m_results->hits.empty() ? 0 : -1);
        if (m_results && isVisible()) {
            m_field->setFocus();
        }
    }
    refreshArea();
}

void SearchView::refreshRows()
{
    const int count = m_results ? static_cast<int>(m_results->hits.size()) : 0;
    m_model->setRows(count, [this](int index) { return rowOf(index); });
    m_count->setText(count == 1 ? tr("%1 result").arg(count) : tr("%1 results").arg(count));
}

void SearchView::refreshArea()
{
    const bool hasResults = m_results && !m_results->hits.empty();
    const bool isAsked = !m_query.text.isEmpty() || m_query.hasActiveFilter();
    m_cut->setVisible(hasResults && m_results->hits.size() == FolderSearch::maxHits);
    const NodePointer root = m_scan.rootNode.value();
    m_hint->setHeading(
        tr("Folder Search — inside %1").arg(root ? root->displayName() : tr("the current scan")));
    m_nothing->setHeading(tr("No matches for “%1”").arg(m_query.text));
    m_nothing->setText(m_query.hasActiveFilter() ? tr("Loosen a filter to see more results.")
                                                 : QString());
    // While the first search is under way there is nothing to say yet.
    QWidget* const page = hasResults || (isAsked && !m_results) ? m_list
                          : isAsked                             ? static_cast<QWidget*>(m_nothing)
                                                                : static_cast<QWidget*>(m_hint);
    m_area->setCurrentWidget(page);
}

void SearchView::addChip(const QString& text, std::function<void()> reset)
{
    auto* const chip = new Chip(text, Chip::Kind::removable, Tint::accent);
    chip->setToolTip(tr("Remove filter"));
    connect(chip, &QAbstractButton::clicked, this, [this, reset = std::move(reset)] {
        reset();
        evaluate();
        m_field->setFocus();
    });
    m_chips->addWidget(chip);
}

void SearchView::refreshChips()
{
    while (QLayoutItem* const item = m_chips->takeAt(0)) {
        // The chip may be the one that was clicked.
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    if (m_query.kind != KindFilter::everything) {
        addChip(title(m_query.kind), [this] { m_query.kind = KindFilter::everything; });
    }
    if (m_query.category) {
        addChip(displayName(*m_query.category), [this] { m_query.category.reset(); });
    }
    if (m_query.minBytes != ByteFilter::any) {
        addChip(title(m_query.minBytes), [this] { m_query.minBytes = ByteFilter::any; });
    }
    if (m_query.age != AgeFilter::any) {
        addChip(title(m_query.age), [this] { m_query.age = AgeFilter::any; });
    }
    m_clear->setVisible(m_query.hasActiveFilter());
}

void SearchView::resetFilters()
{
    const QString text = m_query.text;
    m_query = {};
    m_query.text = text;
    evaluate();
    m_field->setFocus();
}

/// The controls follow the query.
void SearchView::showFilters()
{
    m_kind->setCurrentIndex(static_cast<int>(m_query.kind));
    m_category->setCurrentIndex(m_query.category ? static_cast<int>(*m_query.category) + 1 : 0);
    m_size->setCurrentIndex(static_cast<int>(m_query.minBytes));
    m_age->setCurrentIndex(static_cast<int>(m_query.age));
}

bool SearchView::eventFilter(QObject* watched, QEvent* event)
{
    return (watched == m_field && event->type() == QEvent::KeyPress &&
            handleKey(static_cast<QKeyEvent*>(event)->key())) ||
           QWidget::eventFilter(watched, event);
}

bool SearchView::handleKey(int key)
{
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        open(m_selected);
        return true;
    case Qt::Key_Up:
        moveSelection(-1);
        return true;
    case Qt::Key_Down:
        moveSelection(1);
        return true;
    case Qt::Key_Escape:
        if (m_field->text().isEmpty()) {
            m_field->clearFocus();
        } else {
            m_field->clear();
        }
        return true;
    default:
        return false;
    }
}

void SearchView::moveSelection(int delta)
{
    const int count = m_model->rowCount();
    if (count > 0) {
        select((m_selected + delta + count) % count);
    }
}

void SearchView::select(int index)
{
    m_selected = index;
    m_rows->select(index < 0 ? QModelIndex() : m_model->index(index));
}

void SearchView::open(int index)
{
    if (!m_results || index < 0 || index >= static_cast<int>(m_results->hits.size())) {
        return;
    }
    const NodePointer node = m_scan.share(m_results->hits[static_cast<std::size_t>(index)].node);
    m_navigation.select(node);
    if (node->isDirectory()) {
        m_navigation.focus(node);
    }
    m_navigation.section = AppSection::analysis;
}

void SearchView::showMenu(int index, const QPoint& position)
{
    const NodePointer node = m_scan.share(m_results->hits[static_cast<std::size_t>(index)].node);
    auto* const menu = new Menu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(menu->addItem(QStringLiteral("arrow.up.forward.app"), tr("Open")), &QAction::triggered,
            this, [this, index] { open(index); });
    connect(menu->addItem(QStringLiteral("magnifyingglass"), tr("Reveal in Finder")),
            &QAction::triggered, this, [this, node] { m_navigation.revealInFinder(*node); });
    connect(menu->addItem(QStringLiteral("eye"), tr("Quick Look")), &QAction::triggered, this,
            [node] { QuickLookPreview::shared().show(*node); });
    connect(menu->addItem(QStringLiteral("doc.on.clipboard"), tr("Copy Path")), &QAction::triggered,
            this, [node] { QGuiApplication::clipboard()->setText(node->path().displayText()); });
    menu->popup(position);
}

Row SearchView::rowOf(int index) const
{
    const FileNode& node = *m_results->hits[static_cast<std::size_t>(index)].node;
    Row row;
    row.symbol = symbolOf(node);
    if (!node.isDirectory()) {
        row.symbolTint = toQColor(NodeColors::leafColor(node));
    }
    row.title = node.displayName();
    row.titleSpans = highlightedSpans(row.title, m_results->query.text);
    row.path = relativePath(node);
    if (node.isDirectory()) {
        const auto count = static_cast<qlonglong>(node.children().size());
        row.path += QStringLiteral(" · ") + tr("%1 items").arg(count);
    }
    row.cells = {RowCell::number(node.formattedBytes(), sizeWidth),
                 RowCell::note(shortDate(node.dateModified(), QDateTime::currentSecsSinceEpoch()),
                               dateWidth)};
    return row;
}

QString SearchView::relativePath(const FileNode& node) const
{
    const QString path = ScanState::displayPath(node.path());
    const QString start =
        ScanState::displayPath(m_results->root ? m_results->root->path() : m_scan.homeURL());
    const bool isBelow = path.size() > start.size() && path.startsWith(start);
    return isBelow ? path.sliced(start.size()) : path;
}

} // namespace quorvane
