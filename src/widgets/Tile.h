// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace quorvane {

/// A button with a symbol over one or two short lines. The words wrap at blanks.
class Tile : public QPushButton
{
    Q_OBJECT

public:
    QString symbol() const { return m_symbol; }
    void setSymbol(const QString& symbol);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    Tile(const QString& symbol, const QString& text, bool raised, int height, QWidget* parent);

    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QColor ground(const class QStyleOptionButton& option) const;

    QString m_symbol;
    bool m_raised;
    int m_height;
};

/// A tile of a panel, 62 high, on a raised ground.
class ActionTile : public Tile
{
    Q_OBJECT

public:
    ActionTile(const QString& symbol, const QString& text, QWidget* parent = nullptr);
};

/// A tile of the side bar, 68 high, on a card ground.
class ScanTile : public Tile
{
    Q_OBJECT

public:
    ScanTile(const QString& symbol, const QString& text, QWidget* parent = nullptr);
};

} // namespace quorvane
