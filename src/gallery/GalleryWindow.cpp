// SPDX-License-Identifier: MIT
#include "GalleryWindow.h"

#include "Card.h"
#include "FocusRing.h"
#include "Label.h"
#include "Painting.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace quorvane::gallery {
namespace {

constexpr int windowWidth = 1560;
constexpr int windowHeight = 1320;
constexpr int gap = 16;
constexpr int leftWidth = 728;
constexpr int tileColumnWidth = 330;

QBoxLayout* makeColumn(const QList<QWidget*>& cards)
{
    auto* column = new QVBoxLayout;
    column->setSpacing(gap);
    for (QWidget* card : cards) {
        column->addWidget(card);
    }
    column->addStretch();
    return column;
}

/// Attaches a ring as soon as its control has its place.
class RingStarter : public QObject
{
public:
    explicit RingStarter(QWidget& control)
        : QObject(&control)
        , m_control(control)
    {
        control.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && !m_ring) {
            m_ring = new FocusRing(m_control.window());
            m_ring->setWidget(&m_control);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget& m_control;
    FocusRing* m_ring = nullptr;
};

} // namespace

Section makeSection(const QString& heading)
{
    auto* card = new Card;
    auto* layout = new QVBoxLayout(card);
    layout->setContentsMargins(17, 15, 17, 17);
    layout->setSpacing(0);
    layout->addWidget(new SectionHeading(heading));
    layout->addSpacing(12);
    return {card, layout};
}

QWidget* makeNote(const QString& text)
{
    return new Label(text, TextStyle::path, ThemeColor::text3);
}

QBoxLayout* makeRow(const QList<QWidget*>& widgets, int gap)
{
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    for (QWidget* widget : widgets) {
        row->addWidget(widget);
    }
    row->addStretch();
    return row;
}

void showHovered(QWidget& widget)
{
    widget.setAttribute(Qt::WA_UnderMouse);
}

void showFocused(QWidget& widget)
{
    new RingStarter(widget);
}

GalleryWindow::GalleryWindow()
{
    setWindowTitle(QStringLiteral("Quorvane gallery"));
    setAccessibleName(windowTitle());
    setFixedSize(windowWidth, windowHeight);

    auto* small = new QHBoxLayout;
    small->setSpacing(gap);
    small->addLayout(makeColumn({makeProgressSection(), makeMarkSection()}), 1);
    QWidget* tiles = makeTileSection();
    QWidget* chips = makeChipSection();
    tiles->setFixedWidth(tileColumnWidth);
    chips->setFixedWidth(tileColumnWidth);
    small->addLayout(makeColumn({tiles, chips}));

    auto* left = new QVBoxLayout;
    left->setSpacing(gap);
    for (QWidget* card : {makeButtonSection(), makeRowSection(), makeTableSection()}) {
        card->setFixedWidth(leftWidth);
        left->addWidget(card);
    }
    left->addLayout(small);
    left->addStretch();

    auto* all = new QHBoxLayout(this);
    all->setContentsMargins(24, 20, 24, 20);
    all->setSpacing(gap);
    all->addLayout(left);
    all->addLayout(makeColumn({makeFieldSection(), makePopoverSection(), makeEmptySection(),
                               makeTypeSection(), makeColorSection()}),
                   1);
}

void GalleryWindow::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintWindowGround(painter, rect(), themeColor(ThemeColor::wash));
}

} // namespace quorvane::gallery
