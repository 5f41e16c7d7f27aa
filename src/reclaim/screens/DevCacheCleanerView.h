// SPDX-License-Identifier: MIT
#pragma once

#include "DevCacheRows.h"
#include "DevCachesState.h"
#include "ToolFrame.h"

#include <QPointer>
#include <QString>

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quorvane {

class AppState;
class Button;
class Dialog;
class Label;
class ProgressBar;
class Refresher;

/// Developer caches and build folders, by family, on their way to the Trash. Main thread.
class DevCacheCleanerView : public ToolFrame
{
    Q_OBJECT

public:
    explicit DevCacheCleanerView(AppState& state, QWidget* parent = nullptr);

    const std::vector<DevCacheCleaner::CacheItem>& items() const { return m_rows.items(); }
    const std::set<std::string>& selected() const { return m_rows.selected(); }
    const QString& statusText() const { return m_statusText; }
    const QString& errorMessage() const { return m_errorMessage; }

    /// Looks at the fixed places, or with deep through the whole home.
    void scan(bool deep);
    /// Asks before the selected items go; nothing without a selection.
    void askToTrash();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    using CacheItem = DevCacheCleaner::CacheItem;

    void makeBottom();
    void takeFound(bool deep, std::optional<std::vector<CacheItem>> found);
    void performTrash(const std::vector<CacheItem>& items);
    void takeMoves(const std::vector<DevCachesState::Move>& moves);
    void toggle(int row);
    QString countText() const;
    void refresh();
    void refreshBottom();

    DevCachesState& m_caches;
    DevCacheRows m_rows;
    bool m_isScanning = false;
    bool m_deepScan = false;
    bool m_isTrashing = false;
    QString m_errorMessage;
    QString m_statusText;
    double m_trashProgress = 0;
    QString m_trashStatus;

    Button* m_cancel = nullptr;
    Button* m_rescan = nullptr;
    Button* m_deep = nullptr;
    Label* m_summary = nullptr;
    Button* m_select = nullptr;
    ProgressBar* m_bar = nullptr;
    Label* m_status = nullptr;
    Button* m_trash = nullptr;
    QPointer<Dialog> m_dialog;
    Refresher* m_refresher;
};

} // namespace quorvane
