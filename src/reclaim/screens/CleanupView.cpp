// SPDX-License-Identifier: MIT
#include "CleanupView.h"

#include "AppState.h"
#include "ByteFormatter.h"
#include "Card.h"
#include "CleanupCautions.h"
#include "Dialog.h"
#include "EmptyState.h"
#include "Label.h"
#include "Painting.h"
#include "Progress.h"
#include "Refresher.h"
#include "ScreenHeader.h"
#include "StagedList.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {
namespace {

constexpr int emptyTextWidth = 420;
constexpr int totalHeight = 44;
constexpr int totalLeft = 16;
/// Ends where the sizes of the rows end.
constexpr int totalRight = 56;

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
    : QWidget(parent)
    , m_state(state)
    , m_refresher(new Refresher(this, [this] { refresh(); }))
    , m_queueRefresher(new Refresher(this, [this] { refreshQueue(); }))
    , m_cautionRefresher(new Refresher(this, [this] { refreshCautions(); }))
{
    setObjectName(QStringLiteral("cleanupView"));
    m_empty = new EmptyState(QStringLiteral("checkmark.circle"), tr("Nothing staged yet"),
                             tr("Right-click any folder or file in Analysis and choose “Stage for "
                                "Cleanup”. Review the list, then trash it in one move — nothing is "
                                "ever deleted in the background."),
                             this);
    m_empty->setObjectName(QStringLiteral("cleanupEmpty"));
    m_empty->setTextWidth(emptyTextWidth);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(makeProgress());
    column->addWidget(m_empty, 1);
    column->addWidget(makeQueue());
    column->addStretch();

    for (const auto key : {Qt::Key_Backspace, Qt::Key_Delete}) {
        auto* const shortcut = new QShortcut(QKeySequence(Qt::CTRL | key), this);
        connect(shortcut, &QShortcut::activated, this, [this] { setConfirmTrash(true); });
    }
    m_refresher->watch(m_state.isTrashingStaged, m_state.trashProgress, m_state.trashStatus);
    m_queueRefresher->watch(m_state.stagedNodes, m_state.isTrashingStaged);
    m_cautionRefresher->watch(m_state.queueCautions);
    refresh();
    refreshQueue();
}

ScreenHeader* CleanupView::makeHeader()
{
    auto* const header = new ScreenHeader(QStringLiteral("trash"), tr("Staged cleanup"), this);
    m_move = new Button(QStringLiteral("trash.fill"), {}, ButtonRole::destructive);
    m_move->setObjectName(QStringLiteral("moveToTrashButton"));
    m_move->setToolTip(QKeySequence(Qt::CTRL | Qt::Key_Delete).toString(QKeySequence::NativeText));
    connect(m_move, &QAbstractButton::clicked, this, [this] { setConfirmTrash(true); });
    header->addAction(m_move);
    return header;
}

QWidget* CleanupView::makeProgress()
{
    m_progress = new QWidget(this);
    m_progress->setObjectName(QStringLiteral("trashProgress"));
    auto* const column = new QVBoxLayout(m_progress);
    column->setContentsMargins(measure::screenMargin, spacing::xs, measure::screenMargin,
                               spacing::l);
    column->setSpacing(spacing::s);
    m_bar = new ProgressBar(tr("Share of the staged items that is in the Trash"));
    m_bar->setObjectName(QStringLiteral("trashProgressBar"));
    m_status = new Label({}, TextStyle::caption, ThemeColor::text2);
    m_status->setObjectName(QStringLiteral("trashStatus"));
    column->addWidget(m_bar);
    column->addWidget(m_status);
    return m_progress;
}

QWidget* CleanupView::makeQueue()
{
    m_queue = new QWidget(this);
    auto* const margins = new QVBoxLayout(m_queue);
    margins->setContentsMargins(measure::screenMargin, 0, measure::screenMargin,
                                measure::screenMargin);
    auto* const card = new Card;
    margins->addWidget(card);
    auto* const column = new QVBoxLayout(card);
    column->setContentsMargins(1, 1, 1, 1);
    column->setSpacing(0);
    m_list = new StagedList;
    connect(m_list, &StagedList::unstageRequested, this,
            [this](const NodePointer& node) { m_state.unstage(*node); });
    column->addWidget(m_list);
    column->addWidget(new Hairline);

    auto* const footer = new TotalRow;
    footer->setObjectName(QStringLiteral("totalStagedSpace"));
    auto* const row = new QHBoxLayout(footer);
    row->setContentsMargins(totalLeft, 0, totalRight, 0);
    row->addWidget(new Label(tr("Total staged space"), TextStyle::body, ThemeColor::text2));
    row->addStretch();
    m_total = new Label({}, TextStyle::heading);
    m_total->setObjectName(QStringLiteral("stagedTotal"));
    row->addWidget(m_total);
    column->addWidget(footer);
    return m_queue;
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
    m_dialog->addButton(tr("Cancel"), ButtonRole::bordered, false);
    m_dialog->addButton(tr("Move to Trash"), ButtonRole::destructive, true);
    connect(m_dialog, &Dialog::rejected, this, [this] { setConfirmTrash(false); });
    connect(m_dialog, &Dialog::accepted, this, [this] {
        m_confirmTrash = false;
        if (m_state.stagedNodes.value() == std::exchange(m_asked, {})) {
            m_state.sendStagedToTrash(m_accepted);
        }
    });
    m_accepted = {};
    m_state.refreshQueueCautions();
    m_dialog->open();
}

void CleanupView::refresh()
{
    m_progress->setVisible(m_state.isTrashingStaged.value());
    m_bar->setFraction(m_state.trashProgress.value());
    m_status->setText(m_state.trashStatus.value().value_or(QString()));
    m_status->setVisible(m_state.trashStatus.value().has_value());
}

/// What the question says, and so what a yes to it means, is what the last look at this very queue
/// found.
void CleanupView::refreshCautions()
{
    const std::shared_ptr<const QueueCautions>& found = m_state.queueCautions.value();
    if (m_confirmTrash && m_cautions && found->queue == m_asked) {
        m_cautions->setLines(cautionLines(*found));
        m_accepted = found->losses;
    }
}

void CleanupView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_state.refreshQueueCautions();
}

void CleanupView::refreshQueue()
{
    const std::vector<NodePointer>& staged = m_state.stagedNodes.value();
    const bool isEmpty = staged.empty();
    if (isVisible()) {
        m_state.refreshQueueCautions();
    }
    if (staged != m_asked) {
        setConfirmTrash(false);
    }
    if (isEmpty) {
        if (isAncestorOf(window()->focusWidget())) {
            // The button and the list are about to go; the focus stays on this screen.
            setFocus(Qt::OtherFocusReason);
        }
    }
    m_move->setVisible(!isEmpty);
    m_move->setEnabled(!m_state.isTrashingStaged.value());
    m_move->setText(tr("Move %1 to Trash").arg(staged.size()));
    m_empty->setVisible(isEmpty && !m_state.isTrashingStaged.value());
    m_queue->setVisible(!isEmpty);
    m_list->setNodes(staged);
    m_total->setText(ByteFormatter::string(m_state.stagedSpace()));
}

} // namespace quorvane
