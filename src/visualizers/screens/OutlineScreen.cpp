// SPDX-License-Identifier: MIT
#include "OutlineScreen.h"

#include "Card.h"
#include "OutlineTable.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

constexpr int sizeColumnWidth = 120;
constexpr int dateColumnWidth = 210;
constexpr int leastColumnWidth = 60;
constexpr int leastNameWidth = 160;

} // namespace

OutlineScreen::OutlineScreen(AppState& state, std::vector<OutlineModel::Field> fields,
                             QWidget* parent)
    : KeyedScreen(state, parent)
    , m_model(new OutlineModel(std::move(fields), this))
{
    auto* const card = new Card(this);
    m_table = new OutlineTable(state, *m_model, card);
    QHeaderView* const header = m_table->header();
    header->setMinimumSectionSize(leastColumnWidth);
    header->setSectionResizeMode(QHeaderView::Interactive);
    header->setStretchLastSection(false);
    for (int column = 1; column < m_model->columnCount(); ++column) {
        header->resizeSection(column, sizeColumnWidth);
    }
    connect(header, &QHeaderView::sectionResized, this, [this](int column) {
        if (!m_isFitting) {
            m_isNameWidthChosen = m_isNameWidthChosen || column == 0;
            fitNameColumn();
        }
    });
    m_table->viewport()->installEventFilter(this);
    auto* const inside = new QVBoxLayout(card);
    inside->setContentsMargins(1, 1, 1, 1);
    inside->addWidget(m_table);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(card);
}

bool OutlineScreen::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_table->viewport() && event->type() == QEvent::Resize) {
        fitNameColumn();
    }
    return KeyedScreen::eventFilter(watched, event);
}

/// Until the user gives the names a width, they have what the other columns leave.
void OutlineScreen::fitNameColumn()
{
    if (m_isNameWidthChosen) {
        return;
    }
    const QScopedValueRollback fitting(m_isFitting, true);
    QHeaderView* const header = m_table->header();
    const int others = header->length() - header->sectionSize(0);
    header->resizeSection(0, std::max(m_table->viewport()->width() - others, leastNameWidth));
}

QString OutlineScreen::key() const
{
    return QString::number(target()->id()) + QLatin1Char('-') + hiddenKey();
}

JobHandle OutlineScreen::startComputing(const NodePointer& target)
{
    // Rows are made when they are shown: there is nothing to compute.
    m_model->setOutline(VisibleScanTree(target, state().disabledBloat()));
    m_table->showSelection();
    return nullptr;
}

void OutlineScreen::clear()
{
    m_model->setOutline({});
}

ListView::ListView(AppState& state, QWidget* parent)
    : OutlineScreen(state,
                    {OutlineModel::Field::name, OutlineModel::Field::size,
                     OutlineModel::Field::sizeOnDisk, OutlineModel::Field::modified},
                    parent)
{
    setObjectName(QStringLiteral("listView"));
    table().setObjectName(QStringLiteral("listTable"));
    table().setAccessibleName(QStringLiteral("List"));
    table().setExpandsOnDoubleClick(false);
    table().header()->resizeSection(3, dateColumnWidth);
    connect(&table(), &OutlineTable::rowActivated, this, [this](const NodePointer& node) {
        this->state().select(node);
        if (node->isDirectory()) {
            this->state().focus(node);
        }
    });
}

FoldersView::FoldersView(AppState& state, QWidget* parent)
    : OutlineScreen(
          state,
          {OutlineModel::Field::folderName, OutlineModel::Field::files, OutlineModel::Field::size},
          parent)
{
    setObjectName(QStringLiteral("foldersView"));
    table().setObjectName(QStringLiteral("foldersTable"));
    table().setAccessibleName(QStringLiteral("Folders"));
    connect(&table(), &OutlineTable::rowActivated, this,
            [this](const NodePointer& node) { this->state().select(node); });
}

} // namespace quorvane
