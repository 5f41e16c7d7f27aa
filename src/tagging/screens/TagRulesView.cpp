// SPDX-License-Identifier: MIT
#include "TagRulesView.h"

#include "ByteFormatter.h"
#include "Card.h"
#include "EmptyState.h"
#include "Label.h"
#include "NavigationState.h"
#include "NodeContextMenuModifier.h"
#include "QuickLookPreview.h"
#include "Refresher.h"
#include "RowView.h"
#include "ScanState.h"
#include "SettingsState.h"
#include "Symbols.h"
#include "TagDots.h"
#include "TagRuleEditor.h"
#include "TaggingState.h"
#include "Theme.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

#include <cstddef>
#include <utility>

namespace quorvane {
namespace {

enum RuleAction { editAction, deleteAction };

constexpr int cardEdge = 1;
constexpr int ruleHeight = 48;
constexpr int matchHeight = 32;
constexpr int nameWidth = 172;
constexpr int tagWidth = 118;
constexpr int sizeWidth = 92;

class Symbol final : public QWidget
{
public:
    Symbol(QString name, ThemeColor color)
        : m_name(std::move(name))
        , m_color(color)
    {
        setFixedSize(measure::iconRow, measure::iconRow);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintSymbol(painter, m_name, rect(), measure::iconRow, themeColor(m_color));
    }

private:
    QString m_name;
    ThemeColor m_color;
};

RowCell tagCell(const TagRule& rule, bool withDot)
{
    RowCell cell = RowCell::note(rule.tagName, tagWidth);
    cell.alignment = Qt::AlignLeft;
    if (withDot) {
        cell.dot = tagColor(rawValue(rule.tagColor));
        cell.style = TextStyle::body;
        cell.color = ThemeColor::text1;
        cell.accessibleText =
            TagRulesView::tr("Tag %1, %2").arg(rule.tagName, tagColorName(rule.tagColor));
    }
    return cell;
}

Row ruleRow(const TagRule& rule)
{
    Row row;
    row.isOn = rule.isEnabled;
    row.isDimmed = !rule.isEnabled;
    row.title = rule.name;
    row.titleWidth = nameWidth;
    row.titleElide = Qt::ElideRight;
    RowCell summary = RowCell::note(rule.conditionSummary(), 0);
    summary.stretch = 1;
    summary.alignment = Qt::AlignLeft;
    row.cells = {tagCell(rule, true), summary};
    row.actions = {
        RowAction::icon(editAction, QStringLiteral("pencil"), TagRulesView::tr("Edit this rule")),
        RowAction::icon(deleteAction, QStringLiteral("trash"),
                        TagRulesView::tr("Delete this rule"))};
    return row;
}

Row matchRow(const TagMatch& match, const TagRule& rule)
{
    Row row;
    row.dot = tagColor(match.tagColorRaw);
    row.title = match.name;
    row.toolTip = match.url.displayText();
    row.cells = {tagCell(rule, false),
                 RowCell::number(ByteFormatter::string(match.bytes), sizeWidth)};
    return row;
}

QWidget* cardAround(RowView& list)
{
    auto* const card = new Card;
    auto* const column = new QVBoxLayout(card);
    column->setContentsMargins(cardEdge, cardEdge, cardEdge, cardEdge);
    column->addWidget(&list);
    return card;
}

} // namespace

TagRulesView::TagRulesView(AppState& state, QWidget* parent)
    : ToolFrame(QStringLiteral("tag"), tr("Tag Rules"), parent)
    , m_state(state)
    , m_tagging(TaggingState::of(state))
    , m_scan(ScanState::of(state))
    , m_rules(new RowModel(this))
    , m_matches(new RowModel(this))
{
    setObjectName(QStringLiteral("tagRulesView"));
    Button* const add = addAction(QStringLiteral("plus"), tr("New Rule"));
    add->setObjectName(QStringLiteral("newRuleButton"));
    connect(add, &QAbstractButton::clicked, this, [this] { addRule(); });
    // A single ampersand would mark a letter.
    m_run = addAction(QStringLiteral("sparkles"), tr("Scan && Tag Folder"), ButtonRole::prominent);
    m_run->setAccessibleName(tr("Scan & Tag Folder"));
    m_run->setObjectName(QStringLiteral("runTagScanButton"));
    connect(m_run, &QAbstractButton::clicked, this, [this] { m_tagging.runTagScan(); });
    setProgressName(tr("Share of the rules that are applied"));

    body()->setSpacing(spacing::m);
    // The list of rules is as high as they are, up to half of the room; the last share is for a
    // screen where that leaves some.
    constexpr int half = 100;
    body()->addWidget(makeRules(), half);
    body()->addWidget(m_noRules, half);
    body()->addWidget(makeMatches(), half);
    body()->addStretch(1);

    auto* const rules = new Refresher(this, [this] { refreshRules(); });
    rules->watch(m_tagging.tagRules);
    auto* const scan = new Refresher(this, [this] { refreshScan(); });
    scan->watch(m_tagging.isTagScanRunning, m_tagging.tagScanProgress, m_scan.rootNode);
    auto* const matches = new Refresher(this, [this] { refreshMatches(); });
    matches->watch(m_tagging.tagResults, m_tagging.tagScanSummary);
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this, [this] {
        refreshRules();
        m_matches->refreshRows();
    });
    showBody();
    refreshRules();
    refreshScan();
    refreshMatches();
}

QWidget* TagRulesView::makeRules()
{
    m_noRules = new EmptyState(QStringLiteral("tag"), tr("No tag rules yet"),
                               tr("Create rules to flag files inside the current scan.\nExample: "
                                  "“Invoices” → extension is pdf, filename contains invoice."));
    m_noRules->setObjectName(QStringLiteral("noTagRules"));
    m_bringBack =
        m_noRules->addButton(QStringLiteral("arrow.uturn.backward"), {}, ButtonRole::bordered);
    m_bringBack->setObjectName(QStringLiteral("bringBackRulesButton"));
    connect(m_bringBack, &QAbstractButton::clicked, this,
            [this] { m_tagging.bringBackTagRules(); });

    m_rulesList = new RowView(*m_rules, {.height = ruleHeight});
    m_rulesList->setObjectName(QStringLiteral("tagRulesList"));
    m_rulesList->setAccessibleName(tr("Tag rules"));
    m_rulesList->setSelectionMode(QAbstractItemView::NoSelection);
    connect(m_rulesList, &RowView::actionTriggered, this, [this](const QModelIndex& index, int id) {
        TagRule rule = m_tagging.tagRules.value().at(static_cast<std::size_t>(index.row()));
        if (id == RowAction::toggled) {
            rule.isEnabled = !rule.isEnabled;
            m_tagging.updateTagRule(rule);
        } else if (id == editAction) {
            edit(rule);
        } else if (id == deleteAction) {
            m_tagging.deleteTagRule(rule);
        }
    });
    m_rulesCard = cardAround(*m_rulesList);
    return m_rulesCard;
}

QWidget* TagRulesView::makeMatches()
{
    m_outcome = new QWidget;
    auto* const column = new QVBoxLayout(m_outcome);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing::m);
    auto* const line = new QHBoxLayout;
    line->setSpacing(spacing::s);
    line->addWidget(new Symbol(QStringLiteral("checkmark.circle"), ThemeColor::greenText));
    m_summaryText = new Label;
    m_summaryText->setObjectName(QStringLiteral("tagScanSummary"));
    line->addWidget(m_summaryText);
    line->addStretch();
    column->addLayout(line);
    m_matchesHeading = new Label({}, TextStyle::strong);
    m_matchesHeading->setObjectName(QStringLiteral("matchedFilesHeading"));
    column->addWidget(m_matchesHeading);

    m_matchesList = new RowView(*m_matches, {.height = matchHeight});
    m_matchesList->setObjectName(QStringLiteral("matchedFilesList"));
    m_matchesList->setAccessibleName(tr("Matched files"));
    m_matchesList->setActivatesOnDoubleClick(true);
    const auto nodeAt = [this](const QModelIndex& index) {
        return m_tagging.tagResults.value()->nodeAt(static_cast<std::size_t>(index.row()));
    };
    connect(m_matchesList, &RowView::rowActivated, this,
            [this](const QModelIndex& index) { openMatch(index.row()); });
    connect(m_matchesList, &RowView::selectionMoved, this,
            [this, nodeAt](const QModelIndex& index) {
                NavigationState::of(m_state).select(nodeAt(index));
            });
    connect(m_matchesList, &RowView::contextMenuRequested, this,
            [this, nodeAt](const QModelIndex& index, const QPoint& position) {
                NodeContextMenuModifier{m_state, nodeAt(index)}.popUp(*m_matchesList, position);
            });
    auto* const preview = new QShortcut(Qt::Key_Space, m_matchesList);
    preview->setContext(Qt::WidgetShortcut);
    connect(preview, &QShortcut::activated, this, [this, nodeAt] {
        if (m_matchesList->currentIndex().isValid()) {
            QuickLookPreview::shared().toggle(*nodeAt(m_matchesList->currentIndex()));
        }
    });
    m_matchesCard = cardAround(*m_matchesList);
    column->addWidget(m_matchesCard, 1);
    column->addStretch();
    return m_outcome;
}

void TagRulesView::addRule()
{
    TagRule rule;
    rule.id = QUuid::createUuid();
    rule.name = tr("New rule");
    rule.tagName = tr("Important");
    rule.conditions = {TagCondition::make(TagConditionType::filenameContains)};
    edit(rule);
}

void TagRulesView::edit(const TagRule& rule)
{
    if (m_editor) {
        return;
    }
    m_editor = new TagRuleEditor(
        rule, [this](const std::optional<TagRule>& result) { save(result); }, window());
    m_editor->open();
}

void TagRulesView::save(const std::optional<TagRule>& rule)
{
    m_editor = nullptr;
    if (!rule) {
        return;
    }
    const std::vector<TagRule>& rules = m_tagging.tagRules.value();
    const bool isKnown = std::any_of(rules.begin(), rules.end(),
                                     [&](const TagRule& each) { return each.id == rule->id; });
    if (isKnown) {
        m_tagging.updateTagRule(*rule);
    } else {
        m_tagging.addTagRule(*rule);
    }
}

/// Shows the file with its details in the analysis.
void TagRulesView::openMatch(int row)
{
    const NodePointer node = m_tagging.tagResults.value()->nodeAt(static_cast<std::size_t>(row));
    NavigationState& navigation = NavigationState::of(m_state);
    if (node->parent() != nullptr) {
        navigation.focus(NodePointer(node, node->parent()));
    }
    navigation.select(node);
    SettingsState::of(m_state).setInspectorVisible(true);
    navigation.section = AppSection::analysis;
}

void TagRulesView::refreshRules()
{
    const std::vector<TagRule>& rules = m_tagging.tagRules.value();
    std::vector<Row> rows;
    RowModel::Keys keys;
    for (const TagRule& rule : rules) {
        rows.push_back(ruleRow(rule));
        keys.push_back(qHash(rule.id));
    }
    m_rulesCard->setMaximumHeight(static_cast<int>(rows.size()) * ruleHeight + 2 * cardEdge);
    m_rules->setRows(std::move(rows), std::move(keys));
    setShown(*m_rulesCard, !rules.empty());
    setShown(*m_noRules, rules.empty());
    const std::size_t stored = m_tagging.storedTagRuleCount();
    m_bringBack->setText(stored == 1 ? tr("Bring back 1 rule of last time")
                                     : tr("Bring back %1 rules of last time").arg(stored));
    setShown(*m_bringBack, stored > 0);
}

void TagRulesView::refreshScan()
{
    const bool isRunning = m_tagging.isTagScanRunning;
    m_run->setEnabled(m_scan.hasScan() && !isRunning);
    setProgress(isRunning ? std::optional(Progress{m_tagging.tagScanProgress.value(), {}, {}})
                          : std::nullopt);
}

void TagRulesView::refreshMatches()
{
    const std::shared_ptr<const TagMatches>& found = m_tagging.tagResults.value();
    const std::optional<QString>& summary = m_tagging.tagScanSummary.value();
    setShown(*m_outcome, summary.has_value());
    m_summaryText->setText(summary.value_or(QString()));
    m_matchesHeading->setText(tr("Matched files (%1)").arg(found->size()));
    m_matchesHeading->setVisible(!found->isEmpty());
    setShown(*m_matchesCard, !found->isEmpty());
    m_matches->setRows(static_cast<int>(found->size()), [found](int row) {
        const auto place = static_cast<std::size_t>(row);
        return matchRow(found->at(place), found->ruleAt(place));
    });
}

} // namespace quorvane
