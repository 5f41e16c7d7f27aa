// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "JobRunner.h"
#include "LockedFlag.h"
#include "PreviewContent.h"
#include "QuickLookPreview.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <memory>

class QPlainTextEdit;
class QStackedLayout;

namespace quorvane {

class AppState;
class FacetHost;
class NavigationState;
class SettingsState;
class DocumentView;
class ElidedLabel;
class EmptyState;
class Label;
class MediaView;
class PanelShadow;
class PictureView;

/// The preview of one file over the middle of the window: a picture, a text, pages, a film or a
/// sound with controls, or a summary for the rest. Read in the background. Space, Esc anywhere in
/// the window, the cross and the end of the window close it; the arrow keys lead on in the list
/// that had the focus, else to the siblings of the selection. Main thread.
class PreviewPanel : public QWidget, public QuickLookPanel
{
    Q_OBJECT

public:
    /// A child of the window; hidden at first. The state outlives it.
    PreviewPanel(AppState& state, QWidget* window);
    ~PreviewPanel() override;

    /// Shows what QuickLookPreview holds.
    void bringToFront() override;
    void closePanel() override;
    bool isOnShow() const override { return !isHidden(); }
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
    void setUpText();
    void layOut();
    QWidget* makeHeader();
    void place();
    void read(const FilePath& path);
    void stopReading();
    void take(PreviewContent content);
    void showSummary();
    void showKind(PreviewContent::Kind kind, QWidget* page);
    void showDetail();
    void emptyPages();
    MediaView& media();
    void moveSelection(QKeyEvent& event);
    void selectSibling(int step);
    bool scrollByKey(int key);
    void followSelection();
    bool takesKey(const QObject& watched, QEvent& event);

    NavigationState& m_navigation;
    SettingsState& m_settings;
    FacetHost& m_host;
    QPointer<PanelShadow> m_shadow;
    ElidedLabel* m_name;
    Label* m_detail;
    QStackedLayout* m_pages = nullptr;
    EmptyState* m_summary;
    PictureView* m_picture;
    QPlainTextEdit* m_text;
    DocumentView* m_document;
    MediaView* m_media = nullptr;
    PreviewContent::Kind m_kind = PreviewContent::Kind::summary;
    PreviewContent m_content;
    FilePath m_path;
    bool m_isReading = false;
    JobHandle m_reading;
    std::shared_ptr<LockedFlag> m_stop;
    /// What is read quickly takes the place of what was on show with no summary in between.
    QTimer m_summaryDelay;
    QPointer<QWidget> m_focusBefore;
};

} // namespace quorvane
