// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QWidget>

#include <functional>

namespace quorvane {

/// The shadow of a popover that is a child of a window. Lies below its card as a sibling and
/// follows it; takes no mouse events. Owned by the card's parent, gone with the card.
class DropShadow : public QWidget
{
    Q_OBJECT

public:
    enum class Depth { popover, dialog };

    DropShadow(QWidget& card, Depth depth, int radius);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void follow();

    QWidget& m_card;
    Depth m_depth;
    int m_radius;
};

/// A small card over a canvas: a title and a detail line. Takes no mouse events.
class TooltipCard : public QWidget
{
    Q_OBJECT

public:
    explicit TooltipCard(QWidget* canvas);

    /// An empty detail leaves the second line out, an empty note the third. Before the note stands
    /// a square of 8 in the mark's colour, where that is valid.
    void setContent(const QString& title, const QString& detail, const QString& note = {},
                    const QColor& mark = {});
    /// Shows the card at the given point of the parent plus (12, 12); flips to the other side of
    /// the point where it would leave the parent.
    void showAt(const QPoint& pointer);
    /// Shows the card with its top left corner exactly here.
    void showFixed(const QPoint& topLeft);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_title;
    QString m_detail;
    QString m_note;
    QColor m_mark;
};

class ShortenedName;
class ToolButton;

/// A message that hangs over the screen until it is dismissed: one line, 36 high, or two where it
/// has to be narrow. The owner places it with placeBelow; what two lines cannot hold loses its
/// middle.
class FlashBanner final : public QWidget
{
    Q_OBJECT

public:
    FlashBanner(const QString& text, std::function<void()> onDismiss, QWidget* parent);

    void setText(const QString& text);
    /// Hangs the banner 8 below the top edge of `area`: centred on it, but to the left and right
    /// within `clear`, what must not be covered lying outside. A `clear` too narrow to read in
    /// counts for nothing.
    void placeBelow(const QRect& area, const QRect& clear);
    void placeBelow(const QRect& area) { placeBelow(area, area); }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int textWidthWithin(int room) const;

    ShortenedName* m_label;
    ToolButton* m_dismiss;
};

} // namespace quorvane
