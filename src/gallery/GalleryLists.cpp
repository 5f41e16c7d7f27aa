// SPDX-License-Identifier: MIT
#include "GalleryWindow.h"
#include "ItemViews.h"
#include "NavigationRow.h"
#include "RowDelegate.h"
#include "Tokens.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QPainter>
#include <QStandardItemModel>
#include <QStyleOptionButton>
#include <QVBoxLayout>

namespace quorvane::gallery {
namespace {

constexpr int rowDistance = 6;

/// Rows in the state that belongs to each, whatever the pointer and the focus do.
class RowStates : public QWidget
{
public:
    RowStates()
    {
        setFixedHeight(static_cast<int>(titles.size()) * (measure::rowTwoLines + rowDistance));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        RowMetrics metrics;
        metrics.paddingLeft = rowPadding;
        metrics.paddingRight = rowPadding;
        metrics.symbolSide = rowSymbol;
        metrics.inset = inset;
        metrics.hasSeparators = false;
        for (int i = 0; i < titles.size(); ++i) {
            Row row;
            row.symbol = QStringLiteral("folder.fill");
            row.title = titles[i];
            row.path = QStringLiteral("/Users/mara/Library/Developer/Xcode/DerivedData");
            row.cells = {RowCell::number(QStringLiteral("23.4 GB"), 0)};
            RowLook look;
            look.state.setFlag(QStyle::State_MouseOver, i == 1);
            look.state.setFlag(QStyle::State_Selected, i >= 2);
            look.state.setFlag(QStyle::State_HasFocus, i == 3);
            const QRect area(0, i * (measure::rowTwoLines + rowDistance), width(),
                             measure::rowTwoLines);
            paintRow(painter, area.adjusted(-inset, 0, inset, 0), row, metrics, look);
        }
    }

private:
    static constexpr int rowPadding = 12;
    static constexpr int rowSymbol = 17;
    static constexpr int inset = 1; ///< any: asks for grounds with round corners

    const QStringList titles = {QStringLiteral("Normal"), QStringLiteral("Hover"),
                                QStringLiteral("Selected"), QStringLiteral("Selected and focused")};
};

/// A row that shows the focus while another control has it.
class FocusedRow : public NavigationRow
{
public:
    using NavigationRow::NavigationRow;

protected:
    void initStyleOption(QStyleOptionButton* option) const override
    {
        NavigationRow::initStyleOption(option);
        option->state |= QStyle::State_HasFocus;
    }
};

} // namespace

QWidget* makeRowSection()
{
    const Section section = makeSection(QStringLiteral("List rows · two lines 48, one line 32"));
    section.body->addWidget(new RowStates);
    section.body->addSpacing(10 - rowDistance);
    auto* hovered = new NavigationRow(QStringLiteral("rectangle.on.rectangle.angled"),
                                      QStringLiteral("Duplicates"));
    showHovered(*hovered);
    auto* current = new NavigationRow(QStringLiteral("trash"), QStringLiteral("Cleanup"));
    current->setCurrent(true);
    auto* focused = new FocusedRow(QStringLiteral("gauge"), QStringLiteral("Monitor"));
    focused->setCurrent(true);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(4);
    grid->addWidget(new NavigationRow(QStringLiteral("bolt"), QStringLiteral("Quick Wins")), 0, 0);
    grid->addWidget(hovered, 0, 1);
    grid->addWidget(current, 1, 0);
    grid->addWidget(focused, 1, 1);
    section.body->addLayout(grid);
    return section.card;
}

QWidget* makeTableSection()
{
    const Section section = makeSection(QStringLiteral("Table header, rows, scroll bar"));
    auto* table = new TableView;
    auto* model = new QStandardItemModel(table);
    model->setHorizontalHeaderLabels({QStringLiteral("Name"), QStringLiteral("Size"),
                                      QStringLiteral("Size on disk"), QStringLiteral("Modified")});
    const QStringList names = {QStringLiteral("Movies"),    QStringLiteral("Pictures"),
                               QStringLiteral("Documents"), QStringLiteral("Library"),
                               QStringLiteral("Projects"),  QStringLiteral("Music")};
    const QStringList sizes = {QStringLiteral("91.0 GB"), QStringLiteral("59.4 GB"),
                               QStringLiteral("45.3 GB"), QStringLiteral("31.2 GB"),
                               QStringLiteral("12.9 GB"), QStringLiteral("8.1 GB")};
    for (int row = 0; row < names.size(); ++row) {
        QList<QStandardItem*> items = {new QStandardItem(names[row]), new QStandardItem(sizes[row]),
                                       new QStandardItem(sizes[row]),
                                       new QStandardItem(QStringLiteral("Nov 20, 2025"))};
        items[0]->appendRow(new QStandardItem(QStringLiteral("Inside")));
        for (int column = 1; column < items.size(); ++column) {
            items[column]->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        }
        model->appendRow(items);
    }
    for (int column = 1; column < model->columnCount(); ++column) {
        model->setHeaderData(column, Qt::Horizontal,
                             static_cast<int>(Qt::AlignRight | Qt::AlignVCenter),
                             Qt::TextAlignmentRole);
    }
    table->setAccessibleName(QStringLiteral("Table"));
    table->setModel(model);
    table->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    table->header()->resizeSection(1, 84);
    table->header()->resizeSection(2, 92);
    table->header()->resizeSection(3, 120);
    table->header()->setSortIndicator(1, Qt::DescendingOrder);
    table->header()->setSortIndicatorShown(true);
    table->setCurrentIndex(model->index(1, 0));
    table->setFixedHeight(measure::tableHeader + 3 * measure::row + 3);
    section.body->addWidget(table);
    section.body->addSpacing(8);
    section.body->addWidget(makeNote(QStringLiteral(
        "Header 28, rows 32 · scroll bar 6 wide, radius 3, 3 from the edge; 8 wide under the "
        "pointer")));
    return section.card;
}

} // namespace quorvane::gallery
