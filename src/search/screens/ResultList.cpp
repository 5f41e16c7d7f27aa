// SPDX-License-Identifier: MIT
#include "ResultList.h"

#include "RowModel.h"
#include "SearchQueryParser.h"
#include "Text.h"
#include "Tokens.h"

#include <QFile>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quorvane {
namespace {

constexpr int rowHeight = 52;
constexpr int listInset = 8;
constexpr int sizeWidth = 84;
constexpr int kindWidth = 68;

RowMetrics resultMetrics()
{
    RowMetrics metrics;
    metrics.height = rowHeight;
    metrics.inset = listInset;
    metrics.hasSeparators = false;
    metrics.paddingLeft = spacing::m + listInset;
    metrics.paddingRight = spacing::m + listInset;
    metrics.symbolSide = measure::iconRow;
    metrics.symbolTile = measure::button;
    return metrics;
}

QString symbolFor(ResultKind kind)
{
    switch (kind) {
    case ResultKind::folder:
        return QStringLiteral("folder");
    case ResultKind::image:
        return QStringLiteral("photo");
    case ResultKind::video:
        return QStringLiteral("film");
    case ResultKind::audio:
        return QStringLiteral("music.note");
    case ResultKind::document:
        return QStringLiteral("doc.richtext");
    case ResultKind::pdf:
        return QStringLiteral("doc.fill");
    case ResultKind::archive:
        return QStringLiteral("archivebox");
    case ResultKind::developer:
        return QStringLiteral("chevron.left.forwardslash.chevron.right");
    case ResultKind::diskImage:
        return QStringLiteral("opticaldiscdrive");
    case ResultKind::application:
        return QStringLiteral("app.fill");
    case ResultKind::other:
        break;
    }
    return QStringLiteral("doc");
}

} // namespace

ResultList::ResultList(QWidget* parent)
    : ResultList(new RowModel, parent)
{}

ResultList::ResultList(RowModel* model, QWidget* parent)
    : RowView(*model, resultMetrics(), parent)
    , m_model(model)
{
    model->setParent(this);
    model->setDrag([this](const QModelIndexList& rows) -> QMimeData* {
        QList<QUrl> urls;
        for (const QModelIndex& row : rows) {
            const FilePath& path = m_results[static_cast<std::size_t>(row.row())].path;
            urls.push_back(QUrl::fromEncoded(QByteArray::fromStdString(path.fileUrl())));
        }
        auto* const data = new QMimeData;
        data->setUrls(urls);
        return data;
    });
    setAccessibleName(tr("Results"));
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    setDragEnabled(true);
}

void ResultList::setResults(std::vector<SearchResult> results)
{
    m_results = std::move(results);
    m_icons.clear();
    m_selected = -1;
    m_model->setRows(static_cast<int>(m_results.size()),
                     [this](int index) { return rowAt(index); });
}

void ResultList::selectRow(int index)
{
    m_selected = index;
    select(m_model->index(index));
    m_model->refreshRows();
}

void ResultList::centreRow(int index)
{
    scrollTo(m_model->index(index), QAbstractItemView::PositionAtCenter);
}

void ResultList::startDrag(Qt::DropActions actions)
{
    m_isDragging = true;
    RowView::startDrag(actions);
    m_isDragging = false;
    Q_EMIT dragEnded();
}

Row ResultList::rowAt(int index) const
{
    const SearchResult& result = m_results[static_cast<std::size_t>(index)];
    Row row;
    row.symbol = symbolFor(result.kind);
    row.symbolColor = index == m_selected ? ThemeColor::accentText : ThemeColor::text2;
    if (result.kind == ResultKind::application) {
        row.icon = iconOf(result.path);
    }
    row.title = displayText(result.name());
    row.path = result.path.displayText();
    RowCell size = RowCell::number(result.sizeLabel(), sizeWidth);
    size.style = TextStyle::captionMedium;
    size.below = result.dateLabel(SearchQueryParser::currentMs());
    RowCell kind =
        RowCell::note(QLatin1String(rawValue(result.kind).data(),
                                    static_cast<qsizetype>(rawValue(result.kind).size())),
                      kindWidth);
    kind.style = TextStyle::path;
    row.cells = {size, kind};
    return row;
}

QIcon ResultList::iconOf(const FilePath& application) const
{
    const auto [place, isNew] = m_icons.try_emplace(application.bytes());
    if (isNew) {
        const QString name = QFile::decodeName(QByteArray::fromStdString(application.bytes()));
        place->second = QFileIconProvider().icon(QFileInfo(name));
    }
    return place->second;
}

QString indexAgeText(std::optional<std::int64_t> madeMs, std::int64_t nowMs, bool isIndexing)
{
    if (isIndexing) {
        return ResultList::tr("Indexing…");
    }
    if (!madeMs) {
        return {};
    }
    constexpr std::int64_t minuteMs = 60'000;
    constexpr std::int64_t hour = 60;
    constexpr std::int64_t day = 24 * hour;
    const std::int64_t minutes = std::max<std::int64_t>((nowMs - *madeMs) / minuteMs, 0);
    if (minutes < hour) {
        return ResultList::tr("Index %1 min old").arg(minutes);
    }
    return minutes < 2 * day ? ResultList::tr("Index %1 h old").arg(minutes / hour)
                             : ResultList::tr("Index %1 days old").arg(minutes / day);
}

} // namespace quorvane
