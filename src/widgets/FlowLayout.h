// SPDX-License-Identifier: MIT
#pragma once

#include <QLayout>

#include <vector>

namespace quorvane {

/// Items in rows at their natural size, from left to right; a row that is full starts the next one.
/// A row is as high as its tallest item, the others stand in its middle.
class FlowLayout : public QLayout
{
    Q_OBJECT

public:
    explicit FlowLayout(int spacing, QWidget* parent = nullptr);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    void setGeometry(const QRect& rect) override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;

private:
    int arrange(const QRect& rect, bool apply) const;

    std::vector<QLayoutItem*> m_items;
};

} // namespace quorvane
