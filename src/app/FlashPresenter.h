// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QRect>

#include <functional>

class QWidget;

namespace quorvane {

class AppState;
class FlashState;
class FlashBanner;
class Refresher;
class SpringAnimation;

/// Lets the flash banner of a window come and go with the model's message. Main thread.
class FlashPresenter : public QObject
{
    Q_OBJECT

public:
    /// In the window's coordinates: what the banner hangs in from the top edge, and the part
    /// between whose left and right end it stays.
    struct Room
    {
        QRect area;
        QRect clear;
    };

    /// room: asked at each placing.
    FlashPresenter(AppState& state, QWidget& window, std::function<Room()> room);

    /// Puts the banner where it belongs; after its room has changed.
    void place();

private:
    void refresh();
    void follow(double shown);

    FlashState& m_flash;
    QWidget& m_window;
    std::function<Room()> m_room;
    FlashBanner* m_banner = nullptr;
    SpringAnimation* m_spring;
    Refresher* m_refresher;
};

} // namespace quorvane
