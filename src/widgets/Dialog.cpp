// SPDX-License-Identifier: MIT
#include "Dialog.h"

#include "Label.h"
#include "Painting.h"
#include "Popover.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>

namespace quorvane {
namespace {

constexpr int plateSide = 40;
constexpr int buttonMinimumWidth = 88;
constexpr int textGap = 6;

class DialogCard : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintPopover(painter, rect(), radius::surface);
    }
};

class SymbolPlate : public QWidget
{
public:
    explicit SymbolPlate(QWidget* parent)
        : QWidget(parent)
    {
        setFixedSize(plateSide, plateSide);
    }

    void set(const QString& symbol, Tint tint)
    {
        m_symbol = symbol;
        m_tint = tint;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintPanel(painter, rect(), radius::surface, themeColor(tintGround(m_tint)),
                   Qt::transparent);
        paintSymbol(painter, m_symbol, rect(), measure::iconTile, themeColor(tintText(m_tint)));
    }

private:
    QString m_symbol;
    Tint m_tint = Tint::neutral;
};

} // namespace

Dialog::Dialog(QWidget* window)
    : QWidget(window)
    , m_card(new DialogCard(this))
    , m_symbolPlate(new SymbolPlate(m_card))
    , m_title(new Label({}, TextStyle::heading, ThemeColor::text1, m_card))
    , m_text(new Label({}, TextStyle::body, ThemeColor::text2, m_card))
    , m_body(new QVBoxLayout)
    , m_buttons(new QHBoxLayout)
{
    hide();
    setFocusPolicy(Qt::NoFocus);
    m_title->setWordWrap(true);
    m_text->setWordWrap(true);
    m_text->hide();
    m_symbolPlate->hide();
    m_card->setFixedWidth(measure::dialogWidth);

    auto* words = new QVBoxLayout;
    words->setSpacing(textGap);
    words->addWidget(m_title);
    words->addWidget(m_text);
    words->addStretch();
    auto* head = new QHBoxLayout;
    head->setSpacing(spacing::l);
    head->addWidget(m_symbolPlate, 0, Qt::AlignTop);
    head->addLayout(words, 1);
    m_buttons->setSpacing(spacing::s);
    m_buttons->addStretch();
    m_body->setSpacing(spacing::m);

    auto* all = new QVBoxLayout(m_card);
    const int margin = spacing::xl + 1;
    all->setContentsMargins(margin, margin, margin, margin);
    all->setSpacing(0);
    all->addLayout(head);
    all->addLayout(m_body);
    all->addSpacing(spacing::xl);
    all->addLayout(m_buttons);

    new DropShadow(*m_card, DropShadow::Depth::dialog, radius::surface);
    window->installEventFilter(this);
    m_card->installEventFilter(this);
}

void Dialog::setSymbol(const QString& symbol, Tint tint)
{
    static_cast<SymbolPlate*>(m_symbolPlate)->set(symbol, tint);
    m_symbolPlate->setVisible(!symbol.isEmpty());
}

void Dialog::setTitle(const QString& title)
{
    m_title->setText(title);
    setAccessibleName(title);
}

void Dialog::setText(const QString& text)
{
    m_text->setText(text);
    m_text->setVisible(!text.isEmpty());
    setAccessibleDescription(text);
}

void Dialog::setCardWidth(int width)
{
    m_card->setFixedWidth(width);
}

Button* Dialog::addButton(const QString& text, ButtonRole role, bool accepts)
{
    auto* button = new Button(text, role, ControlSize::regular, m_card);
    button->setMinimumWidth(buttonMinimumWidth);
    m_buttons->addWidget(button);
    if (!accepts && !m_initialFocus) {
        m_initialFocus = button;
    }
    connect(button, &QAbstractButton::clicked, this, [this, accepts] {
        closeDialog();
        if (accepts) {
            Q_EMIT accepted();
        } else {
            Q_EMIT rejected();
        }
    });
    return button;
}

void Dialog::setInitialFocus(QWidget* widget)
{
    m_initialFocus = widget;
}

void Dialog::open()
{
    m_focusBefore = QApplication::focusWidget();
    setGeometry(parentWidget()->rect());
    placeCard();
    show();
    raise();
    QWidget* first = m_initialFocus;
    if (!first) {
        const std::vector<QWidget*> chain = focusChain();
        first = chain.empty() ? nullptr : chain.front();
    }
    if (first) {
        first->setFocus(Qt::ActiveWindowFocusReason);
    }
}

void Dialog::closeDialog()
{
    if (isHidden()) {
        return;
    }
    hide();
    if (m_focusBefore && m_focusBefore->isVisible()) {
        m_focusBefore->setFocus(Qt::ActiveWindowFocusReason);
    }
    deleteLater();
}

void Dialog::placeCard()
{
    m_card->adjustSize();
    const int cardWidth = m_card->width();
    int cardHeight = m_card->height();
    if (m_card->layout()->hasHeightForWidth()) {
        cardHeight = m_card->layout()->totalHeightForWidth(cardWidth);
    }
    m_card->setGeometry((width() - cardWidth) / 2, std::max(0, (height() - cardHeight) / 2),
                        cardWidth, cardHeight);
}

std::vector<QWidget*> Dialog::focusChain() const
{
    std::vector<QWidget*> chain;
    const QWidget* widget = this;
    for (QWidget* next = widget->nextInFocusChain(); next != this;
         next = next->nextInFocusChain()) {
        if (isAncestorOf(next) && next->isVisibleTo(this) && next->isEnabled() &&
            next->focusPolicy() & Qt::TabFocus && !next->focusProxy()) {
            chain.push_back(next);
        }
    }
    return chain;
}

bool Dialog::focusNextPrevChild(bool next)
{
    const std::vector<QWidget*> chain = focusChain();
    if (chain.empty()) {
        return true;
    }
    const auto here = std::find(chain.begin(), chain.end(), QApplication::focusWidget());
    std::size_t index = 0;
    if (here != chain.end()) {
        const auto position = static_cast<std::size_t>(here - chain.begin());
        index = (position + (next ? 1 : chain.size() - 1)) % chain.size();
    }
    chain[index]->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}

bool Dialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    } else if (watched == m_card && event->type() == QEvent::LayoutRequest) {
        placeCard();
    }
    return QWidget::eventFilter(watched, event);
}

bool Dialog::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // What a key does elsewhere in the window, it does not do while the question stands.
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void Dialog::keyPressEvent(QKeyEvent* event)
{
    // Nothing below the dialog may hear a key.
    event->accept();
    if (event->key() == Qt::Key_Escape) {
        closeDialog();
        Q_EMIT rejected();
    }
}

void Dialog::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}

void Dialog::paintEvent(QPaintEvent*)
{
    QPainter(this).fillRect(rect(), themeColor(ThemeColor::scrim));
}

void Dialog::resizeEvent(QResizeEvent*)
{
    placeCard();
}

} // namespace quorvane
