// SPDX-License-Identifier: MIT
#include "FlashPresenter.h"

#include "FlashState.h"
#include "Popover.h"
#include "Refresher.h"
#include "SpringAnimation.h"

#include <QWidget>

#include <cmath>
#include <utility>

namespace quorvane {
namespace {

constexpr double springResponse = 0.25;
constexpr double springDamping = 0.85;
/// Of the way from hidden to shown: less than half a point.
constexpr double springTolerance = 0.01;

} // namespace

FlashPresenter::FlashPresenter(AppState& state, QWidget& window, std::function<Room()> room)
    : QObject(&window)
    , m_flash(FlashState::of(state))
    , m_window(window)
    , m_room(std::move(room))
    , m_spring(new SpringAnimation(springResponse, springDamping, springTolerance, this))
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    connect(m_spring, &SpringAnimation::valueChanged, this, &FlashPresenter::follow);
    m_refresher->watch(m_flash.flashMessage);
    refresh();
}

void FlashPresenter::refresh()
{
    const std::optional<QString>& message = m_flash.flashMessage.value();
    if (!message) {
        if (m_banner != nullptr) {
            m_spring->moveTo(0);
        }
        return;
    }
    if (m_banner == nullptr) {
        m_banner = new FlashBanner(
            *message, [this] { m_flash.dismissFlash(); }, &m_window);
        m_banner->setObjectName(QStringLiteral("flashBanner"));
    } else {
        m_banner->setText(*message);
    }
    place();
    m_banner->show();
    m_banner->raise();
    m_spring->moveTo(1);
}

void FlashPresenter::place()
{
    if (m_banner == nullptr) {
        return;
    }
    const Room room = m_room();
    m_banner->placeBelow(room.area, room.clear);
    const double hidden = 1 - m_spring->value();
    const int travel = m_banner->geometry().bottom() + 1;
    m_banner->move(m_banner->x(), m_banner->y() - static_cast<int>(std::lround(hidden * travel)));
}

void FlashPresenter::follow(double shown)
{
    if (shown <= 0 && m_spring->target() <= 0 && m_banner != nullptr) {
        m_banner->deleteLater();
        m_banner = nullptr;
        return;
    }
    place();
}

} // namespace quorvane
