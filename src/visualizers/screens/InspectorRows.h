// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QString>
#include <QWidget>

namespace quorvane {

class ElidedLabel;
class Label;

/// A line of a card in the details panel, 30 high: a label (with a dot before it, or none) and a
/// value, and a hairline above it unless it is the first.
class FactRow : public QWidget
{
    Q_OBJECT

public:
    explicit FactRow(bool isFirst, QWidget* parent = nullptr);

    void setFact(const QString& label, const QString& value);
    /// The label then stands out as a name; an invalid colour takes the dot away.
    void setDot(const QColor& color);

    QString label() const;
    QString value() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_isFirst;
    QColor m_dot;
    ElidedLabel* m_label;
    Label* m_value;
};

/// A raised square, 44 wide, with a symbol or an icon of the desktop's.
class SymbolPlate : public QWidget
{
    Q_OBJECT

public:
    explicit SymbolPlate(QWidget* parent = nullptr);

    void setSymbol(const QString& symbol, const QColor& color);
    /// Shows in the symbol's place unless it is null.
    void setIcon(const QIcon& icon);
    const QIcon& icon() const { return m_icon; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    QColor m_color;
    QIcon m_icon;
};

} // namespace quorvane
