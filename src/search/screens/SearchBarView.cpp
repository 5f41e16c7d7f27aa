// SPDX-License-Identifier: MIT
#include "SearchBarView.h"

#include "GlobalSearch.h"
#include "Tokens.h"

#include <QFocusEvent>
#include <QTimer>

namespace quorvane {
namespace {

constexpr int fieldWidth = 176;
constexpr int narrowWidth = 150;

} // namespace

SearchBarView::SearchBarView(QWidget* parent)
    : TextField(tr("Search your Mac…"), parent)
{
    setObjectName(QStringLiteral("searchBar"));
    setAccessibleName(tr("Search your Mac…"));
    setToolTip(tr("Spotlight Search — your whole Mac (⌘⇧Space)"));
    setSymbol(QStringLiteral("magnifyingglass"));
    // The Tab key passes it by: whoever reached it by key would be taken out of the window.
    setFocusPolicy(Qt::ClickFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QLineEdit::textEdited, this, &SearchBarView::handoffToOverlay);
    connect(this, &QLineEdit::returnPressed, this, &SearchBarView::handoffToOverlay);
}

QSize SearchBarView::sizeHint() const
{
    return {fieldWidth, measure::field};
}

QSize SearchBarView::minimumSizeHint() const
{
    return {narrowWidth, measure::field};
}

void SearchBarView::focusInEvent(QFocusEvent* event)
{
    TextField::focusInEvent(event);
    // A window that becomes active again gives the focus back to whoever had it; nobody asked for a
    // search then.
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason) {
        QTimer::singleShot(0, this, &SearchBarView::handoffToOverlay);
    }
}

void SearchBarView::handoffToOverlay()
{
    GlobalSearch::shared().openFromToolbar(text());
    clear();
    clearFocus();
}

} // namespace quorvane
