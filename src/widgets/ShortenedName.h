// SPDX-License-Identifier: MIT
#pragma once

#include "Label.h"

namespace quorvane {

/// A name in a few lines at most: one that needs more loses its middle, and shows whole in its
/// tooltip.
class ShortenedName : public Label
{
    Q_OBJECT

public:
    ShortenedName(int mostLines, TextStyle style, QWidget* parent = nullptr);

    /// What shows at the present width.
    QString shownText() const;
    /// Whether the whole name shows at the width.
    bool fits(int width) const;

    QSize sizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int linesOf(const QString& text, qreal width) const;

    int m_mostLines;
};

} // namespace quorvane
