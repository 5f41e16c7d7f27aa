// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quorvane::gallery {

/// Samples of tool screens: every shape that a row takes, "rows"; rows below headings with cards of
/// their own, "sections"; and an empty state, "empty".
class ToolGallery : public QWidget
{
    Q_OBJECT

public:
    explicit ToolGallery(const QString& page);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane::gallery
