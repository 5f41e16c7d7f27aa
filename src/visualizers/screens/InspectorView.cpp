// SPDX-License-Identifier: MIT
#include "InspectorView.h"

#include "Card.h"
#include "EmptyState.h"
#include "GrowthColors.h"
#include "InspectorFacts.h"
#include "InspectorRows.h"
#include "Label.h"
#include "NavigationState.h"
#include "NodeColors.h"
#include "NodeIcon.h"
#include "PathText.h"
#include "QuickLookPreview.h"
#include "Refresher.h"
#include "ScanState.h"
#include "SettingsState.h"
#include "ShortenedName.h"
#include "SnapshotsState.h"
#include "StagingState.h"
#include "TagDots.h"
#include "TaggingState.h"
#include "Tile.h"
#include "Tokens.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDateTime>
#include <QHBoxLayout>
#include <QLocale>
#include <QPainter>
#include <QScrollArea>
#include <QShortcut>
#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>
#include <utility>

namespace quorvane {
namespace {

/// Eight of the node itself, what it has grown by, and its first tags.
constexpr int maxFacts = 13;
constexpr std::size_t maxChildren = 9;
constexpr int maxNameLines = 3;
constexpr int headerGap = 12;
constexpr int nothingTextWidth = 220;

QColor toQColor(const Color& color)
{
    return QColor::fromRgbF(static_cast<float>(color.r), static_cast<float>(color.g),
                            static_cast<float>(color.b), static_cast<float>(color.a));
}

/// "since Aug 3" and "+1.2 GB".
InspectorFact growthFact(const SnapshotGrowth& growth, const FileNode& node)
{
    return {InspectorView::tr("since %1").arg(growth.base().formattedDay(QLocale())),
            signedBytes(growth.changeOf(node).delta)};
}

std::vector<FactRow*> fillCard(Card& card, int count)
{
    auto* const column = new QVBoxLayout(&card);
    column->setContentsMargins(spacing::m, 1, spacing::m, 1);
    column->setSpacing(0);
    std::vector<FactRow*> rows;
    for (int i = 0; i < count; ++i) {
        rows.push_back(new FactRow(i == 0));
        column->addWidget(rows.back());
    }
    return rows;
}

} // namespace

InspectorView::InspectorView(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_scan(ScanState::of(state))
    , m_navigation(NavigationState::of(state))
    , m_staging(StagingState::of(state))
    , m_settings(SettingsState::of(state))
    , m_snapshots(SnapshotsState::of(state))
    , m_tagging(TaggingState::of(state))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("inspectorView"));
    setAccessibleName(tr("Details"));
    setFixedWidth(measure::inspectorWidth);
    m_nothing = makeNothingSelected();
    m_details = makeDetails();
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(1, 0, 0, 0);
    whole->addWidget(m_nothing);
    whole->addWidget(m_details);
    m_refresher->watch(m_navigation.selectedNode, m_scan.rootNode,
                       m_settings.storageInspectorVisible, m_settings.storagePalette);
    // Nothing else changes with each item of a batch.
    auto* const stageRefresher = new Refresher(this, [this] { refreshStage(); });
    stageRefresher->watch(m_staging.stagedNodes, m_staging.trashProgress);
    auto* const creationRefresher = new Refresher(this, [this] { refreshFacts(); });
    creationRefresher->watch(m_navigation.creationDate, m_snapshots.growth, m_tagging.tagResults);
    refresh();
}

QWidget* InspectorView::makeNothingSelected()
{
    auto* const nothing =
        new EmptyState(QStringLiteral("info.circle"), tr("Nothing selected"),
                       tr("Click anything in a visualisation to inspect it here."), this);
    nothing->setObjectName(QStringLiteral("inspectorNothing"));
    nothing->setTextWidth(nothingTextWidth);
    return nothing;
}

QWidget* InspectorView::makeDetails()
{
    auto* const content = new QWidget;
    auto* const column = new QVBoxLayout(content);
    column->setContentsMargins(spacing::l, spacing::panelSection, spacing::l, spacing::l);
    column->setSpacing(spacing::l);
    column->addWidget(makeHeader());
    m_path = new PathText;
    m_path->setObjectName(QStringLiteral("inspectorPath"));
    column->addWidget(m_path);
    column->addWidget(makeActions());
    auto* const facts = new Card;
    facts->setObjectName(QStringLiteral("inspectorFacts"));
    m_facts = fillCard(*facts, maxFacts);
    column->addWidget(facts);

    m_largest = new QWidget;
    m_largest->setObjectName(QStringLiteral("largestInside"));
    auto* const largest = new QVBoxLayout(m_largest);
    largest->setContentsMargins(0, spacing::xs, 0, 0);
    largest->setSpacing(spacing::s);
    largest->addWidget(new Label(tr("Largest inside"), TextStyle::captionStrong));
    auto* const children = new Card;
    m_children = fillCard(*children, static_cast<int>(maxChildren));
    largest->addWidget(children);
    column->addWidget(m_largest);
    column->addStretch();

    auto* const scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(content);
    scroll->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    return scroll;
}

QWidget* InspectorView::makeHeader()
{
    auto* const header = new QWidget;
    auto* const row = new QHBoxLayout(header);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(headerGap);
    m_symbol = new SymbolPlate;
    m_symbol->setObjectName(QStringLiteral("inspectorIcon"));
    row->addWidget(m_symbol, 0, Qt::AlignTop);
    auto* const words = new QVBoxLayout;
    words->setSpacing(0);
    m_name = new ShortenedName(maxNameLines, TextStyle::heading);
    m_name->setObjectName(QStringLiteral("inspectorName"));
    m_kind = new Label({}, TextStyle::caption, ThemeColor::text2);
    m_kind->setObjectName(QStringLiteral("inspectorKind"));
    words->addWidget(m_name);
    words->addWidget(m_kind);
    row->addLayout(words, 1);
    return header;
}

QWidget* InspectorView::makeActions()
{
    auto* const actions = new QWidget;
    auto* const row = new QHBoxLayout(actions);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing::s);
    const auto add = [this, row](const char* symbol, const QString& text, const char* objectName,
                                 auto act) {
        auto* const tile = new ActionTile(QLatin1String(symbol), text);
        tile->setObjectName(QLatin1String(objectName));
        connect(tile, &QAbstractButton::clicked, this, [this, act] {
            if (const NodePointer node = m_navigation.selectedNode.value()) {
                act(node);
            }
        });
        row->addWidget(tile);
        return tile;
    };
    ActionTile* const quickLookTile =
        add("eye", tr("Quick Look"), "inspectorQuickLook",
            [](const NodePointer& node) { QuickLookPreview::shared().toggle(*node); });
    addQuickLookKey(*quickLookTile);
    add("magnifyingglass", tr("Reveal in Finder"), "inspectorReveal",
        [this](const NodePointer& node) { m_navigation.revealInFinder(*node); });
    add("arrow.up.forward.app", tr("Open"), "inspectorOpen",
        [this](const NodePointer& node) { m_navigation.openInApp(*node); });
    m_stage = add("trash", {}, "inspectorStage",
                  [this](const NodePointer& node) { m_staging.toggleStaged(node); });
    return actions;
}

/// Space belongs to the tile wherever the focus is, but for a button, which it presses.
void InspectorView::addQuickLookKey(ActionTile& tile)
{
    tile.setToolTip(tr("Preview with Quick Look (Space)"));
    auto* const key = new QShortcut(QKeySequence(Qt::Key_Space), this);
    connect(key, &QShortcut::activated, &tile, [&tile] {
        auto* const focused = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
        if (focused != nullptr) {
            focused->click();
        } else {
            tile.click();
        }
    });
}

void InspectorView::refresh()
{
    setVisible(m_settings.inspectorVisible());
    if (!m_settings.inspectorVisible()) {
        return;
    }
    const NodePointer node = m_navigation.selectedNode.value();
    m_nothing->setVisible(node == nullptr);
    m_details->setVisible(node != nullptr);
    if (node) {
        showHeader(*node);
        showActions(*node);
        showFacts(*node);
        if (tellsCreation(*node)) {
            m_navigation.readCreationDate(node);
        }
        showLargestInside(*node);
    }
}

void InspectorView::refreshStage()
{
    const NodePointer node = m_navigation.selectedNode.value();
    if (node && m_settings.inspectorVisible()) {
        showActions(*node);
    }
}

void InspectorView::refreshFacts()
{
    const NodePointer node = m_navigation.selectedNode.value();
    if (node && m_settings.inspectorVisible()) {
        showFacts(*node);
    }
}

void InspectorView::showHeader(const FileNode& node)
{
    const bool hasColor = !node.isDirectory() && !node.isSymbolicLink();
    m_symbol->setSymbol(symbolOf(node),
                        hasColor ? toQColor(NodeColors::leafColor(node)) : QColor());
    m_symbol->setIcon(themeIconOf(node));
    m_name->setText(node.displayName());
    m_kind->setText(kindOf(node));
    m_path->setPath(ScanState::displayPath(node.path()));
}

void InspectorView::showActions(const FileNode& node)
{
    const NodePointer root = m_scan.rootNode.value();
    m_stage->setText(node.isStagedForTrash() ? tr("Unstage") : tr("Stage for Cleanup"));
    m_stage->setEnabled(!root || node.id() != root->id());
}

void InspectorView::showFacts(const FileNode& node)
{
    const CreationDate& read = m_navigation.creationDate.value();
    const std::optional<std::int64_t> created =
        tellsCreation(node) && read.node.get() == &node ? read.seconds : std::nullopt;
    std::vector<InspectorFact> facts =
        inspectorFacts(node, created, QDateTime::currentSecsSinceEpoch());
    if (const auto growth = m_snapshots.growth.value()) {
        facts.push_back(growthFact(*growth, node));
    }
    for (const TagDot& tag : tagDots(m_tagging.tagsOf(node))) {
        facts.push_back({tag.name, tr("Tag"), tag.color});
    }
    for (std::size_t i = 0; i < m_facts.size(); ++i) {
        m_facts[i]->setVisible(i < facts.size());
        if (i < facts.size()) {
            m_facts[i]->setFact(facts[i].label, facts[i].value);
            m_facts[i]->setDot(facts[i].dot);
        }
    }
}

void InspectorView::showLargestInside(const FileNode& node)
{
    const auto children = node.children();
    const std::size_t count = std::min(children.size(), maxChildren);
    m_largest->setVisible(count > 0);
    for (std::size_t i = 0; i < m_children.size(); ++i) {
        m_children[i]->setVisible(i < count);
        if (i < count) {
            m_children[i]->setFact(children[i].displayName(), children[i].formattedBytes());
            m_children[i]->setDot(toQColor(NodeColors::leafColor(children[i])));
        }
    }
}

void InspectorView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), themeColor(ThemeColor::side));
    painter.fillRect(QRect(0, 0, 1, height()), themeColor(ThemeColor::hairline));
}

/// The dates are relative to a time that has passed meanwhile.
void InspectorView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous()) {
        m_refresher->schedule();
    }
}

} // namespace quorvane
