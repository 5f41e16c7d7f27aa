// SPDX-License-Identifier: MIT
#include "KeyedScreen.h"

#include "Progress.h"

#include <QMetaObject>

namespace quorvane {

KeyedScreen::KeyedScreen(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_spinner(new Spinner(QStringLiteral("Computing layout…"), this))
{
    m_spinner->hide();
    const auto changed = [this] { scheduleRefresh(); };
    m_observers.push_back(m_state.rootNode.addNotifier(changed));
    m_observers.push_back(m_state.focusNode.addNotifier(changed));
    m_observers.push_back(m_state.storageSizeMode.addNotifier(changed));
    m_observers.push_back(m_state.storageBloatFilters.addNotifier(changed));
}

KeyedScreen::~KeyedScreen()
{
    stop();
}

void KeyedScreen::stop()
{
    if (m_task) {
        m_task->cancel();
        m_task = nullptr;
    }
    m_spinner->hide();
}

void KeyedScreen::scheduleRefresh()
{
    if (m_isScheduled) {
        return;
    }
    m_isScheduled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isScheduled = false;
            refresh();
        },
        Qt::QueuedConnection);
}

void KeyedScreen::refresh()
{
    const NodePointer node = target();
    if (!node) {
        // The old tree is let go even where nobody sees it.
        stop();
        m_key.clear();
        clear();
        return;
    }
    const bool isOtherTree = m_shown.owner_before(node) || node.owner_before(m_shown);
    if (!isVisible() || (key() == m_key && !isOtherTree)) {
        return;
    }
    stop();
    m_key = key();
    m_shown = node;
    m_task = startComputing(node);
    if (m_task) {
        placeSpinner();
        m_spinner->raise();
        m_spinner->show();
    }
}

void KeyedScreen::finish()
{
    m_task = nullptr;
    m_spinner->hide();
}

void KeyedScreen::placeSpinner()
{
    m_spinner->adjustSize();
    QRect place = m_spinner->rect();
    place.moveCenter(spinnerArea().center());
    m_spinner->move(place.topLeft());
}

void KeyedScreen::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    scheduleRefresh();
}

void KeyedScreen::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeSpinner();
}

} // namespace quorvane
