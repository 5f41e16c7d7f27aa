// SPDX-License-Identifier: MIT
#include "EmptyState.h"

#include "Label.h"
#include "Symbols.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace quorvane {

class EmptyState::SymbolView : public QWidget
{
public:
    SymbolView(const QString& symbol, QWidget* parent)
        : QWidget(parent)
        , m_symbol(symbol)
    {
        setFixedSize(measure::iconEmpty, measure::iconEmpty);
    }

    QString symbol() const { return m_symbol; }
    void setSymbol(const QString& symbol)
    {
        m_symbol = symbol;
        update();
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintSymbol(painter, m_symbol, rect(), measure::iconEmpty,
                    themeColor(ThemeColor::textDisabled));
    }

private:
    QString m_symbol;
};

EmptyState::EmptyState(const QString& symbol, const QString& heading, const QString& text,
                       QWidget* parent)
    : QWidget(parent)
    , m_symbol(new SymbolView(symbol, this))
    , m_heading(new Label(heading, TextStyle::heading, ThemeColor::text1, this))
    , m_text(new Label(text, TextStyle::body, ThemeColor::text2, this))
    , m_buttons(new QHBoxLayout)
{
    setAccessibleName(heading);
    m_heading->setAlignment(Qt::AlignCenter);
    m_text->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_text->setWordWrap(true);
    m_text->setVisible(!text.isEmpty());
    m_buttons->setSpacing(spacing::m);
    setTextWidth(measure::emptyTextWidth);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addStretch();
    all->addWidget(m_symbol, 0, Qt::AlignHCenter);
    all->addSpacing(14);
    all->addWidget(m_heading);
    all->addSpacing(6);
    auto* centred = new QHBoxLayout;
    centred->addStretch(1);
    centred->addWidget(m_text, 1000);
    centred->addStretch(1);
    all->addLayout(centred);
    auto* buttonRow = new QHBoxLayout;
    buttonRow->addStretch();
    buttonRow->addLayout(m_buttons);
    buttonRow->addStretch();
    all->addLayout(buttonRow);
    all->addStretch();
}

QString EmptyState::symbol() const
{
    return m_symbol->symbol();
}

void EmptyState::setSymbol(const QString& symbol)
{
    m_symbol->setSymbol(symbol);
}

void EmptyState::setHeading(const QString& heading)
{
    m_heading->setText(heading);
    setAccessibleName(heading);
}

void EmptyState::setText(const QString& text)
{
    m_text->setText(text);
    m_text->setVisible(!text.isEmpty());
}

void EmptyState::setTextWidth(int width)
{
    m_text->setMaximumWidth(width);
}

Button* EmptyState::addButton(const QString& symbol, const QString& text, ButtonRole role,
                              ControlSize size)
{
    auto* button = new Button(symbol, text, role, size, this);
    m_buttons->setContentsMargins(0, spacing::l, 0, 0);
    m_buttons->addWidget(button);
    return button;
}

} // namespace quorvane
