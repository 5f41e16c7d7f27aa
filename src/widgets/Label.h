// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QLabel>

namespace quorvane {

/// Text in a type style and a colour of the theme. One line takes the style's line height; with
/// word wrap the lines keep that distance.
class Label : public QLabel
{
    Q_OBJECT

public:
    explicit Label(const QString& text = {}, TextStyle style = TextStyle::body,
                   ThemeColor color = ThemeColor::text1, QWidget* parent = nullptr);

    TextStyle textStyle() const { return m_style; }
    void setTextStyle(TextStyle style);
    ThemeColor textColor() const { return m_color; }
    void setTextColor(ThemeColor color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    /// The colour to paint with now, disabled or not.
    QColor currentColor() const;

private:
    void applyTheme();
    QSizeF wrappedSize(qreal width) const;
    bool paintsParagraph() const;

    TextStyle m_style;
    ThemeColor m_color;
};

/// A heading over a group: small, tracked, dim.
class SectionHeading : public Label
{
    Q_OBJECT

public:
    explicit SectionHeading(const QString& text = {}, QWidget* parent = nullptr);
};

/// One line that shortens with an ellipsis where it does not fit, and tells the whole text in its
/// tooltip then.
class ElidedLabel : public Label
{
    Q_OBJECT

public:
    explicit ElidedLabel(const QString& text = {}, Qt::TextElideMode mode = Qt::ElideRight,
                         TextStyle style = TextStyle::body, ThemeColor color = ThemeColor::text1,
                         QWidget* parent = nullptr);

    void setElideMode(Qt::TextElideMode mode);
    Qt::TextElideMode elideMode() const { return m_mode; }
    /// What shows at the present width.
    QString shownText() const;
    bool isElided() const { return shownText() != text(); }

    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::TextElideMode m_mode;
};

/// A number or a size in a cell that keeps its width while the digits change, aligned right.
class NumberCell : public Label
{
    Q_OBJECT

public:
    /// The cell is as wide as `widest`, a sample with the most digits that will show.
    explicit NumberCell(const QString& widest, TextStyle style = TextStyle::strong,
                        ThemeColor color = ThemeColor::text1, QWidget* parent = nullptr);

    void setWidest(const QString& widest);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    QString m_widest;
};

/// A line one point thick.
class Hairline : public QWidget
{
    Q_OBJECT

public:
    explicit Hairline(Qt::Orientation orientation = Qt::Horizontal, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
