// SPDX-License-Identifier: MIT
#include "SearchOverlayRoot.h"

#include "AppSection.h"
#include "BrandMark.h"
#include "Button.h"
#include "EmptyState.h"
#include "FacetHost.h"
#include "FocusRing.h"
#include "GlobalSearch.h"
#include "KeyHints.h"
#include "Label.h"
#include "Menu.h"
#include "NavigationState.h"
#include "OverlayFilters.h"
#include "PreviewPanel.h"
#include "Progress.h"
#include "QuickLookPreview.h"
#include "Refresher.h"
#include "ResultList.h"
#include "ScanState.h"
#include "SearchState.h"
#include "Text.h"
#include "TextField.h"
#include "Tokens.h"
#include "Workspace.h"

#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quorvane {
namespace {

constexpr int debounceMs = 150;
constexpr int ageTickMs = 10'000;
constexpr int inputHeight = 60;
constexpr int footerHeight = 40;
constexpr int fieldLeft = 8;
constexpr int noFocusRing = -1;
constexpr int symbolSide = 18;
constexpr int helpWordsWidth = 540;
constexpr int emptyWordsHeight = 174;
constexpr int markSide = 18;

std::int64_t nowMs()
{
    return static_cast<std::int64_t>(SearchQueryParser::currentMs());
}

} // namespace

SearchOverlayRoot::SearchOverlayRoot(AppState& state, std::function<void()> close,
                                     const QString& initialQuery, QWidget* window)
    : QWidget(window)
    , m_state(state)
    , m_search(SearchState::of(state))
    , m_close(std::move(close))
    , m_home(FacetHost::of(state).platform().home)
    , m_refresher(new Refresher(this, [this] { takeIndex(); }))
{
    setObjectName(QStringLiteral("searchOverlay"));
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    column->addWidget(makeInputRow());
    column->addWidget(new Hairline(Qt::Horizontal, this));
    m_filterBar = new FilterBar(this);
    connect(m_filterBar, &FilterBar::removed, this, [this](SearchTokenType category) {
        setQuery(SearchQueryParser::removing(category, query(), m_home));
        m_field->setFocus();
    });
    connect(m_filterBar, &FilterBar::openInAppRequested, this,
            &SearchOverlayRoot::openSelectedInApp);
    column->addWidget(m_filterBar);
    m_help = makeHelp(this);
    m_help->setObjectName(QStringLiteral("overlayHelp"));
    column->addWidget(m_help);
    column->addWidget(makeMainArea(), 1);
    column->addWidget(makeFooter());
    m_debounce.setSingleShot(true);
    m_debounce.setInterval(debounceMs);
    connect(&m_debounce, &QTimer::timeout, this, &SearchOverlayRoot::search);
    connect(&m_ageTick, &QTimer::timeout, this, &SearchOverlayRoot::refreshFooter);
    m_refresher->watch(m_search.indexMadeMs, m_search.isIndexing);
    m_search.openIndex();
    connect(m_field, &QLineEdit::textChanged, this, &SearchOverlayRoot::restartSearch);
    m_field->setText(initialQuery);
    refresh();
}

void SearchOverlayRoot::end()
{
    if (std::exchange(m_hasEnded, true)) {
        return;
    }
    qApp->removeEventFilter(this);
    m_debounce.stop();
    m_ageTick.stop();
    if (isPreviewing()) {
        m_preview->closePanel();
    }
    m_search.closeIndex();
    if (!m_list->isDragging()) {
        window()->deleteLater();
    }
}

void SearchOverlayRoot::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_field->setFocus();
    m_ageTick.start(ageTickMs);
    qApp->installEventFilter(this);
}

ToolButton* SearchOverlayRoot::addButton(QBoxLayout& row, const QString& symbol,
                                         const QString& name, int side)
{
    auto* const button = new ToolButton(symbol, name, this);
    button->setSide(measure::buttonSmall + 2);
    button->setSymbolSide(side);
    button->setFocusPolicy(Qt::NoFocus);
    row.addWidget(button);
    return button;
}

QWidget* SearchOverlayRoot::makeInputRow()
{
    auto* const input = new QWidget(this);
    input->setFixedHeight(inputHeight);
    auto* const row = new QHBoxLayout(input);
    row->setContentsMargins(fieldLeft, 0, spacing::m, 0);
    row->setSpacing(spacing::xs);
    m_field = new TextField(tr("Search your Mac…"), input);
    m_field->setObjectName(QStringLiteral("overlayField"));
    m_field->setFrame(false);
    m_field->setSymbol(QStringLiteral("magnifyingglass"), symbolSide);
    m_field->setFieldHeight(inputHeight);
    QFont face = quorvane::font(TextStyle::title);
    face.setWeight(QFont::Normal);
    m_field->setFont(face);
    setFocusRadius(*m_field, noFocusRing);
    row->addWidget(m_field, 1);
    m_clear =
        addButton(*row, QStringLiteral("xmark.circle.fill"), tr("Clear"), measure::iconButton);
    m_clear->setObjectName(QStringLiteral("overlayClear"));
    connect(m_clear, &QAbstractButton::clicked, this, [this] {
        m_field->clear();
        m_field->setFocus();
    });
    m_filters = addButton(*row, QStringLiteral("slider.horizontal.3"), tr("Smart filters (⌘I)"),
                          measure::iconRow);
    m_filters->setObjectName(QStringLiteral("overlayFilters"));
    connect(m_filters, &QAbstractButton::clicked, this, [this] {
        m_showsFilterHelp = !m_showsFilterHelp;
        refresh();
        m_field->setFocus();
    });
    ToolButton* const close =
        addButton(*row, QStringLiteral("xmark"), tr("Close (Esc)"), measure::iconButton);
    close->setObjectName(QStringLiteral("overlayClose"));
    connect(close, &QAbstractButton::clicked, this, [this] { m_close(); });
    return input;
}

FilterHelp* SearchOverlayRoot::makeHelp(QWidget* parent)
{
    auto* const help = new FilterHelp(parent);
    connect(help, &FilterHelp::exampleTapped, this, [this](const QString& example) {
        setQuery(example + QLatin1Char(' '));
        m_field->setFocus();
    });
    connect(help, &FilterHelp::wordTapped, this, [this](const QString& word, bool isActive) {
        if (isActive) {
            const SearchTokenType category =
                SearchQueryParser::aliasCategory(word).value_or(SearchTokenType::term);
            clearResults();
            setQuery(SearchQueryParser::removing(category, query(), m_home));
        } else {
            setQuery(SearchQueryParser::replacingFilter(word, query(), m_home));
        }
        m_field->setFocus();
    });
    return help;
}

QWidget* SearchOverlayRoot::makeMainArea()
{
    auto* const area = new QWidget(this);
    // The help above takes what room it needs.
    area->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    m_area = new QStackedLayout(area);
    m_searching = new QWidget(area);
    auto* const middle = new QVBoxLayout(m_searching);
    auto* const spinner = new Spinner(tr("Searching…"), m_searching);
    middle->addWidget(spinner, 0, Qt::AlignCenter);
    m_area->addWidget(m_searching);
    m_results = new QWidget(area);
    auto* const inside = new QVBoxLayout(m_results);
    inside->setContentsMargins(0, spacing::s, 0, 0);
    makeList(m_results);
    inside->addWidget(m_list);
    m_area->addWidget(m_results);
    m_noMatches = new EmptyState(QStringLiteral("questionmark.folder"), {},
                                 tr("Try a different keyword or search scope (⇥)"), area);
    m_noMatches->setObjectName(QStringLiteral("overlayNoMatches"));
    m_area->addWidget(m_noMatches);
    m_empty = makeEmptyState();
    m_area->addWidget(m_empty);
    return area;
}

void SearchOverlayRoot::makeList(QWidget* area)
{
    m_list = new ResultList(area);
    m_list->setObjectName(QStringLiteral("overlayResults"));
    connect(m_list, &QAbstractItemView::entered, this,
            [this](const QModelIndex& index) { select(index.row()); });
    connect(m_list, &RowView::rowActivated, this, [this](const QModelIndex& index) {
        openResult(results()[static_cast<std::size_t>(index.row())]);
    });
    connect(m_list, &RowView::contextMenuRequested, this,
            [this](const QModelIndex& index, const QPoint& position) {
                showMenu(index.row(), position);
            });
    connect(m_list, &ResultList::dragEnded, this, [this] {
        if (m_hasEnded) {
            window()->deleteLater();
        }
    });
}

QWidget* SearchOverlayRoot::makeEmptyState()
{
    auto* const page = new QWidget(this);
    page->setObjectName(QStringLiteral("overlayEmpty"));
    auto* const column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, spacing::s);
    column->setSpacing(0);
    auto* const words = new EmptyState(
        QStringLiteral("magnifyingglass"), tr("Spotlight Search"),
        tr("Search your whole Mac — start typing, then narrow it down with smart filters.\nPress ⇥ "
           "to scope the search to Home, Downloads, Documents, or any sub-folder."),
        page);
    words->setTextWidth(helpWordsWidth);
    words->setFixedHeight(emptyWordsHeight);
    column->addWidget(words);
    m_emptyHelp = makeHelp(page);
    column->addWidget(m_emptyHelp);
    column->addStretch();
    return page;
}

QWidget* SearchOverlayRoot::makeFooter()
{
    m_footer = new KeyHints(this);
    m_footer->setStripHeight(footerHeight, 14);
    auto* const words = new QWidget(m_footer);
    auto* const lines = new QVBoxLayout(words);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(0);
    lines->addStretch();
    lines->addWidget(
        new Label(QStringLiteral("Quorvane"), TextStyle::captionMedium, ThemeColor::text1, words));
    m_indexAge = new Label({}, TextStyle::path, ThemeColor::text3, words);
    m_indexAge->setObjectName(QStringLiteral("overlayIndexAge"));
    lines->addWidget(m_indexAge);
    lines->addStretch();
    m_footer->addFirst(words);
    m_footer->addFirst(new BrandMark(markSide, m_footer));
    m_footer->add(QStringLiteral("↵"), tr("Open"));
    m_footer->add(QStringLiteral("⌘↵"), tr("Finder"));
    m_footer->add(QStringLiteral("⌘Y"), tr("Preview"));
    m_footer->add(QStringLiteral("⌘⇧C"), tr("Copy"));
    m_scopeHint = m_footer->add(QStringLiteral("⇥"), {});
    m_scopeHint->setObjectName(QStringLiteral("overlayScope"));
    return m_footer;
}

QString SearchOverlayRoot::query() const
{
    return m_field->text();
}

const std::vector<SearchResult>& SearchOverlayRoot::results() const
{
    return m_list->results();
}

void SearchOverlayRoot::setQuery(const QString& query)
{
    m_field->setText(query);
}

ParsedSearch SearchOverlayRoot::parsed() const
{
    return SearchQueryParser::parse(query(), m_home);
}

FilePath SearchOverlayRoot::effectiveScope(const ParsedSearch& query) const
{
    return query.locationPath.value_or(m_scope);
}

QString SearchOverlayRoot::scopeLabel() const
{
    if (m_scope == FilePath("/")) {
        return tr("This Mac");
    }
    return m_scope == m_home ? tr("Home") : displayText(m_scope.lastComponent());
}

const SearchResult* SearchOverlayRoot::selectedResult() const
{
    const auto index = static_cast<std::size_t>(m_selected);
    return m_selected >= 0 && index < results().size() ? &results()[index] : nullptr;
}

void SearchOverlayRoot::restartSearch()
{
    m_debounce.stop();
    m_search.stopMachineSearch();
    const ParsedSearch query = parsed();
    if (!query.searchable() && effectiveScope(query) == FilePath("/")) {
        m_isSearching = false;
        clearResults();
    } else {
        m_isSearching = true;
        m_debounce.start();
    }
    refresh();
}

void SearchOverlayRoot::search()
{
    const ParsedSearch query = parsed();
    SearchRequest request;
    request.query = query.termQuery();
    request.scope = effectiveScope(query);
    request.kind = query.kind;
    if (query.size) {
        request.filters.minBytes = query.size->minBytes;
        request.filters.maxBytes = query.size->maxBytes;
    }
    if (query.date) {
        request.filters.fromMs = query.date->fromMs;
    }
    m_search.searchMachine(
        request, [this](std::vector<SearchResult> results) { takeResults(std::move(results)); });
}

void SearchOverlayRoot::takeResults(std::vector<SearchResult> results)
{
    // Of the same answer from a newer index the same row stays selected.
    const SearchResult* const before = m_isSearching ? nullptr : selectedResult();
    const FilePath kept = before == nullptr ? FilePath() : before->path;
    const auto found = std::find_if(results.begin(), results.end(),
                                    [&](const SearchResult& each) { return each.path == kept; });
    int selected = results.empty() ? -1 : 0;
    if (before != nullptr && found != results.end()) {
        selected = static_cast<int>(found - results.begin());
    }
    m_list->setResults(std::move(results));
    m_isSearching = false;
    refresh();
    moveSelection(selected);
}

/// Another index answers: what is on show is asked of it, too.
void SearchOverlayRoot::takeIndex()
{
    const std::optional<std::int64_t> made = m_search.indexMadeMs.value();
    const bool isAnother = made && m_shownIndexMs && *made != *m_shownIndexMs;
    m_shownIndexMs = made ? made : m_shownIndexMs;
    if (isAnother && !m_isSearching && !query().isEmpty() && parsed().searchable()) {
        search();
    }
    refreshFooter();
}

void SearchOverlayRoot::clearResults()
{
    m_list->setResults({});
    m_selected = -1;
}

bool SearchOverlayRoot::eventFilter(QObject* watched, QEvent* event)
{
    const auto* const widget = qobject_cast<QWidget*>(watched);
    // Menus of ours are windows of their own and keep their keys.
    const bool isOurs = event->type() == QEvent::KeyPress && widget != nullptr &&
                        widget->window() == window() &&
                        QApplication::activePopupWidget() == nullptr;
    return (isOurs && handleKey(*static_cast<QKeyEvent*>(event))) ||
           QWidget::eventFilter(watched, event);
}

/// The keys with command, tested before the others.
bool SearchOverlayRoot::handleCommand(const QKeyEvent& event)
{
    if (!event.modifiers().testFlag(Qt::ControlModifier)) {
        return false;
    }
    const bool hasShift = event.modifiers().testFlag(Qt::ShiftModifier);
    const SearchResult* const selected = selectedResult();
    switch (event.key()) {
    case Qt::Key_C:
        if (hasShift && selected != nullptr) {
            copyPath(*selected);
        }
        return hasShift;
    case Qt::Key_Y:
        if (selected != nullptr) {
            preview(*selected);
        }
        return true;
    // The menu bar is in the main window, which is not in front.
    case Qt::Key_Space:
        if (hasShift) {
            m_close();
        }
        return hasShift;
    case Qt::Key_Q:
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        return true;
    default:
        return false;
    }
}

bool SearchOverlayRoot::handleKey(const QKeyEvent& event)
{
    if (handleCommand(event)) {
        return true;
    }
    const SearchResult* const selected = selectedResult();
    const bool hasCommand = event.modifiers().testFlag(Qt::ControlModifier);
    const bool hasShift = event.modifiers().testFlag(Qt::ShiftModifier);
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (selected != nullptr) {
            hasCommand ? reveal(*selected) : openResult(*selected);
        }
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: {
        const bool isForward = event.key() == Qt::Key_Tab && !hasShift;
        const std::optional<SearchPending> pending = parsed().pending;
        if (isForward && pending) {
            complete(*pending);
        } else {
            cycleScope(isForward);
        }
        return true;
    }
    case Qt::Key_Escape:
        escape();
        return true;
    case Qt::Key_Down:
        if (!results().empty()) {
            moveSelection(std::min(m_selected + 1, static_cast<int>(results().size()) - 1));
        }
        return true;
    case Qt::Key_Up:
        moveSelection(std::max(m_selected - 1, 0));
        return true;
    default:
        return false;
    }
}

void SearchOverlayRoot::complete(const SearchPending& pending)
{
    QString text = query();
    text.replace(pending.range.start, pending.range.end - pending.range.start,
                 pending.completion + QLatin1Char(' '));
    clearResults();
    setQuery(text);
}

void SearchOverlayRoot::cycleScope(bool forward)
{
    std::vector<FilePath> candidates{FilePath("/")};
    if (!m_home.isEmpty()) {
        candidates.push_back(m_home);
        candidates.push_back(m_home.appending("Documents"));
        candidates.push_back(m_home.appending("Downloads"));
    }
    const auto found = std::find(candidates.begin(), candidates.end(), m_scope);
    const std::size_t current =
        found == candidates.end() ? 0 : static_cast<std::size_t>(found - candidates.begin());
    const std::size_t step = forward ? 1 : candidates.size() - 1;
    m_scope = candidates[(current + step) % candidates.size()];
    restartSearch();
}

void SearchOverlayRoot::escape()
{
    if (query().isEmpty()) {
        m_close();
        return;
    }
    clearResults();
    m_field->clear();
}

void SearchOverlayRoot::moveSelection(int index)
{
    select(index);
    const SearchResult* const selected = selectedResult();
    if (selected == nullptr) {
        return;
    }
    m_list->centreRow(index);
    if (isPreviewing()) {
        QuickLookPreview::shared().show(selected->path, *m_preview);
    }
}

void SearchOverlayRoot::select(int index)
{
    m_selected = index;
    m_list->selectRow(index);
}

void SearchOverlayRoot::openResult(const SearchResult& result)
{
    FacetHost::of(m_state).platform().workspace.open(result.path);
    m_close();
}

void SearchOverlayRoot::reveal(const SearchResult& result)
{
    FacetHost::of(m_state).platform().workspace.reveal(result.path);
    m_close();
}

void SearchOverlayRoot::copyPath(const SearchResult& result)
{
    QGuiApplication::clipboard()->setText(result.path.displayText());
    m_close();
}

bool SearchOverlayRoot::isPreviewing() const
{
    return m_preview != nullptr && m_preview->isOnShow();
}

/// A second time closes it.
void SearchOverlayRoot::preview(const SearchResult& result)
{
    if (isPreviewing()) {
        m_preview->closePanel();
        return;
    }
    if (m_preview == nullptr) {
        m_preview = new PreviewPanel(m_state, window());
    }
    QuickLookPreview::shared().show(result.path, *m_preview);
}

bool SearchOverlayRoot::isInScan(const SearchResult& result) const
{
    const NodePointer root = ScanState::of(m_state).rootNode.value();
    return root && findNode(*root, result.path) != nullptr;
}

void SearchOverlayRoot::openSelectedInApp()
{
    const SearchResult* const selected = selectedResult();
    if (selected == nullptr) {
        return;
    }
    const FilePath path = selected->path;
    AppState& state = m_state;
    m_close();
    GlobalSearch::shared().showMainWindow();
    const ScanState& scan = ScanState::of(state);
    const NodePointer root = scan.rootNode.value();
    FileNode* const node = root ? findNode(*root, path) : nullptr;
    if (node == nullptr) {
        FacetHost::of(state).platform().workspace.open(path);
        return;
    }
    NavigationState& navigation = NavigationState::of(state);
    if (node->isDirectory()) {
        navigation.focus(scan.share(node));
    }
    navigation.section = AppSection::analysis;
}

void SearchOverlayRoot::showMenu(int index, const QPoint& position)
{
    const SearchResult result = results()[static_cast<std::size_t>(index)];
    auto* const menu = new Menu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char* symbol, const QString& text, std::function<void()> run) {
        connect(menu->addItem(QLatin1String(symbol), text), &QAction::triggered, this,
                std::move(run), Qt::QueuedConnection);
    };
    add("arrow.up.forward.app", tr("Open"), [this, result] { openResult(result); });
    add("magnifyingglass", tr("Reveal in Finder"), [this, result] { reveal(result); });
    add("eye", tr("Preview (⌘Y)"), [this, result] {
        // The overlay closes, so that the main window has to show it.
        m_close();
        GlobalSearch::shared().showMainWindow();
        QuickLookPreview::shared().show(result.path);
    });
    add("doc.on.clipboard", tr("Copy Path"), [this, result] { copyPath(result); });
    menu->popup(position);
}

void SearchOverlayRoot::refresh()
{
    const ParsedSearch query = parsed();
    const bool hasText = !this->query().isEmpty();
    m_clear->setVisible(hasText);
    m_filters->setSymbolColor(m_showsFilterHelp ? ThemeColor::accentText : ThemeColor::text2);
    m_filterBar->setVisible(hasText);
    if (hasText) {
        const bool isInTree = !m_isSearching && std::any_of(results().begin(), results().end(),
                                                            [this](const SearchResult& result) {
                                                                return isInScan(result);
                                                            });
        m_filterBar->setContent(query, scopeLabel(), statusText(), isInTree);
    }
    m_help->setVisible(m_showsFilterHelp && hasText);
    m_help->setQuery(query);
    m_emptyHelp->setQuery(query);
    refreshArea(query);
    refreshFooter();
}

QString SearchOverlayRoot::statusText() const
{
    if (m_isSearching) {
        return tr("Searching…");
    }
    const auto count = static_cast<qlonglong>(results().size());
    if (count == 0) {
        return tr("No results");
    }
    return count == 1 ? tr("%1 result").arg(count) : tr("%1 results").arg(count);
}

void SearchOverlayRoot::refreshArea(const ParsedSearch& query)
{
    QWidget* page = m_empty;
    if (m_isSearching) {
        page = m_searching;
    } else if (!this->query().isEmpty()) {
        page = results().empty() ? static_cast<QWidget*>(m_noMatches) : m_results;
        m_noMatches->setHeading(tr("No matches for “%1”").arg(this->query()));
    } else if (effectiveScope(query) != FilePath("/") && !results().empty()) {
        page = m_results;
    }
    m_area->setCurrentWidget(page);
}

void SearchOverlayRoot::refreshFooter()
{
    m_scopeHint->setText(tr("Scope: %1").arg(scopeLabel()));
    const QString age =
        indexAgeText(m_search.indexMadeMs.value(), nowMs(), m_search.isIndexing.value());
    m_indexAge->setText(age);
    m_indexAge->setVisible(!age.isEmpty());
}

void SearchOverlayRoot::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath outline;
    outline.addRoundedRect(card, radius::surface, radius::surface);
    painter.fillPath(outline, themeColor(ThemeColor::card));
    painter.setClipPath(outline);
    painter.fillRect(m_footer->geometry(), themeColor(ThemeColor::window));
    painter.setClipping(false);
    painter.setPen(themeColor(ThemeColor::controlEdge));
    painter.drawPath(outline);
}

} // namespace quorvane
