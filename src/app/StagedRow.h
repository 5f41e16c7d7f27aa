// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace quorvane {

/// The row of the side bar that shows what is staged, 44 high, in two lines on a card.
class StagedRow : public QPushButton
{
    Q_OBJECT

public:
    explicit StagedRow(QWidget* parent = nullptr);

    /// What is staged: "{n} items · {size}".
    QString detail() const { return m_detail; }
    void setDetail(const QString& detail);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_detail;
};

} // namespace quorvane
