// SPDX-License-Identifier: MIT
#pragma once

#include "Row.h"
#include "TrashBatch.h"

#include <QString>
#include <QStringList>
#include <QWidget>

#include <optional>

class QVBoxLayout;

namespace quorvane {

/// The mark of a row of the queue, with a tooltip that says what to do; absent without a caution.
std::optional<RowBadge> cautionBadge(const QueueCaution& caution);

/// One sentence for each caution and what to do about it, losses first, each in the order of the
/// queue; beyond six, a line that counts the rest.
QStringList cautionLines(const QueueCautions& cautions);

/// One more paragraph of a question: a line with a symbol for each caution, on an orange ground.
/// Hidden without lines. Main thread.
class CautionPanel : public QWidget
{
    Q_OBJECT

public:
    explicit CautionPanel(QWidget* parent = nullptr);

    void setLines(const QStringList& lines);
    const QStringList& lines() const { return m_lines; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout* m_column;
    QStringList m_lines;
};

} // namespace quorvane
