// SPDX-License-Identifier: MIT
#pragma once

#include "Label.h"

namespace quorvane {

/// One line with figures of even width: text that counts up does not tremble.
class TabularLabel : public Label
{
    Q_OBJECT

public:
    explicit TabularLabel(TextStyle style, ThemeColor color = ThemeColor::text1,
                          QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    qreal textWidth() const;
};

} // namespace quorvane
