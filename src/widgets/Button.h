// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QComboBox>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

class QPainter;

namespace quorvane {

enum class ButtonRole {
    prominent,
    bordered,
    plain,
    destructive,
    kept,   ///< green: the copy that stays
    queued, ///< red: what waits for the Trash
    revoke  ///< bordered with red words: empties a queue
};

enum class ControlSize {
    small,   ///< 26 high
    regular, ///< 30 high
    large    ///< 36 high
};

/// What a push button of the design shows.
struct ButtonFace
{
    QString symbol; ///< a name of the symbol table; empty for none
    QString text;
    ButtonRole role = ButtonRole::bordered;
    ControlSize size = ControlSize::regular;
};

/// Paints what Button shows, for rows that are painted and not built. Reads State_Enabled,
/// State_MouseOver and State_Sunken; the focus ring is the caller's.
void paintButton(QPainter& painter, const QRect& rect, const ButtonFace& face, QStyle::State state);
/// The room that Button asks for with that face.
QSize buttonSize(const ButtonFace& face);

/// A push button of the design. Space and Return press it; a click does not take the focus away
/// from a field.
class Button : public QPushButton
{
    Q_OBJECT

public:
    explicit Button(const QString& text = {}, ButtonRole role = ButtonRole::bordered,
                    ControlSize size = ControlSize::regular, QWidget* parent = nullptr);
    /// With a symbol of the table before the text.
    Button(const QString& symbol, const QString& text, ButtonRole role = ButtonRole::bordered,
           ControlSize size = ControlSize::regular, QWidget* parent = nullptr);

    ButtonRole role() const { return m_role; }
    void setRole(ButtonRole role);
    ControlSize controlSize() const { return m_size; }
    void setControlSize(ControlSize size);
    QString symbol() const { return m_symbol; }
    /// Empty for none.
    void setSymbol(const QString& symbol);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void applySize();

    ButtonRole m_role;
    ControlSize m_size;
    QString m_symbol;
};

/// A button with a symbol alone, 30 x 30, or with words behind it. `name` is its tooltip and its
/// accessible name until they are set apart.
class ToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit ToolButton(const QString& symbol, const QString& name, QWidget* parent = nullptr);

    QString symbol() const { return m_symbol; }
    void setSymbol(const QString& symbol);
    /// Side of the symbol in points; 16 at first.
    int symbolSide() const { return m_symbolSide; }
    void setSymbolSide(int side);
    /// Side of the square button without words; 30 at first.
    int side() const { return m_side; }
    void setSide(int side);
    /// Shows the words of text() behind the symbol.
    void setWordsVisible(bool visible);
    bool areWordsVisible() const { return m_wordsVisible; }
    /// Colour of the symbol at rest.
    void setSymbolColor(ThemeColor color);
    ThemeColor symbolColor() const { return m_color; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionToolButton* option) const override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString m_symbol;
    int m_symbolSide;
    int m_side;
    bool m_wordsVisible = false;
    ThemeColor m_color = ThemeColor::text2;
};

/// Height of a combo box; small (26) unless set.
void setControlSize(QComboBox& box, ControlSize size);

} // namespace quorvane
