// SPDX-License-Identifier: MIT
#include "RowView.h"

#include "DesktopSettings.h"
#include "Painting.h"
#include "RowAccessibility.h"
#include "Tokens.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace quorvane {
namespace {

constexpr int minRows = 2;
constexpr int maxHint = 100000;    ///< far above any screen, far below what layouts can add up
constexpr int maxMeasured = 10000; ///< of rows of several heights; above any screen
constexpr int minCellWidth = 60;
constexpr int grip = 4; ///< to both sides of the edge that is dragged

/// The titles of the columns, drawn as one row.
class TitleHeader : public QHeaderView
{
public:
    TitleHeader(const Row& titles, RowView& view)
        : QHeaderView(Qt::Horizontal, &view)
        , m_titles(titles)
        , m_view(view)
    {
        setStretchLastSection(true);
        viewport()->setAutoFillBackground(false);
        setSectionsClickable(false);
        setMouseTracking(true);
    }

    QSize sizeHint() const override { return {0, measure::tableHeader}; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(viewport());
        const QRect area = viewport()->rect();
        painter.save();
        if (m_view.metrics().clipsTop) {
            clipToCard(painter, QRectF(area).adjusted(0, 0, 0, radius::surface));
        }
        painter.fillRect(area, themeColor(ThemeColor::raised));
        painter.restore();
        painter.fillRect(QRect(0, area.bottom(), area.width(), 1),
                         themeColor(ThemeColor::hairline));
        paintRowHeader(painter, area, m_titles, m_view.metrics());
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        const int x = event->position().toPoint().x();
        if (m_dragged) {
            m_view.setCellWidth(*m_dragged, m_end - x);
            return;
        }
        viewport()->setCursor(edgeAt(x) ? Qt::SplitHCursor : Qt::ArrowCursor);
    }
    void mousePressEvent(QMouseEvent* event) override
    {
        m_dragged = event->button() == Qt::LeftButton ? edgeAt(event->position().toPoint().x())
                                                      : std::nullopt;
        if (m_dragged) {
            m_end = places().cells[*m_dragged].right() + 1;
        }
    }
    void mouseReleaseEvent(QMouseEvent*) override { m_dragged.reset(); }

private:
    RowPlaces places() const
    {
        return layOutRow(m_titles, m_view.metrics(), viewport()->rect(), 0, false);
    }
    /// The cell whose left edge is there.
    std::optional<std::size_t> edgeAt(int x) const
    {
        const RowPlaces now = places();
        for (std::size_t i = 0; m_view.areCellsResizable() && i < now.cells.size(); ++i) {
            if (std::abs(now.cells[i].left() - x) <= grip) {
                return i;
            }
        }
        return std::nullopt;
    }

    Row m_titles;
    RowView& m_view;
    std::optional<std::size_t> m_dragged;
    int m_end = 0; ///< right edge of what is dragged
};

} // namespace

RowView::RowView(QAbstractItemModel& model, const RowMetrics& metrics, QWidget* parent)
    : QTreeView(parent)
    , m_metrics(metrics)
{
    installRowAccessibility();
    setItemDelegate(new RowDelegate(this));
    setHeaderHidden(true);
    header()->setStretchLastSection(true);
    setFrameShape(QFrame::NoFrame);
    // What it stands on draws the ground, so that round corners stay free.
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_Hover);
    setMouseTracking(true);
    setUniformRowHeights(true);
    setIndentation(0);
    setRootIsDecorated(false);
    setExpandsOnDoubleClick(false);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    connect(this, &QTreeView::expanded, this, &RowView::rowsChanged);
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& closed) {
        for (QModelIndex above = currentIndex().parent(); above.isValid(); above = above.parent()) {
            if (above == closed) {
                // The keys act on nothing that is out of sight.
                setCurrent(closed);
                break;
            }
        }
        rowsChanged();
    });
    setModel(&model);
}

void RowView::setModel(QAbstractItemModel* model)
{
    if (QAbstractItemModel* const old = this->model()) {
        disconnect(old, nullptr, this, nullptr);
    }
    QTreeView::setModel(model);
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this,
            [this] { m_lastRow = currentIndex().row(); });
    connect(model, &QAbstractItemModel::layoutChanged, this, [this] {
        keepCurrent();
        rowsChanged();
    });
    connect(model, &QAbstractItemModel::rowsInserted, this, &RowView::rowsChanged);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &RowView::rowsChanged);
    rowsChanged();
}

void RowView::reset()
{
    m_hovered = {};
    m_pressed = {};
    m_part.reset();
    QTreeView::reset();
    if (verticalScrollBar() != nullptr) {
        verticalScrollBar()->setValue(0);
    }
    rowsChanged();
}

void RowView::rowsChanged()
{
    ++m_revision;
    updateGeometry();
    viewport()->update();
    announceRows(*this);
}

/// When the current row has gone, the one that took its place is current.
void RowView::keepCurrent()
{
    if (!currentIndex().isValid() && m_lastRow >= 0 && model()->rowCount() > 0) {
        const QModelIndex next = model()->index(std::min(m_lastRow, model()->rowCount() - 1), 0);
        const QScopedValueRollback following(m_isFollowing, true);
        setCurrentIndex(next);
    }
}

void RowView::setTitles(const Row& titles)
{
    setHeader(new TitleHeader(titles, *this));
    setHeaderHidden(false);
    m_titles = titles;
}

void RowView::setCellWidth(std::size_t cell, int width)
{
    if (cell >= m_metrics.cellWidths.size()) {
        m_metrics.cellWidths.resize(cell + 1);
    }
    m_metrics.cellWidths[cell] = width > 0 ? std::max(width, minCellWidth) : 0;
    viewport()->update();
    header()->viewport()->update();
}

void RowView::setPlaceholder(const QString& text)
{
    m_placeholder = text;
    viewport()->update();
}

int RowView::rowsHeight() const
{
    const int titles = m_titles ? measure::tableHeader : 0;
    const int count = model()->rowCount();
    if (uniformRowHeights()) {
        const qint64 rows = static_cast<qint64>(count) * m_metrics.height;
        return titles + static_cast<int>(std::min<qint64>(rows, maxHint));
    }
    int height = titles;
    for (QModelIndex index = model()->index(0, 0); index.isValid() && height < maxMeasured;
         index = indexBelow(index)) {
        const QVariant own = index.data(rowrole::height);
        height += own.isValid() ? own.toInt() : m_metrics.height;
    }
    return height;
}

QSize RowView::sizeHint() const
{
    return {measure::emptyTextWidth, rowsHeight()};
}

QSize RowView::minimumSizeHint() const
{
    return {0, std::min(rowsHeight(), minRows * m_metrics.height)};
}

Row RowView::rowOf(const QModelIndex& index) const
{
    return index.data(rowrole::row).value<Row>();
}

int RowView::levelOf(const QModelIndex& index) const
{
    int level = 0;
    for (QModelIndex above = index.parent(); above != rootIndex(); above = above.parent()) {
        ++level;
    }
    return level;
}

RowLook RowView::lookOf(const QModelIndex& index) const
{
    RowLook look;
    const bool isHovered = m_hovered.index == index;
    const bool isFocused = hasFocus() && m_showsFocus && currentIndex() == index;
    look.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
    look.state.setFlag(QStyle::State_MouseOver, isHovered && !m_hovered.part);
    look.state.setFlag(QStyle::State_HasFocus, isFocused && !m_part);
    if (isHovered) {
        look.hovered = m_hovered.part;
    }
    if (m_pressed.index == index) {
        look.pressed = m_pressed.part;
    }
    if (isFocused) {
        look.focused = m_part;
    }
    look.hasChevron = m_metrics.hasLevels && model()->hasChildren(index);
    look.isOpen = look.hasChevron && isExpanded(index);
    look.level = m_metrics.hasLevels ? levelOf(index) : 0;
    if (m_metrics.hasOwnCards) {
        const auto isHeading = [](const QModelIndex& other) {
            return !other.isValid() || !(other.flags() & Qt::ItemIsEnabled);
        };
        look.isFirstOnCard = isHeading(index.siblingAtRow(index.row() - 1));
        look.isLastOnCard = isHeading(index.siblingAtRow(index.row() + 1));
    } else {
        const bool mayBeLast = index.row() + 1 == model()->rowCount(index.parent());
        look.isLastOnCard = mayBeLast && !indexBelow(index).isValid();
    }
    return look;
}

RowPlaces RowView::placesOf(const QModelIndex& index) const
{
    const QRect area = visualRect(index);
    return area.isEmpty() ? RowPlaces()
                          : layOutRow(rowOf(index), m_metrics,
                                      QRect(0, area.top(), viewport()->width(), area.height()),
                                      m_metrics.hasLevels ? levelOf(index) : 0,
                                      m_metrics.hasLevels && model()->hasChildren(index));
}

QRect RowView::partRect(const QModelIndex& index, const std::optional<RowPart>& part) const
{
    const QRect area = visualRect(index);
    if (area.isEmpty()) {
        return {};
    }
    const Row row = rowOf(index);
    if (row.kind == RowKind::more) {
        return placesOf(index).actions[0];
    }
    const std::vector<RowPart> parts = partsOf(row);
    if (!part) {
        return {0, area.top(), viewport()->width(), area.height()};
    }
    const bool isThere = std::find(parts.begin(), parts.end(), *part) != parts.end();
    return isThere ? rectOf(*part, placesOf(index)) : QRect();
}

std::optional<RowPart> RowView::partAt(const QModelIndex& index, const QPoint& position) const
{
    const RowPlaces places = placesOf(index);
    for (const RowPart& part : partsOf(rowOf(index))) {
        if (rectOf(part, places).contains(position)) {
            return part;
        }
    }
    return std::nullopt;
}

void RowView::setCurrent(const QModelIndex& index, const std::optional<RowPart>& part)
{
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    m_part = part;
    scrollTo(index);
    viewport()->update();
    announceRowFocus(*this);
}

void RowView::select(const QModelIndex& index)
{
    const QScopedValueRollback following(m_isFollowing, true);
    if (!index.isValid()) {
        clearSelection();
        setCurrentIndex({});
    } else if (currentIndex() != index || !selectionModel()->isSelected(index)) {
        // Scrolling to a row opens the rows on the way.
        setCurrentIndex(index);
        scrollTo(index);
    }
}

void RowView::toggle(const QModelIndex& index)
{
    // A second movement would begin on the picture of the first.
    setAnimated(state() != AnimatingState && animationDuration(duration::expand) > 0);
    setExpanded(index, !isExpanded(index));
    setAnimated(false);
}

void RowView::press(const QModelIndex& index, const std::optional<RowPart>& part)
{
    const Row row = rowOf(index);
    if (!index.isValid() || !row.isEnabled) {
        return;
    }
    if (row.kind == RowKind::more) {
        Q_EMIT actionTriggered(index, row.actions[0].id);
    } else if (!part) {
        if (m_rowsToggle && model()->hasChildren(index)) {
            toggle(index);
        }
        Q_EMIT rowActivated(index);
    } else if (part->id == RowAction::copied) {
        QGuiApplication::clipboard()->setText(row.command);
        Q_EMIT actionTriggered(index, part->id);
    } else if (part->id == RowAction::toggled ||
               row.actions[static_cast<std::size_t>(part->place)].isEnabled) {
        Q_EMIT actionTriggered(index, part->id);
    }
}

void RowView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                      const QModelIndex& index) const
{
    QStyleOptionViewItem row = option;
    row.rect = QRect(0, option.rect.top(), viewport()->width(), option.rect.height());
    const bool isAtTop = m_metrics.clipsTop && !m_titles && row.rect.top() < radius::surface;
    const bool isAtBottom =
        m_metrics.clipsBottom && row.rect.bottom() > viewport()->height() - radius::surface;
    painter->save();
    if (!m_metrics.hasOwnCards && (isAtTop || isAtBottom)) {
        clipToCard(*painter, QRectF(viewport()->rect())
                                 .adjusted(0, isAtTop ? 0 : -radius::surface, 0,
                                           isAtBottom ? 0 : radius::surface));
        painter->setRenderHint(QPainter::Antialiasing, false);
    }
    itemDelegate()->paint(painter, row, index);
    painter->restore();
}

void RowView::drawBranches(QPainter*, const QRect&, const QModelIndex&) const {}

void RowView::paintEvent(QPaintEvent* event)
{
    QTreeView::paintEvent(event);
    if (!m_placeholder.isEmpty() && model()->rowCount() == 0) {
        QPainter painter(viewport());
        paintText(painter, viewport()->rect(), Qt::AlignCenter, TextStyle::body,
                  themeColor(ThemeColor::text2), m_placeholder);
    }
}

void RowView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                          const QList<int>& roles)
{
    QTreeView::dataChanged(topLeft, bottomRight, roles);
    viewport()->update();
    announceRowNames(*this);
}

} // namespace quorvane
