// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QWidget>

class QBoxLayout;

namespace quorvane::gallery {

/// The component sheet: 1560 x 1320, every shared control in every state. States are real ones:
/// below the pointer, held down, disabled, with a focus ring attached.
class GalleryWindow : public QWidget
{
    Q_OBJECT

public:
    GalleryWindow();

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A card with a heading, and the layout that its contents go into.
struct Section
{
    QWidget* card;
    QBoxLayout* body;
};

Section makeSection(const QString& heading);
/// A small caption inside a section.
QWidget* makeNote(const QString& text);
/// A row of widgets, `gap` apart, with free room at the end.
QBoxLayout* makeRow(const QList<QWidget*>& widgets, int gap);

/// Marks a control as below the pointer, as held down, or as the one with the focus.
void showHovered(QWidget& widget);
void showFocused(QWidget& widget);

QWidget* makeButtonSection();
QWidget* makeFieldSection();
QWidget* makeTileSection();
QWidget* makeChipSection();
QWidget* makeRowSection();
QWidget* makeTableSection();
QWidget* makeProgressSection();
QWidget* makeMarkSection();
QWidget* makePopoverSection();
QWidget* makeEmptySection();
QWidget* makeTypeSection();
QWidget* makeColorSection();

} // namespace quorvane::gallery
