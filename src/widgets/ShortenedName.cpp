// SPDX-License-Identifier: MIT
#include "ShortenedName.h"

#include "ToolTip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTextLayout>
#include <QToolTip>

#include <algorithm>

namespace quorvane {
namespace {

/// Lays the text out in lines that are lineHeight apart; returns how many.
int layOutLines(QTextLayout& layout, qreal width, qreal lineHeight)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    int lines = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, lines * lineHeight + (lineHeight - line.height()) / 2));
        ++lines;
    }
    layout.endLayout();
    return lines;
}

/// A line break in a name takes no line of its own.
QString inOneParagraph(QString text)
{
    return text.replace(u'\n', u' ');
}

/// So many characters of the text, half of them from each end; none is cut in two.
QString withoutMiddle(const QString& text, qsizetype kept)
{
    qsizetype front = (kept + 1) / 2;
    qsizetype back = kept / 2;
    front -= front > 0 && text[front - 1].isHighSurrogate() ? 1 : 0;
    back -= back > 0 && text[text.size() - back].isLowSurrogate() ? 1 : 0;
    return text.left(front) + QChar(u'…') + text.right(back);
}

} // namespace

ShortenedName::ShortenedName(int mostLines, TextStyle style, QWidget* parent)
    : Label({}, style, ThemeColor::text1, parent)
    , m_mostLines(mostLines)
{
    setWordWrap(true);
}

int ShortenedName::linesOf(const QString& text, qreal width) const
{
    QTextLayout layout(text, font());
    return layOutLines(layout, width, typeMeasure(textStyle()).lineHeight);
}

bool ShortenedName::fits(int width) const
{
    return linesOf(inOneParagraph(text()), width) <= m_mostLines;
}

QString ShortenedName::shownText() const
{
    QString whole = inOneParagraph(text());
    const qreal width = contentsRect().width();
    if (linesOf(whole, width) <= m_mostLines) {
        return whole;
    }
    qsizetype fits = 0;
    qsizetype tooMany = whole.size();
    while (tooMany - fits > 1) {
        const qsizetype kept = (fits + tooMany) / 2;
        (linesOf(withoutMiddle(whole, kept), width) <= m_mostLines ? fits : tooMany) = kept;
    }
    return withoutMiddle(whole, fits);
}

QSize ShortenedName::sizeHint() const
{
    return {Label::sizeHint().width(), typeMeasure(textStyle()).lineHeight};
}

int ShortenedName::heightForWidth(int width) const
{
    const int lines = std::clamp(linesOf(inOneParagraph(text()), width), 1, m_mostLines);
    return lines * typeMeasure(textStyle()).lineHeight;
}

bool ShortenedName::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip) {
        return Label::event(event);
    }
    if (shownText() == inOneParagraph(text())) {
        QToolTip::hideText();
        event->ignore();
    } else {
        showPlainToolTip(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    }
    return true;
}

void ShortenedName::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(currentColor());
    QTextLayout layout(shownText(), font());
    layOutLines(layout, contentsRect().width(), typeMeasure(textStyle()).lineHeight);
    layout.draw(&painter, contentsRect().topLeft());
}

} // namespace quorvane
