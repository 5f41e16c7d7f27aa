// SPDX-License-Identifier: MIT
#pragma once

#include "Button.h"
#include "Tokens.h"

#include <QWidget>

class QBoxLayout;

namespace quorvane {

class Label;

/// A screen without content, centred: a large dim symbol, one heading, a text, and the sensible
/// buttons. Takes all room that its layout gives.
class EmptyState : public QWidget
{
    Q_OBJECT

public:
    EmptyState(const QString& symbol, const QString& heading, const QString& text,
               QWidget* parent = nullptr);

    QString symbol() const;
    void setSymbol(const QString& symbol);
    void setHeading(const QString& heading);
    /// An empty text leaves no gap.
    void setText(const QString& text);
    /// 460 points at first.
    void setTextWidth(int width);
    Button* addButton(const QString& symbol, const QString& text, ButtonRole role,
                      ControlSize size = ControlSize::regular);

private:
    class SymbolView;

    SymbolView* m_symbol;
    Label* m_heading;
    Label* m_text;
    QBoxLayout* m_buttons;
};

} // namespace quorvane
