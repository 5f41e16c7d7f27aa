// SPDX-License-Identifier: MIT
#include "PathText.h"

#include "Theme.h"

#include <QResizeEvent>
#include <QTextDocument>

#include <cmath>

namespace quorvane {

PathText::PathText(QWidget* parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFocusPolicy(Qt::ClickFocus);
    setAccessibleName(tr("Path"));
    document()->setDocumentMargin(0);
    viewport()->setAutoFillBackground(false);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    applyTheme();
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this, &PathText::applyTheme);
}

void PathText::setPath(const QString& path)
{
    // Wrapping megabytes would hold the window up; no panel shows more than this.
    constexpr qsizetype most = 4096;
    const QString shown = path.size() <= most
                              ? path
                              : QString(path.left(most / 2) + QChar(0x2026) + path.right(most / 2));
    if (toPlainText() != shown) {
        setPlainText(shown);
        fitHeight();
    }
}

void PathText::applyTheme()
{
    setFont(quorvane::font(TextStyle::path));
    QPalette own = palette();
    own.setColor(QPalette::Text, themeColor(ThemeColor::text3));
    own.setColor(QPalette::Base, Qt::transparent);
    setPalette(own);
    fitHeight();
}

void PathText::fitHeight()
{
    document()->setTextWidth(viewport()->width());
    setFixedHeight(static_cast<int>(std::ceil(document()->size().height())));
}

QSize PathText::sizeHint() const
{
    return {0, height()};
}

QSize PathText::minimumSizeHint() const
{
    return sizeHint();
}

void PathText::resizeEvent(QResizeEvent* event)
{
    QTextEdit::resizeEvent(event);
    if (event->size().width() != event->oldSize().width()) {
        fitHeight();
    }
}

} // namespace quorvane
