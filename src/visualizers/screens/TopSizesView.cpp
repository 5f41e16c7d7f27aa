// SPDX-License-Identifier: MIT
#include "TopSizesView.h"

#include "Card.h"
#include "EmptyState.h"
#include "ListRow.h"
#include "NodeColors.h"
#include "NodeRows.h"
#include "ShapePainting.h"
#include "TopSizes.h"

#include <QPointer>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {
namespace {

constexpr int rowHeight = 45;
constexpr int filesWidth = 118;
constexpr int shareWidth = 68;
constexpr int sizeWidth = 84;

} // namespace

TopSizesView::TopSizesView(AppState& state, QWidget* parent)
    : KeyedScreen(state, parent)
    , m_model(new NodeListModel(
          [this](FileNode& node, int row) { return rowOf(node, row + 1, m_totalBytes, m_mode); },
          this))
    , m_card(new Card(this))
    , m_empty(new EmptyState(QStringLiteral("list.number"),
                             tr("Scan a folder to rank the largest items."), {}, this))
{
    setObjectName(QStringLiteral("topSizesView"));
    RowMetrics metrics;
    metrics.height = rowHeight;
    m_list =
        new NodeRowView(state, *m_model, metrics, NodeRowView::Activation::openFolders, m_card);
    m_list->setObjectName(QStringLiteral("topSizesList"));
    m_list->setAccessibleName(tr("Top sizes"));
    auto* const inside = new QVBoxLayout(m_card);
    inside->setContentsMargins(1, 1, 1, 1);
    inside->addWidget(m_list);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_card);
    column->addWidget(m_empty);
    m_card->hide();
    m_paletteChanged = state.storagePalette.addNotifier([this] { m_model->refreshRows(); });
}

Row TopSizesView::rowOf(const FileNode& node, int rank, std::int64_t totalBytes, SizeMode mode)
{
    const bool isFolder = node.isDirectory();
    const QString files = isFolder ? tr("%1 files").arg(node.fileCount()) : QString();
    const QString share =
        totalBytes > 0 ? ListRow::shareText(weightBasis(node, mode), totalBytes) : QString();
    Row row;
    row.dot = toQColor(NodeColors::leafColor(node));
    row.number = QString::number(rank);
    row.symbol = isFolder ? QStringLiteral("folder") : QStringLiteral("doc");
    row.symbolColor = isFolder ? ThemeColor::accentText : ThemeColor::text2;
    row.title = node.displayName();
    row.path = AppState::displayPath(node.path());
    row.cells = {RowCell::note(files, filesWidth), RowCell::note(share, shareWidth),
                 RowCell::number(basisLabel(node, mode), sizeWidth)};
    row.cells[0].style = TextStyle::body;
    row.cells[0].givesWay = true;
    row.cells[1].style = TextStyle::body;
    QStringList spoken{row.number + QStringLiteral(". ") + row.title,
                       isFolder ? tr("folder") : QString(), row.cells[2].text, share, files};
    spoken.removeAll(QString());
    row.accessibleText = spoken.join(QStringLiteral(", "));
    return row;
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
    m_mode = state().sizeMode();
    state().jobs().release(m_model->setNodes(target, std::move(ranking.items)));
    m_card->show();
    m_empty->hide();
}

void TopSizesView::clear()
{
    m_totalBytes = 0;
    state().jobs().release(m_model->setNodes(nullptr, {}));
    m_card->hide();
    m_empty->show();
}

} // namespace quorvane
