// SPDX-License-Identifier: MIT
#include "SidebarView.h"

#include "ByteFormatter.h"
#include "DriveUsageView.h"
#include "FileTypeLegend.h"
#include "Label.h"
#include "NavigationRow.h"
#include "NavigationState.h"
#include "Refresher.h"
#include "ScanState.h"
#include "StagedRow.h"
#include "StagingState.h"
#include "Tile.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

namespace quorvane {
namespace {

constexpr int contentWidth = measure::sideBarWidth - 2 * measure::sideBarPadding;

/// A heading with its rows below.
QVBoxLayout* sectionColumn(QWidget& section, int gap)
{
    auto* const column = new QVBoxLayout(&section);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(gap);
    return column;
}

SectionHeading* sectionHeading(const QString& text)
{
    auto* const heading = new SectionHeading(text);
    heading->setContentsMargins(spacing::s, 0, spacing::s, 0);
    return heading;
}

} // namespace

SidebarView::SidebarView(AppState& state, const SectionScreens& sections, QWidget* parent)
    : Ground(ThemeColor::side, Edge::right, parent)
    , m_scan(ScanState::of(state))
    , m_navigation(NavigationState::of(state))
    , m_staging(StagingState::of(state))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("sidebar"));
    setFixedWidth(measure::sideBarWidth);

    auto* const content = new QWidget;
    auto* const column = new QVBoxLayout(content);
    column->setContentsMargins(measure::sideBarPadding, spacing::l, 0, spacing::l);
    column->setSpacing(spacing::panelSection);
    column->addWidget(makeScanActions());
    column->addWidget(new DriveUsageView(state));
    if (QWidget* const tools = makeTools(sections)) {
        column->addWidget(tools);
    }
    column->addWidget(makeFileTypes());
    column->addStretch();
    // As wide as the contents and their left padding; the scroll bar finds room in the right one.
    content->setFixedWidth(measure::sideBarPadding + contentWidth);

    auto* const scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("sidebarScroll"));
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);
    scroll->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 1, 0);
    whole->addWidget(scroll);

    m_refresher->watch(m_scan.isScanning, m_navigation.section, m_staging.stagedNodes);
    refresh();
}

QWidget* SidebarView::makeScanActions()
{
    struct Action
    {
        const char* objectName;
        QString symbol;
        QString text;
        void (ScanState::*run)();
    };
    const Action actions[] = {
        {"chooseFolderTile", QStringLiteral("folder.badge.plus"), tr("Choose Folder"),
         &ScanState::pickFolder},
        {"scanHomeTile", QStringLiteral("house"), tr("Scan Home"), &ScanState::scanHome},
        {"scanFullMacTile", QStringLiteral("desktopcomputer"), tr("Scan Full Mac"),
         &ScanState::scanFullMac},
    };
    auto* const tiles = new QWidget(this);
    auto* const row = new QHBoxLayout(tiles);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::s);
    for (const Action& action : actions) {
        auto* const tile = new ScanTile(action.symbol, action.text);
        tile->setObjectName(QLatin1String(action.objectName));
        connect(tile, &QAbstractButton::clicked, this,
                [this, run = action.run] { (m_scan.*run)(); });
        row->addWidget(tile, 1);
        m_scanTiles.push_back(tile);
    }
    return tiles;
}

QWidget* SidebarView::makeTools(const SectionScreens& sections)
{
    auto* const tools = new QWidget(this);
    tools->setObjectName(QStringLiteral("sidebarTools"));
    QVBoxLayout* const column = sectionColumn(*tools, 0);
    column->addWidget(sectionHeading(tr("Tools")));
    column->addSpacing(6);
    for (const ToolSection& tool : ToolSection::items) {
        if (!sections.contains(tool.section)) {
            continue;
        }
        auto* const row = new NavigationRow(systemImage(tool.section), title(tool.section));
        const std::string_view key = rawValue(tool.section);
        row->setObjectName(QLatin1String("toolRow.") +
                           QLatin1String(key.data(), static_cast<qsizetype>(key.size())));
        connect(row, &QAbstractButton::clicked, this,
                [this, section = tool.section] { m_navigation.section = section; });
        column->addWidget(row);
        m_toolRows.push_back({tool.section, row});
    }
    if (sections.contains(AppSection::cleanup)) {
        column->addWidget(makeStagedRow());
    }
    if (m_toolRows.empty()) {
        delete tools;
        return nullptr;
    }
    return tools;
}

QWidget* SidebarView::makeStagedRow()
{
    m_stagedPlace = new QWidget(this);
    auto* const place = new QVBoxLayout(m_stagedPlace);
    place->setContentsMargins(0, spacing::s, 0, 0);
    m_staged = new StagedRow;
    m_staged->setObjectName(QStringLiteral("stagedRow"));
    connect(m_staged, &QAbstractButton::clicked, this,
            [this] { m_navigation.section = AppSection::cleanup; });
    place->addWidget(m_staged);
    return m_stagedPlace;
}

QWidget* SidebarView::makeFileTypes()
{
    auto* const fileTypes = new QWidget(this);
    QVBoxLayout* const column = sectionColumn(*fileTypes, 9);
    column->addWidget(sectionHeading(tr("File types")));
    column->addWidget(new FileTypeLegend);
    return fileTypes;
}

void SidebarView::refresh()
{
    for (ScanTile* const tile : m_scanTiles) {
        tile->setEnabled(!m_scan.isScanning.value());
    }
    for (const ToolRow& tool : m_toolRows) {
        tool.row->setCurrent(tool.section == m_navigation.section.value());
    }
    if (m_staged != nullptr) {
        const std::size_t count = m_staging.stagedNodes.value().size();
        m_stagedPlace->setVisible(count > 0);
        m_staged->setDetail(
            tr("%1 items · %2").arg(count).arg(ByteFormatter::string(m_staging.stagedSpace(), 1)));
    }
}

} // namespace quorvane
