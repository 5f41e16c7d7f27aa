// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QRect>

#include <functional>

class QWidget;

namespace quorvane {

class AppState;
class FlashBanner;
class Refresher;
class SpringAnimation;

/// Lets the flash banner of a window come and go with the model's message. Main thread.
class FlashPresenter : public QObject
{
    Q_OBJECT

public:
    /// area: where in the window the banner hangs from the top edge, asked at each placing.
    FlashPresenter(AppState& state, QWidget& window, std::function<QRect()> area);

    /// Puts the banner where it belongs; after a resize.
    void place();

private:
    void refresh();
    void follow(double shown);

    AppState& m_state;
    QWidget& m_window;
    std::function<QRect()> m_area;
    FlashBanner* m_banner = nullptr;
    SpringAnimation* m_spring;
    Refresher* m_refresher;
};

} // namespace quorvane
