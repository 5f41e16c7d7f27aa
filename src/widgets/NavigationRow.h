// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace quorvane {

/// A row of the side bar, 32 high: symbol and title. The current one is filled with the accent at
/// low opacity. A click or Return emits clicked; the owner marks the current row.
class NavigationRow : public QPushButton
{
    Q_OBJECT

public:
    NavigationRow(const QString& symbol, const QString& title, QWidget* parent = nullptr);

    void setCurrent(bool current) { setChecked(current); }
    bool isCurrent() const { return isChecked(); }
    QString symbol() const { return m_symbol; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void nextCheckState() override {}
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString m_symbol;
};

} // namespace quorvane
