// SPDX-License-Identifier: MIT
#include "Button.h"
#include "Chip.h"
#include "FlowLayout.h"
#include "GalleryWindow.h"
#include "Label.h"
#include "SegmentedPicker.h"
#include "Switch.h"
#include "TextField.h"
#include "Tile.h"
#include "Tokens.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace quorvane::gallery {
namespace {

enum class State { normal, hovered, pressed, focused, disabled };

constexpr State allStates[] = {State::normal, State::hovered, State::pressed, State::focused,
                               State::disabled};

void show(QAbstractButton& button, State state)
{
    switch (state) {
    case State::normal:
        break;
    case State::hovered:
        showHovered(button);
        break;
    case State::pressed:
        button.setDown(true);
        break;
    case State::focused:
        showFocused(button);
        break;
    case State::disabled:
        button.setEnabled(false);
        break;
    }
}

struct RoleSample
{
    QString title;
    ButtonRole role;
    QString symbol;
    QString text;
};

QList<RoleSample> roleSamples()
{
    const QString refresh = QStringLiteral("arrow.clockwise");
    return {
        {QStringLiteral("Prominent"), ButtonRole::prominent, refresh, QStringLiteral("Refresh")},
        {QStringLiteral("Bordered"), ButtonRole::bordered, refresh, QStringLiteral("Rescan")},
        {QStringLiteral("Plain"), ButtonRole::plain, {}, QStringLiteral("Clear")},
        {QStringLiteral("Destructive"), ButtonRole::destructive, QStringLiteral("trash.fill"),
         QStringLiteral("Trash 4")},
        {QStringLiteral("Kept"), ButtonRole::kept, QStringLiteral("checkmark.seal.fill"),
         QStringLiteral("Kept")},
    };
}

QLayout* makeSizesRow()
{
    auto* caption = new Label(QStringLiteral("Sizes"), TextStyle::caption, ThemeColor::text2);
    caption->setFixedWidth(72);
    auto* small = new Button(QStringLiteral("trash.slash"), QStringLiteral("Unstage"),
                             ButtonRole::bordered, ControlSize::small);
    auto* regular = new Button(QStringLiteral("Regular"));
    auto* large = new Button(QStringLiteral("house"), QStringLiteral("Scan Home Folder"),
                             ButtonRole::prominent, ControlSize::large);
    auto* plainTool = new ToolButton(QStringLiteral("arrow.clockwise"), QStringLiteral("Rescan"));
    auto* hovered = new ToolButton(QStringLiteral("arrow.clockwise"), QStringLiteral("Rescan"));
    showHovered(*hovered);
    auto* checked = new ToolButton(QStringLiteral("sidebar.right"), QStringLiteral("Details"));
    checked->setCheckable(true);
    checked->setChecked(true);
    auto* focused = new ToolButton(QStringLiteral("gearshape"), QStringLiteral("Settings"));
    showFocused(*focused);
    auto* disabled = new ToolButton(QStringLiteral("level.up"), QStringLiteral("Zoom Out"));
    disabled->setEnabled(false);
    for (ToolButton* button : {checked, focused, disabled}) {
        button->setSymbolSide(measure::iconButtonLarge);
    }
    auto* gap = new QWidget;
    gap->setFixedWidth(12);
    return makeRow(
        {caption, small, regular, large, gap, plainTool, hovered, checked, focused, disabled}, 12);
}

SegmentedPicker* makePicker(const QString& name, const QStringList& texts, int current)
{
    auto* picker = new SegmentedPicker(name);
    for (const QString& text : texts) {
        picker->addSegment(text);
    }
    picker->setCurrentIndex(current);
    picker->setFixedWidth(210);
    return picker;
}

QCheckBox* makeCheckBox(Qt::CheckState checked, State state)
{
    auto* box = new QCheckBox;
    box->setAccessibleName(QStringLiteral("Check box"));
    box->setTristate(checked == Qt::PartiallyChecked);
    box->setCheckState(checked);
    box->setFixedSize(measure::checkBox, measure::checkBox);
    show(*box, state);
    return box;
}

Switch* makeSwitch(bool on, State state)
{
    auto* toggle = new Switch(QStringLiteral("Switch"));
    toggle->setChecked(on);
    show(*toggle, state);
    return toggle;
}

TextField* makeField(const QString& placeholder, const QString& text)
{
    auto* field = new TextField(placeholder);
    field->setSymbol(QStringLiteral("magnifyingglass"));
    field->setText(text);
    field->setFixedWidth(150);
    return field;
}

QBoxLayout* makeNotedRow(const QString& note, const QList<QWidget*>& widgets)
{
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    column->addWidget(makeNote(note));
    column->addLayout(makeRow(widgets, 12));
    column->addStretch();
    return column;
}

QBoxLayout* makeToggles()
{
    auto* toggles = new QHBoxLayout;
    toggles->setSpacing(28);
    toggles->addLayout(makeNotedRow(QStringLiteral("Checkbox 16"),
                                    {makeCheckBox(Qt::Unchecked, State::normal),
                                     makeCheckBox(Qt::Unchecked, State::hovered),
                                     makeCheckBox(Qt::Checked, State::normal),
                                     makeCheckBox(Qt::PartiallyChecked, State::normal),
                                     makeCheckBox(Qt::Unchecked, State::focused),
                                     makeCheckBox(Qt::Unchecked, State::disabled)}));
    toggles->addLayout(
        makeNotedRow(QStringLiteral("Switch 36 × 20"),
                     {makeSwitch(false, State::normal), makeSwitch(true, State::normal),
                      makeSwitch(true, State::focused), makeSwitch(false, State::disabled)}));
    toggles->addStretch(1);
    return toggles;
}

} // namespace

QWidget* makeButtonSection()
{
    const Section section =
        makeSection(QStringLiteral("Buttons · 30 high, radius 6, padding 12 · large 36, small 26"));
    auto* grid = new QGridLayout;
    grid->setSpacing(0);
    grid->setColumnMinimumWidth(0, 84);
    const QStringList heads = {QStringLiteral("Normal"), QStringLiteral("Hover"),
                               QStringLiteral("Pressed"), QStringLiteral("Focused"),
                               QStringLiteral("Disabled")};
    for (int column = 0; column < heads.size(); ++column) {
        grid->addWidget(makeNote(heads[column]), 0, column + 1);
        grid->setColumnMinimumWidth(column + 1, 122);
    }
    grid->setColumnStretch(static_cast<int>(heads.size()) + 1, 1);
    int row = 1;
    for (const RoleSample& sample : roleSamples()) {
        grid->setRowMinimumHeight(row, 44);
        grid->addWidget(new Label(sample.title, TextStyle::caption, ThemeColor::text2), row, 0);
        int column = 1;
        for (const State state : allStates) {
            auto* button = new Button(sample.symbol, sample.text, sample.role);
            show(*button, state);
            grid->addWidget(button, row, column++, Qt::AlignLeft | Qt::AlignVCenter);
        }
        ++row;
    }
    section.body->addLayout(grid);
    section.body->addSpacing(10);
    section.body->addLayout(makeSizesRow());
    return section.card;
}

QWidget* makeFieldSection()
{
    const Section section = makeSection(QStringLiteral("Pickers and fields"));
    section.body->addWidget(
        makeNote(QStringLiteral("Segmented picker: normal, hover on “Light”, focused")));
    section.body->addSpacing(8);
    auto* scheme =
        makePicker(QStringLiteral("Theme"),
                   {QStringLiteral("System"), QStringLiteral("Light"), QStringLiteral("Dark")}, 2);
    showHovered(*scheme->segment(1));
    auto* basis = makePicker(QStringLiteral("Size basis"),
                             {QStringLiteral("Logical size"), QStringLiteral("Size on disk")}, 1);
    showFocused(*basis);
    section.body->addLayout(makeRow({scheme, basis}, 16));
    section.body->addSpacing(18);

    section.body->addLayout(makeToggles());
    section.body->addSpacing(18);

    auto* focused = makeField(QStringLiteral("Search your Mac…"), QStringLiteral("drone"));
    focused->setObjectName(QStringLiteral("initialFocus"));
    section.body->addLayout(makeNotedRow(
        QStringLiteral("Text field 30: empty, focused, filled with clear button, disabled"),
        {makeField(QStringLiteral("Search your Mac…"), {}), focused}));
    section.body->addSpacing(12);
    auto* filled = makeField(QStringLiteral("Search your Mac…"), QStringLiteral("report"));
    filled->setClearable(true, QStringLiteral("Clear"));
    auto* disabled = makeField(QStringLiteral("Search your Mac…"), QStringLiteral("Disabled"));
    disabled->setEnabled(false);
    auto* combo = new QComboBox;
    combo->setAccessibleName(QStringLiteral("Category"));
    combo->addItems(
        {QStringLiteral("Any category"), QStringLiteral("Video"), QStringLiteral("Archive")});
    section.body->addLayout(makeRow({filled, disabled, combo}, 12));
    return section.card;
}

QWidget* makeTileSection()
{
    const Section section = makeSection(QStringLiteral("Action tiles · 62 or 68 high, radius 10"));
    auto* look = new ActionTile(QStringLiteral("eye"), QStringLiteral("Quick Look"));
    auto* reveal =
        new ActionTile(QStringLiteral("magnifyingglass"), QStringLiteral("Reveal in Finder"));
    showHovered(*reveal);
    auto* open = new ActionTile(QStringLiteral("arrow.up.forward.app"), QStringLiteral("Open"));
    showFocused(*open);
    auto* stage = new ActionTile(QStringLiteral("trash"), QStringLiteral("Stage for Cleanup"));
    stage->setEnabled(false);
    for (ActionTile* tile : {look, reveal, open, stage}) {
        tile->setFixedWidth(66);
    }
    section.body->addLayout(makeRow({look, reveal, open, stage}, 8));
    return section.card;
}

QWidget* makeChipSection()
{
    using Kind = Chip::Kind;
    const Section section = makeSection(QStringLiteral("Chips 24 and badges 18"));
    auto* removable = new QWidget;
    auto* flow = new FlowLayout(8, removable);
    flow->addWidget(new Chip(QStringLiteral("video"), Kind::removable, Tint::purple));
    flow->addWidget(new Chip(QStringLiteral("Downloads"), Kind::removable, Tint::green));
    flow->addWidget(new Chip(QStringLiteral(">100MB"), Kind::removable, Tint::orange));
    flow->addWidget(new Chip(QStringLiteral("This month"), Kind::removable, Tint::cyan));
    section.body->addWidget(removable);
    section.body->addSpacing(10);

    auto* active = new Chip(QStringLiteral("image"));
    active->setActive(true);
    auto* hovered = new Chip(QStringLiteral("pdf"));
    showHovered(*hovered);
    section.body->addLayout(makeRow({new Chip(QStringLiteral("in This Mac"), Kind::fixed),
                                     new Chip(QStringLiteral("folder")), active, hovered},
                                    8));
    section.body->addSpacing(14);
    section.body->addLayout(
        makeRow({new Badge(QStringLiteral("Keep ✓"), Tint::green),
                 new Badge(QStringLiteral("12"), Tint::accent),
                 new Badge(QStringLiteral("Staged"), Tint::red),
                 new Badge(QStringLiteral("Folder")), new KeyCap(QStringLiteral("⌘Y")),
                 new KeyCap(QStringLiteral("↵")), new KeyCap(QStringLiteral("⇥"))},
                5));
    return section.card;
}

} // namespace quorvane::gallery
