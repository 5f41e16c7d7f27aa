// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QString>

class QWidget;

namespace quorvane {

/// Shows the text at the point of the screen as it stands, a long one in several lines, while the
/// pointer stays on the widget.
/// The names of files go through here: a tip that merely looks like markup would be laid out as
/// such, and what it refers to read from the disk. Main thread.
void showPlainToolTip(const QPoint& globalPosition, const QString& text, QWidget* widget);

/// The text in a form that a widget's own tip shows as it stands.
QString plainToolTip(const QString& text);

} // namespace quorvane
