// SPDX-License-Identifier: MIT
#include "OverlayFilters.h"

#include "Button.h"
#include "Card.h"
#include "Chip.h"
#include "FlowLayout.h"
#include "Label.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace quorvane {
namespace {

constexpr int barHeight = 46;
constexpr int sides = 18;
constexpr int chipGap = 6;
constexpr int cardGap = 10;

class SymbolView : public QWidget
{
public:
    SymbolView(const QString& symbol, QWidget* parent)
        : QWidget(parent)
        , m_symbol(symbol)
    {
        setFixedSize(measure::iconButton, measure::iconButton);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintSymbol(painter, m_symbol, rect(), measure::iconButtonSmall,
                    themeColor(ThemeColor::text2));
    }

private:
    QString m_symbol;
};

/// A chip that leaves the keyboard to the field, where the same word can be typed.
Chip* makeChip(const QString& text, Chip::Kind kind, Tint tint, QWidget* parent)
{
    auto* const chip = new Chip(text, kind, tint, parent);
    chip->setFocusPolicy(Qt::NoFocus);
    return chip;
}

} // namespace

FilterBar::FilterBar(QWidget* parent)
    : QWidget(parent)
    , m_chips(new QHBoxLayout)
    , m_status(new Label({}, TextStyle::caption, ThemeColor::text3, this))
    , m_open(new Button(tr("Open in Quorvane →"), ButtonRole::plain, ControlSize::small, this))
{
    m_status->setObjectName(QStringLiteral("overlayStatus"));
    m_open->setObjectName(QStringLiteral("overlayOpenInApp"));
    m_open->setFocusPolicy(Qt::NoFocus);
    // The click ends with the overlay, and the button in it, closed.
    connect(m_open, &QAbstractButton::clicked, this, &FilterBar::openInAppRequested,
            Qt::QueuedConnection);
    setFixedHeight(barHeight + 1);
    auto* const line = new QHBoxLayout(this);
    line->setContentsMargins(sides, 0, spacing::xs, 1);
    line->setSpacing(spacing::s);
    m_chips->setSpacing(spacing::s);
    line->addLayout(m_chips);
    line->addWidget(m_status);
    line->addStretch();
    line->addWidget(m_open);
    auto* const edge = new Hairline(Qt::Horizontal, this);
    edge->setGeometry(0, barHeight, 2000, 1);
}

void FilterBar::addChip(const QString& text, Tint tint, std::optional<SearchTokenType> category)
{
    Chip* const chip =
        makeChip(text, category ? Chip::Kind::removable : Chip::Kind::fixed, tint, this);
    if (category) {
        const std::string_view name = rawValue(*category);
        chip->setObjectName(QLatin1String("chip.") %
                            QLatin1String(name.data(), static_cast<qsizetype>(name.size())));
        chip->setToolTip(tr("Remove this filter"));
        connect(chip, &QAbstractButton::clicked, this,
                [this, category] { Q_EMIT removed(*category); });
    } else {
        chip->setObjectName(QStringLiteral("chip.scope"));
    }
    m_chips->addWidget(chip);
    chip->show();
}

void FilterBar::setContent(const ParsedSearch& query, const QString& scopeLabel,
                           const QString& status, bool canOpenInApp)
{
    while (QLayoutItem* const item = m_chips->takeAt(0)) {
        // The chip may be the one that was clicked.
        item->widget()->hide();
        item->widget()->setObjectName({});
        item->widget()->deleteLater();
        delete item;
    }
    if (query.kind) {
        addChip(chipText(*query.kind), Tint::purple, SearchTokenType::kind);
    }
    if (query.locationLabel) {
        addChip(*query.locationLabel, Tint::green, SearchTokenType::location);
    } else {
        addChip(tr("in %1").arg(scopeLabel), Tint::neutral, std::nullopt);
    }
    if (query.size) {
        addChip(query.size->label, Tint::orange, SearchTokenType::size);
    }
    if (query.date) {
        addChip(query.date->label, Tint::cyan, SearchTokenType::date);
    }
    m_status->setText(status);
    m_open->setVisible(canOpenInApp);
}

bool holdsFilter(const ParsedSearch& query, const QString& word)
{
    const QString lower = word.toLower();
    if (const auto kind = SearchQueryParser::kindNamed(lower)) {
        return query.kind == kind;
    }
    if (const auto label = SearchQueryParser::locationLabelNamed(lower)) {
        return query.locationLabel == label;
    }
    if (const auto label = SearchQueryParser::dateLabelNamed(lower)) {
        return query.date && query.date->label == *label;
    }
    return query.size && query.size->label.toLower() == lower;
}

FilterHelp::FilterHelp(QWidget* parent)
    : QWidget(parent)
{
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(sides, spacing::m, sides, spacing::m);
    column->setSpacing(0);
    auto* const heading = new QHBoxLayout;
    heading->setContentsMargins(spacing::xs, 0, 0, 0);
    heading->setSpacing(cardGap);
    heading->addWidget(new Label(tr("SMART FILTERS"), TextStyle::section, ThemeColor::text1, this));
    heading->addWidget(new Label(tr("Tap to add — combine freely, in any order"), TextStyle::path,
                                 ThemeColor::text3, this),
                       1);
    column->addLayout(heading);
    column->addSpacing(cardGap);
    auto* const cards = new QGridLayout;
    cards->setSpacing(cardGap);
    cards->addWidget(makeCard(tr("Type"), QStringLiteral("doc.on.doc"),
                              QStringLiteral("folder image video pdf app code archive music")),
                     0, 0);
    cards->addWidget(makeCard(tr("Where"), QStringLiteral("folder"),
                              QStringLiteral("desktop downloads documents home pictures")),
                     0, 1);
    cards->addWidget(makeCard(tr("Size"), QStringLiteral("arrow.up.to.line.compact"),
                              QStringLiteral(">100mb <1gb >500mb >5gb")),
                     1, 0);
    cards->addWidget(makeCard(tr("When"), QStringLiteral("calendar"),
                              QStringLiteral("today yesterday week month")),
                     1, 1);
    cards->setColumnStretch(0, 1);
    cards->setColumnStretch(1, 1);
    column->addLayout(cards);
    column->addSpacing(spacing::l);
    column->addWidget(makeExamples());
}

QWidget* FilterHelp::makeCard(const QString& title, const QString& symbol, const QString& words)
{
    auto* const card = new Card(this);
    auto* const inside = new QVBoxLayout(card);
    inside->setContentsMargins(spacing::m, spacing::m, spacing::m, spacing::m);
    inside->setSpacing(spacing::s);
    auto* const heading = new QHBoxLayout;
    heading->setSpacing(spacing::s);
    heading->addWidget(new SymbolView(symbol, card));
    heading->addWidget(new Label(title, TextStyle::captionMedium, ThemeColor::text1, card), 1);
    inside->addLayout(heading);
    auto* const flow = new FlowLayout(chipGap);
    const QStringList all = words.split(QLatin1Char(' '));
    for (const QString& word : all) {
        Chip* const chip = makeChip(word, Chip::Kind::choice, Tint::neutral, card);
        chip->setObjectName(QLatin1String("filter.") % word);
        connect(chip, &QAbstractButton::clicked, this,
                [this, word, chip] { Q_EMIT wordTapped(word, chip->isActive()); });
        flow->addWidget(chip);
        m_chips[word] = chip;
    }
    inside->addLayout(flow);
    inside->addStretch();
    return card;
}

QWidget* FilterHelp::makeExamples()
{
    auto* const line = new QWidget(this);
    auto* const row = new QHBoxLayout(line);
    row->setContentsMargins(spacing::xs, 0, 0, 0);
    row->setSpacing(spacing::s);
    row->addWidget(new SymbolView(QStringLiteral("sparkles"), line));
    row->addWidget(new Label(tr("Try:"), TextStyle::caption, ThemeColor::text2, line));
    for (const char* const text :
         {"video downloads >100mb", "pdf desktop", "screenshots this month"}) {
        const QString example = QLatin1String(text);
        Chip* const chip = makeChip(example, Chip::Kind::fixed, Tint::accent, line);
        chip->setObjectName(QLatin1String("example.") % example);
        connect(chip, &QAbstractButton::clicked, this,
                [this, example] { Q_EMIT exampleTapped(example); });
        row->addWidget(chip);
    }
    row->addStretch();
    return line;
}

void FilterHelp::setQuery(const ParsedSearch& query)
{
    for (const auto& [word, chip] : m_chips) {
        const bool isActive = holdsFilter(query, word);
        chip->setActive(isActive);
        chip->setToolTip(isActive ? tr("Applied — click to remove") : QString());
    }
}

} // namespace quorvane
