// SPDX-License-Identifier: MIT
#include "OutlineScreen.h"

#include "Card.h"
#include "ListRow.h"
#include "Tokens.h"

#include <QVBoxLayout>

#include <utility>

namespace quorvane {
namespace {

constexpr int sizeWidth = 108;
constexpr int dateWidth = 198;

RowCell cell(const QString& text, int width)
{
    RowCell made = RowCell::note(text, width);
    made.style = TextStyle::body;
    return made;
}

RowMetrics outlineMetrics()
{
    RowMetrics metrics;
    metrics.height = measure::row;
    metrics.paddingLeft = spacing::m;
    metrics.paddingRight = spacing::m;
    metrics.hasLevels = true;
    metrics.chevronSide = measure::iconChevron;
    metrics.chevronGap = spacing::s;
    metrics.levelIndent = measure::iconChevron + spacing::s;
    metrics.gap = spacing::s;
    metrics.hasSeparators = false;
    return metrics;
}

/// What the rows of both screens share.
Row baseRow(const FileNode& node)
{
    Row row;
    row.title = node.displayName();
    row.titleStyle = TextStyle::body;
    row.toolTip = AppState::displayPath(node.path());
    return row;
}

Row titlesOf(std::vector<RowCell> cells)
{
    Row row;
    row.title = OutlineScreen::tr("Name");
    row.cells = std::move(cells);
    return row;
}

} // namespace

OutlineScreen::OutlineScreen(AppState& state, OutlineModel::Describe describe, const Row& titles,
                             NodeRowView::Activation activation, QWidget* parent)
    : KeyedScreen(state, parent)
    , m_model(new OutlineModel(std::move(describe), this))
{
    auto* const card = new Card(this);
    m_table = new NodeRowView(state, *m_model, outlineMetrics(), activation, card);
    m_table->setTitles(titles);
    m_table->setCellsResizable(true);
    auto* const inside = new QVBoxLayout(card);
    inside->setContentsMargins(1, 1, 1, 1);
    inside->addWidget(m_table);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(card);
    m_table->setPlaceholder(tr("No scan yet"));
}

QString OutlineScreen::key() const
{
    return QString::number(target()->id()) + QLatin1Char('-') + hiddenKey();
}

void OutlineScreen::setOutline(VisibleScanTree outline)
{
    m_table->setPlaceholder(outline.node() ? tr("Nothing to display") : tr("No scan yet"));
    // It may be the last that held a tree of millions.
    state().jobs().release(m_model->setOutline(std::move(outline)));
}

JobHandle OutlineScreen::startComputing(const NodePointer& target)
{
    // Rows are made when they are shown: there is nothing to compute.
    setOutline(VisibleScanTree(target, state().disabledBloat()));
    return nullptr;
}

void OutlineScreen::clear()
{
    setOutline({});
}

ListView::ListView(AppState& state, QWidget* parent)
    : OutlineScreen(state, rowOf,
                    titlesOf({cell(tr("Size"), sizeWidth), cell(tr("Size on disk"), sizeWidth),
                              cell(tr("Modified"), dateWidth)}),
                    NodeRowView::Activation::openFolders, parent)
{
    setObjectName(QStringLiteral("listView"));
    table().setObjectName(QStringLiteral("listTable"));
    table().setAccessibleName(tr("List"));
}

Row ListView::rowOf(const FileNode& node)
{
    Row row = baseRow(node);
    row.symbol = ListRow::iconName(node);
    row.symbolColor = node.isDirectory() ? ThemeColor::accentText : ThemeColor::text2;
    row.cells = {cell(node.formattedBytes(), sizeWidth),
                 cell(node.formattedBytesOnDisk(), sizeWidth),
                 cell(ListRow::dateAndTimeText(node.dateModified()), dateWidth)};
    row.accessibleText = spokenNode(node, node.formattedBytes());
    for (const QString& more : {tr("%1 on disk").arg(node.formattedBytesOnDisk()),
                                ListRow::dateAndTimeText(node.dateModified())}) {
        row.accessibleText += more.isEmpty() ? QString() : QString(QStringLiteral(", ") % more);
    }
    return row;
}

FoldersView::FoldersView(AppState& state, QWidget* parent)
    : OutlineScreen(state, rowOf,
                    titlesOf({cell(tr("Files"), sizeWidth), cell(tr("Size"), sizeWidth)}),
                    NodeRowView::Activation::select, parent)
{
    setObjectName(QStringLiteral("foldersView"));
    table().setObjectName(QStringLiteral("foldersTable"));
    table().setAccessibleName(tr("Folders"));
}

Row FoldersView::rowOf(const FileNode& node)
{
    Row row = baseRow(node);
    const bool isStaged = node.isStagedForTrash();
    row.symbol = isStaged ? QStringLiteral("trash.fill") : QStringLiteral("folder");
    row.symbolColor = isStaged ? ThemeColor::redText : ThemeColor::accentText;
    row.cells = {
        cell(node.isDirectory() ? QString::number(node.fileCount()) : QString(), sizeWidth),
        cell(node.formattedBytes(), sizeWidth)};
    row.accessibleText = spokenNode(node, node.formattedBytes());
    return row;
}

} // namespace quorvane
