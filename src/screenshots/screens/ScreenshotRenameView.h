// SPDX-License-Identifier: MIT
#pragma once

#include "Row.h"
#include "ScreenshotsState.h"
#include "ToolFrame.h"

#include <vector>

class QComboBox;

namespace quorvane {

class Card;
class Label;
class ProgressBar;
class Refresher;
class RowModel;
class RowView;
class Spinner;
class Thumbnails;

/// Finds the screenshots of a folder, shows the names that they could have, and gives those that
/// are selected theirs. Main thread.
class ScreenshotRenameView : public ToolFrame
{
    Q_OBJECT

public:
    explicit ScreenshotRenameView(AppState& state, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class FolderChoice { downloads, desktop, documents, home, screenshots, other };

    void makeHeader();
    void makeStrip();
    void makeEmpties();
    void makeList();
    void fillPicker();
    void choose(int index);
    FilePath folderURL() const;
    void scan();
    void renameSelected();
    void preview(const QModelIndex& index);
    void showMenu(int row, const QPoint& position);
    Row rowOf(int row);

    void refresh();
    void refreshButtons();
    void refreshStrip();
    void refreshList();
    void refreshEmpty();

    ScreenshotsState& m_screenshots;
    FolderChoice m_folderChoice = FolderChoice::downloads;
    std::vector<FolderChoice> m_choices;           ///< as the picker shows them
    std::vector<ScreenshotCandidate> m_candidates; ///< as the list shows them
    Refresher* m_refresher;
    Thumbnails* m_thumbnails;

    QComboBox* m_folder = nullptr;
    Button* m_scan = nullptr;
    Spinner* m_scanSpinner = nullptr;
    Button* m_rename = nullptr;
    QWidget* m_line = nullptr; ///< what the last batch did, and the status
    QWidget* m_renamed = nullptr;
    Label* m_renamedText = nullptr;
    Label* m_status = nullptr;
    Card* m_progress = nullptr;
    Spinner* m_progressSpinner = nullptr;
    Label* m_progressStatus = nullptr;
    Label* m_progressCount = nullptr;
    ProgressBar* m_bar = nullptr;
    EmptyState* m_reading = nullptr;
    EmptyState* m_none = nullptr;
    EmptyState* m_noEngine = nullptr;
    RowModel* m_rows = nullptr;
    RowView* m_list = nullptr;
};

} // namespace quorvane
