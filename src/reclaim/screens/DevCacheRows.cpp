// SPDX-License-Identifier: MIT
#include "DevCacheRows.h"

#include "ByteFormatter.h"
#include "RowModel.h"
#include "Text.h"
#include "ToolRows.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>
#include <utility>

namespace quorvane {
namespace {

constexpr int headingHeight = 45;
constexpr int rowHeight = 48;
constexpr int detailHeight = 18;
constexpr int commandHeight = 30;
constexpr int sizeWidth = 84;
/// In the place of an item, for a heading.
constexpr auto heading = static_cast<std::size_t>(-1);

int heightOf(const DevCacheRows::CacheItem& item)
{
    return rowHeight + (item.detail.empty() ? 0 : detailHeight) +
           (item.command.empty() ? 0 : commandHeight);
}

} // namespace

DevCacheRows::DevCacheRows(QObject* owner)
    : m_model(new RowModel(owner))
{
    m_model->setHeights([this](int row) {
        const Line& line = m_lines[static_cast<std::size_t>(row)];
        return line.item == heading ? headingHeight : heightOf(m_items[line.item]);
    });
    m_model->setKinds([this](int row) {
        return m_lines[static_cast<std::size_t>(row)].item == heading ? RowKind::section
                                                                      : RowKind::item;
    });
}

std::vector<DevCacheRows::CacheItem> DevCacheRows::picked() const
{
    std::vector<CacheItem> items;
    std::copy_if(m_items.begin(), m_items.end(), std::back_inserter(items),
                 [this](const CacheItem& item) { return m_selected.contains(item.id()); });
    return items;
}

void DevCacheRows::setItems(std::vector<CacheItem> items)
{
    m_items = std::move(items);
    m_selected.clear();
    fill();
}

void DevCacheRows::takeMoves(const std::vector<DevCachesState::Move>& moves)
{
    for (const DevCachesState::Move& move : moves) {
        if (move.outcome == TrashOutcome::moved) {
            std::erase_if(m_items, [&](const CacheItem& item) { return item.id() == move.id; });
            m_failures.erase(move.id);
        } else {
            m_failures.insert_or_assign(move.id, move.outcome);
        }
    }
    m_selected.clear();
    fill();
}

void DevCacheRows::toggle(int row)
{
    const std::size_t item = m_lines[static_cast<std::size_t>(row)].item;
    if (item == heading || !m_items[item].isMovable()) {
        return;
    }
    if (m_selected.erase(m_items[item].id()) == 0) {
        m_selected.insert(m_items[item].id());
    }
    m_model->refreshRows();
}

void DevCacheRows::toggleSelection()
{
    if (!m_selected.empty()) {
        m_selected.clear();
    } else {
        for (const CacheItem& item : m_items) {
            if (item.isMovable()) {
                m_selected.insert(item.id());
            }
        }
    }
    m_model->refreshRows();
}

Row DevCacheRows::rowOf(const CacheItem& item) const
{
    Row row;
    if (item.isMovable()) {
        row.isChecked = m_selected.contains(item.id());
    }
    row.symbol = QStringLiteral("folder.fill");
    row.title = displayText(item.name);
    row.badges = toolrows::evidenceBadges(item.evidence);
    if (const auto failure = m_failures.find(item.id()); failure != m_failures.end()) {
        row.badges.push_back(toolrows::notMoved(failure->second, item.path));
    }
    row.detail = toolrows::text(item.detail);
    row.path = item.path.displayText();
    row.command = toolrows::text(item.command);
    QString meta = item.formattedItems();
    if (item.lastModified) {
        meta += QStringLiteral(" · ") + QCoreApplication::translate("DevCacheRows", "Used %1")
                                            .arg(toolrows::date(*item.lastModified));
    }
    row.cells = {RowCell::note(meta, 0), RowCell::number(item.formattedBytes(), sizeWidth)};
    return row;
}

Row DevCacheRows::headingOf(DevCacheCleaner::Category category) const
{
    std::vector<CacheItem> own;
    std::copy_if(m_items.begin(), m_items.end(), std::back_inserter(own),
                 [category](const CacheItem& item) { return item.category == category; });
    return Row::section(toolrows::text(DevCacheCleaner::systemImage(category)),
                        DevCacheCleaner::displayName(category),
                        ByteFormatter::string(DevCacheCleaner::totalBytes(own)));
}

void DevCacheRows::fill()
{
    m_lines.clear();
    RowModel::Keys keys;
    for (const DevCacheCleaner::Category category : DevCacheCleaner::allCategories) {
        bool isFirst = true;
        for (std::size_t i = 0; i < m_items.size(); ++i) {
            if (m_items[i].category != category) {
                continue;
            }
            if (std::exchange(isFirst, false)) {
                m_lines.push_back({category, heading});
                keys.push_back(toolrows::key(std::string(DevCacheCleaner::rawValue(category))));
            }
            m_lines.push_back({category, i});
            keys.push_back(toolrows::key(m_items[i].id()));
        }
    }
    m_model->setRows(
        static_cast<int>(m_lines.size()),
        [this](int row) {
            const Line& line = m_lines[static_cast<std::size_t>(row)];
            return line.item == heading ? headingOf(line.category) : rowOf(m_items[line.item]);
        },
        std::move(keys));
}

} // namespace quorvane
