// SPDX-License-Identifier: MIT
#pragma once

#include "Button.h"
#include "Chip.h"

#include <QPointer>
#include <QWidget>

#include <vector>

class QBoxLayout;

namespace quorvane {

class Label;

/// A question over the whole window: a scrim, and on it a card 400 wide with symbol, title, text
/// and buttons. Keeps the keyboard inside, runs no event loop of its own, and deletes itself when
/// it is closed. Escape or a click on a cancelling button emits rejected.
class Dialog : public QWidget
{
    Q_OBJECT

public:
    explicit Dialog(QWidget* window);

    void setSymbol(const QString& symbol, Tint tint);
    void setTitle(const QString& title);
    void setText(const QString& text);
    /// Below title and text, above the buttons; for forms.
    QBoxLayout* bodyLayout() const { return m_body; }
    void setCardWidth(int width);

    /// Adds a button at the right end. `accepts` tells which signal its click emits before the
    /// dialog closes.
    Button* addButton(const QString& text, ButtonRole role, bool accepts);
    /// The control that has the focus when the dialog opens; the first cancelling button unless
    /// set.
    void setInitialFocus(QWidget* widget);

    void open();
    void closeDialog();

Q_SIGNALS:
    void accepted();
    void rejected();

protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeCard();
    std::vector<QWidget*> focusChain() const;

    QWidget* m_card;
    QWidget* m_symbolPlate;
    Label* m_title;
    Label* m_text;
    QBoxLayout* m_body;
    QBoxLayout* m_buttons;
    QWidget* m_initialFocus = nullptr;
    QPointer<QWidget> m_focusBefore;
};

} // namespace quorvane
