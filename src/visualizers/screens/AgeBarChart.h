// SPDX-License-Identifier: MIT
#pragma once

#include "AgeMap.h"

#include <QRectF>
#include <QWidget>

#include <vector>

namespace quorvane {

/// Bytes by month as bars, the largest month the brightest. Main thread.
class AgeBarChart : public QWidget
{
    Q_OBJECT

public:
    explicit AgeBarChart(QWidget* parent = nullptr);

    void setBuckets(std::vector<AgeBucket> buckets);
    const std::vector<AgeBucket>& buckets() const { return m_buckets; }

    /// The bar of a month on a chart of that size.
    QRectF barOf(std::size_t bucket) const;
    /// Bytes of a month against those of the largest one, 0 to 1.
    double shareOf(std::size_t bucket) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    void paintBars(QPainter& painter) const;
    void paintMonths(QPainter& painter) const;

    std::vector<AgeBucket> m_buckets;
    std::int64_t m_maxBytes = 0;
};

} // namespace quorvane
