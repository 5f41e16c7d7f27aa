// SPDX-License-Identifier: MIT
#pragma once

#include <QTextEdit>

namespace quorvane {

/// A path on as many lines as it needs, wrapped after a slash where that is possible. Its text can
/// be selected and copied.
class PathText : public QTextEdit
{
    Q_OBJECT

public:
    explicit PathText(QWidget* parent = nullptr);

    void setPath(const QString& path);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void applyTheme();
    void fitHeight();
};

} // namespace quorvane
