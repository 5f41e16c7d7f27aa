// SPDX-License-Identifier: MIT
#pragma once

#include "DevCachesState.h"
#include "Row.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

class QObject;

namespace quorvane {

class RowModel;

/// The list of the cache cleaner: its items by family, which of them are selected, and why some
/// could not be moved. Fills a row model. Main thread.
class DevCacheRows
{
public:
    using CacheItem = DevCacheCleaner::CacheItem;

    explicit DevCacheRows(QObject* owner);

    RowModel& model() const { return *m_model; }
    const std::vector<CacheItem>& items() const { return m_items; }
    /// Ids of the selected items.
    const std::set<std::string>& selected() const { return m_selected; }
    /// The selected items in list order.
    std::vector<CacheItem> picked() const;

    /// Replaces the items and empties the selection.
    void setItems(std::vector<CacheItem> items);
    /// Takes what has moved out of the list and empties the selection; rows of what stayed tell
    /// why, also after the next scan.
    void takeMoves(const std::vector<DevCachesState::Move>& moves);
    /// Selects the item of a row or takes it out; nothing for a heading and for what may not be
    /// moved.
    void toggle(int row);
    /// Every item that may be moved, or none where some are selected.
    void toggleSelection();

private:
    void fill();
    Row rowOf(const CacheItem& item) const;
    Row headingOf(DevCacheCleaner::Category category) const;
    /// What stands in a row: an item or the heading of a family.
    struct Line
    {
        DevCacheCleaner::Category category;
        std::size_t item;
    };

    RowModel* m_model;
    std::vector<CacheItem> m_items;
    std::set<std::string> m_selected;
    std::map<std::string, TrashOutcome> m_failures; ///< by id
    std::vector<Line> m_lines;
};

} // namespace quorvane
