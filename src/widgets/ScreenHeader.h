// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QHBoxLayout;

namespace quorvane {

class Label;

/// The top of a screen, 64 high: its symbol and title, and its actions at the right.
class ScreenHeader : public QWidget
{
    Q_OBJECT

public:
    /// Without a symbol the title begins at the margin.
    ScreenHeader(const QString& symbol, const QString& title, QWidget* parent = nullptr);

    QString symbol() const { return m_symbol; }

    /// A quieter line below the title; empty for none.
    void setSubtitle(const QString& text, const QString& name);
    /// Adds an action at the right end.
    void addAction(QWidget* action);

    /// What lies between the title and the actions, in this widget's coordinates.
    QRect clearArea() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    Label* m_title;
    Label* m_subtitle;
    QHBoxLayout* m_row;
};

} // namespace quorvane
