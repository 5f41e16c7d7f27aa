// SPDX-License-Identifier: MIT
#include "BrandMark.h"
#include "EmptyState.h"
#include "GalleryWindow.h"
#include "Label.h"
#include "Menu.h"
#include "Painting.h"
#include "Popover.h"
#include "Progress.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionFrame>
#include <QVBoxLayout>

#include <utility>

namespace quorvane::gallery {
namespace {

/// The grounds of the theme side by side.
class Swatches : public QWidget
{
public:
    Swatches()
    {
        setFixedHeight(46);
        setAccessibleName(QStringLiteral("Grounds"));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        const std::pair<QString, ThemeColor> grounds[] = {
            {QStringLiteral("window"), ThemeColor::window},
            {QStringLiteral("card"), ThemeColor::card},
            {QStringLiteral("raised"), ThemeColor::raised},
            {QStringLiteral("popover"), ThemeColor::popover},
            {QStringLiteral("field"), ThemeColor::field},
            {QStringLiteral("accent"), ThemeColor::accentFill},
            {QStringLiteral("accent 18%"), ThemeColor::accentLow},
        };
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath shape;
        shape.addRoundedRect(QRectF(rect()), radius::control, radius::control);
        painter.setClipPath(shape);
        const qreal width = this->width() / static_cast<qreal>(std::size(grounds));
        QRectF area(0, 0, width, height());
        for (const auto& [name, color] : grounds) {
            painter.fillRect(area, themeColor(color));
            const bool onAccent = color == ThemeColor::accentFill;
            paintText(painter, area.adjusted(8, 0, 0, -6), Qt::AlignLeft | Qt::AlignBottom,
                      TextStyle::path,
                      themeColor(onAccent ? ThemeColor::accentLabel : ThemeColor::text1), name);
            area.translate(width, 0);
        }
        painter.setClipping(false);
        paintPanel(painter, rect(), radius::control, Qt::transparent,
                   themeColor(ThemeColor::hairline));
    }
};

/// What a tooltip of the desktop looks like.
class PlainTooltip : public QWidget
{
public:
    PlainTooltip(const QString& text, QWidget* parent)
        : QWidget(parent)
        , m_text(text)
    {
        setAccessibleName(text);
        resize(textWidth(TextStyle::caption, text) + 18, 28);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        QStyleOptionFrame option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_PanelTipLabel, &option, &painter, this);
        paintText(painter, rect(), Qt::AlignCenter, TextStyle::caption,
                  themeColor(ThemeColor::text1), m_text);
    }

private:
    QString m_text;
};

ProgressBar* makeBar(const QString& name, double fraction, ThemeColor color)
{
    auto* bar = new ProgressBar(name);
    bar->setFraction(fraction);
    bar->setColor(color);
    return bar;
}

Menu* makeMenu(QWidget* parent)
{
    auto* menu = new Menu(parent);
    // As a part of the sheet, not as a window of its own.
    menu->setWindowFlags(Qt::Widget);
    menu->setAccessibleName(QStringLiteral("Menu"));
    QAction* stage = menu->addItem(QStringLiteral("trash"), QStringLiteral("Stage for Cleanup"));
    menu->addItem(QStringLiteral("folder"), QStringLiteral("Reveal in Finder"));
    menu->addItem(QStringLiteral("arrow.up.right.square"), QStringLiteral("Open"));
    menu->addSeparator();
    menu->addItem(QStringLiteral("trash"), QStringLiteral("Stage for Cleanup"))->setEnabled(false);
    menu->setFixedSize(236, menu->sizeHint().height());
    menu->setActiveAction(stage);
    menu->show();
    return menu;
}

QLayout* makeTypeRow(const QString& sample, TextStyle style, int height, const QString& note)
{
    auto* row = new QHBoxLayout;
    auto* label = new Label(sample, style);
    label->setFixedHeight(height);
    row->addWidget(label, 1);
    row->addWidget(makeNote(note));
    return row;
}

} // namespace

QWidget* makeProgressSection()
{
    const Section section = makeSection(QStringLiteral("Progress · bar 6, rail 4"));
    auto* head = new QHBoxLayout;
    head->addWidget(new Label(QStringLiteral("Sampling same-size files…"), TextStyle::caption,
                              ThemeColor::text2),
                    1);
    auto* percent = new NumberCell(QStringLiteral("100%"), TextStyle::captionMedium);
    percent->setText(QStringLiteral("34%"));
    head->addWidget(percent);
    section.body->addLayout(head);
    section.body->addSpacing(7);
    section.body->addWidget(makeBar(QStringLiteral("Sampling"), 0.34, ThemeColor::accent));
    section.body->addSpacing(14);
    section.body->addWidget(makeBar(QStringLiteral("Drive, fine"), 0.62, ThemeColor::green));
    section.body->addSpacing(8);
    section.body->addWidget(makeBar(QStringLiteral("Drive, filling"), 0.78, ThemeColor::orange));
    section.body->addSpacing(8);
    section.body->addWidget(makeBar(QStringLiteral("Drive, full"), 0.92, ThemeColor::red));
    section.body->addSpacing(16);
    section.body->addWidget(new SweepRail(QStringLiteral("Scanning")));
    section.body->addSpacing(14);
    section.body->addWidget(new Spinner(QStringLiteral("Computing layout…")));
    return section.card;
}

QWidget* makeMarkSection()
{
    const Section section = makeSection(QStringLiteral("The mark, at 84, 32 and 18"));
    section.body->addLayout(makeRow(
        {new BrandMark(84), new BrandMark(32), new BrandMark(18), new Wordmark(TextStyle::figure)},
        20));
    return section.card;
}

QWidget* makePopoverSection()
{
    const Section section = makeSection(QStringLiteral("Menu, tooltip, flash banner"));
    QWidget* card = section.card;
    const QPoint origin(17, 41);
    section.body->addSpacing(189);
    Menu* menu = makeMenu(card);
    menu->move(origin);
    new DropShadow(*menu, DropShadow::Depth::popover, radius::surface);

    auto* tooltip = new TooltipCard(card);
    tooltip->setContent(QStringLiteral("Photo Library"), QStringLiteral("41.5 GB · 1438 files"));
    tooltip->showFixed(origin + QPoint(256, 0));

    auto* plain = new PlainTooltip(QStringLiteral("Zoom out one level (Esc)"), card);
    plain->move(origin + QPoint(256, 68));
    new DropShadow(*plain, DropShadow::Depth::popover, radius::control);

    auto* banner = new FlashBanner(
        QStringLiteral("Staged \"DerivedData\" for Trash — review it under Cleanup."), [] {}, card);
    banner->move(origin + QPoint(0, 153));
    return section.card;
}

QWidget* makeEmptySection()
{
    const Section section =
        makeSection(QStringLiteral("Empty state · symbol 46, heading 15, text at most 460"));
    auto* empty = new EmptyState(
        QStringLiteral("checkmark.circle"), QStringLiteral("Nothing staged yet"),
        QStringLiteral("Right-click any folder or file in Analysis and choose “Stage for "
                       "Cleanup”. Review the list, then trash it in one move — nothing is ever "
                       "deleted in the background."));
    empty->setTextWidth(420);
    section.body->addSpacing(2);
    section.body->addWidget(empty);
    return section.card;
}

QWidget* makeTypeSection()
{
    const Section section = makeSection(QStringLiteral("Type · Inter"));
    const auto add = [&](const QString& sample, TextStyle style, int height, const QString& note) {
        section.body->addLayout(makeTypeRow(sample, style, height, note));
    };
    add(QStringLiteral("182.6 GB"), TextStyle::counter, 52, QStringLiteral("44 / 52 · 600"));
    add(QStringLiteral("41,208"), TextStyle::figure, 36, QStringLiteral("28 / 34 · 600"));
    add(QStringLiteral("Duplicate files"), TextStyle::title, 30, QStringLiteral("20 / 26 · 600"));
    add(QStringLiteral("Nothing staged yet"), TextStyle::heading, 25,
        QStringLiteral("15 / 20 · 600"));
    add(QStringLiteral("Row title, body, buttons"), TextStyle::body, 22,
        QStringLiteral("13 / 18 · 400"));
    add(QStringLiteral("Captions, table cells"), TextStyle::caption, 21,
        QStringLiteral("12 / 16 · 400"));
    add(QStringLiteral("Section headings, paths"), TextStyle::section, 20,
        QStringLiteral("11 / 14 · 500"));
    return section.card;
}

QWidget* makeColorSection()
{
    const Section section = makeSection(QStringLiteral("Grounds, text, accent"));
    section.body->addWidget(new Swatches);
    section.body->addSpacing(10);
    const auto sample = [](const QString& text, ThemeColor color) {
        return new Label(text, TextStyle::body, color);
    };
    section.body->addLayout(makeRow({sample(QStringLiteral("Primary"), ThemeColor::text1),
                                     sample(QStringLiteral("Secondary"), ThemeColor::text2),
                                     sample(QStringLiteral("Tertiary"), ThemeColor::text3),
                                     sample(QStringLiteral("Disabled"), ThemeColor::textDisabled),
                                     sample(QStringLiteral("Accent"), ThemeColor::accentText),
                                     sample(QStringLiteral("Good"), ThemeColor::greenText),
                                     sample(QStringLiteral("Warn"), ThemeColor::orangeText),
                                     sample(QStringLiteral("Danger"), ThemeColor::redText)},
                                    18));
    return section.card;
}

} // namespace quorvane::gallery
