// SPDX-License-Identifier: MIT
#include "FlowLayout.h"

#include <algorithm>

namespace quorvane {

FlowLayout::FlowLayout(int spacing, QWidget* parent)
    : QLayout(parent)
{
    setSpacing(spacing);
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout()
{
    for (QLayoutItem* item : m_items) {
        delete item;
    }
}

void FlowLayout::addItem(QLayoutItem* item)
{
    m_items.push_back(item);
    invalidate();
}

QLayoutItem* FlowLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)] : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index)
{
    QLayoutItem* item = itemAt(index);
    if (item) {
        m_items.erase(m_items.begin() + index);
        invalidate();
    }
    return item;
}

int FlowLayout::heightForWidth(int width) const
{
    return arrange(QRect(0, 0, width, 0), false);
}

void FlowLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

QSize FlowLayout::sizeHint() const
{
    // All in one row.
    int width = 0;
    int height = 0;
    for (const QLayoutItem* item : m_items) {
        if (!item->isEmpty()) {
            width += (width > 0 ? spacing() : 0) + item->sizeHint().width();
            height = std::max(height, item->sizeHint().height());
        }
    }
    return QSize(width, height).grownBy(contentsMargins());
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem* item : m_items) {
        if (!item->isEmpty()) {
            size = size.expandedTo(item->minimumSize());
        }
    }
    return size.grownBy(contentsMargins());
}

int FlowLayout::arrange(const QRect& rect, bool apply) const
{
    const QMargins margins = contentsMargins();
    const QRect area = rect.marginsRemoved(margins);
    int y = area.top();
    std::size_t next = 0;
    std::vector<QLayoutItem*> row;
    bool isFirstRow = true;
    while (next < m_items.size()) {
        row.clear();
        int width = 0;
        int height = 0;
        for (; next < m_items.size(); ++next) {
            QLayoutItem* item = m_items[next];
            if (item->isEmpty()) {
                continue;
            }
            const QSize size = item->sizeHint();
            const int wanted = row.empty() ? size.width() : width + spacing() + size.width();
            if (!row.empty() && wanted > area.width()) {
                break;
            }
            row.push_back(item);
            width = wanted;
            height = std::max(height, size.height());
        }
        if (row.empty()) {
            break;
        }
        y += isFirstRow ? 0 : spacing();
        isFirstRow = false;
        int x = area.left();
        for (QLayoutItem* item : row) {
            const QSize size = item->sizeHint();
            if (apply) {
                item->setGeometry(QRect(QPoint(x, y + (height - size.height()) / 2), size));
            }
            x += size.width() + spacing();
        }
        y += height;
    }
    return y - area.top() + margins.top() + margins.bottom();
}

} // namespace quorvane
