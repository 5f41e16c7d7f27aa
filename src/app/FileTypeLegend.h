// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quorvane {

/// The colours of the file categories, three in a row. Main thread.
class FileTypeLegend : public QWidget
{
    Q_OBJECT

public:
    explicit FileTypeLegend(QWidget* parent = nullptr);
};

} // namespace quorvane
