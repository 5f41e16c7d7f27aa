// SPDX-License-Identifier: MIT
#pragma once

#include "DocumentPages.h"
#include "JobRunner.h"
#include "PageCache.h"

#include <QAbstractScrollArea>
#include <QRect>

#include <memory>
#include <optional>
#include <vector>

namespace quorvane {

/// The pages of a document, one below the other. Pages are drawn in the background, those on show
/// first, and kept within a bound of memory. Main thread.
class DocumentView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    /// Most bytes of drawn pages that are kept; what is on show is never dropped.
    static constexpr qint64 cacheLimit = 64 * 1024 * 1024;

    /// The jobs outlive the view.
    explicit DocumentView(JobRunner& jobs, QWidget* parent = nullptr);
    ~DocumentView() override;

    /// Null for none. Shows the first page.
    void setDocument(const std::shared_ptr<DocumentPages>& document);
    /// Of the whole document; 0 without one.
    int pageCount() const { return m_document ? m_document->pageCount() : 0; }
    /// The page that takes the middle of the view, from 0.
    int currentPage() const;
    /// Whether every page on show is drawn.
    bool isDrawn() const { return !firstMissing(); }

Q_SIGNALS:
    void currentPageChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void layOut();
    QRect placeOf(int page) const;
    QSize pixelsOf(int page) const;
    std::vector<int> shownPages() const;
    std::optional<int> firstMissing() const;
    void draw();
    void keep(int page, const QImage& drawn);
    void letGo();

    JobRunner& m_jobs;
    JobHandle m_drawing;
    bool m_isDrawing = false;
    std::shared_ptr<DocumentPages> m_document;
    std::vector<QRect> m_places;
    PageCache m_drawn{cacheLimit};
};

} // namespace quorvane
