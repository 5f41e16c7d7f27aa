// SPDX-License-Identifier: MIT
#include "DocumentView.h"

#include "Theme.h"
#include "Tokens.h"

#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace quorvane {
namespace {

constexpr int margin = spacing::l;
constexpr int pageGap = spacing::m;
/// Widest page that stands upright, in points of the screen.
constexpr int maxUprightWidth = 720;
/// A page is never longer than so many of its widths.
constexpr double maxShare = 4;
constexpr int lineStep = 48;

QSize sizeOnScreen(const QSizeF& page, const QSize& room)
{
    const bool isUpright = page.height() >= page.width();
    const double width =
        std::max(1, isUpright ? std::min(room.width(), maxUprightWidth) : room.width());
    double scale = width / page.width();
    if (isUpright) {
        scale = std::min(scale, width * maxShare / page.height());
    } else {
        scale = std::min(scale, std::max(1, room.height()) / page.height());
    }
    return {std::max(1, static_cast<int>(std::lround(page.width() * scale))),
            std::max(1, static_cast<int>(std::lround(page.height() * scale)))};
}

} // namespace

DocumentView::DocumentView(JobRunner& jobs, QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_jobs(jobs)
{
    setObjectName(QStringLiteral("previewDocument"));
    setAccessibleName(tr("Pages"));
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(lineStep);
    viewport()->setAutoFillBackground(false);
}

DocumentView::~DocumentView()
{
    letGo();
}

void DocumentView::setDocument(const std::shared_ptr<DocumentPages>& document)
{
    letGo();
    m_document = document;
    layOut();
    verticalScrollBar()->setValue(0);
    Q_EMIT currentPageChanged();
}

/// The last reference goes on a thread that may wait for the disk.
void DocumentView::letGo()
{
    if (m_drawing) {
        m_drawing->cancel();
    }
    m_isDrawing = false;
    m_drawn.clear();
    if (m_document) {
        m_jobs.release(std::exchange(m_document, nullptr));
    }
}

void DocumentView::layOut()
{
    m_places.clear();
    const QSize room = viewport()->size() - QSize(2 * margin, 2 * margin);
    int y = margin;
    if (m_document) {
        for (const QSizeF& page : m_document->pageSizes()) {
            const QSize size = sizeOnScreen(page, room);
            m_places.emplace_back(QPoint((viewport()->width() - size.width()) / 2, y), size);
            y += size.height() + pageGap;
        }
    }
    const int whole = m_places.empty() ? 0 : y - pageGap + margin;
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, whole - viewport()->height()));
    viewport()->update();
    draw();
}

QRect DocumentView::placeOf(int page) const
{
    return m_places[static_cast<std::size_t>(page)].translated(0, -verticalScrollBar()->value());
}

QSize DocumentView::pixelsOf(int page) const
{
    return m_places[static_cast<std::size_t>(page)].size() * devicePixelRatioF();
}

std::vector<int> DocumentView::shownPages() const
{
    const int top = verticalScrollBar()->value();
    const auto first =
        std::partition_point(m_places.begin(), m_places.end(),
                             [top](const QRect& place) { return place.bottom() < top; });
    std::vector<int> pages;
    for (auto place = first; place != m_places.end() && place->top() < top + viewport()->height();
         ++place) {
        pages.push_back(static_cast<int>(place - m_places.begin()));
    }
    return pages;
}

int DocumentView::currentPage() const
{
    const int middle = verticalScrollBar()->value() + viewport()->height() / 2;
    const auto after =
        std::partition_point(m_places.begin(), m_places.end(),
                             [middle](const QRect& place) { return place.top() <= middle; });
    return std::max(0, static_cast<int>(after - m_places.begin()) - 1);
}

std::optional<int> DocumentView::firstMissing() const
{
    for (const int page : shownPages()) {
        const QImage* const drawn = m_drawn.find(page);
        if (drawn == nullptr || drawn->size() != pixelsOf(page)) {
            return page;
        }
    }
    return std::nullopt;
}

void DocumentView::draw()
{
    const std::optional<int> page = firstMissing();
    if (m_isDrawing || !page) {
        return;
    }
    m_isDrawing = true;
    m_drawing = m_jobs.start(
        JobPriority::userInitiated,
        [document = m_document, page = *page, pixels = pixelsOf(*page)](const Job&) {
            return document->render(page, pixels);
        },
        [this, page = *page](const QImage& drawn) {
            m_isDrawing = false;
            keep(page, drawn);
            viewport()->update();
            draw();
        });
}

void DocumentView::keep(int page, const QImage& drawn)
{
    const std::vector<int> shown = shownPages();
    const int here = currentPage();
    m_drawn.keep(page, drawn, shown.empty() ? here : shown.front(),
                 shown.empty() ? here : shown.back());
}

void DocumentView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.fillRect(viewport()->rect(), themeColor(ThemeColor::raised));
    for (const int page : shownPages()) {
        const QRect place = placeOf(page);
        if (const QImage* const drawn = m_drawn.find(page)) {
            painter.drawImage(place, *drawn);
        } else {
            painter.fillRect(place, Qt::white);
        }
        painter.setPen(themeColor(ThemeColor::hairline));
        painter.drawRect(QRectF(place).adjusted(-0.5, -0.5, 0.5, 0.5));
    }
}

void DocumentView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    layOut();
}

void DocumentView::scrollContentsBy(int, int)
{
    viewport()->update();
    draw();
    Q_EMIT currentPageChanged();
}

} // namespace quorvane
