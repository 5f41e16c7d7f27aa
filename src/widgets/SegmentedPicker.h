// SPDX-License-Identifier: MIT
#pragma once

#include <QRadioButton>
#include <QWidget>

#include <vector>

class QButtonGroup;

namespace quorvane {

class SegmentedPicker;

/// One choice of a SegmentedPicker.
class Segment : public QRadioButton
{
    Q_OBJECT

public:
    Segment(const QString& symbol, const QString& text, SegmentedPicker& picker);

    QString symbol() const { return m_symbol; }
    void setCollapsed(bool collapsed);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool hitButton(const QPoint& position) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
    bool m_collapsed = false;
};

/// One choice of a few, side by side, 30 high. Tab enters at the current choice, the arrow keys
/// change it.
class SegmentedPicker : public QWidget
{
    Q_OBJECT

public:
    /// `name` is the accessible name.
    explicit SegmentedPicker(const QString& name, QWidget* parent = nullptr);

    /// Adds a choice; an empty symbol shows the text alone. Returns its index.
    int addSegment(const QString& text, const QString& symbol = {});
    int count() const { return static_cast<int>(m_segments.size()); }
    Segment* segment(int index) const { return m_segments[static_cast<std::size_t>(index)]; }

    /// -1 while there is none.
    int currentIndex() const;
    /// Does not emit activated.
    void setCurrentIndex(int index);

    /// Drops the words of choices that have a symbol; they become tooltips.
    void setCollapsed(bool collapsed);
    bool isCollapsed() const { return m_collapsed; }

    /// Width that the picker needs with its words on.
    int expandedWidth() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// The user chose another segment.
    void activated(int index);
    void currentIndexChanged(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void layOut();
    /// Tab stops at the current segment alone, or at the first one while there is none.
    void fixTabStop();
    int naturalWidth() const;

    std::vector<Segment*> m_segments;
    QButtonGroup* m_group;
    bool m_collapsed = false;
};

} // namespace quorvane
