// SPDX-License-Identifier: MIT
#include "AgeMapView.h"

#include "AgeBarChart.h"
#include "Card.h"
#include "EmptyState.h"
#include "Label.h"
#include "ListRow.h"
#include "NodeColors.h"
#include "NodeIcon.h"
#include "NodeRows.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPointer>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {
namespace {

constexpr int chartPadding = 20;
constexpr int chartStretch = 3;
constexpr int listStretch = 4;
constexpr int rowHeight = 45;
constexpr int dateWidth = 94;
constexpr int sizeWidth = 88;

/// A symbol in the colour that the theme has for it now.
class HeadingSymbol final : public QWidget
{
public:
    HeadingSymbol(const QString& symbol, QWidget* parent)
        : QWidget(parent)
    {
        setObjectName(symbol);
        setFixedSize(measure::iconRow, measure::iconRow);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintSymbol(painter, objectName(), QRectF(rect()), measure::iconRow,
                    themeColor(ThemeColor::text2));
    }
};

/// A symbol and a heading in one line.
QHBoxLayout* headingRow(const QString& symbol, const QString& text, QWidget* parent)
{
    auto* const row = new QHBoxLayout;
    row->setSpacing(spacing::s);
    row->addWidget(new HeadingSymbol(symbol, parent));
    row->addWidget(new Label(text, TextStyle::strong, ThemeColor::text1, parent));
    return row;
}

} // namespace

AgeMapView::AgeMapView(AppState& state, QWidget* parent)
    : KeyedScreen(state, parent)
    , m_model(new NodeListModel([this](FileNode& node, int) { return rowOf(node, m_mode); }, this))
    , m_content(new QWidget(this))
    , m_noScan(new EmptyState(QStringLiteral("calendar"), QStringLiteral("No scan yet"), {}, this))
{
    setObjectName(QStringLiteral("ageMapView"));
    auto* const rows = new QVBoxLayout(m_content);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(spacing::m);
    rows->addWidget(makeChartCard(), chartStretch);
    rows->addWidget(makeListHeader());
    rows->addWidget(makeListCard(), listStretch);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_content);
    column->addWidget(m_noScan);
    m_content->hide();
}

QWidget* AgeMapView::makeChartCard()
{
    auto* const card = new Card(m_content);
    m_chart = new AgeBarChart(card);
    m_noDates = new Label(QStringLiteral("No dated files in this folder."), TextStyle::body,
                          ThemeColor::text2, card);
    m_noDates->setAlignment(Qt::AlignCenter);
    auto* const column = new QVBoxLayout(card);
    column->setContentsMargins(chartPadding, spacing::l, chartPadding, chartPadding);
    column->setSpacing(spacing::l);
    QHBoxLayout* const heading =
        headingRow(QStringLiteral("calendar"), QStringLiteral("Bytes by last modified"), card);
    heading->addStretch();
    column->addLayout(heading);
    column->addWidget(m_chart, 1);
    column->addWidget(m_noDates, 1);
    m_noDates->hide();
    return card;
}

QWidget* AgeMapView::makeListHeader()
{
    auto* const header = new QWidget(m_content);
    QHBoxLayout* const row =
        headingRow(QStringLiteral("moon.stars.fill"), QStringLiteral("Big & untouched"), header);
    row->setContentsMargins(spacing::xs, spacing::xs, 0, 0);
    row->addSpacing(spacing::xs);
    row->addWidget(
        new ElidedLabel(QStringLiteral("Big & Untouched: files over 50 MB untouched for a year+"),
                        Qt::ElideRight, TextStyle::caption, ThemeColor::text2, header));
    row->addStretch();
    header->setLayout(row);
    return header;
}

QWidget* AgeMapView::makeListCard()
{
    auto* const card = new Card(m_content);
    RowMetrics metrics;
    metrics.height = rowHeight;
    metrics.gap = spacing::l;
    m_list = new NodeRowView(state(), *m_model, metrics, NodeRowView::Activation::select, card);
    m_list->setObjectName(QStringLiteral("untouchedList"));
    m_list->setAccessibleName(tr("Big & untouched"));
    m_nothingOld = new Label(QStringLiteral("Nothing big and untouched here. Clean drive!"),
                             TextStyle::body, ThemeColor::text2, card);
    m_nothingOld->setAlignment(Qt::AlignCenter);
    auto* const column = new QVBoxLayout(card);
    column->setContentsMargins(1, 1, 1, 1);
    column->addWidget(m_list);
    column->addWidget(m_nothingOld);
    m_nothingOld->hide();
    return card;
}

Row AgeMapView::rowOf(const FileNode& node, SizeMode mode)
{
    Row row;
    row.icon = themeIconOf(node);
    row.symbol = ListRow::iconName(node);
    row.symbolColor = ThemeColor::text2;
    row.title = node.displayName();
    row.path = AppState::displayPath(node.path());
    row.cells = {RowCell::note(ListRow::dateText(node.dateModified()), dateWidth),
                 RowCell::number(basisLabel(node, mode), sizeWidth)};
    row.cells[0].style = TextStyle::body;
    row.accessibleText =
        QStringList{row.title, row.path, row.cells[1].text, row.cells[0].text}.join(
            QStringLiteral(", "));
    return row;
}

QString AgeMapView::key() const
{
    const auto raw = rawValue(state().sizeMode());
    return QString::number(target()->id()) + QLatin1Char('-') + hiddenKey() + QLatin1Char('-') +
           QString::fromLatin1(raw.data(), static_cast<qsizetype>(raw.size()));
}

JobHandle AgeMapView::startComputing(const NodePointer& target)
{
    m_noScan->hide();
    return state().jobs().start(
        JobPriority::userInitiated,
        [target, mode = state().sizeMode(), hidden = state().disabledBloat()](const Job& job) {
            return computeAgeMap(*target, mode, hidden, &job.cancelFlag());
        },
        [view = QPointer<AgeMapView>(this), target](AgeMap map) {
            if (view) {
                view->publish(target, std::move(map));
            }
        });
}

void AgeMapView::publish(const NodePointer& target, AgeMap map)
{
    finish();
    m_mode = state().sizeMode();
    m_chart->setVisible(!map.buckets.empty());
    m_noDates->setVisible(map.buckets.empty());
    m_list->setVisible(!map.untouched.empty());
    m_nothingOld->setVisible(map.untouched.empty());
    m_chart->setBuckets(std::move(map.buckets));
    state().jobs().release(m_model->setNodes(target, std::move(map.untouched)));
    m_noScan->hide();
    m_content->show();
}

void AgeMapView::clear()
{
    m_chart->setBuckets({});
    state().jobs().release(m_model->setNodes(nullptr, {}));
    m_content->hide();
    m_noScan->show();
}

} // namespace quorvane
