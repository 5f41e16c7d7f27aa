// SPDX-License-Identifier: MIT
#include "StagedList.h"

#include "AppState.h"
#include "Painting.h"
#include "Symbols.h"
#include "Tokens.h"
#include "ToolTip.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

constexpr int rowHeight = 52;
constexpr int paddingLeft = 16;
constexpr int paddingRight = 12;
constexpr int gap = 14;
constexpr int symbolSide = 18;
constexpr int filesWidth = 110;
constexpr int sizeWidth = 88;
constexpr int buttonSymbolSide = 15;
constexpr int fewestRows = 2;
constexpr int tallestHint = 100000; ///< far above any screen, far below what layouts can add up

QRect buttonArea(const QRect& row)
{
    constexpr int side = measure::toolButton;
    return {row.right() + 1 - paddingRight - side, row.center().y() - side / 2 + 1, side, side};
}

class StagedDelegate : public QStyledItemDelegate
{
public:
    explicit StagedDelegate(StagedList* list)
        : QStyledItemDelegate(list)
        , m_list(*list)
    {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {0, rowHeight};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        const QRect row = option.rect;
        QStyle::State state = option.state & (QStyle::State_MouseOver | QStyle::State_Selected);
        state.setFlag(QStyle::State_HasFocus, m_list.hasFocus() && m_list.currentIndex() == index);
        painter->save();
        // The card goes on below the list.
        clipToCard(*painter, QRectF(m_list.viewport()->rect()).adjusted(0, 0, 0, radius::surface));
        paintRowGround(*painter, row, 0, state);
        painter->restore();
        if (index.row() + 1 < index.model()->rowCount()) {
            painter->fillRect(QRect(row.left(), row.bottom(), row.width(), 1),
                              themeColor(ThemeColor::hairline));
        }
        QRectF area = QRectF(row).adjusted(paddingLeft, 0, 0, -1);
        area.setRight(paintButton(*painter, row, index) - gap);
        area.setRight(paintNumbers(*painter, area, index));
        paintWords(*painter, area, index);
    }

private:
    /// Returns the button's left edge.
    qreal paintButton(QPainter& painter, const QRect& row, const QModelIndex& index) const
    {
        const QRect button = buttonArea(row);
        const bool isHovered = m_list.isButtonHovered(index);
        if (isHovered) {
            paintPanel(painter, button, radius::control, themeColor(ThemeColor::press),
                       Qt::transparent);
        }
        paintSymbol(painter, QStringLiteral("xmark.circle"), button, buttonSymbolSide,
                    themeColor(isHovered ? ThemeColor::text1 : ThemeColor::text3));
        return button.left();
    }

    /// Size and number of files in cells of their own. Returns where the words have to end.
    static qreal paintNumbers(QPainter& painter, const QRectF& area, const QModelIndex& index)
    {
        const int alignment = Qt::AlignRight | Qt::AlignVCenter;
        QRectF cell(area.right() - sizeWidth, area.top(), sizeWidth, area.height());
        paintText(painter, cell, alignment, TextStyle::strong, themeColor(ThemeColor::text1),
                  index.data(StagedModel::sizeRole).toString());
        cell = QRectF(cell.left() - gap - filesWidth, area.top(), filesWidth, area.height());
        paintText(painter, cell, alignment, TextStyle::caption, themeColor(ThemeColor::text2),
                  index.data(StagedModel::filesRole).toString());
        return cell.left() - gap;
    }

    static void paintWords(QPainter& painter, QRectF area, const QModelIndex& index)
    {
        const bool isDirectory = index.data(StagedModel::isDirectoryRole).toBool();
        paintSymbol(painter, index.data(StagedModel::symbolRole).toString(),
                    QRectF(area.left(), area.top(), symbolSide, area.height()), symbolSide,
                    themeColor(isDirectory ? ThemeColor::accentText : ThemeColor::text3));
        area.setLeft(area.left() + symbolSide + gap);
        const int nameHeight = typeMeasure(TextStyle::row).lineHeight;
        const int pathHeight = typeMeasure(TextStyle::path).lineHeight;
        const qreal top = area.center().y() - (nameHeight + pathHeight) / 2.0;
        const int alignment = Qt::AlignLeft | Qt::AlignVCenter;
        paintText(painter, QRectF(area.left(), top, area.width(), nameHeight), alignment,
                  TextStyle::row, themeColor(ThemeColor::text1), index.data().toString(),
                  Qt::ElideMiddle);
        paintText(painter, QRectF(area.left(), top + nameHeight, area.width(), pathHeight),
                  alignment, TextStyle::path, themeColor(ThemeColor::text3),
                  index.data(StagedModel::pathRole).toString(), Qt::ElideMiddle);
    }

    const StagedList& m_list;
};

} // namespace

void StagedModel::setNodes(std::vector<NodePointer> nodes)
{
    beginResetModel();
    m_nodes = std::move(nodes);
    endResetModel();
}

int StagedModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_nodes.size());
}

QString StagedModel::filesText(const FileNode& node)
{
    return node.isDirectory() ? tr("%1 files").arg(node.fileCount()) : QString();
}

QString StagedModel::accessibleText(const FileNode& node)
{
    QStringList parts{node.displayName(), AppState::displayPath(node.path())};
    if (node.isDirectory()) {
        parts.push_back(filesText(node));
    }
    parts.push_back(node.formattedBytes());
    return parts.join(QStringLiteral(", "));
}

QVariant StagedModel::data(const QModelIndex& index, int role) const
{
    const FileNode& node = *m_nodes[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return node.displayName();
    case Qt::AccessibleTextRole:
        return accessibleText(node);
    case pathRole:
        return AppState::displayPath(node.path());
    case filesRole:
        return filesText(node);
    case sizeRole:
        return node.formattedBytes();
    case isDirectoryRole:
        return node.isDirectory();
    case symbolRole:
        return node.isDirectory() ? QStringLiteral("folder.fill") : QStringLiteral("doc.fill");
    default:
        return {};
    }
}

StagedList::StagedList(QWidget* parent)
    : QListView(parent)
    , m_model(new StagedModel(this))
{
    setObjectName(QStringLiteral("stagedList"));
    setAccessibleName(tr("Staged cleanup"));
    setModel(m_model);
    setItemDelegate(new StagedDelegate(this));
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);
    viewport()->setAutoFillBackground(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void StagedList::setNodes(std::vector<NodePointer> nodes)
{
    const int current = currentIndex().row();
    const int place = verticalScrollBar()->value();
    m_model->setNodes(std::move(nodes));
    m_hoveredButton = -1;
    m_pressedButton = -1;
    if (current >= 0 && m_model->rowCount() > 0) {
        setCurrentIndex(m_model->index(std::min(current, m_model->rowCount() - 1)));
    }
    updateGeometries();
    verticalScrollBar()->setValue(place);
    updateGeometry();
}

QSize StagedList::sizeHint() const
{
    return {measure::emptyTextWidth, std::min(m_model->rowCount() * rowHeight, tallestHint)};
}

QSize StagedList::minimumSizeHint() const
{
    return {0, std::min(m_model->rowCount(), fewestRows) * rowHeight};
}

QRect StagedList::buttonRect(int row) const
{
    const QRect area = visualRect(m_model->index(row));
    return area.isValid() ? buttonArea(area) : QRect();
}

int StagedList::buttonAt(const QPoint& position) const
{
    const QModelIndex index = indexAt(position);
    return index.isValid() && buttonRect(index.row()).contains(position) ? index.row() : -1;
}

void StagedList::setHoveredButton(int row)
{
    if (row != m_hoveredButton) {
        m_hoveredButton = row;
        viewport()->update();
    }
}

void StagedList::requestUnstage(int row)
{
    const NodePointer node = m_model->node(row);
    Q_EMIT unstageRequested(node);
}

void StagedList::keyPressEvent(QKeyEvent* event)
{
    const bool isDelete = event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace;
    if (isDelete && event->modifiers() == Qt::NoModifier && currentIndex().isValid()) {
        requestUnstage(currentIndex().row());
        return;
    }
    QListView::keyPressEvent(event);
}

void StagedList::mouseMoveEvent(QMouseEvent* event)
{
    setHoveredButton(buttonAt(event->position().toPoint()));
    if (m_pressedButton < 0) {
        QListView::mouseMoveEvent(event);
    }
}

void StagedList::mousePressEvent(QMouseEvent* event)
{
    m_pressedButton =
        event->button() == Qt::LeftButton ? buttonAt(event->position().toPoint()) : -1;
    if (m_pressedButton < 0) {
        QListView::mousePressEvent(event);
    }
}

void StagedList::mouseReleaseEvent(QMouseEvent* event)
{
    const int pressed = std::exchange(m_pressedButton, -1);
    if (pressed < 0) {
        QListView::mouseReleaseEvent(event);
    } else if (buttonAt(event->position().toPoint()) == pressed) {
        requestUnstage(pressed);
    }
}

void StagedList::leaveEvent(QEvent* event)
{
    setHoveredButton(-1);
    QListView::leaveEvent(event);
}

bool StagedList::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        const QModelIndex index = indexAt(help->pos());
        if (index.isValid()) {
            showPlainToolTip(help->globalPos(),
                             buttonAt(help->pos()) >= 0
                                 ? tr("Unstage")
                                 : index.data(StagedModel::pathRole).toString(),
                             viewport());
            return true;
        }
    }
    return QListView::viewportEvent(event);
}

} // namespace quorvane
