// SPDX-License-Identifier: MIT
#include "TopSizesView.h"

#include "Card.h"
#include "EmptyState.h"
#include "NodeListModel.h"
#include "NodeListView.h"
#include "TopSizes.h"
#include "TopSizesDelegate.h"

#include <QPointer>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {

TopSizesView::TopSizesView(AppState& state, QWidget* parent)
    : KeyedScreen(state, parent)
    , m_model(new NodeListModel(this))
    , m_card(new Card(this))
    , m_empty(new EmptyState(QStringLiteral("list.number"),
                             QStringLiteral("Scan a folder to rank the largest items."), {}, this))
{
    setObjectName(QStringLiteral("topSizesView"));
    m_list = new NodeListView(state, *m_model, m_card);
    m_list->setObjectName(QStringLiteral("topSizesList"));
    m_list->setAccessibleName(QStringLiteral("Top sizes"));
    m_delegate = new TopSizesDelegate(*m_model, m_list);
    m_list->setItemDelegate(m_delegate);
    m_model->setDescribe([delegate = m_delegate](const FileNode& node, int row) {
        return delegate->describe(node, row + 1);
    });
    connect(m_list, &NodeListView::rowActivated, this, [this](const NodePointer& node) {
        this->state().select(node);
        if (node->isDirectory()) {
            this->state().focus(node);
        }
    });
    auto* const inside = new QVBoxLayout(m_card);
    inside->setContentsMargins(1, 1, 1, 1);
    inside->addWidget(m_list);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_card);
    column->addWidget(m_empty);
    m_card->hide();
    m_paletteChanged = state.storagePalette.addNotifier([this] { m_list->viewport()->update(); });
}

QString TopSizesView::key() const
{
    const auto raw = rawValue(state().sizeMode());
    return QString::number(target()->id()) + QLatin1Char('-') +
           QString::fromLatin1(raw.data(), static_cast<qsizetype>(raw.size())) + QLatin1Char('-') +
           hiddenKey();
}

JobHandle TopSizesView::startComputing(const NodePointer& target)
{
    m_empty->hide();
    return state().jobs().start(
        JobPriority::userInitiated,
        [target, mode = state().sizeMode(), hidden = state().disabledBloat()](const Job& job) {
            return Ranking{TopSizes::flattenAndRank(*target, mode, hidden, TopSizes::shownItems,
                                                    &job.cancelFlag()),
                           weightBasis(*target, mode)};
        },
        [view = QPointer<TopSizesView>(this), target](Ranking ranking) {
            if (view) {
                view->publish(target, std::move(ranking));
            }
        });
}

void TopSizesView::publish(const NodePointer& target, Ranking ranking)
{
    finish();
    m_totalBytes = ranking.totalBytes;
    m_delegate->setTotal(m_totalBytes, state().sizeMode());
    m_model->setNodes(target, std::move(ranking.items));
    m_card->show();
    m_empty->hide();
}

void TopSizesView::clear()
{
    m_totalBytes = 0;
    m_model->setNodes(nullptr, {});
    m_card->hide();
    m_empty->show();
}

} // namespace quorvane
