// SPDX-License-Identifier: MIT
#pragma once

#include "FolderSearch.h"
#include "Row.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

class QComboBox;
class QLayout;
class QStackedLayout;

namespace quorvane {

class AppState;
class Button;
class EmptyState;
class Label;
class NavigationState;
class Refresher;
class RowModel;
class RowView;
class ScanState;
class SearchState;
class SegmentedPicker;
class TextField;
struct FolderSearchResults;

/// The section that finds items inside the scan: a field with filters over the ranked matches.
/// Main thread.
class SearchView : public QWidget
{
    Q_OBJECT

public:
    SearchView(AppState& state, QWidget* parent = nullptr);

    /// Index of the selected match; -1 for none.
    int selectedIndex() const { return m_selected; }

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeHeader();
    void makeFilters(QLayout& line);
    QComboBox* addMenu(QLayout& line, const QString& name, const char* objectName);
    QWidget* makeResults();
    QWidget* makeFooter();

    /// The query or a filter has changed.
    void evaluate();
    void takeResults();
    void refreshRows();
    void refreshChips();
    void refreshArea();
    void addChip(const QString& text, std::function<void()> reset);
    void resetFilters();
    void showFilters();

    bool handleKey(int key);
    void moveSelection(int delta);
    void select(int index);
    void open(int index);
    void showMenu(int index, const QPoint& position);
    Row rowOf(int index) const;
    QString relativePath(const FileNode& node) const;

    AppState& m_state;
    ScanState& m_scan;
    NavigationState& m_navigation;
    SearchState& m_search;
    FolderSearch::Query m_query;
    std::shared_ptr<const FolderSearchResults> m_results;
    std::weak_ptr<FileNode> m_searchedRoot; ///< of the tree that was searched last
    int m_selected = -1;
    QTimer m_delay;

    TextField* m_field = nullptr;
    SegmentedPicker* m_kind = nullptr;
    QComboBox* m_category = nullptr;
    QComboBox* m_size = nullptr;
    QComboBox* m_age = nullptr;
    Button* m_clear = nullptr;
    QLayout* m_chips = nullptr;
    Label* m_cut = nullptr;
    QStackedLayout* m_area = nullptr;
    QWidget* m_list = nullptr;
    RowModel* m_model = nullptr;
    RowView* m_rows = nullptr;
    EmptyState* m_nothing = nullptr;
    EmptyState* m_hint = nullptr;
    Label* m_count = nullptr;
    Refresher* m_refresher;
};

/// Where words stand in a name, in the order of their starts and without overlaps, for emphasis.
std::vector<RowSpan> highlightedSpans(const QString& name, const QString& query);
/// "HH:mm" for a date of today, else "MMM d"; empty for none. Seconds since 1970, local time.
QString shortDate(std::optional<std::int64_t> seconds, std::int64_t nowSeconds);

} // namespace quorvane
