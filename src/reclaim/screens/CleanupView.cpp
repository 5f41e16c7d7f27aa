// SPDX-License-Identifier: MIT
#include "CleanupView.h"

#include "AppState.h"
#include "ByteFormatter.h"
#include "CleanupCautions.h"
#include "Dialog.h"
#include "EmptyState.h"
#include "Label.h"
#include "Painting.h"
#include "Refresher.h"
#include "RowView.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QShortcut>
#include <QTimer>

#include <chrono>
#include <utility>

namespace quorvane {
namespace {

constexpr int emptyTextWidth = 420;
constexpr int rowHeight = 52;
constexpr int filesWidth = 110;
constexpr int sizeWidth = 88;
constexpr int totalHeight = 44;
constexpr std::chrono::milliseconds maxWaitForCautions{2000};
constexpr int totalLeft = 16;
/// Ends where the sizes of the rows end.
constexpr int totalRight = 56;

QString nothing()
{
    return QStringLiteral("cleanupEmpty");
}

/// The last row of the card, set off by its ground.
class TotalRow : public QWidget
{
public:
    TotalRow() { setFixedHeight(totalHeight); }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        clipToCard(painter, QRectF(rect()).adjusted(0, -radius::surface, 0, 0));
        painter.fillRect(rect(), themeColor(ThemeColor::hover));
    }
};

} // namespace

CleanupView::CleanupView(AppState& state, QWidget* parent)
    : ToolFrame(QStringLiteral("trash"), tr("Staged cleanup"), parent)
    , m_state(state)
    , m_refresher(new Refresher(this, [this] { refresh(); }))
    , m_queueRefresher(new Refresher(this, [this] { refreshQueue(); }))
    , m_cautionRefresher(new Refresher(this, [this] { refreshCautions(); }))
    , m_lookRefresher(new Refresher(this, [this] { lookAgain(); }))
{
    setObjectName(QStringLiteral("cleanupView"));
    addEmpty(nothing(), QStringLiteral("checkmark.circle"), tr("Nothing staged yet"),
             tr("Right-click any folder or file in Analysis and choose “Stage for Cleanup”. Review "
                "the list, then trash it in one move — nothing is ever deleted in the "
                "background."),
             emptyTextWidth)
        ->setObjectName(nothing());
    m_move = addAction(QStringLiteral("trash.fill"), {}, ButtonRole::destructive);
    m_move->setObjectName(QStringLiteral("moveToTrashButton"));
    m_move->setToolTip(QKeySequence(Qt::CTRL | Qt::Key_Delete).toString(QKeySequence::NativeText));
    connect(m_move, &QAbstractButton::clicked, this, [this] { setConfirmTrash(true); });
    setProgressName(tr("Share of the staged items that is in the Trash"));
    setStatusBelowBar();
    makeList();
    for (const auto key : {Qt::Key_Backspace, Qt::Key_Delete}) {
        auto* const shortcut = new QShortcut(QKeySequence(Qt::CTRL | key), this);
        connect(shortcut, &QShortcut::activated, this, [this] { setConfirmTrash(true); });
    }
    m_refresher->watch(m_state.isTrashingStaged, m_state.trashProgress, m_state.trashStatus);
    m_queueRefresher->watch(m_state.stagedNodes, m_state.isTrashingStaged);
    m_lookRefresher->watch(DuplicatesState::of(state).duplicateGroups);
    m_cautionRefresher->watch(m_state.queueCautions);
    refresh();
    refreshQueue();
}

void CleanupView::makeList()
{
    m_rows = new RowModel(this);
    RowMetrics metrics;
    metrics.height = rowHeight;
    metrics.paddingRight = spacing::m;
    metrics.gap = 14;
    metrics.symbolSide = measure::iconTile;
    metrics.clipsBottom = false; // the total goes on below
    auto* const list = new RowView(*m_rows, metrics);
    list->setObjectName(QStringLiteral("stagedList"));
    list->setAccessibleName(tr("Staged cleanup"));
    connect(list, &RowView::actionTriggered, this,
            [this](const QModelIndex& index) { unstageRow(index.row()); });
    connect(list, &RowView::removeRequested, this,
            [this](const QModelIndex& index) { unstageRow(index.row()); });

    auto* const footer = new TotalRow;
    footer->setObjectName(QStringLiteral("totalStagedSpace"));
    auto* const row = new QHBoxLayout(footer);
    row->setContentsMargins(totalLeft, 0, totalRight, 0);
    row->addWidget(new Label(tr("Total staged space"), TextStyle::body, ThemeColor::text2));
    row->addStretch();
    m_total = new Label({}, TextStyle::heading);
    m_total->setObjectName(QStringLiteral("stagedTotal"));
    row->addWidget(m_total);
    addList(*list, footer);
}

Row CleanupView::rowOf(const FileNode& node)
{
    const bool isFolder = node.isDirectory();
    Row row;
    row.symbol = isFolder ? QStringLiteral("folder.fill") : QStringLiteral("doc.fill");
    row.symbolColor = isFolder ? ThemeColor::accentText : ThemeColor::text3;
    row.title = node.displayName();
    row.path = AppState::displayPath(node.path());
    row.cells = {
        RowCell::note(isFolder ? tr("%1 files").arg(node.fileCount()) : QString(), filesWidth),
        RowCell::number(node.formattedBytes(), sizeWidth)};
    row.actions = {RowAction::icon(unstage, QStringLiteral("xmark.circle"), tr("Unstage"))};
    return row;
}

void CleanupView::unstageRow(int row)
{
    const NodePointer node = m_shown[static_cast<std::size_t>(row)];
    m_state.unstage(*node);
}

QString CleanupView::confirmationTitle(std::size_t count)
{
    return (count == 1 ? tr("Move %1 staged item to Trash?") : tr("Move %1 staged items to Trash?"))
        .arg(count);
}

void CleanupView::setConfirmTrash(bool confirm)
{
    const bool canAsk = !m_state.stagedNodes.value().empty() && !m_state.isTrashingStaged.value();
    if (confirm == m_confirmTrash || (confirm && !canAsk)) {
        return;
    }
    m_confirmTrash = confirm;
    if (confirm) {
        openConfirmation();
        return;
    }
    m_asked.clear();
    if (m_dialog) {
        m_dialog->closeDialog();
    }
}

void CleanupView::openConfirmation()
{
    m_asked = m_state.stagedNodes.value();
    m_dialog = new Dialog(window());
    m_dialog->setObjectName(QStringLiteral("confirmTrashDialog"));
    m_dialog->setSymbol(QStringLiteral("trash.fill"), Tint::red);
    m_dialog->setTitle(confirmationTitle(m_state.stagedNodes.value().size()));
    m_dialog->setText(tr("%1 will be recoverable from the Trash.")
                          .arg(ByteFormatter::string(m_state.stagedSpace())));
    m_cautions = new CautionPanel;
    m_dialog->bodyLayout()->addWidget(m_cautions);
    const std::shared_ptr<const QueueCautions>& found = m_state.queueCautions.value();
    if (found->queue == m_asked) {
        m_cautions->setLines(cautionLines(*found)); // until the new look has come
    }
    m_dialog->addButton(tr("Cancel"), ButtonRole::bordered, false);
    m_yes = m_dialog->addButton(tr("Move to Trash"), ButtonRole::destructive, true);
    connect(m_dialog, &Dialog::rejected, this, [this] { setConfirmTrash(false); });
    connect(m_dialog, &Dialog::accepted, this, [this] {
        m_confirmTrash = false;
        if (m_state.stagedNodes.value() == std::exchange(m_asked, {})) {
            m_state.sendStagedToTrash(m_accepted);
        }
    });
    m_accepted = {};
    // Nobody says yes before the question is whole; a disk that hangs holds nobody up for long, and
    // then nothing counts as accepted.
    m_yes->setEnabled(false);
    QTimer::singleShot(maxWaitForCautions, m_yes, [yes = m_yes] { yes->setEnabled(true); });
    m_state.refreshQueueCautions();
    m_dialog->open();
}

void CleanupView::refresh()
{
    setProgress(m_state.isTrashingStaged.value()
                    ? std::optional(Progress{m_state.trashProgress.value(),
                                             m_state.trashStatus.value().value_or(QString())})
                    : std::nullopt);
}

/// What the question says, and so what a yes to it means, is what the last look at this very queue
/// found.
void CleanupView::refreshCautions()
{
    m_rows->refreshRows();
    const std::shared_ptr<const QueueCautions>& found = m_state.queueCautions.value();
    if (m_confirmTrash && m_cautions && found->queue == m_asked) {
        m_cautions->setLines(cautionLines(*found));
        m_accepted = found->losses;
        m_yes->setEnabled(true);
    }
}

void CleanupView::lookAgain()
{
    if (isVisible()) {
        m_state.refreshQueueCautions();
    }
}

void CleanupView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    lookAgain();
}

void CleanupView::refreshQueue()
{
    const std::vector<NodePointer>& staged = m_state.stagedNodes.value();
    const bool isEmpty = staged.empty();
    lookAgain();
    if (staged != m_asked) {
        setConfirmTrash(false);
    }
    setShown(*m_move, !isEmpty);
    m_move->setEnabled(!m_state.isTrashingStaged.value());
    m_move->setText(tr("Move %1 to Trash").arg(staged.size()));
    m_shown = staged;
    RowModel::Keys keys;
    for (const NodePointer& node : m_shown) {
        keys.push_back(reinterpret_cast<quintptr>(node.get()));
    }
    m_rows->setRows(
        static_cast<int>(m_shown.size()),
        [this](int place) {
            const FileNode& node = *m_shown[static_cast<std::size_t>(place)];
            Row row = rowOf(node);
            const std::shared_ptr<const QueueCautions>& found = m_state.queueCautions.value();
            if (const auto badge = found ? cautionBadge(found->of(node)) : std::nullopt) {
                row.badges.push_back(*badge);
            }
            return row;
        },
        std::move(keys));
    m_total->setText(ByteFormatter::string(m_state.stagedSpace()));
    if (!isEmpty) {
        showBody();
    } else if (m_state.isTrashingStaged.value()) {
        showNothing();
    } else {
        showEmpty(nothing());
    }
}

} // namespace quorvane
