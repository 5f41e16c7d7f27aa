// SPDX-License-Identifier: MIT
#include "ToolTip.h"

#include "Painting.h"

#include <QTextDocument>
#include <QToolTip>

namespace quorvane {
namespace {

constexpr int longestLine = 420;

} // namespace

QString plainToolTip(const QString& text)
{
    // Only what is markup is broken into lines.
    if (textWidth(TextStyle::caption, text) <= longestLine && !Qt::mightBeRichText(text)) {
        return text;
    }
    return QStringLiteral("<p style=\"white-space: pre-wrap\">") % text.toHtmlEscaped() %
           QStringLiteral("</p>");
}

void showPlainToolTip(const QPoint& globalPosition, const QString& text, QWidget* widget)
{
    QToolTip::showText(globalPosition, plainToolTip(text), widget);
}

} // namespace quorvane
