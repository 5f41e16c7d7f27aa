// SPDX-License-Identifier: MIT
#pragma once

#include "RowView.h"
#include "SearchResult.h"

#include <QIcon>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quorvane {

class RowModel;

/// The results of the overlay, to be chosen and to be dragged out as files. The keyboard stays with
/// the field. Main thread.
class ResultList final : public RowView
{
    Q_OBJECT

public:
    explicit ResultList(QWidget* parent = nullptr);

    const std::vector<SearchResult>& results() const { return m_results; }
    void setResults(std::vector<SearchResult> results);
    /// Shows the row of that index as selected; none for any other number.
    void selectRow(int index);
    void centreRow(int index);
    /// Whether a result is being dragged out, which runs an event loop of its own.
    bool isDragging() const { return m_isDragging; }

Q_SIGNALS:
    void dragEnded();

protected:
    void startDrag(Qt::DropActions actions) override;

private:
    explicit ResultList(RowModel* model, QWidget* parent);

    Row rowAt(int index) const;
    QIcon iconOf(const FilePath& application) const;

    RowModel* m_model;
    std::vector<SearchResult> m_results;
    mutable std::map<std::string, QIcon> m_icons; ///< of applications among the results
    int m_selected = -1;
    bool m_isDragging = false;
};

/// "Index 3 min old", or "Indexing…"; empty without an index. Milliseconds since 1970.
QString indexAgeText(std::optional<std::int64_t> madeMs, std::int64_t nowMs, bool isIndexing);

} // namespace quorvane
