// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QBoxLayout;

namespace quorvane {

class Label;

/// The strip below a search: what there is at the left, and what the keys do at the right. Main
/// thread.
class KeyHints : public QWidget
{
    Q_OBJECT

public:
    explicit KeyHints(QWidget* parent = nullptr);

    /// At the left.
    Label* count() const { return m_count; }
    /// Puts a widget before the count.
    void addFirst(QWidget* widget);
    /// A key and what it does; returns the latter's label.
    Label* add(const QString& key, const QString& text);
    void setStripHeight(int height, int sides);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QBoxLayout* m_line;
    Label* m_count;
};

} // namespace quorvane
