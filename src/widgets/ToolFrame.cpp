// SPDX-License-Identifier: MIT
#include "ToolFrame.h"

#include "Card.h"
#include "EmptyState.h"
#include "Label.h"
#include "Painting.h"
#include "Progress.h"
#include "RowView.h"
#include "ScreenHeader.h"
#include "Tokens.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {
namespace {

constexpr int bottomHeight = 56;
constexpr int summaryGap = 14; ///< between the summary and what follows
constexpr int waitingGap = 6;

QVBoxLayout* columnOf(QWidget* widget)
{
    auto* const column = new QVBoxLayout(widget);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    return column;
}

bool isAnyShown(const QBoxLayout& line)
{
    for (int i = 0; i < line.count(); ++i) {
        const QWidget* const widget = line.itemAt(i)->widget();
        if (widget != nullptr && !widget->isHidden()) {
            return true;
        }
    }
    return false;
}

} // namespace

ToolFrame::Note ToolFrame::dim(const QString& text, const QString& name)
{
    return {text, TextStyle::body, ThemeColor::text2, name};
}

ToolFrame::Note ToolFrame::strong(const QString& text, const QString& name)
{
    return {text, TextStyle::strong, ThemeColor::text1, name};
}

ToolFrame::ToolFrame(const QString& symbol, const QString& title, QWidget* parent)
    : QWidget(parent)
    , m_column(columnOf(this))
    , m_header(new ScreenHeader(symbol, title, this))
    , m_spinner(new Spinner({}, this))
    , m_summary(new QWidget(this))
    , m_summaryLeft(new QHBoxLayout)
    , m_summaryRight(new QHBoxLayout)
    , m_progress(new QWidget(this))
    , m_body(new QWidget(this))
    , m_bodyLayout(columnOf(m_body))
    , m_bottom(new QWidget(this))
{
    m_header->addAction(m_spinner);
    m_spinner->hide();
    auto* const summary = new QHBoxLayout(m_summary);
    summary->setContentsMargins(measure::screenMargin, 0, measure::screenMargin, summaryGap);
    summary->addLayout(m_summaryLeft);
    summary->addStretch();
    summary->addLayout(m_summaryRight);
    m_summaryLeft->setSpacing(spacing::xs);
    m_summaryRight->setSpacing(spacing::xs);
    m_summary->hide();
    makeProgress();
    m_bodyLayout->setContentsMargins(measure::screenMargin, 0, measure::screenMargin,
                                     measure::screenMargin);
    makeBottom();
    m_column->addWidget(m_header);
    m_column->addWidget(m_progress);
    m_column->addWidget(m_summary);
    m_column->addWidget(m_body, 1);
    m_column->addStretch();
    m_column->addWidget(m_bottom);
}

void ToolFrame::makeProgress()
{
    auto* const outer = new QHBoxLayout(m_progress);
    outer->setContentsMargins(measure::screenMargin, spacing::xs, measure::screenMargin,
                              spacing::l);
    outer->setSpacing(spacing::l);
    auto* const column = new QVBoxLayout;
    column->setSpacing(spacing::s);
    auto* const words = new QHBoxLayout;
    m_status = new Label({}, TextStyle::caption, ThemeColor::text2);
    m_status->setObjectName(QStringLiteral("progressStatus"));
    m_count = new Label({}, TextStyle::captionStrong);
    m_count->setObjectName(QStringLiteral("progressCount"));
    words->addWidget(m_status);
    words->addStretch();
    words->addWidget(m_count);
    column->addLayout(words);
    m_bar = new ProgressBar({});
    m_bar->setObjectName(QStringLiteral("progressBar"));
    column->addWidget(m_bar);
    outer->addLayout(column, 1);
    m_progressLine = outer;
    m_progressColumn = column;
    m_progress->setObjectName(QStringLiteral("progress"));
    m_progress->hide();
}

void ToolFrame::makeBottom()
{
    m_bottom->setFixedHeight(bottomHeight);
    auto* const line = new QHBoxLayout(m_bottom);
    line->setContentsMargins(measure::screenMargin, 1, measure::screenMargin, 0);
    m_bottomLeft = new QHBoxLayout;
    m_bottomRight = new QHBoxLayout;
    m_bottomLeft->setSpacing(spacing::m);
    m_bottomRight->setSpacing(spacing::m);
    line->addLayout(m_bottomLeft);
    line->addStretch();
    line->addLayout(m_bottomRight);
    m_bottom->hide();
}

void ToolFrame::setSubtitle(const QString& text, const QString& name)
{
    m_header->setSubtitle(text, name);
}

Button* ToolFrame::addAction(const QString& symbol, const QString& text, ButtonRole role)
{
    auto* const button = new Button(symbol, text, role);
    m_header->addAction(button);
    return button;
}

void ToolFrame::addHeaderWidget(QWidget* widget)
{
    m_header->addAction(widget);
}

void ToolFrame::setBusy(const QString& text)
{
    m_spinner->setText(text);
    m_spinner->setVisible(!text.isEmpty());
}

void ToolFrame::fillNotes(QBoxLayout& line, std::vector<Label*>& labels,
                          const std::vector<Note>& notes)
{
    while (labels.size() > notes.size()) {
        delete labels.back();
        labels.pop_back();
    }
    for (std::size_t i = 0; i < notes.size(); ++i) {
        const Note& note = notes[i];
        if (i == labels.size()) {
            labels.push_back(new Label({}, note.style, note.color));
            line.addWidget(labels.back());
        }
        labels[i]->setTextStyle(note.style);
        labels[i]->setTextColor(note.color);
        labels[i]->setText(note.text);
        labels[i]->setObjectName(note.name);
    }
}

void ToolFrame::setSummary(const std::vector<Note>& left, const std::vector<Note>& right)
{
    fillNotes(*m_summaryLeft, m_leftNotes, left);
    fillNotes(*m_summaryRight, m_rightNotes, right);
    m_summary->setVisible(!left.empty() || !right.empty());
}

void ToolFrame::addStrip(QWidget* strip)
{
    auto* const holder = new QWidget(this);
    auto* const column = columnOf(holder);
    column->setContentsMargins(measure::screenMargin, 0, measure::screenMargin, 0);
    column->addWidget(strip);
    m_column->insertWidget(m_column->indexOf(m_summary) + 1, holder);
}

void ToolFrame::setProgress(const std::optional<Progress>& progress)
{
    if (progress) {
        m_bar->setFraction(progress->fraction);
        m_status->setText(progress->status);
        m_status->setVisible(!progress->status.isEmpty());
        m_count->setText(progress->count);
        m_count->setVisible(!progress->count.isEmpty());
    }
    setShown(*m_progress, progress.has_value());
}

void ToolFrame::setProgressName(const QString& name)
{
    m_bar->setAccessibleName(name);
}

void ToolFrame::setStatusBelowBar()
{
    m_progressColumn->setDirection(QBoxLayout::BottomToTop);
}

Button* ToolFrame::addProgressCancel(const QString& text)
{
    auto* const cancel = new Button(text);
    m_progressLine->addWidget(cancel, 0, Qt::AlignBottom);
    connect(cancel, &QAbstractButton::clicked, this, &ToolFrame::progressCancelled);
    return cancel;
}

EmptyState* ToolFrame::addEmpty(const QString& key, const QString& symbol, const QString& heading,
                                const QString& text, int textWidth)
{
    auto* const state = new EmptyState(symbol, heading, text, this);
    state->setTextWidth(textWidth);
    addEmpty(key, state);
    return state;
}

void ToolFrame::addEmpty(const QString& key, QWidget* widget)
{
    m_column->insertWidget(m_column->indexOf(m_body), widget, 1);
    widget->hide();
    m_empties[key] = widget;
}

QWidget* ToolFrame::addWaiting(const QString& key, const QString& heading, const QString& text)
{
    auto* const waiting = new QWidget(this);
    auto* const column = columnOf(waiting);
    auto* const spinner = new Spinner(heading);
    spinner->setWordsVisible(false);
    auto* const first = new Label(heading, TextStyle::heading);
    auto* const second = new Label(text, TextStyle::body, ThemeColor::text2);
    first->setAlignment(Qt::AlignCenter);
    second->setAlignment(Qt::AlignCenter);
    column->addStretch();
    column->addWidget(spinner, 0, Qt::AlignHCenter);
    column->addSpacing(spacing::l);
    column->addWidget(first);
    column->addSpacing(waitingGap);
    column->addWidget(second);
    column->addStretch();
    addEmpty(key, waiting);
    return waiting;
}

void ToolFrame::setShown(QWidget& widget, bool shown)
{
    QWidget* const focused = window()->focusWidget();
    const bool takesFocus =
        focused != nullptr && (focused == &widget || widget.isAncestorOf(focused));
    if (!shown && takesFocus && !widget.isHidden()) {
        // Left to itself it would fall on whatever control of the window comes next.
        m_lostFocus = &widget == m_body ? focused : nullptr;
        setFocus(Qt::OtherFocusReason);
    }
    widget.setVisible(shown);
    if (shown && &widget == m_body) {
        const QPointer<QWidget> back = std::exchange(m_lostFocus, nullptr);
        if (back != nullptr && window()->focusWidget() == this) {
            back->setFocus(Qt::OtherFocusReason);
        }
    }
}

void ToolFrame::showOnly(QWidget* shown)
{
    for (const auto& entry : m_empties) {
        if (entry.second != shown) {
            setShown(*entry.second, false);
        }
    }
    setShown(*m_body, shown == m_body);
    if (shown != nullptr && shown != m_body) {
        shown->show();
    }
}

void ToolFrame::showEmpty(const QString& key)
{
    m_shownEmpty = key;
    showOnly(m_empties.at(key));
}

void ToolFrame::showBody()
{
    m_shownEmpty.clear();
    showOnly(m_body);
}

void ToolFrame::showNothing()
{
    m_shownEmpty.clear();
    showOnly(nullptr);
}

QWidget* ToolFrame::addList(RowView& list, QWidget* footer)
{
    if (list.metrics().hasOwnCards) {
        m_bodyLayout->addWidget(&list);
        return &list;
    }
    auto* const card = new Card;
    auto* const column = columnOf(card);
    column->setContentsMargins(1, 1, 1, 1);
    column->addWidget(&list);
    if (footer != nullptr) {
        column->addWidget(new Hairline);
        column->addWidget(footer);
    }
    m_bodyLayout->addWidget(card);
    m_bodyLayout->addStretch();
    return card;
}

Button* ToolFrame::addBottomAction(Side side, const QString& symbol, const QString& text,
                                   ButtonRole role)
{
    auto* const button = new Button(symbol, text, role);
    addBottomWidget(side, button);
    return button;
}

void ToolFrame::addBottomWidget(Side side, QWidget* widget)
{
    (side == Side::left ? m_bottomLeft : m_bottomRight)->addWidget(widget);
    widget->installEventFilter(this);
    fitBottom();
}

void ToolFrame::setBottomHeight(int height)
{
    m_bottom->setFixedHeight(height);
}

void ToolFrame::fitBottom()
{
    setShown(*m_bottom, isAnyShown(*m_bottomLeft) || isAnyShown(*m_bottomRight));
}

bool ToolFrame::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent) {
        fitBottom();
    }
    return QWidget::eventFilter(watched, event);
}

void ToolFrame::paintEvent(QPaintEvent*)
{
    if (!m_bottom->isVisible()) {
        return;
    }
    QPainter painter(this);
    const QRect bar = m_bottom->geometry();
    painter.fillRect(bar, themeColor(ThemeColor::side));
    painter.fillRect(QRect(bar.left(), bar.top(), bar.width(), 1),
                     themeColor(ThemeColor::hairline));
}

} // namespace quorvane
