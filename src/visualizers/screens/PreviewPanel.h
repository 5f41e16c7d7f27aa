// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "JobRunner.h"
#include "PreviewContent.h"

#include <QImage>
#include <QPointer>
#include <QWidget>

class QPlainTextEdit;
class QStackedLayout;

namespace quorvane {

class AppState;
class EmptyState;
class Label;
class ElidedLabel;

/// The preview of one file over the middle of the window: a picture, a text, or a summary for the
/// rest. Read in the background. Space, Esc and the cross close it; the arrow keys lead to the
/// siblings of the selection. Main thread.
class PreviewPanel : public QWidget
{
    Q_OBJECT

public:
    /// A child of the window; hidden at first. The state outlives it.
    PreviewPanel(AppState& state, QWidget* window);
    ~PreviewPanel() override;

    /// Shows what QuickLookPreview holds.
    void bringToFront();
    void closePanel();
    /// What shows now; a summary until the file is read.
    PreviewContent::Kind shownKind() const { return m_kind; }
    bool isReading() const { return m_isReading; }

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    class PictureView;

    void layOut();
    void place();
    void read(const FilePath& path);
    void showContent(const PreviewContent& content);
    void selectSibling(int step);
    void followSelection();

    AppState& m_state;
    ElidedLabel* m_name;
    QStackedLayout* m_pages = nullptr;
    EmptyState* m_summary;
    PictureView* m_picture;
    QPlainTextEdit* m_text;
    PreviewContent::Kind m_kind = PreviewContent::Kind::summary;
    bool m_isReading = false;
    JobHandle m_reading;
    QPointer<QWidget> m_focusBefore;
};

} // namespace quorvane
