// SPDX-License-Identifier: MIT
#include "ToolTip.h"

#include <QTextDocument>
#include <QToolTip>

namespace quorvane {

QString plainToolTip(const QString& text)
{
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
}

void showPlainToolTip(const QPoint& globalPosition, const QString& text, QWidget* widget)
{
    QToolTip::showText(globalPosition, plainToolTip(text), widget);
}

} // namespace quorvane
