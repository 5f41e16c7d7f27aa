// SPDX-License-Identifier: MIT
#include "KeyedScreen.h"

#include "LayoutSpinner.h"

#include <QMetaObject>

namespace quorvane {

KeyedScreen::KeyedScreen(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_spinner(new LayoutSpinner(this))
{
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
    m_spinner->stop();
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
        // A hidden screen releases the old tree, too.
        stop();
        m_key.clear();
        m_hasContent = false;
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
        m_spinner->centerIn(rect());
        m_spinner->start(m_hasContent);
    }
}

void KeyedScreen::finish()
{
    m_task = nullptr;
    m_hasContent = true;
    m_spinner->stop();
}

void KeyedScreen::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    scheduleRefresh();
}

void KeyedScreen::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_spinner->centerIn(rect());
}

} // namespace quorvane
