// SPDX-License-Identifier: MIT
#include "DuplicatesList.h"

#include "AppState.h"
#include "DesktopSettings.h"
#include "DuplicatesAccessibility.h"
#include "Tokens.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QVariantAnimation>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

using Kind = DuplicateRow::Kind;

constexpr int fewestRows = 2;
constexpr int tallestHint = 100000; ///< far above any screen, far below what layouts can add up
constexpr int scrollStep = 20;
constexpr int cornerRadius = radius::surface - 1; ///< inside the card's edge

} // namespace

DuplicatesList::DuplicatesList(AppState& state, QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_state(state)
    , m_painter(state, m_rows)
{
    installDuplicatesAccessibility();
    setObjectName(QStringLiteral("duplicatesList"));
    setAccessibleName(tr("Duplicate files"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    viewport()->setMouseTracking(true);
    viewport()->setAutoFillBackground(false);
    verticalScrollBar()->setSingleStep(scrollStep);
    m_painter.measureColumns();
    const auto showStaged = [this] {
        viewport()->update();
        announceDuplicateButtons(*this);
    };
    m_stagedChanged = m_state.stagedNodes.addNotifier(showStaged);
    // A batch on its way to the Trash leaves the queue at once, and its files are staged no more
    // one after the other.
    m_batchMoved = m_state.trashProgress.addNotifier(showStaged);
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this, [this] {
        m_painter.measureColumns();
        viewport()->update();
    });
}

DuplicatesList::~DuplicatesList() = default;

void DuplicatesList::setGroups(DuplicateRows::GroupsPointer groups)
{
    if (groups == m_rows.groups()) {
        return;
    }
    while (!m_moving.empty()) {
        stopMoving(m_moving.begin()->first);
    }
    DuplicateRows::GroupsPointer old = m_rows.groups();
    m_rows.setGroups(std::move(groups));
    // It may be the last that held tens of thousands of groups and their tree.
    m_state.jobs().release(std::move(old));
    m_painter.measureColumns();
    m_current.reset();
    m_pressed.reset();
    rowsChanged();
    verticalScrollBar()->setValue(0);
}

void DuplicatesList::rowsChanged()
{
    ++m_revision;
    if (m_current && !m_rows.contains(m_current->row)) {
        m_current = DuplicatePlace{{Kind::group, m_current->row.group, 0}, 0};
    }
    layOut();
    announceDuplicateRows(*this);
}

void DuplicatesList::layOut()
{
    const int height = viewport()->height();
    m_rows.setMovingHeight(std::max(height, DuplicateRows::groupHeight));
    verticalScrollBar()->setPageStep(height);
    verticalScrollBar()->setRange(0, std::max(0, m_rows.height() - height));
    updateGeometry();
    updateHovered();
    viewport()->update();
}

void DuplicatesList::toggle(std::size_t group)
{
    stopMoving(group);
    m_rows.toggle(group);
    const double target = m_rows.isExpanded(group) ? 1 : 0;
    const int milliseconds = animationDuration(duration::expand);
    if (milliseconds == 0 || !isVisible()) {
        m_rows.setOpenness(group, target);
        rowsChanged();
        return;
    }
    auto* const movement = new QVariantAnimation(this);
    m_moving[group] = movement;
    movement->setDuration(milliseconds);
    movement->setEasingCurve(QEasingCurve::InOutQuad);
    movement->setStartValue(m_rows.openness(group));
    movement->setEndValue(target);
    connect(movement, &QVariantAnimation::valueChanged, this,
            [this, group](const QVariant& openness) {
                m_rows.setOpenness(group, openness.toDouble());
                layOut();
            });
    connect(movement, &QAbstractAnimation::finished, this, [this, group, target] {
        stopMoving(group);
        m_rows.setOpenness(group, target);
        layOut();
    });
    rowsChanged();
    movement->start();
}

void DuplicatesList::stopMoving(std::size_t group)
{
    const auto moving = m_moving.find(group);
    if (moving != m_moving.end()) {
        QVariantAnimation* const movement = moving->second;
        m_moving.erase(moving);
        movement->disconnect(this);
        movement->stop();
        movement->deleteLater();
    }
}

QRect DuplicatesList::rowRect(const DuplicateRow& row) const
{
    return {0, m_rows.top(row) - verticalScrollBar()->value(), viewport()->width(),
            DuplicateRows::heightOf(row)};
}

QRect DuplicatesList::placeRect(const DuplicatePlace& place) const
{
    return m_painter.partRect(place, rowRect(place.row));
}

QRect DuplicatesList::badgeRect(const DuplicateRow& row) const
{
    return m_painter.badgeRect(row, rowRect(row));
}

std::vector<DuplicateRow> DuplicatesList::rowsInSight() const
{
    std::vector<DuplicateRow> rows;
    const int start = verticalScrollBar()->value();
    for (int y = start; y < start + viewport()->height();) {
        const std::optional<DuplicateRow> row = m_rows.rowAt(y);
        if (!row) {
            break;
        }
        rows.push_back(*row);
        const int end = m_rows.top(*row) + DuplicateRows::heightOf(*row);
        const bool isInBody = row->kind == Kind::member || row->kind == Kind::moreMembers;
        y = isInBody ? std::min(end, m_rows.bodyBottom(row->group)) : end;
    }
    return rows;
}

QSize DuplicatesList::sizeHint() const
{
    return {measure::emptyTextWidth, std::min(m_rows.height(), tallestHint)};
}

QSize DuplicatesList::minimumSizeHint() const
{
    return {0, std::min(m_rows.height(), fewestRows * DuplicateRows::groupHeight)};
}

DuplicateRowLook DuplicatesList::lookOf(const DuplicateRow& row) const
{
    DuplicateRowLook look;
    look.hovered = m_hovered && m_hovered->row == row ? m_hovered->part : -1;
    look.pressed = m_pressed && m_pressed->row == row ? m_pressed->part : -1;
    const bool isFocused = hasFocus() && m_showsFocus && m_current && m_current->row == row;
    look.focused = isFocused ? m_current->part : -1;
    return look;
}

void DuplicatesList::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    QPainterPath inside;
    inside.addRoundedRect(viewport()->rect(), cornerRadius, cornerRadius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(inside);
    painter.setRenderHint(QPainter::Antialiasing, false);
    paintRows(painter, event->rect());
}

void DuplicatesList::paintRows(QPainter& painter, const QRect& area) const
{
    for (const DuplicateRow& row : rowsInSight()) {
        const QRect rect = rowRect(row);
        if (!rect.intersects(area)) {
            continue;
        }
        const bool isInBody = row.kind == Kind::member || row.kind == Kind::moreMembers;
        const bool isClipped = isInBody && m_rows.openness(row.group) < 1;
        if (isClipped) {
            painter.save();
            const int bottom = m_rows.bodyBottom(row.group) - verticalScrollBar()->value();
            painter.setClipRect(QRect(0, rect.top(), rect.width(), bottom - rect.top()),
                                Qt::IntersectClip);
        }
        m_painter.paint(painter, row, rect, lookOf(row));
        if (isClipped) {
            painter.restore();
        }
    }
}

void DuplicatesList::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    layOut();
}

void DuplicatesList::scrollContentsBy(int, int)
{
    updateHovered();
    viewport()->update();
}

void DuplicatesList::activate(const DuplicatePlace& place)
{
    if (!m_rows.contains(place.row)) {
        return;
    }
    const DuplicateRow row = place.row;
    if (row.kind == Kind::moreMembers) {
        const std::size_t first = m_rows.shownMembers(row.group);
        m_rows.showMoreMembers(row.group);
        goToNewRows({Kind::member, row.group, first});
    } else if (row.kind == Kind::moreGroups) {
        const std::size_t first = m_rows.shownGroups();
        m_rows.showMoreGroups();
        goToNewRows({Kind::group, first, 0});
    } else if (const std::optional<DuplicateButton> pressed = m_painter.button(place)) {
        perform(m_state, pressed->action);
    } else if (row.kind == Kind::group) {
        toggle(row.group);
    }
}

void DuplicatesList::goToNewRows(const DuplicateRow& first)
{
    rowsChanged();
    setCurrent({first, 0});
    if (m_showsFocus) {
        // Keys go on from there: the new rows fill the view, below the one that was the last.
        verticalScrollBar()->setValue(m_rows.top(first) - DuplicateRows::heightOf(first));
    }
}

QString DuplicatesList::accessibleNameOf(const DuplicatePlace& place) const
{
    if (const std::optional<DuplicateButton> shown = m_painter.button(place)) {
        return shown->face.text;
    }
    return place.row.kind == Kind::group ? m_painter.groupRow(place.row).accessibleName()
                                         : m_painter.memberRow(place.row).accessibleName();
}

QString DuplicatesList::accessibleDescriptionOf(const DuplicatePlace& place) const
{
    if (const std::optional<DuplicateButton> shown = m_painter.button(place)) {
        return shown->toolTip;
    }
    if (place.row.kind == Kind::group) {
        return m_painter.groupRow(place.row).toolTip();
    }
    return m_painter.memberRow(place.row).isRecommendedKeep() ? DuplicateMemberRow::badgeToolTip()
                                                              : QString();
}

} // namespace quorvane
