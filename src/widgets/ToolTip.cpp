// SPDX-License-Identifier: MIT
#include "ToolTip.h"

#include "Painting.h"

#include <QTextDocument>
#include <QToolTip>

namespace quorvane {
namespace {

constexpr int longestLine = 420;
constexpr qsizetype longestEnd = 1500; ///< letters; two of them fill a screen

/// A path may be longer than a screen and take seconds to be broken into lines.
QString withoutMiddle(const QString& text)
{
    return text.size() <= 2 * longestEnd
               ? text
               : QString(text.left(longestEnd) % u'…' % text.right(longestEnd));
}

} // namespace

QString plainToolTip(const QString& whole)
{
    QString text = withoutMiddle(whole);
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
