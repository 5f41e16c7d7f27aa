// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "SearchQueryParser.h"
#include "SearchResult.h"

#include <QTimer>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

class QBoxLayout;
class QKeyEvent;
class QStackedLayout;

namespace quorvane {

class AppState;
class EmptyState;
class FilterBar;
class FilterHelp;
class KeyHints;
class Label;
class PreviewPanel;
class Refresher;
class ResultList;
class SearchState;
class TextField;
class ToolButton;

/// The one screen of the overlay: a field, the chips that its text stands for, the results, and
/// what the keys do. Made new each time it opens. Main thread.
class SearchOverlayRoot : public QWidget
{
    Q_OBJECT

public:
    /// close closes the overlay, which calls end().
    SearchOverlayRoot(AppState& state, std::function<void()> close, const QString& initialQuery,
                      QWidget* window);

    QString query() const;
    void setQuery(const QString& query);
    const FilePath& scope() const { return m_scope; }
    const std::vector<SearchResult>& results() const;
    bool isSearching() const { return m_isSearching; }
    int selectedIndex() const { return m_selected; }
    /// Null without a selection.
    const SearchResult* selectedResult() const;

    /// Lets the index go and deletes the window, after the drag that may be under way. The model is
    /// not needed from then on.
    void end();

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeInputRow();
    QWidget* makeMainArea();
    void makeList(QWidget* area);
    QWidget* makeEmptyState();
    QWidget* makeFooter();
    ToolButton* addButton(QBoxLayout& row, const QString& symbol, const QString& name, int side);
    FilterHelp* makeHelp(QWidget* parent);

    // The search task
    ParsedSearch parsed() const;
    FilePath effectiveScope(const ParsedSearch& query) const;
    QString scopeLabel() const;
    void restartSearch();
    void search();
    void takeResults(std::vector<SearchResult> results);
    void clearResults();
    void takeIndex();

    // Keys
    bool handleKey(const QKeyEvent& event);
    bool handleCommand(const QKeyEvent& event);
    void complete(const SearchPending& pending);
    void cycleScope(bool forward);
    void escape();
    void moveSelection(int index);

    // What is done with a result
    void select(int index);
    void openResult(const SearchResult& result);
    void reveal(const SearchResult& result);
    void copyPath(const SearchResult& result);
    void preview(const SearchResult& result);
    bool isPreviewing() const;
    void openSelectedInApp();
    void showMenu(int index, const QPoint& position);
    bool isInScan(const SearchResult& result) const;

    // What is shown
    void refresh();
    void refreshArea(const ParsedSearch& query);
    void refreshFooter();
    QString statusText() const;

    AppState& m_state;
    SearchState& m_search;
    std::function<void()> m_close;
    FilePath m_scope{"/"};
    FilePath m_home;
    bool m_isSearching = false;
    int m_selected = -1;
    bool m_showsFilterHelp = false;
    bool m_hasEnded = false;
    std::optional<std::int64_t> m_shownIndexMs; ///< of the index that the results come from
    QTimer m_debounce;
    QTimer m_ageTick;

    TextField* m_field = nullptr;
    ToolButton* m_clear = nullptr;
    ToolButton* m_filters = nullptr;
    FilterBar* m_filterBar = nullptr;
    FilterHelp* m_help = nullptr;
    QStackedLayout* m_area = nullptr;
    QWidget* m_searching = nullptr;
    QWidget* m_results = nullptr;
    ResultList* m_list = nullptr;
    EmptyState* m_noMatches = nullptr;
    QWidget* m_empty = nullptr;
    FilterHelp* m_emptyHelp = nullptr;
    KeyHints* m_footer = nullptr;
    Label* m_indexAge = nullptr;
    Label* m_scopeHint = nullptr;
    PreviewPanel* m_preview = nullptr; ///< made when it is first needed
    Refresher* m_refresher;
};

} // namespace quorvane
